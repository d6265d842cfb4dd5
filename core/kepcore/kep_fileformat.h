#pragma once

namespace kep {

/// The format in which a frame is written. Reading goes by the file's content alone.
enum FileFormat : int {
    FF_BY_NAME = 0, ///< by the suffix, without regard to case: ".ics" is ICS, ".tif" and ".tiff" are TIFF
    FF_ICS = 1,
    FF_TIFF = 2,
    FF_LABELED = 8, ///< a labelled frame: its labels as 16-bit numbers, in the format that the suffix names
};

} // namespace kep
