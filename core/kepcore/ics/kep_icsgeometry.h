#pragma once

// Private to the library: voxel sizes, offsets and descriptions of ICS files, and how they are written so that they
// come back bit for bit.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsheader.h"

#include <string>
#include <string_view>
#include <vector>

namespace kep::detail {

/// Sets resolution, offset and description from a parsed header. The frame's size is set already: a frame of one
/// slice that says nothing of its z takes the resolution of x.
void TakeIcsGeometry(const IcsHeader& from, FrameHeader& to);

/// What the header of a written file says of one axis.
struct IcsAxisTexts {
    std::string origin;
    std::string scale;
    std::string unit;
};

/// Texts of an axis, with nine digits, which carry every float.
/// @param resolution  pixels per micron; not above 0 or not finite: the unit is undefined
/// @param offset      microns
IcsAxisTexts MakeIcsAxisTexts(float resolution, float offset);

/// Lines of a written file's history, key and value each.
using IcsHistory = std::vector<std::pair<std::string, std::string>>;

/// The history of a written file: the description, and lines of our own for those numbers that the standard fields
/// cannot give back exactly. A value of several lines becomes several entries with one key.
IcsHistory MakeIcsHistory(const FrameHeader& frame);

/// The lines of one entry of the description; none if its key is that of a line of our own.
IcsHistory MakeIcsEntry(std::string_view key, std::string_view value);

} // namespace kep::detail
