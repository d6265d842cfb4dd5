#pragma once

#include "model/zel_export.h"
#include "model/zel_surfacearrays.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace zel {

namespace detail {
struct LabelVolume;
}

/// The triangle mesh of one label. Movable, not copyable; the arrays live as long as the mesh.
class ZEL_EXPORT LabelSurface {
public:
    LabelSurface(unsigned short label, detail::SurfaceArrays&& arrays); ///< takes the arrays over

    std::uint64_t GetLabel() const { return m_label; } ///< that the mesh is of, below 65536
    std::uint64_t GetVertexCount() const { return m_arrays.vertices.GetSize() / 3; }  ///< each of three coordinates
    std::uint64_t GetTriangleCount() const { return m_arrays.indices.GetSize() / 3; } ///< each of three indices

    /// x, y, z of each vertex. Null in a mesh without vertices, as are the other two.
    const float* GetVertices() const { return m_arrays.vertices.GetData(); }
    /// Three numbers of vertices a triangle, clockwise as seen from outside the label.
    const std::uint64_t* GetIndices() const { return m_arrays.indices.GetData(); }
    /// A unit vector a vertex, pointing out of the label.
    const float* GetNormals() const { return m_arrays.normals.GetData(); }

private:
    std::uint64_t m_label;
    detail::SurfaceArrays m_arrays;
};

/// Turns one frame of labels into one triangle mesh per label: marching cubes on the field "has this label", with every
/// vertex in the middle between two voxels, since between two labels there is nothing to interpolate.
///
/// Labels that touch each get a sheet along the boundary that they share; the sheets coincide. A label that touches the
/// frame's border is open there. All others are closed.
class ZEL_EXPORT IsosurfaceGenerator {
public:
    IsosurfaceGenerator() = default;
    IsosurfaceGenerator(const IsosurfaceGenerator&) = delete;
    IsosurfaceGenerator& operator=(const IsosurfaceGenerator&) = delete;

    /// Makes the meshes; those of an earlier run go first. Voxel (x, y, z) lies at x * cellX, (sizeY - 1 - y) * cellY,
    /// z * cellZ: y grows upward, as on the screen. Vertices come in ascending order of the edges between voxels (by
    /// the voxel where an edge starts, the one of smaller x, larger y, smaller z; then along x, y, z), triangles in
    /// the order of cells: z, then rows from the last to the first, then x.
    ///
    /// A few passes over the voxels, fast where neighbours are alike; memory in proportion to the surface.
    /// @param labels               sizeX * sizeY * sizeZ voxels, x fastest; 0 is background. Not needed after the call
    /// @param labelToSurface       for each label in the frame its place among the surfaces: each of 0 to size - 1
    ///                             once. A label that is not there gets no surface
    /// @param sizeX, sizeY, sizeZ  voxels. With less than two along an axis all surfaces are empty
    /// @param cellX, cellY, cellZ  distance of neighbouring voxels, in whatever unit the vertices should have
    /// @throws std::bad_alloc  the generator is then not valid, and empty
    void GenerateSurfaces(const unsigned short* labels, const std::map<unsigned short, std::size_t>& labelToSurface,
                          std::size_t sizeX, std::size_t sizeY, std::size_t sizeZ, float cellX, float cellY,
                          float cellZ);

    /// The same with surfaces that are all closed: where a label touches the frame's border, its surface ends half a
    /// voxel beyond the last voxel's place, at the face of the image. Frames may be one voxel thick. Takes a copy of
    /// the labels in memory.
    void GenerateClosedSurfaces(const unsigned short* labels,
                                const std::map<unsigned short, std::size_t>& labelToSurface, std::size_t sizeX,
                                std::size_t sizeY, std::size_t sizeZ, float cellX, float cellY, float cellZ);

    /// Frees all surfaces.
    void Release();

    /// A run has finished since the last Release.
    bool IsValid() const { return m_valid; }
    /// The meshes at the places that `labelToSurface` gave them; valid until the next run or Release.
    const std::vector<LabelSurface>& GetSurfaces() const { return m_surfaces; }

private:
    void Generate(const detail::LabelVolume& volume, const std::map<unsigned short, std::size_t>& labelToSurface);

    std::vector<LabelSurface> m_surfaces;
    bool m_valid = false;
};

} // namespace zel
