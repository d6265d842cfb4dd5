#pragma once

// What docs/embedding.md quotes of pictures without a window.

#include "image/zel_image4d.h"
#include "model/zel_slice.h"
#include "model/zel_view.h"

#include <algorithm>
#include <vector>

namespace zel::docs {

/// A slice as the XY window shows it with one pixel a voxel. Needs no window and no display.
template <typename T>
kep::Image3d<Colour> PaintSlice(const mor::Image4d<T>& image, const zel_Mapper<T>& mapper, std::size_t time,
                                std::size_t slice) {
    const Plane& plane = *FindPlane(zel_PT_XY);
    View view;
    view.Open({image.GetOffset(), image.GetSize(), image.GetResolution()});
    view.scale = view.options.baseScale; // pixels per micron
    view.visibleBox = view.boundingBox;
    view.MoveCutThrough(plane, view.boundingBox.offset.z + (static_cast<float>(slice) + 0.5F) * view.cutStep.z);

    kep::Image3d<T> voxels;
    ColourBuffer buffer{0, 0};
    std::vector<Colour> turned;
    CutSlice(view, plane, view.GetFullSize(plane), *image.GetImage(time), voxels, buffer);
    mapper.Map(voxels.GetFirstVoxelAddr(), buffer);
    const SeenPicture seen = TurnPicture(plane, view.options, buffer.data, {buffer.width, buffer.height}, turned);

    kep::Image3d<Colour> picture;
    picture.MakeRoom(static_cast<std::size_t>(seen.size.x), static_cast<std::size_t>(seen.size.y), 1);
    std::copy_n(seen.pixels, picture.GetNumVoxels(), picture.begin());
    return picture; // SaveImage writes it as TIFF or ICS
}

} // namespace zel::docs
