#pragma once

// Private to the library: the units in which files give sizes and places.

#include "core/kepcore/kep_resolution.h"

#include <optional>
#include <string_view>

namespace kep::detail {

/// Whose names of units count. The two formats have most in common; the few that only one of them has known say nothing
/// in the other, so that files go on being read as they always were.
enum class UnitNames { Tiff, Ics };

/// Microns of a unit of length, in letters of any size, e.g. "nm", "Micron"; nothing for "pixel" and all else that is
/// no length.
std::optional<double> FindMicrons(std::string_view unit, UnitNames names);

/// Seconds from one time point to the next.
/// @param unit  of time, in letters of any size, e.g. "s", "msec", "Minutes"
/// @return nothing for a number that no interval can be, and for a unit that is none of time
std::optional<double> FindInterval(std::optional<double> number, std::string_view unit);

/// Geometry can divide by it.
/// @param resolution  pixels per micron on one axis
inline bool IsGoodResolution(float resolution) {
    return Resolution(resolution, resolution, resolution).IsDefined();
}

} // namespace kep::detail
