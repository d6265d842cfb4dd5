#include "model/zel_pixelquery.h"

#include <algorithm>

namespace zel {

namespace {

/// Lower faces belong to the box, upper ones do not.
bool IsInBox(const MicronBox& box, const kep::Vector3d<float>& position) {
    return std::all_of(axes.begin(), axes.end(), [&](Axis axis) {
        const float low = At(box.offset, axis);
        return At(position, axis) >= low && At(position, axis) < low + At(box.size, axis);
    });
}

} // namespace

std::optional<PixelPlace> LocatePixel(const View& view, const ImageGeometry& image, const Plane& plane,
                                      const Size& window, const Size& client, const Point& pixel) {
    const auto position =
        ToImage<float>(plane, {view.HorizontalMicrons(plane, pixel.x, window.x),
                               view.VerticalMicrons(plane, pixel.y, window.y), At(view.options.cut, plane.third)});
    if (!IsInBox(view.boundingBox, position))
        return std::nullopt;
    const auto horizontal = VoxelAt(LookAlong(view, image, plane.horizontal, client.x), pixel.x);
    const auto vertical = VoxelAt(LookAlong(view, image, plane.vertical, client.y), pixel.y);
    const auto third = VoxelAt(LookThrough(view, image, plane), 0);
    if (!horizontal || !vertical || !third)
        return std::nullopt;
    return PixelPlace{position, ToImage<std::size_t>(plane, {*horizontal, *vertical, *third})};
}

std::optional<kep::Vector3d<std::size_t>> FindInSlice(const Plane& plane, const ViewOptions& options, const Size& rows,
                                                      const kep::Vector3d<std::size_t>& slice, const Point& pixel) {
    const Size seen = RowsOfPicture(plane, rows); // turned back
    const int horizontal = options.Reversed(plane.horizontal) ? seen.x - pixel.x - 1 : pixel.x;
    const int vertical = options.Reversed(plane.vertical) ? seen.y - pixel.y - 1 : pixel.y;
    if (horizontal < 0 || vertical < 0)
        return std::nullopt;
    const auto at =
        ToImage<std::size_t>(plane, {static_cast<std::size_t>(horizontal), static_cast<std::size_t>(vertical), 0});
    if (at.x >= slice.x || at.y >= slice.y || at.z >= slice.z)
        return std::nullopt;
    return at;
}

} // namespace zel
