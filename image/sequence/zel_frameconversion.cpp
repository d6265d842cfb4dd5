#include "image/sequence/zel_frameconversion.h"

#include "image/zel_modaldialog.h"

#include <wx/log.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace mor {

namespace {

template <typename T>
struct SetVoxelOf {
    static constexpr T value = 255; // also for the wider types: the files are known by it
};
template <typename C>
struct SetVoxelOf<kep::RGB_generic<C>> {
    static constexpr kep::RGB_generic<C> value{255, 255, 255};
};
template <typename F>
struct SetVoxelOf<std::complex<F>> {
    static constexpr std::complex<F> value{255, 0};
};

bool IsFinite(float v) {
    return std::isfinite(v);
}
template <typename F>
bool IsFinite(const std::complex<F>& v) {
    return std::isfinite(v.real()) && std::isfinite(v.imag());
}

template <typename T>
bool ZeroInvalid(kep::Image3d<T>& frame) {
    bool found = false;
    for (T& voxel : frame) {
        if (!IsFinite(voxel)) {
            voxel = T();
            found = true;
        }
    }
    return found;
}

void WarnOfInvalidFloats() {
    wxLogWarning("Invalid float values replaced by zeros.");
    zel::ShowMessage("The image contained invalid values (+/- infinity, NaN). These values were replaced by zeroes.",
                     "Warning", wxOK | wxCENTRE);
}

} // namespace

template <typename T>
void BinaryFrameToVoxels(const kep::Image3d<bool>& binary, kep::Image3d<T>& frame) {
    frame.resolution = binary.resolution;
    frame.offset = binary.offset;
    frame.description = binary.description;
    frame.MakeRoom(binary.size.x, binary.size.y, binary.size.z);
    std::transform(binary.begin(), binary.end(), frame.begin(),
                   [](bool set) { return set ? SetVoxelOf<T>::value : T(); });
}

bool ZeroInvalidFloats(kep::Image3d<float>& frame) {
    return ZeroInvalid(frame);
}
bool ZeroInvalidFloats(kep::Image3d<std::complex<float>>& frame) {
    return ZeroInvalid(frame);
}
bool ZeroInvalidFloats(kep::Image3d<std::complex<double>>& frame) {
    return ZeroInvalid(frame);
}

void ReplaceInvalidFloats(kep::Image3d<float>& frame) {
    if (ZeroInvalidFloats(frame))
        WarnOfInvalidFloats();
}
void ReplaceInvalidFloats(kep::Image3d<std::complex<float>>& frame) {
    if (ZeroInvalidFloats(frame))
        WarnOfInvalidFloats();
}
void ReplaceInvalidFloats(kep::Image3d<std::complex<double>>& frame) {
    if (ZeroInvalidFloats(frame))
        WarnOfInvalidFloats();
}

#define ZEL_INSTANTIATE(T) template ZEL_EXPORT void BinaryFrameToVoxels<T>(const kep::Image3d<bool>&, kep::Image3d<T>&);
KEP_CONTAINER_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace mor
