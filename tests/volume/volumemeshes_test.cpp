// Meshes that the volume window draws whole, read back from the screen.

#include <GL/glew.h> // before any header that brings OpenGL's own

#include "model/zel_volumesurfaces.h"
#include "tests/volume/whole_meshes.h"

namespace zel::test {
namespace {

class VolumeMeshes : public GuiTest {};

/// How many of the lit pixels of one picture have none of the other within two pixels.
int CountStrays(const wxImage& of, const wxImage& beside) {
    int strays = 0;
    for (const wxPoint& at : LitPixels(of)) {
        bool met = false;
        for (int y = std::max(at.y - 2, 0); y <= std::min(at.y + 2, beside.GetHeight() - 1) && !met; ++y)
            for (int x = std::max(at.x - 2, 0); x <= std::min(at.x + 2, beside.GetWidth() - 1) && !met; ++x)
                met = Brightness(ColourAt(beside, {x, y})) > 40;
        strays += met ? 0 : 1;
    }
    return strays;
}

TEST_F(VolumeMeshes, AllFacesOfACubeAreSeenFromSixDirections) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    ShowMeshes(window, 8, onlyRed, Cube);
    for (int command = alongX; command <= againstZ; ++command) {
        SCOPED_TRACE(command);
        window.Choose(command);
        // The near face is at 0.5: 274.75 * 0.5 / 4.5 = 30.5 from the middle.
        ExpectRedSquare(window.Picture(), 27, 33, 6);
    }
}

TEST_F(VolumeMeshes, OnlyHalfIsSeenUnlessAskedFor) {
    const VolumeWindow window;
    window.Show(8, nothing);
    HideDecorationsOf(window);
    const VoxelGrid grid{{8, 8, 8}, {0, 0, 0}, {1, 1, 1}};
    const Vector3f cell = PlaceMeshes(grid, grid).cell;
    IsosurfaceGenerator generator;
    MakeMeshes(generator, grid.size, cell, Cube);
    window.Canvas().SetSurfaceColours(true, onlyRed);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    window.Canvas().SetIsosurfaces(generator, ComputeIsosurfaceTranslation(grid.size, cell));
    const auto lit = static_cast<int>(LitPixels(window.Picture()).size());
    EXPECT_GT(lit, 100);
    EXPECT_LT(lit, 3600) << "the face has 61 x 61";
    EXPECT_EQ(window.Canvas().GetMeshDrawing(), MeshDrawing::Halved);
    EXPECT_THROW(window.Canvas().SetWholeIsosurfaces(generator, identityMatrix), kep::InternalException);
    GLint depth = -1;
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    EXPECT_EQ(depth, 0) << "it asks for none";
}

TEST_F(VolumeMeshes, AMeshCoversThePixelsOfItsVoxels) {
    struct Case {
        Size3 size;
        kep::Resolution resolution;
    };
    for (const Case& image :
         {Case{{20, 20, 20}, {1, 1, 1}}, Case{{24, 18, 10}, {2, 1, 0.6F}}, Case{{13, 30, 21}, {0, 0, 0}}}) {
        SCOPED_TRACE(image.size.y);
        const VolumeWindow window(MeshDrawing::Whole);
        HideDecorationsOf(window);
        window.Press(WXK_UP, 16); // intensity 1
        // A box that no mirroring and no exchange of axes brings onto itself.
        const auto inBox = [&](std::size_t x, std::size_t y, std::size_t z) {
            return 5 * x >= image.size.x && 2 * x < image.size.x && 10 * y >= image.size.y && 3 * y < image.size.y &&
                   2 * z >= image.size.z && 5 * z < 4 * image.size.z;
        };
        const float h = std::sqrt(0.5F), sixth = std::sqrt(1.0F / 6), third = std::sqrt(1.0F / 3);
        const std::vector<ViewDirection> directions{
            {{0, 0, -1}, {0, 1, 0}},  {{0, 0, 1}, {0, 1, 0}},  {{1, 0, 0}, {0, 1, 0}},
            {{0, -1, 0}, {0, 0, -1}}, {{0, h, -h}, {0, h, h}}, {{-third, -third, -third}, {-sixth, 2 * sixth, -sixth}}};
        for (const auto& [forward, up] : directions) {
            SCOPED_TRACE(testing::Message() << forward.x << ' ' << forward.y << ' ' << forward.z);
            window.Canvas().SetViewDirection(-5.0F, forward.x, forward.y, forward.z, up.x, up.y, up.z);
            window.Show(image.size, image.resolution, [&](auto x, auto y, auto z) {
                return inBox(x, y, z) ? Voxel{255, 255, 255, 255} : Voxel{};
            });
            window.Canvas().SetSurfaceColours(false, {});
            const wxImage voxels = window.Picture();
            window.Show(image.size, image.resolution, nothing);
            ShowMeshes(window.Canvas(), image.size, image.resolution, {},
                       [&](auto x, auto y, auto z) -> unsigned short { return inBox(x, y, z) ? 1 : 0; });
            const wxImage mesh = window.Picture();
            EXPECT_GT(LitPixels(mesh).size(), 200U);
            EXPECT_EQ(CountStrays(voxels, mesh), 0);
            EXPECT_EQ(CountStrays(mesh, voxels), 0);
        }
    }
}

TEST_F(VolumeMeshes, LightComesFromAbove) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    ShowMeshes(window, 8, onlyRed, Cube);
    LookFromAbove(window.Canvas());
    // The light's direction is (0, 2, 10) / 10.198. The upper face has its normal at (0, 1, 1) / 1.414 and shines with
    // 12 / 14.42 = 0.832 of red, the lower one at (0, -1, 1) with 8 / 14.42 = 0.555; ambient 0.1 comes to all colours.
    const wxImage picture = window.Picture();
    const wxColour above = ColourAt(picture, {100, 82}), below = ColourAt(picture, {100, 118});
    EXPECT_NEAR(above.Red(), 0.932 * 255, 3);
    EXPECT_NEAR(below.Red(), 0.655 * 255, 3);
    EXPECT_NEAR(above.Green(), 0.1 * 255, 3);
    EXPECT_NEAR(below.Blue(), 0.1 * 255, 3);
}

TEST_F(VolumeMeshes, AreLitFromOutsideAlsoWhereTheyAreOnlyMoved) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    IsosurfaceGenerator generator;
    MakeMeshes(generator, {8, 8, 8}, {0.25F, 0.25F, 0.25F}, Cube);
    window.Canvas().SetSurfaceColours(true, onlyRed);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    window.Canvas().SetIsosurfaces(generator, {-0.875F, -0.875F, -0.875F});
    ExpectRedSquare(window.Picture(), 27, 33, 6);
    LookFromAbove(window.Canvas());
    const wxImage picture = window.Picture();
    EXPECT_NEAR(ColourAt(picture, {100, 82}).Red(), 0.932 * 255, 3);
    EXPECT_NEAR(ColourAt(picture, {100, 118}).Red(), 0.655 * 255, 3);
}

/// Moves the clipping plane, which stands at 1, along x.
void MovePlaneTo(const VolumeWindow& window, double offset) {
    window.Press(WXK_SPACE);
    SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 0});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, static_cast<int>(std::lround((1.0 - offset) * 100))});
    SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 0});
    window.Press(WXK_SPACE);
    EXPECT_NEAR(window.Canvas().GetPlaneOffset(), offset, 1e-9);
}

TEST_F(VolumeMeshes, CutOpenTheyAreLitInside) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    ShowMeshes(window, 8, onlyRed, Cube);
    MovePlaneTo(window, 0.0);
    window.Choose(againstX);
    const wxImage picture = window.Picture();
    // The wall at the back, 5.5 away: 274.75 * 0.5 / 5.5 = 25 from the middle. It is met at the right angle.
    EXPECT_GT(ColourAt(picture, {90, 110}).Red(), 220);
    EXPECT_GT(ColourAt(picture, {110, 90}).Red(), 220);
    // What is left reaches to 0, 5 away: 27.5 from the middle.
    EXPECT_TRUE(IsBlack(ColourAt(picture, {100, 69})));
    EXPECT_FALSE(IsBlack(ColourAt(picture, {100, 74})));
}

TEST_F(VolumeMeshes, TheNearerOneHidesTheFartherOne) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    ShowMeshes(window, 8, redAndGreen, TwoSlabs);
    const wxImage inFront = window.Picture();
    for (const wxPoint& at : {wxPoint{100, 100}, {80, 80}, {120, 80}, {120, 120}})
        EXPECT_GT(ColourAt(inFront, at).Green(), ColourAt(inFront, at).Red() + 60);
    window.Choose(alongZ);
    const wxImage behind = window.Picture();
    for (const wxPoint& at : {wxPoint{100, 100}, {80, 80}, {120, 80}, {120, 120}})
        EXPECT_GT(ColourAt(behind, at).Red(), ColourAt(behind, at).Green() + 60);
}

TEST_F(VolumeMeshes, HideTheVolumeBehindThemAndNotTheOneBefore) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, [](auto, auto, auto z) { return z >= 6 ? Voxel{0, 0, 255, 255} : Voxel{}; });
    HideDecorationsOf(window);
    window.Press(WXK_UP, 16);
    ShowMeshes(window, 8, onlyRed, [](auto x, auto y, auto z) -> unsigned short {
        return z >= 2 && z < 4 && x >= 2 && x < 6 && y >= 2 && y < 6 ? 1 : 0;
    });
    const wxColour before = ColourAt(window.Picture(), {100, 100});
    EXPECT_GT(before.Blue(), 120); // darker where the border is near
    EXPECT_LT(before.Red(), 10);
    window.Choose(alongZ);
    const wxImage picture = window.Picture();
    const wxColour behind = ColourAt(picture, {100, 100});
    EXPECT_GT(behind.Red(), 200);
    EXPECT_GT(behind.Red(), behind.Blue() + 60);
    EXPECT_GT(ColourAt(picture, {100, 60}).Blue(), 120) << "beside the mesh";
}

TEST_F(VolumeMeshes, HideTheBoxBehindThem) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    window.Choose(hidePlane);
    // The box's front is seen 68.7 from the middle, its back 45.8.
    EXPECT_TRUE(IsNear(window.Picture(), {54, 100}, IsBlue));
    // A slab as wide as the box, from -0.5 to 0.5: seen up to 274.75 / 4.5 = 61.
    ShowMeshes(window, 8, onlyRed, [](auto, auto, auto z) -> unsigned short { return z >= 2 && z < 6 ? 1 : 0; });
    const wxImage picture = window.Picture();
    EXPECT_FALSE(IsNear(picture, {54, 100}, IsBlue));
    EXPECT_TRUE(IsNear(picture, {31, 100}, IsBlue));
    EXPECT_GT(ColourAt(picture, {54, 100}).Red(), 150);
}

TEST_F(VolumeMeshes, HideThePlaneBehindThem) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    window.Choose(hideBox);
    MovePlaneTo(window, 0.5);
    ShowMeshes(window, 8, {{0, 255, 0}}, [](auto x, auto, auto) -> unsigned short { return x >= 2 && x < 4 ? 1 : 0; });
    // From the side that stays the plane is behind the slab: 5.5 away, so outlined 274.75 * 0.8 / 5.5 = 40 from the
    // middle.
    window.Choose(alongX);
    EXPECT_FALSE(IsNear(window.Picture(), {140, 100}, IsRed));
    window.Canvas().SetSurfaceColours(false, {});
    EXPECT_TRUE(IsNear(window.Picture(), {140, 100}, IsRed));
    // From the other side it is in front, 4.5 away: 48.8.
    window.Canvas().SetSurfaceColours(true, {{0, 255, 0}});
    window.Choose(againstX);
    EXPECT_TRUE(IsNear(window.Picture(), {149, 100}, IsRed));
}

TEST_F(VolumeMeshes, TheVolumeHidesThePlaneAndTheBoxBehindItToo) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, [](auto...) { return Voxel{255, 255, 255, 255}; });
    window.Press(WXK_UP, 16);
    MovePlaneTo(window, 0.5);
    window.Choose(alongX);
    const wxImage fromInside = window.Picture();
    EXPECT_FALSE(IsNear(fromInside, {140, 100}, IsRed));
    EXPECT_FALSE(IsNear(fromInside, {54, 100}, IsBlue)) << "the back of the box";
    EXPECT_TRUE(IsNear(fromInside, {31, 100}, IsBlue)) << "its front";
    window.Choose(againstX);
    EXPECT_TRUE(IsNear(window.Picture(), {149, 100}, IsRed));
}

} // namespace
} // namespace zel::test
