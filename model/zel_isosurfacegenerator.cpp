#include "model/zel_isosurfacegenerator.h"

#include "core/kepcore/kep_threads.h"
#include "model/surface/zel_surfacewalk.h"

#include <algorithm>
#include <utility>

namespace zel {

namespace {

void FinishSurfaces(std::vector<detail::SurfaceArrays>& surfaces) {
    const auto finish = [&](std::size_t i) {
        detail::ComputeNormals(surfaces[i]);
        surfaces[i].vertices.ShrinkToFit();
        surfaces[i].indices.ShrinkToFit();
    };
    std::size_t floats = 0;
    for (const detail::SurfaceArrays& surface : surfaces)
        floats += surface.vertices.GetSize();
    constexpr std::size_t worthThreads = 100000;
    if (floats >= worthThreads)
        return kep::ForEachPart(surfaces.size(), finish);
    for (std::size_t i = 0; i < surfaces.size(); ++i)
        finish(i);
}

} // namespace

LabelSurface::LabelSurface(unsigned short label, detail::SurfaceArrays&& arrays)
    : m_label(label), m_arrays(std::move(arrays)) {}

void IsosurfaceGenerator::GenerateSurfaces(const unsigned short* labels,
                                           const std::map<unsigned short, std::size_t>& labelToSurface,
                                           std::size_t sizeX, std::size_t sizeY, std::size_t sizeZ, float cellX,
                                           float cellY, float cellZ) {
    Generate({labels, {sizeX, sizeY, sizeZ}, {cellX, cellY, cellZ}}, labelToSurface);
}

void IsosurfaceGenerator::GenerateClosedSurfaces(const unsigned short* labels,
                                                 const std::map<unsigned short, std::size_t>& labelToSurface,
                                                 std::size_t sizeX, std::size_t sizeY, std::size_t sizeZ, float cellX,
                                                 float cellY, float cellZ) {
    Release(); // before memory is taken for more
    const kep::Vector3d<std::size_t> size(sizeX + 2, sizeY + 2, sizeZ + 2);
    std::vector<unsigned short> bordered(size.x * size.y * size.z); // with background all round
    for (std::size_t z = 0; z < sizeZ; ++z)
        for (std::size_t y = 0; y < sizeY; ++y)
            std::copy_n(labels + (z * sizeY + y) * sizeX, sizeX,
                        bordered.data() + ((z + 1) * size.y + y + 1) * size.x + 1);
    Generate({bordered.data(), size, {cellX, cellY, cellZ}, 1}, labelToSurface);
}

void IsosurfaceGenerator::Generate(const detail::LabelVolume& volume,
                                   const std::map<unsigned short, std::size_t>& labelToSurface) {
    Release();
    std::vector<detail::SurfaceArrays> arrays = detail::WalkSurfaces(volume, labelToSurface);
    std::vector<unsigned short> labelOf(arrays.size());
    for (const auto& [label, surface] : labelToSurface)
        labelOf[surface] = label;
    FinishSurfaces(arrays);
    std::vector<LabelSurface> surfaces;
    surfaces.reserve(arrays.size());
    for (std::size_t surface = 0; surface < arrays.size(); ++surface)
        surfaces.emplace_back(labelOf[surface], std::move(arrays[surface]));
    m_surfaces = std::move(surfaces);
    m_valid = true;
}

void IsosurfaceGenerator::Release() {
    std::vector<LabelSurface>().swap(m_surfaces);
    m_valid = false;
}

} // namespace zel
