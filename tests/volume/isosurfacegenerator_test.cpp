#include "model/zel_isosurfacegenerator.h"
#include "tests/volume/label_volumes.h"
#include "tests/volume/twin_comparison.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

/// Six times the volume inside a closed mesh whose triangles are clockwise as seen from outside.
double SixfoldVolume(const zel::LabelSurface& surface) {
    double sum = 0;
    const auto at = [&](std::uint64_t i, std::size_t axis) {
        return static_cast<double>(surface.GetVertices()[3 * surface.GetIndices()[i] + axis]);
    };
    for (std::uint64_t t = 0; t < 3 * surface.GetTriangleCount(); t += 3)
        for (std::size_t x = 0; x < 3; ++x) {
            const std::size_t y = (x + 1) % 3, z = (x + 2) % 3;
            sum += at(t, x) * (at(t + 2, y) * at(t + 1, z) - at(t + 2, z) * at(t + 1, y));
        }
    return sum;
}

Volume Ball(std::size_t size, double radius, unsigned short label) {
    Volume volume{size, size, size};
    const double centre = static_cast<double>(size - 1) / 2;
    const auto square = [centre](std::size_t at) { return std::pow(static_cast<double>(at) - centre, 2); };
    for (std::size_t z = 0; z < size; ++z)
        for (std::size_t y = 0; y < size; ++y)
            for (std::size_t x = 0; x < size; ++x)
                if (square(x) + square(y) + square(z) <= radius * radius)
                    volume.At(x, y, z) = label;
    return volume;
}

TEST(IsosurfaceGenerator, IsEmptyAtFirstAndAfterRelease) {
    zel::IsosurfaceGenerator generator;
    EXPECT_FALSE(generator.IsValid());
    EXPECT_TRUE(generator.GetSurfaces().empty());
    Volume volume{3, 3, 3};
    volume.At(1, 1, 1) = 5;
    Generate(generator, volume, {{5, 0}});
    EXPECT_TRUE(generator.IsValid());
    EXPECT_EQ(generator.GetSurfaces().size(), 1U);
    generator.Release();
    EXPECT_FALSE(generator.IsValid());
    EXPECT_TRUE(generator.GetSurfaces().empty());
}

TEST(IsosurfaceGenerator, ClosedSurfacesEndHalfAVoxelOutside) {
    Volume volume{2, 3, 1};
    std::fill(volume.labels.begin(), volume.labels.end(), static_cast<unsigned short>(5));
    zel::IsosurfaceGenerator generator;
    generator.GenerateClosedSurfaces(volume.labels.data(), {{5, 0}}, 2, 3, 1, 1, 2, 4);
    ASSERT_TRUE(generator.IsValid());
    const zel::LabelSurface& surface = generator.GetSurfaces().at(0);
    EXPECT_TRUE(GetShape(surface.GetIndices(), surface.GetTriangleCount()).closed);
    const std::vector<float> vertices = Vertices(surface);
    // Middles of voxels lie at 0 and 1, at 0, 2 and 4, and at 0.
    const float low[] = {-0.5F, -1, -2}, high[] = {1.5F, 5, 2};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        float lowest = vertices[axis], highest = vertices[axis];
        for (std::size_t i = axis; i < vertices.size(); i += 3) {
            lowest = std::min(lowest, vertices[i]);
            highest = std::max(highest, vertices[i]);
        }
        EXPECT_EQ(lowest, low[axis]);
        EXPECT_EQ(highest, high[axis]);
    }
    // In voxels of 8: half of one before each of the two squares on two faces, an eighth before each step of an edge, a
    // 48th at each corner.
    EXPECT_NEAR(SixfoldVolume(surface) / 6, (2 * 2 / 2.0 + 4 * (1 + 2) / 8.0 + 8 / 48.0) * 8, 1e-4);
}

TEST(IsosurfaceGenerator, ASurfaceInsideIsTheSameClosedOrNot) {
    const Volume volume = Ball(9, 3, 5);
    zel::IsosurfaceGenerator open, closed;
    Generate(open, volume, {{5, 0}}, {0.3F, 0.7F, 1.1F});
    closed.GenerateClosedSurfaces(volume.labels.data(), {{5, 0}}, 9, 9, 9, 0.3F, 0.7F, 1.1F);
    const zel::LabelSurface &a = open.GetSurfaces().at(0), &b = closed.GetSurfaces().at(0);
    EXPECT_EQ(Indices(a), Indices(b));
    EXPECT_TRUE(Same(Vertices(a), Vertices(b)));
    EXPECT_TRUE(Same(Normals(a), Normals(b)));
}

TEST(IsosurfaceGenerator, ASecondRunReplacesTheFirst) {
    Volume volume{3, 3, 3};
    volume.At(1, 1, 1) = 5;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{5, 1}, {4, 0}});
    Generate(generator, volume, {{5, 0}});
    EXPECT_TRUE(generator.IsValid());
    ASSERT_EQ(generator.GetSurfaces().size(), 1U);
    EXPECT_EQ(generator.GetSurfaces()[0].GetLabel(), 5U);
    EXPECT_EQ(generator.GetSurfaces()[0].GetTriangleCount(), 8U);
}

TEST(IsosurfaceGenerator, BackgroundAloneGivesEmptySurfaces) {
    zel::IsosurfaceGenerator generator;
    Generate(generator, Volume{4, 3, 5}, {{2, 1}, {7, 0}});
    EXPECT_TRUE(generator.IsValid());
    ASSERT_EQ(generator.GetSurfaces().size(), 2U);
    EXPECT_EQ(generator.GetSurfaces()[0].GetLabel(), 7U);
    EXPECT_EQ(generator.GetSurfaces()[1].GetLabel(), 2U);
    for (const zel::LabelSurface& surface : generator.GetSurfaces()) {
        EXPECT_EQ(surface.GetVertexCount(), 0U);
        EXPECT_EQ(surface.GetTriangleCount(), 0U);
    }
}

TEST(IsosurfaceGenerator, ALabelThatFillsTheFrameHasNoSurface) {
    Volume volume{4, 3, 5};
    std::fill(volume.labels.begin(), volume.labels.end(), static_cast<unsigned short>(9));
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{9, 0}});
    EXPECT_TRUE(generator.IsValid());
    EXPECT_EQ(generator.GetSurfaces()[0].GetVertexCount(), 0U);
    EXPECT_EQ(generator.GetSurfaces()[0].GetTriangleCount(), 0U);
}

TEST(IsosurfaceGenerator, OneVoxelBecomesAnOctahedron) {
    // Voxel (2, 1, 1) of 5 x 4 x 3 lies at y = 4 - 1 - 1 = 2. Slices have 20 voxels, rows 5. An edge's id is three
    // times the offset of the voxel where it starts, plus 0, 1, 2 for x, y (one row up), z:
    //   23 z from (2, 1, 0) at offset 7     0: (2, 2, 0.5)
    //   78 x from (1, 1, 1) at offset 26    1: (1.5, 2, 1)
    //   81 x from (2, 1, 1) at offset 27    2: (2.5, 2, 1)
    //   82 y from there                     3: (2, 2.5, 1)
    //   83 z from there                     4: (2, 2, 1.5)
    //   97 y from (2, 2, 1) at offset 32    5: (2, 1.5, 1)
    Volume volume{5, 4, 3};
    volume.At(2, 1, 1) = 5;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{5, 0}});
    ASSERT_TRUE(generator.IsValid());
    const zel::LabelSurface& surface = generator.GetSurfaces().at(0);
    EXPECT_EQ(Vertices(surface), (std::vector<float>{2, 2, 0.5F, 1.5F, 2, 1, 2.5F, 2, 1, //
                                                     2, 2.5F, 1, 2, 2, 1.5F, 2, 1.5F, 1}));
    // The eight cells around it in order; the voxel is their corner 6, 5, 7, 4, 2, 1, 3, 0. Its bit alone is cleared:
    // rows 191 (10 5 6), 223 (9 4 5), 127 (7 11 6), 239 (4 8 7), 251 (1 10 2), 253 (0 9 1), 247 (3 2 11), 254 (0 3 8).
    EXPECT_EQ(Indices(surface), (std::vector<std::uint64_t>{0, 1, 5, 0, 5, 2, 1, 0, 3, 3, 0, 2, //
                                                            1, 4, 5, 5, 4, 2, 1, 3, 4, 3, 2, 4}));
    // The four triangles around each corner sum up to a vector away from the center.
    EXPECT_EQ(Normals(surface), (std::vector<float>{0, 0, -1, -1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, -1, 0}));
}

TEST(IsosurfaceGenerator, CellLengthsScaleThePlaces) {
    // The octahedron's first vertex lies at (2, 2, 0.5) and its last at (2, 1.5, 1), times (0.5, 2, 4).
    Volume volume{5, 4, 3};
    volume.At(2, 1, 1) = 5;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{5, 0}}, {0.5F, 2, 4});
    const std::vector<float> vertices = Vertices(generator.GetSurfaces().at(0));
    EXPECT_THAT(std::vector<float>(vertices.begin(), vertices.begin() + 3), ElementsAre(1, 4, 2));
    EXPECT_THAT(std::vector<float>(vertices.end() - 3, vertices.end()), ElementsAre(1, 3, 4));
}

TEST(IsosurfaceGenerator, AFlatFrameHasNoTriangles) {
    for (const std::array<std::size_t, 3>& size :
         {std::array<std::size_t, 3>{1, 5, 5}, {5, 1, 5}, {5, 5, 1}, {1, 1, 1}, {0, 5, 5}, {5, 0, 5}, {5, 5, 0}}) {
        Volume volume{size[0], size[1], size[2]};
        if (volume.labels.size() > 12)
            volume.labels[12] = 3;
        zel::IsosurfaceGenerator generator;
        Generate(generator, volume, {{3, 0}});
        EXPECT_TRUE(generator.IsValid());
        ASSERT_EQ(generator.GetSurfaces().size(), 1U);
        EXPECT_EQ(generator.GetSurfaces()[0].GetLabel(), 3U);
        EXPECT_EQ(generator.GetSurfaces()[0].GetVertexCount(), 0U);
        EXPECT_EQ(generator.GetSurfaces()[0].GetTriangleCount(), 0U);
    }
}

TEST(IsosurfaceGenerator, LabelsThatTouchGetCoincidingSheets) {
    // One cell, its left half label 1 and its right half label 2: four crossed edges, all along x at 0.5, and two
    // triangles for each label.
    Volume volume{2, 2, 2};
    for (std::size_t i = 0; i < volume.labels.size(); ++i)
        volume.labels[i] = static_cast<unsigned short>(i % 2 + 1);
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{1, 0}, {2, 1}});
    const zel::LabelSurface& left = generator.GetSurfaces().at(0);
    const zel::LabelSurface& right = generator.GetSurfaces().at(1);
    const std::vector<float> sheet{0.5F, 1, 0, 0.5F, 0, 0, 0.5F, 1, 1, 0.5F, 0, 1}; // rows downward, then slices
    EXPECT_EQ(Vertices(left), sheet);
    EXPECT_EQ(Vertices(right), sheet);
    EXPECT_EQ(left.GetTriangleCount(), 2U);
    EXPECT_EQ(right.GetTriangleCount(), 2U);
    EXPECT_EQ(Normals(left), (std::vector<float>{1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0}));
    EXPECT_EQ(Normals(right), (std::vector<float>{-1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0}));
}

TEST(IsosurfaceGenerator, ALabelThatIsNotInTheMapIsOnlyInTheWay) {
    Volume volume{4, 3, 3};
    volume.At(1, 1, 1) = 5;
    volume.At(2, 1, 1) = 6;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{5, 0}});
    ASSERT_EQ(generator.GetSurfaces().size(), 1U);
    EXPECT_EQ(generator.GetSurfaces()[0].GetTriangleCount(), 8U); // as if it stood alone
    ExpectAsLiterally(volume, {{5, 0}}, {1, 1, 1});
}

TEST(IsosurfaceGenerator, BackgroundGetsNoSurfaceEvenIfTheMapHasIt) {
    Volume volume{3, 3, 3};
    volume.At(1, 1, 1) = 5;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{0, 0}, {5, 1}});
    EXPECT_EQ(generator.GetSurfaces().at(0).GetVertexCount(), 0U);
    EXPECT_EQ(generator.GetSurfaces().at(1).GetTriangleCount(), 8U);
}

TEST(IsosurfaceGenerator, TheLargestLabelIsALabelLikeOthers) {
    Volume volume{3, 3, 3};
    volume.At(1, 1, 1) = 65535;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{65535, 0}});
    EXPECT_EQ(generator.GetSurfaces().at(0).GetLabel(), 65535U);
    EXPECT_EQ(generator.GetSurfaces().at(0).GetTriangleCount(), 8U);
}

TEST(IsosurfaceGenerator, MatchesTheLiteralTwinOnRandomLabels) {
    std::mt19937 random(20260307);
    const auto upTo = [&random](std::size_t most) { return random() % (most + 1); };
    for (int round = 0; round < 2000; ++round) {
        Volume volume{1 + upTo(8), 1 + upTo(8), 1 + upTo(8)};
        const std::size_t labelCount = 1 + upTo(5);
        const std::size_t spread = 1 + upTo(2); // how many voxels in a row are alike, so that some cells are too
        unsigned short last = 0;
        for (std::size_t i = 0; i < volume.labels.size(); ++i) {
            if (i % spread == 0)
                last = static_cast<unsigned short>(upTo(labelCount));
            volume.labels[i] = last;
        }
        // Far labels on some rounds, surfaces in any order, and now and then a label without one.
        if (round % 3 == 0)
            for (unsigned short& label : volume.labels)
                label = static_cast<unsigned short>(label * 10922);
        SurfaceMap toSurface = volume.MapLabels();
        if (round % 5 == 0 && !toSurface.empty()) {
            toSurface.erase(std::prev(toSurface.end()));
        }
        std::vector<std::size_t> order(toSurface.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::shuffle(order.begin(), order.end(), random);
        for (auto& [label, surface] : toSurface)
            surface = order[surface];
        const std::array<float, 3> cell{0.37F, 1.0F / 3.0F, 1.9F};
        ASSERT_NO_FATAL_FAILURE(ExpectAsLiterally(volume, toSurface, cell));
        ASSERT_FALSE(HasFailure()) << "round " << round << ", " << volume.width << " x " << volume.height << " x "
                                   << volume.depth;
    }
}

TEST(IsosurfaceGenerator, MatchesTheLiteralTwinOnLongRows) {
    std::mt19937 random(11);
    for (const std::size_t width : {31U, 32U, 33U, 34U, 35U, 130U}) {
        Volume volume{width, 5, 4};
        for (std::size_t i = 0; i < volume.labels.size();
             ++i) // mostly alike, so that gaps and runs of any length occur
            volume.labels[i] = static_cast<unsigned short>(random() % 20 == 0 ? random() % 4 : i / 37 % 3);
        ExpectAsLiterally(volume, volume.MapLabels(), {1, 2, 3});
    }
}

TEST(IsosurfaceGenerator, ABallIsClosedRoundAndTurnedOutward) {
    const Volume volume = Ball(21, 8.3, 4);
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{4, 0}});
    const zel::LabelSurface& surface = generator.GetSurfaces().at(0);
    const auto shape = GetShape(surface.GetIndices(), surface.GetTriangleCount());
    EXPECT_TRUE(shape.closed);
    EXPECT_EQ(surface.GetVertexCount() + surface.GetTriangleCount(), shape.edges + 2); // Euler's characteristic is 2
    // The surface runs halfway between voxels, so the volume is near that of the ball's voxels, each of size 1.
    const auto voxels = static_cast<double>(std::count(volume.labels.begin(), volume.labels.end(), 4));
    EXPECT_NEAR(SixfoldVolume(surface) / 6, voxels, 0.05 * voxels);
    for (std::size_t v = 0; v < surface.GetVertexCount(); ++v) {
        const float* const at = surface.GetVertices() + 3 * v;
        const float* const normal = surface.GetNormals() + 3 * v;
        float outward = 0, length = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            outward += normal[axis] * (at[axis] - 10);
            length += normal[axis] * normal[axis];
        }
        EXPECT_GT(outward, 0);
        EXPECT_NEAR(length, 1, 1e-5F);
    }
}

TEST(IsosurfaceGenerator, ABallWithATunnelHasTheCharacteristicOfARing) {
    Volume volume = Ball(15, 6.2, 1);
    for (std::size_t z = 0; z < 15; ++z)
        volume.At(7, 7, z) = 0;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{1, 0}});
    const zel::LabelSurface& surface = generator.GetSurfaces().at(0);
    const auto shape = GetShape(surface.GetIndices(), surface.GetTriangleCount());
    EXPECT_TRUE(shape.closed);
    EXPECT_EQ(surface.GetVertexCount() + surface.GetTriangleCount(), shape.edges);
}

TEST(IsosurfaceGenerator, LabelsInsideTheFrameAreClosedWhateverTheirShape) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        Volume volume{2 + random() % 8, 2 + random() % 8, 2 + random() % 8};
        for (std::size_t z = 1; z + 1 < volume.depth; ++z)
            for (std::size_t y = 1; y + 1 < volume.height; ++y)
                for (std::size_t x = 1; x + 1 < volume.width; ++x)
                    volume.At(x, y, z) = static_cast<unsigned short>(random() % 4);
        zel::IsosurfaceGenerator generator;
        Generate(generator, volume, volume.MapLabels());
        for (const zel::LabelSurface& surface : generator.GetSurfaces()) {
            EXPECT_TRUE(GetShape(surface.GetIndices(), surface.GetTriangleCount()).closed) << "round " << round;
            EXPECT_GT(SixfoldVolume(surface), 0) << "round " << round;
        }
    }
}

TEST(IsosurfaceGenerator, ALabelAtTheBorderIsOpenThere) {
    Volume volume{4, 4, 4};
    volume.At(0, 1, 1) = 2;
    zel::IsosurfaceGenerator generator;
    Generate(generator, volume, {{2, 0}});
    const zel::LabelSurface& surface = generator.GetSurfaces().at(0);
    EXPECT_EQ(surface.GetVertexCount(), 5U); // the octahedron without the tip that would lie outside
    EXPECT_EQ(surface.GetTriangleCount(), 4U);
    EXPECT_FALSE(GetShape(surface.GetIndices(), surface.GetTriangleCount()).closed);
}

TEST(IsosurfaceGenerator, WalksThatShareAVolumeFindTheSame) {
    // Enough voxels for two walks, which meet at slice 18, and specks that all of them have, those at the meeting too.
    Volume volume{200, 150, 37};
    std::mt19937 random(41);
    for (std::size_t z = 0; z < volume.depth; ++z)
        for (std::size_t y = 0; y < volume.height; ++y)
            for (std::size_t x = 0; x < volume.width; ++x)
                if (random() % 40 == 0 || (x / 20 + y / 20) % 2 == 0)
                    volume.At(x, y, z) = static_cast<unsigned short>(1 + (x / 20 + y / 30 * 7 + z / 15) % 9);
    volume.At(100, 70, 18) = 11; // a label of the slice where they meet alone, and one behind it
    volume.At(50, 70, 30) = 12;
    const SurfaceMap toSurface{{1, 3}, {2, 0}, {3, 1}, {5, 2}, {11, 4}, {12, 5}, {13, 6}};
    ExpectAsLiterally(volume, toSurface, {0.3F, 0.7F, 1.1F});
}

} // namespace
