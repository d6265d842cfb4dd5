#pragma once

#include "core/kepcore/kep_resolution.h"
#include "model/zel_export.h"

#include <cstddef>
#include <string>

namespace zel {

/// The scale at which an image opens.
struct OpeningScale {
    kep::Vector3d<float> scale; ///< pixels per micron
    bool proportional = true;   ///< false: voxels are shown as cubes although they are not
};

/// The smallest scale in true proportions at which no axis gets less than one pixel a voxel. Where the sides of a
/// voxel differ more than a hundredfold, one pixel a voxel instead: such an image would be a line on the screen, and
/// its voxel size is nearly always a mistake of units.
ZEL_EXPORT OpeningScale ChooseScale(const kep::Resolution& resolution);

/// How many times larger the three windows may be made until they fill a room. From one voxel a pixel on it is a whole
/// number or a whole and a half, so that voxels are regular.
/// @param pixels  along x, y, z of the image at the present scale, each above 0: XY and YZ stand side by side, XY over
///                XZ
/// @param width, height  of the room, pixels
ZEL_EXPORT float FactorToFill(const kep::Vector3d<float>& pixels, int width, int height);

/// A viewer's title: "stack.tif - 512 x 512 x 40 - 150%".
/// @param name    in UTF-8
/// @param voxels  of the image
/// @param pixels  on the screen for the shortest side of a voxel, above 0
ZEL_EXPORT std::string DescribeTitle(const std::string& name, const kep::Vector3d<std::size_t>& voxels, float pixels);

} // namespace zel
