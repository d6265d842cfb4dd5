#include "model/zel_meshfile.h"

#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_exceptions.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>
#include <vector>

namespace zel {

namespace {

static_assert(std::endian::native == std::endian::little, "values are written as they stand in memory");

/// Collects small pieces into blocks for the file.
class BlockWriter {
public:
    explicit BlockWriter(kep::AtomicFile& target) : m_file(target) { m_block.reserve(blockSize); }

    template <typename T>
    void Put(T value) {
        const std::size_t at = m_block.size();
        m_block.resize(at + sizeof value);
        std::memcpy(m_block.data() + at, &value, sizeof value);
        if (m_block.size() > blockSize - sizeof(double))
            Flush();
    }
    void Flush() {
        m_file.Write(m_block.data(), m_block.size());
        m_block.clear();
    }

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 18;

    kep::AtomicFile& m_file;
    std::vector<unsigned char> m_block;
};

/// From the generator's coordinates to the file's along one axis: from + direction * coordinate.
struct AxisPlacement {
    double from = 0;
    double direction = 1;
};

struct Placement {
    AxisPlacement x, y, z;
    bool needsDoubles = false;
};

Placement PlaceFrame(const kep::Image3d<unsigned short>& frame) {
    const kep::Vector3d<float> res = frame.GetResolution().GetUsable().GetRes();
    Placement placement;
    const auto place = [&](float offset, float pixelsPerMicron, std::size_t count) {
        const double voxel = 1.0 / static_cast<double>(pixelsPerMicron);
        const double first = static_cast<double>(offset) + voxel / 2;
        const double last = first + voxel * static_cast<double>(count);
        constexpr double steps = 64.0; // that a voxel must have for its surface to look even
        const double step = std::max(std::fabs(first), std::fabs(last)) * std::numeric_limits<float>::epsilon();
        placement.needsDoubles = placement.needsDoubles || step * steps > voxel;
        return AxisPlacement{first, 1.0};
    };
    placement.x = place(frame.GetOffset().x, res.x, frame.GetSizeX());
    placement.y = place(frame.GetOffset().y, res.y, frame.GetSizeY());
    placement.z = place(frame.GetOffset().z, res.z, frame.GetSizeZ());
    // The generator's y begins at the last row's center and goes up.
    placement.y.from += (static_cast<double>(frame.GetSizeY()) - 1.0) / static_cast<double>(res.y);
    placement.y.direction = -1.0;
    return placement;
}

std::string MakeHeader(const LabelSurface& surface, bool inMicrons, bool doubles) {
    const char* const position = doubles ? "double" : "float";
    std::ostringstream header;
    header.imbue(std::locale::classic());
    header << "ply\nformat binary_little_endian 1.0\n"
           << "comment label " << surface.GetLabel() << (inMicrons ? ", in microns\n" : ", in pixels\n")
           << "element vertex " << surface.GetVertexCount() << "\n";
    for (const char* const axis : {"x", "y", "z"})
        header << "property " << position << " " << axis << "\n";
    for (const char* const axis : {"nx", "ny", "nz"})
        header << "property float " << axis << "\n";
    header << "element face " << surface.GetTriangleCount() << "\nproperty list uchar uint vertex_indices\n"
           << "end_header\n";
    return header.str();
}

template <typename Position>
void PutVertices(BlockWriter& out, const LabelSurface& surface, const Placement& placement) {
    const auto put = [&out](const AxisPlacement& axis, float coordinate) {
        out.Put(static_cast<Position>(axis.from + axis.direction * static_cast<double>(coordinate)));
    };
    const float* const vertices = surface.GetVertices();
    const float* const normals = surface.GetNormals();
    for (std::uint64_t i = 0; i < 3 * surface.GetVertexCount(); i += 3) {
        put(placement.x, vertices[i]);
        put(placement.y, vertices[i + 1]);
        put(placement.z, vertices[i + 2]);
        out.Put(normals[i]);
        out.Put(-normals[i + 1]);
        out.Put(normals[i + 2]);
    }
}

void PutTriangles(BlockWriter& out, const LabelSurface& surface) {
    const std::uint64_t* const indices = surface.GetIndices();
    for (std::uint64_t i = 0; i < 3 * surface.GetTriangleCount(); i += 3) {
        out.Put(std::uint8_t{3});
        for (std::uint64_t corner = i; corner < i + 3; ++corner)
            out.Put(static_cast<std::uint32_t>(indices[corner]));
    }
}

} // namespace

void SaveMesh(const std::string& fileName, const LabelSurface& surface, const kep::Image3d<unsigned short>& frame) {
    if (surface.GetVertexCount() > std::uint64_t{1} << 32) {
        const std::string reason = ": The mesh has " + std::to_string(surface.GetVertexCount()) +
                                   " vertices, more than its 32-bit indices can number.";
        throw kep::IOException("SaveMesh(): Cannot write the file '" + fileName + "'" + reason, fileName,
                               "Cannot write the file" + reason);
    }
    const Placement placement = PlaceFrame(frame);
    kep::AtomicFile file(fileName);
    const std::string header = MakeHeader(surface, frame.GetResolution().IsDefined(), placement.needsDoubles);
    file.Write(header.data(), header.size());
    BlockWriter out(file);
    if (placement.needsDoubles)
        PutVertices<double>(out, surface, placement);
    else
        PutVertices<float>(out, surface, placement);
    PutTriangles(out, surface);
    out.Flush();
    file.Commit();
}

} // namespace zel
