#include "model/surface/zel_surfacewalk.h"

#include "core/kepcore/kep_threads.h"
#include "model/surface/zel_marchingcubes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace zel::detail {

namespace {

using Label = unsigned short;

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// The crossed edges that start at one voxel: along x to the next voxel, along y to the row above, along z to the next
/// slice. A crossed edge holds a vertex of the label at either end, and here is its number in that label's mesh.
struct Node {
    std::size_t x = none;
    std::array<std::uint64_t, 6> number; ///< 2 * axis for the label of this voxel, 2 * axis + 1 for the other end's
};

/// The nodes of a slice, row by row. Each row ends with one whose x no voxel has.
class SliceNodes {
public:
    void Clear() {
        m_rows.clear();
        m_nodes.Clear();
    }
    void BeginRow() { m_rows.push_back(m_nodes.GetSize()); }
    void EndRow() {
        *m_nodes.Reserve(1) = Node();
        m_nodes.Append(1);
    }
    Node& Add(std::size_t x) {
        Node* const node = m_nodes.Reserve(1);
        node->x = x;
        m_nodes.Append(1);
        return *node;
    }
    const Node* GetRow(std::size_t row) const { return m_nodes.GetData() + m_rows[row]; }

private:
    std::vector<std::size_t> m_rows;
    GrowingArray<Node> m_nodes;
};

/// Where an edge of a cell is found: the corner at whose voxel it starts, and the place of its number there.
struct EdgePlace {
    std::uint8_t corner, number;
};

/// For each cube index, the places of the edges of its triangles.
struct CubeTriangles {
    std::uint8_t count = 0; ///< of edges, three a triangle
    std::array<EdgePlace, 15> edges{};
};

constexpr std::array<CubeTriangles, marchingcubes::cubeCount> MakeCubeTriangles() {
    // The corner where each edge starts, which is the one of smaller x, larger row and smaller z, and its axis.
    constexpr std::array<EdgePlace, marchingcubes::edgeCount> starts{
        {{0, 1}, {1, 0}, {3, 1}, {0, 0}, {4, 1}, {5, 0}, {7, 1}, {4, 0}, {0, 2}, {1, 2}, {2, 2}, {3, 2}}};
    std::array<CubeTriangles, marchingcubes::cubeCount> cubes{};
    for (std::size_t cube = 0; cube < cubes.size(); ++cube)
        for (const std::int8_t edge : marchingcubes::triangleTable[cube]) {
            if (edge < 0)
                break;
            const EdgePlace start = starts[static_cast<std::size_t>(edge)];
            const std::size_t labelIsAtTheOtherEnd = (cube >> start.corner) & 1U;
            cubes[cube].edges[cubes[cube].count++] = {
                start.corner, static_cast<std::uint8_t>(std::size_t{2} * start.number + labelIsAtTheOtherEnd)};
        }
    return cubes;
}

constexpr std::array<CubeTriangles, marchingcubes::cubeCount> cubeTriangles = MakeCubeTriangles();

/// Calls use(x) for each x whose mark is not 0. The marks are filled up with zeros to a multiple of four.
template <typename Use>
void ForEachMark(const std::vector<std::uint16_t>& marks, Use use) {
    constexpr std::size_t pack = sizeof(std::uint64_t) / sizeof(std::uint16_t);
    for (std::size_t from = 0; from < marks.size(); from += pack) {
        std::uint64_t four;
        std::memcpy(&four, marks.data() + from, sizeof four);
        if (four == 0)
            continue;
        for (std::size_t x = from; x < from + pack; ++x)
            if (marks[x] != 0)
                use(x);
    }
}

/// Marks the voxels of a row by the axes along which they differ from the next voxel: 1, 2, 4 for x, y, z.
void MarkCrossedEdges(const Label* row, const Label* above, const Label* behind, std::size_t count,
                      std::uint16_t* __restrict marks) {
    for (std::size_t x = 0; x + 1 < count; ++x)
        marks[x] = static_cast<std::uint16_t>((row[x] != row[x + 1] ? 1 : 0) | (row[x] != above[x] ? 2 : 0) |
                                              (row[x] != behind[x] ? 4 : 0));
    const std::size_t x = count - 1;
    marks[x] = static_cast<std::uint16_t>((row[x] != above[x] ? 2 : 0) | (row[x] != behind[x] ? 4 : 0));
}

/// Marks the cells of a row whose eight corners are not all alike. `count` is that of cells.
void MarkMixedCells(const Label* row, const Label* above, const Label* behind, const Label* behindAbove,
                    std::size_t count, std::uint16_t* __restrict marks) {
    for (std::size_t i = 0; i < count; ++i) {
        const Label label = row[i];
        marks[i] = static_cast<std::uint16_t>((label ^ row[i + 1]) | (label ^ above[i]) | (label ^ above[i + 1]) |
                                              (label ^ behind[i]) | (label ^ behind[i + 1]) | (label ^ behindAbove[i]) |
                                              (label ^ behindAbove[i + 1]));
    }
}

/// The labels of a cell's corners, four in each word.
struct CellLabels {
    std::uint64_t front, back;

    static std::uint64_t Pack(const Label* row, const Label* above) {
        return std::uint64_t{row[0]} | std::uint64_t{above[0]} << 16 | std::uint64_t{above[1]} << 32 |
               std::uint64_t{row[1]} << 48;
    }
    Label Get(unsigned corner) const { return static_cast<Label>((corner < 4 ? front : back) >> (16 * (corner % 4))); }
    /// A bit for each of four labels that is not 0.
    static unsigned NonZero(std::uint64_t four) {
        constexpr std::uint64_t low = 0x7fff7fff7fff7fff;
        const std::uint64_t flags = (((four & low) + low) | four) >> 15 & 0x0001000100010001;
        return static_cast<unsigned>((flags * 0x0001000200040008) >> 48 & 15);
    }
    /// A bit for each corner with another label: the cube index of this label.
    unsigned GetCubeIndex(Label label) const {
        const std::uint64_t four = label * std::uint64_t{0x0001000100010001};
        return NonZero(front ^ four) | NonZero(back ^ four) << 4;
    }
};

/// The surface of each label; none for the background.
std::vector<std::size_t> FindSurfaces(const std::map<Label, std::size_t>& labelToSurface) {
    std::vector<std::size_t> surfaceOf(std::size_t{std::numeric_limits<Label>::max()} + 1, none);
    for (const auto& [label, surface] : labelToSurface)
        if (label != 0)
            surfaceOf[label] = surface;
    return surfaceOf;
}

/// A walk through some slices.
class SurfaceWalk {
public:
    SurfaceWalk(const LabelVolume& volume, std::size_t surfaces, const std::vector<std::size_t>& surfaceOf)
        : m_volume(volume),
          m_sliceSize(volume.size.x * volume.size.y),
          m_surfaces(surfaces),
          m_surfaceOf(surfaceOf),
          m_marks((volume.size.x + 3) / 4 * 4) {}

    /// Makes the triangles of the cells between slices `first` and `last`, and the vertices of the edges that start in
    /// those slices. Vertices are counted from 0. Those of `last` come behind all others, and are there only if it is
    /// the volume's last slice: else the next walk begins with the same ones.
    std::vector<SurfaceArrays> Run(std::size_t first, std::size_t last) {
        std::vector<std::size_t> lengths(m_surfaces.size());
        NumberVertices(first, m_front);
        for (std::size_t k = first; k < last; ++k) {
            if (k + 1 == last)
                std::transform(m_surfaces.begin(), m_surfaces.end(), lengths.begin(),
                               [](const SurfaceArrays& surface) { return surface.vertices.GetSize(); });
            NumberVertices(k + 1, m_back);
            for (std::size_t j = 0; j + 1 < m_volume.size.y; ++j)
                MakeTriangles(j, k);
            std::swap(m_front, m_back);
        }
        if (last + 1 < m_volume.size.z)
            for (std::size_t i = 0; i < m_surfaces.size(); ++i)
                m_surfaces[i].vertices.CutTo(lengths[i]);
        return std::move(m_surfaces);
    }

private:
    const Label* GetRow(std::size_t row, std::size_t slice) const {
        return m_volume.labels + slice * m_sliceSize + row * m_volume.size.x;
    }

    /// World coordinate of a vertex on an edge between two cell coordinates.
    float Middle(std::size_t a, std::size_t b, float cell) const {
        const auto at = [&](std::size_t voxel) {
            return static_cast<float>(static_cast<std::ptrdiff_t>(voxel - m_volume.border)) * cell;
        };
        return (at(a) + at(b)) / 2;
    }

    /// Makes the vertices on all edges that start in a slice. Edges are numbered by the voxel where they start and then
    /// by axis, so going through the voxels in order gives each surface its vertices in ascending order of edges.
    void NumberVertices(std::size_t slice, SliceNodes& nodes) {
        const std::size_t width = m_volume.size.x, height = m_volume.size.y, depth = m_volume.size.z;
        nodes.Clear();
        for (std::size_t r = 0; r < height; ++r) {
            // At the frame's last slice and first row the voxel is compared with itself: there is no edge.
            const Label* const row = GetRow(r, slice);
            const Label* const above = r > 0 ? row - width : row;
            const Label* const behind = slice + 1 < depth ? row + m_sliceSize : row;
            nodes.BeginRow();
            MarkCrossedEdges(row, above, behind, width, m_marks.data());
            ForEachMark(m_marks, [&](std::size_t x) {
                AddNode({x, height - 1 - r, slice}, row[x], {x + 1 < width ? row[x + 1] : row[x], above[x], behind[x]},
                        nodes.Add(x));
            });
            nodes.EndRow();
        }
    }

    /// @param at     cell coordinates of the voxel
    /// @param label  of the voxel
    /// @param ends   labels at the other ends of its three edges
    void AddNode(const kep::Vector3d<std::size_t>& at, Label label, const std::array<Label, 3>& ends, Node& node) {
        const std::size_t own = m_surfaceOf[label];
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (ends[axis] == label)
                continue;
            const std::array<float, 3> vertex{Middle(at.x, at.x + (axis == 0 ? 1 : 0), m_volume.cell.x),
                                              Middle(at.y, at.y + (axis == 1 ? 1 : 0), m_volume.cell.y),
                                              Middle(at.z, at.z + (axis == 2 ? 1 : 0), m_volume.cell.z)};
            node.number[2 * axis] = AddVertex(own, vertex);
            node.number[2 * axis + 1] = AddVertex(m_surfaceOf[ends[axis]], vertex);
        }
    }

    std::uint64_t AddVertex(std::size_t surface, const std::array<float, 3>& vertex) {
        if (surface == none)
            return 0;
        GrowingArray<float>& vertices = m_surfaces[surface].vertices;
        const std::size_t number = vertices.GetSize() / 3;
        std::memcpy(vertices.Reserve(3), vertex.data(), sizeof vertex);
        vertices.Append(3);
        return number;
    }

    /// Makes the triangles of a row of cells. Cells go up from the frame's last row.
    void MakeTriangles(std::size_t j, std::size_t k) {
        const std::size_t width = m_volume.size.x;
        const std::size_t r = m_volume.size.y - 1 - j;
        // The rows of voxels below and above the cells, in this slice and in the next.
        std::array<const Node*, 4> nodes{m_front.GetRow(r), m_front.GetRow(r - 1), m_back.GetRow(r),
                                         m_back.GetRow(r - 1)};
        if (std::all_of(nodes.begin(), nodes.end(), [](const Node* node) { return node->x == none; }))
            return;
        const Label* const row = GetRow(r, k);
        const Label* const above = row - width;
        const Label* const behind = row + m_sliceSize;
        const Label* const behindAbove = behind - width;
        MarkMixedCells(row, above, behind, behindAbove, width - 1, m_marks.data());
        m_marks[width - 1] = 0;
        ForEachMark(m_marks, [&](std::size_t i) {
            for (const Node*& node : nodes)
                while (node->x < i)
                    ++node;
            // Where a voxel has no crossed edge the node is a later one, and no triangle asks it.
            const auto next = [i](const Node* node) { return node + (node->x == i ? 1 : 0); };
            const CornerNodes corners{nodes[0], nodes[1], next(nodes[1]), next(nodes[0]),
                                      nodes[2], nodes[3], next(nodes[3]), next(nodes[2])};
            AddCell({CellLabels::Pack(row + i, above + i), CellLabels::Pack(behind + i, behindAbove + i)}, corners);
        });
    }

    using CornerNodes = std::array<const Node*, marchingcubes::cornerCount>;

    struct LabelInCell {
        std::size_t surface;
        unsigned cubeIndex;
    };

    /// Adds the triangles of a cell to the surface of each label that has a corner, in ascending order of surfaces.
    void AddCell(const CellLabels& labels, const CornerNodes& corners) {
        std::array<LabelInCell, marchingcubes::cornerCount> found;
        std::size_t count = 0;
        unsigned left = labels.GetCubeIndex(0); // corners that are not background
        while (left != 0) {
            const Label label = labels.Get(static_cast<unsigned>(std::countr_zero(left)));
            const unsigned cubeIndex = labels.GetCubeIndex(label);
            left &= cubeIndex;
            const std::size_t surface = m_surfaceOf[label];
            if (surface == none)
                continue;
            std::size_t at = count++;
            for (; at > 0 && found[at - 1].surface > surface; --at)
                found[at] = found[at - 1];
            found[at] = {surface, cubeIndex};
        }
        for (std::size_t i = 0; i < count; ++i)
            AddTriangles(cubeTriangles[found[i].cubeIndex], corners, m_surfaces[found[i].surface].indices);
    }

    static void AddTriangles(const CubeTriangles& triangles, const CornerNodes& corners,
                             GrowingArray<std::uint64_t>& indices) {
        std::uint64_t* const to = indices.Reserve(triangles.edges.size());
        for (std::size_t i = 0; i < triangles.count; ++i)
            to[i] = corners[triangles.edges[i].corner]->number[triangles.edges[i].number];
        indices.Append(triangles.count);
    }

    const LabelVolume m_volume;
    const std::size_t m_sliceSize;
    std::vector<SurfaceArrays> m_surfaces;
    const std::vector<std::size_t>& m_surfaceOf; // by label
    std::vector<std::uint16_t> m_marks;
    SliceNodes m_front, m_back;
};

/// How many walks share a volume, each through many slices: two that are neighbours both look at the slice between.
std::size_t GetWalkCount(const kep::Vector3d<std::size_t>& size) {
    constexpr std::size_t slices = 8;
    constexpr std::size_t voxels = 500000;
    const std::size_t most = std::min((size.z - 1) / slices, size.x * size.y * size.z / voxels);
    return std::clamp<std::size_t>(most, 1, kep::GetThreadLimit());
}

/// Puts what a later walk has found of a surface behind what the earlier ones have.
void Join(SurfaceArrays& surface, SurfaceArrays&& more) {
    const std::size_t before = surface.vertices.GetSize() / 3;
    const std::size_t floats = more.vertices.GetSize();
    if (floats > 0)
        std::memcpy(surface.vertices.Reserve(floats), more.vertices.GetData(), floats * sizeof(float));
    surface.vertices.Append(floats);
    const std::size_t indices = more.indices.GetSize();
    if (indices > 0)
        std::transform(more.indices.GetData(), more.indices.GetData() + indices, surface.indices.Reserve(indices),
                       [before](std::uint64_t vertex) { return before + vertex; });
    surface.indices.Append(indices);
    more = SurfaceArrays();
}

} // namespace

std::vector<SurfaceArrays> WalkSurfaces(const LabelVolume& volume,
                                        const std::map<unsigned short, std::size_t>& labelToSurface) {
    if (volume.size.x < 2 || volume.size.y < 2 || volume.size.z < 2) // there is no cell
        return std::vector<SurfaceArrays>(labelToSurface.size());
    const std::vector<std::size_t> surfaceOf = FindSurfaces(labelToSurface);
    const std::size_t walks = GetWalkCount(volume.size);
    std::vector<std::vector<SurfaceArrays>> found(walks);
    kep::ForEachPart(walks, [&](std::size_t i) {
        const std::size_t last = volume.size.z - 1;
        found[i] = SurfaceWalk(volume, labelToSurface.size(), surfaceOf).Run(last * i / walks, last * (i + 1) / walks);
    });
    if (walks > 1)
        kep::ForEachPart(labelToSurface.size(), [&](std::size_t surface) {
            for (std::size_t i = 1; i < walks; ++i)
                Join(found[0][surface], std::move(found[i][surface]));
        });
    return std::move(found[0]);
}

void ComputeNormals(SurfaceArrays& surface) {
    struct Vector {
        float x, y, z;
    };
    static_assert(sizeof(Vector) == 3 * sizeof(float));
    const std::size_t floats = surface.vertices.GetSize();
    float* const normals = surface.normals.Reserve(floats);
    surface.normals.Append(floats);
    std::fill_n(normals, floats, 0.0F);
    const float* const vertices = surface.vertices.GetData();
    const auto minus = [vertices](std::uint64_t p, std::uint64_t q) {
        return Vector{vertices[3 * p] - vertices[3 * q], vertices[3 * p + 1] - vertices[3 * q + 1],
                      vertices[3 * p + 2] - vertices[3 * q + 2]};
    };
    const std::uint64_t* const indices = surface.indices.GetData();
    for (std::size_t i = 0; i < surface.indices.GetSize(); i += 3) {
        const Vector a = minus(indices[i + 1], indices[i]);
        const Vector b = minus(indices[i + 2], indices[i]);
        const Vector n{b.y * a.z - b.z * a.y, b.z * a.x - b.x * a.z, b.x * a.y - b.y * a.x};
        for (std::size_t corner = i; corner < i + 3; ++corner) {
            float* const normal = normals + 3 * indices[corner];
            normal[0] += n.x;
            normal[1] += n.y;
            normal[2] += n.z;
        }
    }
    for (std::size_t i = 0; i < floats; i += 3) {
        const float length =
            std::sqrt(normals[i] * normals[i] + normals[i + 1] * normals[i + 1] + normals[i + 2] * normals[i + 2]);
        normals[i] /= length;
        normals[i + 1] /= length;
        normals[i + 2] /= length;
    }
}

} // namespace zel::detail
