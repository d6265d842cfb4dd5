#pragma once

#include "model/zel_isosurfacegenerator.h"
#include "tests/volume/label_volumes.h"
#include "tests/volume/literal_generator.h"

#include <array>
#include <cstring>

#include <gtest/gtest.h>

using SurfaceMap = std::map<unsigned short, std::size_t>;

template <typename T>
std::vector<T> Copy(const T* values, std::uint64_t count) {
    return {values, values + count};
}
inline std::vector<float> Vertices(const zel::LabelSurface& surface) {
    return Copy(surface.GetVertices(), 3 * surface.GetVertexCount());
}
inline std::vector<float> Normals(const zel::LabelSurface& surface) {
    return Copy(surface.GetNormals(), 3 * surface.GetVertexCount());
}
inline std::vector<std::uint64_t> Indices(const zel::LabelSurface& surface) {
    return Copy(surface.GetIndices(), 3 * surface.GetTriangleCount());
}

inline void Generate(zel::IsosurfaceGenerator& generator, const Volume& volume, const SurfaceMap& toSurface,
                     const std::array<float, 3>& cell = {1, 1, 1}) {
    generator.GenerateSurfaces(volume.labels.data(), toSurface, volume.width, volume.height, volume.depth, cell[0],
                               cell[1], cell[2]);
}

/// Compares bit by bit, so that a NaN would equal itself.
template <typename T>
bool Same(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

inline void ExpectAsLiterally(const Volume& volume, const SurfaceMap& toSurface, const std::array<float, 3>& cell) {
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, toSurface, cell);
    const auto expected = LiteralGenerator::Generate(volume.labels.data(), toSurface, volume.width, volume.height,
                                                     volume.depth, cell[0], cell[1], cell[2]);
    ASSERT_TRUE(generator.IsValid());
    ASSERT_EQ(generator.GetSurfaces().size(), expected.size());
    for (std::size_t s = 0; s < expected.size(); ++s) {
        const zel::LabelSurface& surface = generator.GetSurfaces()[s];
        EXPECT_EQ(surface.GetLabel(), expected[s].label);
        EXPECT_EQ(Indices(surface), expected[s].indices);
        EXPECT_TRUE(Same(Vertices(surface), expected[s].vertices));
        EXPECT_TRUE(Same(Normals(surface), expected[s].normals));
    }
}
