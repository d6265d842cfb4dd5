#include "model/surface/zel_marchingcubes.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace zel::marchingcubes;
using Edge = unsigned;
using Segment = std::pair<Edge, Edge>;

constexpr std::array<std::array<unsigned, 4>, 6> faces{
    {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}};

std::vector<Edge> Row(std::size_t cube) {
    std::vector<Edge> row;
    for (const std::int8_t edge : triangleTable[cube]) {
        if (edge < 0)
            break;
        row.push_back(static_cast<Edge>(edge));
    }
    return row;
}

bool LiesOnFace(Edge edge, const std::array<unsigned, 4>& face) {
    return std::all_of(edgeCorners[edge].begin(), edgeCorners[edge].end(),
                       [&](unsigned corner) { return std::find(face.begin(), face.end(), corner) != face.end(); });
}

/// The sides of a row's triangles that no second triangle of the row has.
std::vector<Segment> OuterSides(std::size_t cube) {
    const std::vector<Edge> row = Row(cube);
    std::map<Segment, int> sides;
    for (std::size_t t = 0; t < row.size(); t += 3)
        for (std::size_t i = 0; i < 3; ++i)
            ++sides[{row[t + i], row[t + (i + 1) % 3]}];
    std::vector<Segment> outer;
    for (const auto& [side, count] : sides) {
        EXPECT_EQ(count, 1) << "row " << cube;
        if (!sides.contains({side.second, side.first}))
            outer.push_back(side);
    }
    return outer;
}

TEST(MarchingCubesTables, AreThePublishedOnes) {
    EXPECT_EQ(edgeTable[0], 0);
    EXPECT_EQ(edgeTable[1], 0x109); // corner 0 alone: edges 0, 3 and 8
    EXPECT_EQ(edgeTable[255], 0);
    // Rows in which published tables differ from each other.
    EXPECT_THAT(Row(1), testing::ElementsAre(0U, 8U, 3U));
    EXPECT_THAT(Row(2), testing::ElementsAre(0U, 1U, 9U));
    EXPECT_THAT(Row(3), testing::ElementsAre(1U, 8U, 3U, 9U, 8U, 1U));
    EXPECT_THAT(Row(247), testing::ElementsAre(3U, 2U, 11U));
    EXPECT_THAT(Row(253), testing::ElementsAre(0U, 9U, 1U));
    EXPECT_THAT(Row(254), testing::ElementsAre(0U, 3U, 8U));
    std::size_t triangles = 0;
    for (std::size_t cube = 0; cube < cubeCount; ++cube)
        triangles += Row(cube).size() / 3;
    EXPECT_EQ(triangles, 820U);
}

TEST(MarchingCubesTables, RowsUseTheCrossedEdgesAndEndWithFill) {
    for (std::size_t cube = 0; cube < cubeCount; ++cube) {
        const std::vector<Edge> row = Row(cube);
        EXPECT_EQ(row.size() % 3, 0U);
        for (std::size_t i = row.size(); i < triangleTable[cube].size(); ++i)
            EXPECT_EQ(triangleTable[cube][i], -1);
        unsigned mask = 0;
        for (const Edge edge : row)
            mask |= 1U << edge;
        EXPECT_EQ(mask, edgeTable[cube]) << "row " << cube;
    }
}

TEST(MarchingCubesTables, SurfacesEndOnFacesAndMeetTheNeighbours) {
    for (std::size_t cube = 0; cube < cubeCount; ++cube)
        for (const auto& face : faces) {
            std::size_t crossed = 0;
            for (Edge edge = 0; edge < edgeCount; ++edge)
                crossed += LiesOnFace(edge, face) && (edgeTable[cube] >> edge & 1U) != 0 ? 1 : 0;
            std::size_t sides = 0;
            for (const auto& [from, to] : OuterSides(cube)) {
                if (!LiesOnFace(from, face) || !LiesOnFace(to, face))
                    continue;
                ++sides;
                if (crossed != 4)
                    continue;
                // An ambiguous face: each side cuts off one corner, and the neighbour on the other side of the face
                // does the same if all cut off the corners whose bits are set.
                std::set<unsigned> corners(edgeCorners[from].begin(), edgeCorners[from].end());
                const unsigned cutOff = corners.contains(edgeCorners[to][0]) ? edgeCorners[to][0] : edgeCorners[to][1];
                EXPECT_TRUE(corners.contains(cutOff)) << "row " << cube;
                EXPECT_TRUE((cube >> cutOff & 1U) != 0) << "row " << cube;
            }
            EXPECT_EQ(sides, crossed / 2) << "row " << cube;
        }
    // With that no outer side is left that lies on no face.
    for (std::size_t cube = 0; cube < cubeCount; ++cube)
        for (const auto& [from, to] : OuterSides(cube))
            EXPECT_TRUE(std::any_of(
                faces.begin(), faces.end(),
                [&, a = from, b = to](const auto& face) { return LiesOnFace(a, face) && LiesOnFace(b, face); }))
                << "row " << cube;
}

} // namespace
