#pragma once

// How the info window writes its values. Decimal points are those of the C library's locale.

#include "core/kepcore/kep_resolution.h"
#include "model/zel_export.h"
#include "model/zel_picture.h"

#include <cstddef>
#include <string>

namespace zel {

/// "[1.000, 2.500, 0.333]"
ZEL_EXPORT std::string PositionText(const kep::Vector3d<float>& microns);
/// "1.000 x 2.500 x 0.333"
ZEL_EXPORT std::string ExtentText(const kep::Vector3d<float>& microns);
/// "[12, 0, 7, 3]": x, y, z and the number of the frame
ZEL_EXPORT std::string VoxelNumberText(const kep::Vector3d<std::size_t>& voxel, int frame);
/// " 10 200   0": red, green, blue
ZEL_EXPORT std::string ColourText(const Colour& colour);
/// "512 x 512 x  64 x   1": x, y, z and the number of frames
ZEL_EXPORT std::string ImageSizeText(const kep::Vector3d<std::size_t>& voxels, std::size_t frames);
/// "100 x 100 x 300", in whole nanometres, truncated; "undef" for a resolution that is not defined
ZEL_EXPORT std::string VoxelSizeText(const kep::Resolution& resolution);
/// "51.200 x 51.200 x 19.200", in microns; "undef" for a resolution that is not defined
ZEL_EXPORT std::string ImageExtentText(const kep::Vector3d<std::size_t>& voxels, const kep::Resolution& resolution);

} // namespace zel
