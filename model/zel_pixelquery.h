#pragma once

// What lies under a pixel of a drawing window. The info window and hosts ask here, by the rules by which the picture
// was made.

#include "model/zel_axislook.h"
#include "model/zel_picture.h"

#include <cstddef>
#include <optional>

namespace zel {

/// A pixel of a window, as a place of the image.
struct PixelPlace {
    kep::Vector3d<float> position;    ///< microns
    kep::Vector3d<std::size_t> voxel; ///< that the picture shows there; along the plane's third axis that of the cut

    friend bool operator==(const PixelPlace&, const PixelPlace&) = default; ///< exact
};

/// Finds the place of the image that a pixel of a plane's window shows; none for places beside the image.
///
/// The voxel is that of the picture. The position follows View::HorizontalMicrons and its kin, whose mirrored forms lie
/// beside it by the border, and in a plane without X or Y follow the flag of an axis that is not its own.
/// @param view, image  the view of this image
/// @param plane        of the window
/// @param window       size of the window with its border, pixels
/// @param client       the same without the border: the size of the picture
/// @param pixel        of the window's client area
ZEL_EXPORT std::optional<PixelPlace> LocatePixel(const View& view, const ImageGeometry& image, const Plane& plane,
                                                 const Size& window, const Size& client, const Point& pixel);

/// Where a pixel lies in a plane's slice, which is not mirrored; none outside the slice. The index of that voxel in the
/// slice is also that of the pixel in the picture as it was made.
/// @param plane    of the window
/// @param options  which axes are mirrored
/// @param rows     columns and rows of the picture as it was made, by which the pixel is mirrored
/// @param slice    voxels of the slice
/// @param pixel    of the window's client area
ZEL_EXPORT std::optional<kep::Vector3d<std::size_t>> FindInSlice(const Plane& plane, const ViewOptions& options,
                                                                 const Size& rows,
                                                                 const kep::Vector3d<std::size_t>& slice,
                                                                 const Point& pixel);

} // namespace zel
