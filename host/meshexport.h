#pragma once

#include "image/kep.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zelviewer {

/// Which labels become meshes, and where these go. File names are in the file system's encoding.
struct MeshExport {
    std::vector<std::string> labels;                ///< label files, one per time point
    bool components = false;                        ///< connected components instead of labels as stored
    std::optional<kep::Vector3d<float>> resolution; ///< pixels per micron, for what the files don't say
    std::string prefix;                             ///< what the names of the meshes begin with
    bool closed = false;                            ///< with the image's faces where a label reaches them
    bool replaces = false;                          ///< meshes that are there may be replaced
};

/// Where the mesh of a label goes: PREFIX7.ply, and of several frames, counted from 0, PREFIX7_t0.ply.
std::string MeshFileName(const std::string& prefix, unsigned short label, std::size_t frame, std::size_t frameCount);

/// The files that are there under names which an export with this prefix may write.
std::vector<std::string> FindMeshFiles(const std::string& prefix);

/// Writes each label's mesh of each frame as a PLY file, one frame in memory at a time. Says on standard error which
/// frame has no voxel size, no labels, or a label without a surface. Needs no toolkit.
/// @throws Failure, also where a mesh would replace one of the label files, or what it must not; the meshes written
/// before stay
void ExportMeshes(const MeshExport& order);

} // namespace zelviewer
