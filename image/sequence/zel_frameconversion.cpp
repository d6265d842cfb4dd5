#include "image/sequence/zel_frameconversion.h"

#include "image/zel_modaldialog.h"

#include <wx/log.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

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

/// In blocks of a known length, which compilers take several numbers at a time.
template <typename F>
bool AreFiniteNumbers(const F* first, std::size_t number) {
    constexpr std::size_t block = 256;
    constexpr F greatest = std::numeric_limits<F>::max();
    while (number >= block) {
        int invalid = 0;
        for (std::size_t i = 0; i < block; ++i)
            invalid |= !(std::fabs(first[i]) <= greatest);
        if (invalid != 0)
            return false;
        first += block;
        number -= block;
    }
    return std::all_of(first, first + number, [](F value) { return std::isfinite(value); });
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

bool AreFinite(const float* first, std::size_t number) {
    return AreFiniteNumbers(first, number);
}
bool AreFinite(const std::complex<float>* first, std::size_t number) {
    return AreFiniteNumbers(reinterpret_cast<const float*>(first), 2 * number);
}
bool AreFinite(const std::complex<double>* first, std::size_t number) {
    return AreFiniteNumbers(reinterpret_cast<const double*>(first), 2 * number);
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
