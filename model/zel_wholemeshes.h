#pragma once

// Meshes of labels as the volume window draws them whole: on the voxels of their labels, in numbers that OpenGL takes.

#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_vector.h"
#include "model/zel_export.h"
#include "model/zel_matrix.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zel {

/// How the volume window draws the meshes of labels.
enum class MeshDrawing {
    Halved, ///< about half of the triangles, y upwards, one mesh over the other in the order of their labels
    Whole   ///< all triangles, each mesh on the voxels of its label; what is nearer hides what is farther
};

/// Where the voxels of a frame lie.
struct VoxelGrid {
    kep::Vector3d<std::size_t> size; ///< voxels; no side is 0
    kep::Vector3d<float> offset;     ///< microns: the first voxel's outer corner
    kep::Resolution resolution;      ///< voxels per micron; its usable form counts
};

/// Where meshes lie in the volume view.
struct MeshPlacement {
    Vector3f cell; ///< distance of neighbouring voxels, as an IsosurfaceGenerator takes it
    /// From the meshes to the object of the volume view, in which the longest side of the image goes from -1 to 1. It
    /// keeps lengths and mirrors y, as row 0 of the volume is at the bottom and that of a mesh at the top: triangles
    /// are counterclockwise as seen from outside then.
    Matrix4 toObject;
};

/// Places meshes of labels so that each lies on the voxels of its label as the volume view draws them, by the scale
/// that ComputeVolumeScale gives. Labels may lie on another grid than the image: what counts are microns.
ZEL_EXPORT MeshPlacement PlaceMeshes(const VoxelGrid& image, const VoxelGrid& labels);

/// Whether OpenGL can hold a mesh: vertices are numbered with 32 bits, and an array has no more bytes than its offsets
/// can count.
ZEL_EXPORT bool FitsOpenGL(std::uint64_t vertexCount, std::uint64_t triangleCount);

/// Triangles that follow one another in a mesh.
struct TriangleRange {
    std::uint64_t first; ///< counted from 0
    std::uint64_t count; ///< above 0

    /// The same triangles.
    friend bool operator==(const TriangleRange&, const TriangleRange&) = default;
};

/// The most triangles that are uploaded and drawn in one call. OpenGL counts indices with 31 bits, and some drivers do
/// better with less.
inline constexpr std::uint64_t trianglesPerCall = std::uint64_t{1} << 20;

/// All triangles of a mesh in ranges of `most`, the last one of what is left.
/// @param triangleCount  of the mesh
/// @param most           above 0
ZEL_EXPORT std::vector<TriangleRange> SplitTriangles(std::uint64_t triangleCount, std::uint64_t most);

/// Copies numbers of vertices.
/// @param from   each below 2^32
/// @param count  of numbers
/// @param to     room for as many
ZEL_EXPORT void NarrowIndices(const std::uint64_t* from, std::size_t count, std::uint32_t* to);

} // namespace zel
