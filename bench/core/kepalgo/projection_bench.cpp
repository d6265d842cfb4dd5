#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "core/kepalgo/kep_projection.h"

namespace {

template <typename T>
using Projection = void (*)(const kep::Image3d<T>&, kep::Image3d<T>&);

template <typename T>
void AddProjection(const std::string& name, Projection<T> project) {
    AddComparison(name, [project] {
        const auto src = GetSampleFrame<T>();
        const auto dst = std::make_shared<kep::Image3d<T>>();
        const std::size_t bytes = src->GetNumVoxels() * sizeof(T);
        return Comparison{.work = [=] { project(*src, *dst); },
                          .yardstick = [=] { ReadOnce(src->begin(), bytes); },
                          .unit = "passes",
                          .limit = 1.5,
                          .bytes = bytes};
    });
}

template <typename T>
void AddProjections(const std::string& type) {
    AddProjection<T>("Get_AF_XY " + type, kep::Get_AF_XY<T>);
    AddProjection<T>("Get_AF_XZ " + type, kep::Get_AF_XZ<T>);
    AddProjection<T>("Get_AF_YZ " + type, kep::Get_AF_YZ<T>);
}

[[maybe_unused]] const bool added = [] {
    AddProjections<unsigned short>("uint16");
    AddProjections<unsigned char>("uint8");
    AddProjections<int>("int");
    AddProjections<float>("float");
    AddProjections<kep::RGB_generic<unsigned char>>("RGB");
    AddProjections<kep::RGB_generic<unsigned short>>("RGB16");
    return true;
}();

} // namespace
