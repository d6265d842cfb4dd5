#pragma once

namespace kep {

/// Which voxels count as neighbours of one another.
enum Neighbourhood {
    nb3D_6, ///< the six that share a face
};

} // namespace kep
