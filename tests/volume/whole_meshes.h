#pragma once

// For tests of meshes that the volume window draws whole.

#include "model/zel_wholemeshes.h"
#include "tests/volume/volume_window.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <set>
#include <vector>

namespace zel::test {

using Colours = std::vector<kep::RGB_generic<unsigned char>>;
using Size3 = kep::Vector3d<std::size_t>;
using MakeLabel = std::function<unsigned short(std::size_t x, std::size_t y, std::size_t z)>;

inline constexpr int hidePlane = 10003, hideBox = 10004;
inline constexpr int alongX = 5007, againstX = 5008, alongZ = 5011, againstZ = 5012;
inline constexpr auto nothing = [](auto...) { return Voxel{}; };
inline const Colours onlyRed{{255, 0, 0}};
inline const Colours redAndGreen{{0, 0, 255}, {255, 0, 0}, {0, 255, 0}}; // label 1 red, 2 green

inline void HideDecorationsOf(const VolumeWindow& window) {
    window.Choose(hidePlane);
    window.Choose(hideBox);
}

/// Makes a closed mesh of each label.
inline void MakeMeshes(IsosurfaceGenerator& generator, const Size3& size, const Vector3f& cell,
                       const MakeLabel& makeLabel) {
    std::vector<unsigned short> labels;
    std::set<unsigned short> found;
    for (std::size_t z = 0; z < size.z; ++z)
        for (std::size_t y = 0; y < size.y; ++y)
            for (std::size_t x = 0; x < size.x; ++x)
                found.insert(labels.emplace_back(makeLabel(x, y, z)));
    found.erase(0);
    std::map<unsigned short, std::size_t> surfaceOf;
    for (const unsigned short label : found)
        surfaceOf.emplace(label, surfaceOf.size());
    generator.GenerateClosedSurfaces(labels.data(), surfaceOf, size.x, size.y, size.z, cell.x, cell.y, cell.z);
}

/// Uploads the meshes of an image's labels.
inline void ShowMeshes(vol3D_VolVisCanvas& canvas, const Size3& size, const kep::Resolution& resolution,
                       const Colours& colours, const MakeLabel& makeLabel) {
    const VoxelGrid grid{size, {0, 0, 0}, resolution};
    const MeshPlacement placement = PlaceMeshes(grid, grid);
    IsosurfaceGenerator generator;
    MakeMeshes(generator, size, placement.cell, makeLabel);
    canvas.SetSurfaceColours(true, colours);
    ASSERT_TRUE(canvas.MakeCurrent());
    canvas.SetWholeIsosurfaces(generator, placement.toObject);
}
inline void ShowMeshes(const VolumeWindow& window, std::size_t n, const Colours& colours, const MakeLabel& makeLabel) {
    ShowMeshes(window.Canvas(), {n, n, n}, {1, 1, 1}, colours, makeLabel);
}

/// The middle half of a volume of 8: from -0.5 to 0.5 in the object.
inline unsigned short Cube(std::size_t x, std::size_t y, std::size_t z) {
    const auto inside = [](std::size_t i) { return i >= 2 && i < 6; };
    return inside(x) && inside(y) && inside(z) ? 1 : 0;
}

/// Seen with an edge in front, halfway between the faces at the ends of y, above, and z.
inline void LookFromAbove(vol3D_VolVisCanvas& canvas) {
    const float h = std::sqrt(0.5F);
    canvas.SetViewDirection(-5.0F, 0, -h, -h, 0, h, -h);
}

inline int Brightness(const wxColour& c) {
    return c.Red() + c.Green() + c.Blue();
}

/// Pixels that differ from the background.
inline std::vector<wxPoint> LitPixels(const wxImage& picture) {
    std::vector<wxPoint> lit;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x)
            if (Brightness(ColourAt(picture, {x, y})) > 40)
                lit.emplace_back(x, y);
    return lit;
}

/// That a square of the window's middle is full of red, but for its corners, and that all beyond is background. A
/// cube's edges are slanted over half a voxel, and dark where they look down.
inline void ExpectRedSquare(const wxImage& picture, int inner, int outer, int corner) {
    int gaps = 0, strays = 0;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) {
            const int across = std::abs(x - 100), down = std::abs(y - 100);
            const wxColour c = ColourAt(picture, {x, y});
            if (std::max(across, down) <= inner && across + down <= 2 * inner - corner &&
                (c.Red() < 70 || c.Red() < c.Green() + 40))
                ++gaps;
            if (std::max(across, down) >= outer && !IsBlack(c))
                ++strays;
        }
    EXPECT_EQ(gaps, 0);
    EXPECT_EQ(strays, 0);
}

/// Label 1 behind, 2 in front, as seen at first.
inline unsigned short TwoSlabs(std::size_t x, std::size_t y, std::size_t z) {
    if (x < 2 || x >= 6 || y < 2 || y >= 6)
        return 0;
    return z == 1 ? 1 : z == 6 ? 2 : 0;
}

} // namespace zel::test
