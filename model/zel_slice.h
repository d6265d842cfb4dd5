#pragma once

#include "core/kepalgo/kep_copytoimage.h"
#include "model/zel_mapper.h"
#include "model/zel_picture.h"
#include "model/zel_view.h"

namespace zel {

/// Cuts the voxels under a window's pixels out of a frame: the first step of every picture. The second is
/// zel_Mapper<T>::Map, the third TurnPicture.
/// @param view    scale, visible box and cut
/// @param plane   of the window
/// @param window  size of the window, pixels
/// @param source  the frame, or its autofocus image where the view shows that
/// @param slice   gets one voxel a pixel, XY (w, h, 1), XZ (w, 1, h), YZ (1, h, w), and its place
/// @param buffer  gets the size of the picture as it is mapped, which is not cleared where it has that already
template <typename T>
void CutSlice(const View& view, const Plane& plane, const Size& window, const kep::Image3d<T>& source,
              kep::Image3d<T>& slice, ColourBuffer& buffer) {
    const Size rows = RowsOfPicture(plane, window);
    if (buffer.width != rows.x || buffer.height != rows.y) {
        const kep::Vector3d<std::size_t> voxels = VoxelsOfSlice(plane, window);
        slice.MakeRoom(voxels.x, voxels.y, voxels.z);
        buffer.Resize(rows.x, rows.y);
    }
    slice.SetOffset(view.GetSliceOffset(plane));
    slice.SetResolution(kep::Resolution(view.scale));
    kep::CopyToImage(source, slice);
}

} // namespace zel
