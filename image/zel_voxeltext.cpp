#include "image/zel_voxeltext.h"

#include <cmath>
#include <type_traits>

namespace zel {

template <typename T>
wxString VoxelToStr(const T& voxel) {
    if constexpr (std::is_same_v<T, float>)
        return wxString::Format("%g", static_cast<double>(voxel));
    else if constexpr (std::is_integral_v<T>)
        return wxString::Format("%d", static_cast<int>(voxel));
    else
        return wxString::Format("%3d %3d %3d", static_cast<int>(voxel.red), static_cast<int>(voxel.green),
                                static_cast<int>(voxel.blue));
}

template <typename T>
wxString VoxelToStr(const std::complex<T>& voxel, int mode) {
    const std::complex<double> exact(voxel); // so that every digit shown is right
    const wxString parts = wxString::Format("%3f + %3fi\n", exact.real(), exact.imag());
    switch (mode) {
    case 2:
        return parts + wxString::Format("Phase: %3f rad", std::atan2(exact.imag(), exact.real()));
    case 3:
        return parts + wxString::Format("Amplitude: %3f", std::abs(exact));
    default:
        return parts + " ";
    }
}

#define ZEL_INSTANTIATE(T) template wxString VoxelToStr(const T& voxel);
KEP_GRAY_TYPES(ZEL_INSTANTIATE)
KEP_COLOUR_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE
template wxString VoxelToStr(const std::complex<float>& voxel, int mode);
template wxString VoxelToStr(const std::complex<double>& voxel, int mode);

} // namespace zel
