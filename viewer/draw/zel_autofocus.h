#pragma once

#include "image/kep.h"
#include "model/zel_mapper.h"
#include "model/zel_projection.h"

#include <complex>

namespace zel {

/// Makes the autofocus image of one window: the frame's maximum along the window's third axis.
template <typename T>
void MakeAutofocus(zel_ProjectionType type, const kep::Image3d<T>& frame, kep::Image3d<T>& autofocus,
                   const zel_Mapper<T>&) {
    switch (type) {
    case zel_PT_XY:
        kep::Get_AF_XY(frame, autofocus);
        break;
    case zel_PT_XZ:
        kep::Get_AF_XZ(frame, autofocus);
        break;
    case zel_PT_YZ:
        kep::Get_AF_YZ(frame, autofocus);
        break;
    default:
        break;
    }
}

/// What counts as the maximum of complex voxels depends on the part that the mapper shows. A mapper that names no
/// part leaves the image black.
inline void MakeAutofocus(zel_ProjectionType type, const kep::Image3d<std::complex<float>>& frame,
                          kep::Image3d<std::complex<float>>& autofocus, const zel_Mapper<std::complex<float>>&) {
    const kep::Vector3d<std::size_t> size = frame.GetSize();
    autofocus.MakeRoom(type == zel_PT_YZ ? 1 : size.x, type == zel_PT_XZ ? 1 : size.y, type == zel_PT_XY ? 1 : size.z);
    autofocus.SetResolution(frame.GetResolution());
    kep::Vector3d<float> offset = frame.GetOffset();
    (type == zel_PT_XY ? offset.z : type == zel_PT_XZ ? offset.y : offset.x) = 0.0F;
    autofocus.SetOffset(offset);
    autofocus.Fill({});
}

} // namespace zel
