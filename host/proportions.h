#pragma once

#include "image/kep.h"

#include <optional>

namespace zelviewer {

/// A file's resolution; axes without one take the user's. The file takes precedence.
kep::Resolution CompleteResolution(const kep::Resolution& stored, const std::optional<kep::Vector3d<float>>& given);

/// The scale at which an image opens.
struct OpeningScale {
    kep::Vector3d<float> scale; ///< pixels per micron
    bool proportional = true;   ///< false: voxels are shown as cubes although they are not
};

/// The smallest scale in true proportions at which no axis gets less than one pixel a voxel. Where the sides of a
/// voxel differ more than a hundredfold, one pixel a voxel instead: such an image would be a line on the screen, and
/// its voxel size is nearly always a mistake of units.
OpeningScale ChooseScale(const kep::Resolution& resolution);

/// What the user is told of an image that does not open in true proportions.
inline constexpr char notProportional[] =
    "The sides of a voxel differ more than a hundredfold; shown with one pixel a voxel.";

/// How many times larger the three windows may be made until they fill a room. From one voxel a pixel on it is a whole
/// number or a whole and a half, so that voxels are regular.
/// @param pixels  along x, y, z of the image at the present scale, each above 0: XY and YZ stand side by side, XY over
///                XZ
/// @param width, height  of the room, pixels
float FactorToFill(const kep::Vector3d<float>& pixels, int width, int height);

} // namespace zelviewer
