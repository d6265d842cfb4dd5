#pragma once

// Private to the library: two-valued pictures as the three codes for facsimile pack them.

#include "core/kepcore/tiff/kep_tiffdecode.h"

#include <cstdint>

namespace kep::detail {

/// How rows are coded.
enum class FaxCode {
    Runs,           ///< lengths of runs; each row begins with a byte
    RunsWithMarks,  ///< lengths of runs; a mark before each row (group 3), which some writers leave out
    MixedWithMarks, ///< after each mark, a bit tells whether runs follow, or differences from the row above
    Differences     ///< differences from the row above only (group 4)
};

/// Rows of a block become bits, black ones 1, the highest of a byte first. A row that is not exactly as long as the
/// block is wide is damage: what it should have been, nobody knows.
/// @param width  pixels of a row, whose bytes are whole
/// @param block  as many rows as are wanted
StreamEnd DecodeFax(FaxCode code, PackedBytes stream, std::uint32_t width, BlockBytes block);

} // namespace kep::detail
