#pragma once

#include "image/kep.h"

#include <optional>

namespace zelviewer {

/// A file's resolution; axes without one take the user's. The file takes precedence.
kep::Resolution CompleteResolution(const kep::Resolution& stored, const std::optional<kep::Vector3d<float>>& given);

/// What the user is told of an image that does not open in true proportions.
inline constexpr char notProportional[] =
    "The sides of a voxel differ more than a hundredfold; shown with one pixel a voxel.";

} // namespace zelviewer
