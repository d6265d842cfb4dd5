#pragma once

#include "core/kepcore/kep_vector.h"
#include "model/zel_surfacearrays.h"

#include <cstddef>
#include <map>
#include <vector>

namespace zel::detail {

/// A frame of labels and the world length of its cells along each axis.
struct LabelVolume {
    const unsigned short* labels = nullptr; ///< x fastest, then y, then z
    kep::Vector3d<std::size_t> size;        ///< voxels
    kep::Vector3d<float> cell;
    std::size_t border = 0; ///< voxels at each side that are not the image's, which begins behind them
};

/// Makes the vertices and triangles of all labels, in several threads if there are many voxels; how many makes no
/// difference to the result. The memory it needs beside them is that of the crossed edges of two slices, and of a few
/// rows, for each thread.
std::vector<SurfaceArrays> WalkSurfaces(const LabelVolume& volume,
                                        const std::map<unsigned short, std::size_t>& labelToSurface);

/// The unit normals of a mesh from those of its triangles, bigger ones counting more.
void ComputeNormals(SurfaceArrays& surface);

} // namespace zel::detail
