#pragma once

// A complex image seen as one of four real ones.

#include "core/kepcore/kep_image3d.h"
#include "model/zel_export.h"
#include "model/zel_mapper.h"
#include "model/zel_projection.h"

#include <complex>
#include <cstddef>

namespace zel {

/// The parts of complex voxels, in the order of their histograms.
enum ComplexMode : int {
    Real = 0,
    Imaginary = 1,
    Phase = 2,    ///< atan2(im, re), from -pi to pi
    Amplitude = 3 ///< sqrt(im * im + re * re)
};
inline constexpr int complexModeCount = 4; ///< the number of modes

/// A mapper that shows one part of complex voxels says which. A mapper that doesn't counts as showing the amplitude.
class ZEL_EXPORT zel_ComplexPartShown {
public:
    virtual ~zel_ComplexPartShown() = default;
    virtual ComplexMode GetShowMode() const = 0; ///< of all voxels that it maps
};

/// The part that a mapper of complex voxels shows.
ZEL_EXPORT ComplexMode ShownPartOf(const zel_Mapper<std::complex<float>>& mapper);

/// Computes one part of voxels that lie in a row, in single precision.
using ComplexPart = void (*)(const std::complex<float>* voxels, std::size_t count, float* values);

/// The function of a mode; null for a number that is no mode.
ZEL_EXPORT ComplexPart PartOf(ComplexMode mode);

/// Projects a frame along the axis that the plane lacks: each voxel of the projection is the one whose part is the
/// greatest on its line, the first of several. Not-a-numbers lose against any number. The projection has one voxel on
/// that axis, the frame's resolution, and its offset with 0 on that axis. One pass.
/// @param type        XY, XZ or YZ; any other leaves the projection alone
/// @param frame       not changed
/// @param part        not null
/// @param projection  another object than the frame
/// @throws std::bad_alloc
ZEL_EXPORT void ProjectComplex(zel_ProjectionType type, const kep::Image3d<std::complex<float>>& frame,
                               ComplexPart part, kep::Image3d<std::complex<float>>& projection);

} // namespace zel
