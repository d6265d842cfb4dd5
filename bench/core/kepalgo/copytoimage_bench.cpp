#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "core/kepalgo/kep_copytoimage.h"

namespace {

constexpr std::size_t windowWidth = 1000, windowHeight = 800;

enum class Plane { XY, XZ, YZ };

/// How the windows show the frame.
struct View {
    std::string name;
    kep::Resolution scale; ///< pixels per micron
};

/// The slice of a window, as the canvas sets it up, in the middle of the frame.
template <typename T>
kep::Image3d<T> MakeSlice(const kep::Image3d<T>& src, Plane plane, const View& view) {
    kep::Image3d<T> slice(nullptr, &view.scale);
    switch (plane) {
    case Plane::XY:
        slice.MakeRoom(windowWidth, windowHeight, 1);
        break;
    case Plane::XZ:
        slice.MakeRoom(windowWidth, 1, windowHeight);
        break;
    case Plane::YZ:
        slice.MakeRoom(1, windowHeight, windowWidth);
        break;
    }
    const kep::Vector3d<float> frame = kep::PixelsToMicrons(src.size, src.resolution);
    const kep::Vector3d<float> shown = kep::PixelsToMicrons(slice.size, view.scale);
    slice.SetOffset({src.offset.x + (frame.x - shown.x) / 2, src.offset.y + (frame.y - shown.y) / 2,
                     src.offset.z + (frame.z - shown.z) / 2});
    return slice;
}

/// Goes on by one layer, as Page Down does, and begins anew behind the last.
void StepCut(float& cut, float offset, std::size_t size, float resolution) {
    cut += 1.0F / resolution;
    if (cut >= offset + static_cast<float>(size) / resolution)
        cut = offset + 0.5F / resolution;
}

template <typename T>
void AddCut(const std::string& name, Plane plane, const View& view, double limit) {
    AddComparison(name + " " + view.name, [=] {
        const auto src = GetSampleFrame<T>();
        const auto slice = std::make_shared<kep::Image3d<T>>(MakeSlice(*src, plane, view));
        const std::size_t bytes = slice->GetNumVoxels() * sizeof(T);
        const kep::Vector3d<float> res = src->resolution.GetRes();
        const auto work = [=] {
            if (plane == Plane::XY)
                StepCut(slice->offset.z, src->offset.z, src->size.z, res.z);
            else if (plane == Plane::XZ)
                StepCut(slice->offset.y, src->offset.y, src->size.y, res.y);
            else
                StepCut(slice->offset.x, src->offset.x, src->size.x, res.x);
            kep::CopyToImage(*src, *slice);
        };
        return Comparison{.work = work, .yardstick = MakeCopy(bytes), .unit = "copies", .limit = limit, .bytes = bytes};
    });
}

[[maybe_unused]] const bool added = [] {
    // The frame is 51.2 x 51.2 x 40 microns; at 20 pixels per micron it fills the windows on all sides.
    const View views[] = {{"x2", {20.0F, 20.0F, 20.0F}},
                          {"x1", {10.0F, 10.0F, 1.6F}},
                          {"x5", {50.0F, 50.0F, 8.0F}},
                          {"x1/3", {10.0F / 3, 10.0F / 3, 1.6F / 3}}};
    for (const View& view : views) {
        AddCut<unsigned short>("CopyToImage XY uint16", Plane::XY, view, 4.0);
        AddCut<unsigned short>("CopyToImage XZ uint16", Plane::XZ, view, 2.0);
        AddCut<unsigned short>("CopyToImage YZ uint16", Plane::YZ, view, 6.0);
    }
    AddCut<unsigned char>("CopyToImage XY uint8", Plane::XY, views[0], 4.0);
    AddCut<unsigned char>("CopyToImage XZ uint8", Plane::XZ, views[0], 2.0);
    AddCut<unsigned char>("CopyToImage YZ uint8", Plane::YZ, views[0], 6.0);
    AddCut<float>("CopyToImage XY float", Plane::XY, views[0], 4.0);
    AddCut<float>("CopyToImage XZ float", Plane::XZ, views[0], 2.0);
    AddCut<float>("CopyToImage YZ float", Plane::YZ, views[0], 6.0);
    using RGB = kep::RGB_generic<unsigned char>;
    AddCut<RGB>("CopyToImage XY RGB", Plane::XY, views[0], 4.0);
    AddCut<RGB>("CopyToImage XZ RGB", Plane::XZ, views[0], 2.0);
    AddCut<RGB>("CopyToImage YZ RGB", Plane::YZ, views[0], 6.0);
    return true;
}();

} // namespace
