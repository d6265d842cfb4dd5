#pragma once

#include "image/kep.h"
#include "model/zel_export.h"
#include "model/zel_mapper.h"

#include <complex>

namespace zel {

/// @{
/// Autofocus images of complex frames: along the axis that the name leaves out the voxel is kept whose shown part is
/// the greatest, the first of several; not-a-numbers lose against any number. The image gets one voxel on that axis,
/// the frame's resolution, and its offset with 0 on that axis.
/// @param frame      not changed
/// @param autofocus  another object than the frame
/// @param mapper     says by zel_ComplexPartShown which part that is; a mapper that doesn't shows the amplitude. For a
///                   number that is no part an error is logged, and the image left alone.
/// @throws std::bad_alloc
ZEL_EXPORT void MyGet_AF_XY(const kep::Image3d<std::complex<float>>& frame,
                            kep::Image3d<std::complex<float>>& autofocus,
                            const zel_Mapper<std::complex<float>>& mapper);
ZEL_EXPORT void MyGet_AF_XZ(const kep::Image3d<std::complex<float>>& frame,
                            kep::Image3d<std::complex<float>>& autofocus,
                            const zel_Mapper<std::complex<float>>& mapper);
ZEL_EXPORT void MyGet_AF_YZ(const kep::Image3d<std::complex<float>>& frame,
                            kep::Image3d<std::complex<float>>& autofocus,
                            const zel_Mapper<std::complex<float>>& mapper);
/// @}

} // namespace zel
