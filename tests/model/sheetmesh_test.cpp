#include "model/zel_sheetmesh.h"
#include "tests/model/matrix_near.h"

#include <cmath>

using namespace zel;

TEST(SheetMesh, CornersAreBentTowardsTheViewer) {
    // x = y = -0.5, r = sqrt(0.75) = 0.8660254
    const SheetMesh mesh = MakeSheetMesh();
    ExpectNear(mesh[0], {-1.1547005F, -1.1547005F, 0.4226497F});
    ExpectNear(mesh[7], {1.1547005F, -1.1547005F, 0.4226497F});
    ExpectNear(mesh[56], {-1.1547005F, 1.1547005F, 0.4226497F});
    ExpectNear(mesh[63], {1.1547005F, 1.1547005F, 0.4226497F});
}

TEST(SheetMesh, PointsComeRowAfterRow) {
    const SheetMesh mesh = MakeSheetMesh();
    // Row 0, column 3: x = -0.0714286, y = -0.5, r = sqrt(0.0051020 + 0.5) = 0.7107053
    ExpectNear(mesh[3], {-0.2010076F, -1.4070530F, 0.2964735F});
    // Row 3, column 4: x = 0.0714286, y = -0.0714286, r = sqrt(0.0102041 + 0.25) = 0.5101020
    ExpectNear(mesh[8 * 3 + 4], {0.2800560F, -0.2800560F, 0.0198039F});
}

TEST(SheetMesh, QuadsGoRoundAndCoverTheSheet) {
    constexpr SheetQuads quads = MakeSheetQuads();
    EXPECT_EQ(quads.size(), 4U * 49U);
    const auto quad = [&](std::size_t i) {
        return std::array<std::size_t, 4>{quads[4 * i], quads[4 * i + 1], quads[4 * i + 2], quads[4 * i + 3]};
    };
    EXPECT_EQ(quad(0), (std::array<std::size_t, 4>{0, 1, 9, 8}));
    EXPECT_EQ(quad(6), (std::array<std::size_t, 4>{6, 7, 15, 14}));
    EXPECT_EQ(quad(7), (std::array<std::size_t, 4>{8, 9, 17, 16})); // the next row
    EXPECT_EQ(quad(48), (std::array<std::size_t, 4>{54, 55, 63, 62}));
}

TEST(SheetMesh, SheetsStandFromTheBackToTheFront) {
    EXPECT_EQ(PlaceOfSheet(0, 100), -1.0F);
    EXPECT_EQ(PlaceOfSheet(99, 100), 1.0F);
    EXPECT_EQ(PlaceOfSheet(1, 5), -0.5F);
    EXPECT_EQ(PlaceOfSheet(2, 5), 0.0F);
    EXPECT_NEAR(PlaceOfSheet(1, 100), -0.9797980F, 1e-6F); // 2 / 99 - 1
}

TEST(SheetMesh, SingleSheetHasNoPlace) {
    EXPECT_TRUE(std::isnan(PlaceOfSheet(0, 1)));
}
