#pragma once

#include "image/kep.h"
#include "model/zel_mapper.h"
#include "model/zel_projection.h"
#include "viewer/zel_complexautofocus.h"

#include <complex>

namespace zel {

/// Makes the autofocus image of one window: the frame's maximum along the window's third axis. What counts as the
/// maximum of complex voxels is the mapper's affair.
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

inline void MakeAutofocus(zel_ProjectionType type, const kep::Image3d<std::complex<float>>& frame,
                          kep::Image3d<std::complex<float>>& autofocus, const zel_Mapper<std::complex<float>>& mapper) {
    switch (type) {
    case zel_PT_XY:
        MyGet_AF_XY(frame, autofocus, mapper);
        break;
    case zel_PT_XZ:
        MyGet_AF_XZ(frame, autofocus, mapper);
        break;
    case zel_PT_YZ:
        MyGet_AF_YZ(frame, autofocus, mapper);
        break;
    default:
        break;
    }
}

} // namespace zel
