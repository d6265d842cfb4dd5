// Meshes that the volume window draws whole, read back from the screen.

#include <GL/glew.h> // before any header that brings OpenGL's own

#include "tests/volume/volume_window.h"
#include "volume/gl/zel_canvasattributes.h"
#include "volume/gl/zel_meshbuffers.h"

#include <cmath>
#include <functional>
#include <set>

namespace zel::test {
namespace {

using Colours = std::vector<kep::RGB_generic<unsigned char>>;
using Size3 = kep::Vector3d<std::size_t>;
using MakeLabel = std::function<unsigned short(std::size_t x, std::size_t y, std::size_t z)>;

constexpr int hidePlane = 10003, hideBox = 10004;
constexpr int alongX = 5007, againstX = 5008, alongZ = 5011, againstZ = 5012;
constexpr auto nothing = [](auto...) { return Voxel{}; };
const Colours onlyRed{{255, 0, 0}};
const Colours redAndGreen{{0, 0, 255}, {255, 0, 0}, {0, 255, 0}}; // label 1 red, 2 green

class VolumeMeshes : public GuiTest {};

void HideDecorationsOf(const VolumeWindow& window) {
    window.Choose(hidePlane);
    window.Choose(hideBox);
}

/// Makes a closed mesh of each label.
void MakeMeshes(IsosurfaceGenerator& generator, const Size3& size, const Vector3f& cell, const MakeLabel& makeLabel) {
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
void ShowMeshes(vol3D_VolVisCanvas& canvas, const Size3& size, const kep::Resolution& resolution,
                const Colours& colours, const MakeLabel& makeLabel) {
    const VoxelGrid grid{size, {0, 0, 0}, resolution};
    const MeshPlacement placement = PlaceMeshes(grid, grid);
    IsosurfaceGenerator generator;
    MakeMeshes(generator, size, placement.cell, makeLabel);
    canvas.SetSurfaceColours(true, colours);
    ASSERT_TRUE(canvas.MakeCurrent());
    canvas.SetWholeIsosurfaces(generator, placement.toObject);
}
void ShowMeshes(const VolumeWindow& window, std::size_t n, const Colours& colours, const MakeLabel& makeLabel) {
    ShowMeshes(window.Canvas(), {n, n, n}, {1, 1, 1}, colours, makeLabel);
}

/// The middle half of a volume of 8: from -0.5 to 0.5 in the object.
unsigned short Cube(std::size_t x, std::size_t y, std::size_t z) {
    const auto inside = [](std::size_t i) { return i >= 2 && i < 6; };
    return inside(x) && inside(y) && inside(z) ? 1 : 0;
}

/// Seen with an edge in front, halfway between the faces at the ends of y, above, and z.
void LookFromAbove(vol3D_VolVisCanvas& canvas) {
    const float h = std::sqrt(0.5F);
    canvas.SetViewDirection(-5.0F, 0, -h, -h, 0, h, -h);
}

int Brightness(const wxColour& c) {
    return c.Red() + c.Green() + c.Blue();
}

/// Pixels that differ from the background.
std::vector<wxPoint> LitPixels(const wxImage& picture) {
    std::vector<wxPoint> lit;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x)
            if (Brightness(ColourAt(picture, {x, y})) > 40)
                lit.emplace_back(x, y);
    return lit;
}

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

/// That a square of the window's middle is full of red, but for its corners, and that all beyond is background. A
/// cube's edges are slanted over half a voxel, and dark where they look down.
void ExpectRedSquare(const wxImage& picture, int inner, int outer, int corner) {
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

/// Label 1 behind, 2 in front, as seen at first.
unsigned short TwoSlabs(std::size_t x, std::size_t y, std::size_t z) {
    if (x < 2 || x >= 6 || y < 2 || y >= 6)
        return 0;
    return z == 1 ? 1 : z == 6 ? 2 : 0;
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

TEST_F(VolumeMeshes, WithMoreVerticesThan16BitsNumberAreWhole) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    // 28 voxels of the labels are as long as one of the image. They fill its middle half.
    const VoxelGrid image{{8, 8, 8}, {0, 0, 0}, {1, 1, 1}}, labels{{112, 112, 112}, {2, 2, 2}, {28, 28, 28}};
    const MeshPlacement placement = PlaceMeshes(image, labels);
    IsosurfaceGenerator generator;
    MakeMeshes(generator, labels.size, placement.cell, [](auto...) -> unsigned short { return 1; });
    // 112 * 112 vertices on each face.
    EXPECT_EQ(generator.GetSurfaces()[0].GetVertexCount(), 75264U);
    window.Canvas().SetSurfaceColours(true, onlyRed);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    window.Canvas().SetWholeIsosurfaces(generator, placement.toObject);
    for (int command = alongX; command <= againstZ; ++command) {
        SCOPED_TRACE(command);
        window.Choose(command);
        ExpectRedSquare(window.Picture(), 28, 33, 0);
    }
}

TEST_F(VolumeMeshes, ThatTakeSeveralCallsAreWhole) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    // 141 slices of labels reach from -0.5 to 0.5.
    const VoxelGrid image{{8, 8, 8}, {0, 0, 0}, {1, 1, 1}};
    const VoxelGrid labels{{101, 101, 141}, {2, 2, 2}, {35.25F, 35.25F, 35.25F}};
    const MeshPlacement placement = PlaceMeshes(image, labels);
    IsosurfaceGenerator generator;
    // 51 * 51 * 51 voxels that touch nothing have eight triangles each, four on either side. The last slice of them
    // stands apart. Of the four of its first side the first call has 1048576 - 50 * 20808 = 8176 of 10404: the upper
    // 0.79 of the rows as they are seen.
    MakeMeshes(generator, labels.size, placement.cell, [](auto x, auto y, auto z) -> unsigned short {
        return x % 2 == 0 && y % 2 == 0 && z % 2 == 0 && (z < 100 || z == 140) ? 1 : 0;
    });
    ASSERT_EQ(generator.GetSurfaces()[0].GetTriangleCount(), 1061208U);
    ASSERT_EQ(SplitTriangles(1061208U, trianglesPerCall).size(), 2U);
    window.Canvas().SetSurfaceColours(true, onlyRed);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    window.Canvas().SetWholeIsosurfaces(generator, placement.toObject);
    // Seen along x it is at the right, from 274.75 * 0.5 / 5.2 = 26 to 274.75 * 0.5 / 4.5 = 31 from the middle; the
    // others reach to 0.2, or 12. Its rows go down from 0.216 to -0.5, where they are 30 below the middle at 4.5. The
    // first call ends at -0.35: 21 below.
    window.Choose(alongX);
    std::set<int> above, below;
    for (const wxPoint& at : LitPixels(window.Picture()))
        if (at.x > 120)
            (at.y <= 122 ? above : below).insert(at.y);
    EXPECT_GE(above.size(), 25U) << "rows of 36; a voxel is smaller than a pixel, so some meet none";
    EXPECT_GE(below.size(), 4U) << "rows of 8";
}

/// How many of OpenGL's names are those of buffers.
int CountBuffers() {
    int count = 0;
    for (unsigned name = 1; name < 20000; ++name)
        count += glIsBuffer(name) != 0 ? 1 : 0;
    return count;
}

TEST_F(VolumeMeshes, ReplacedManyTimesTheyLeaveNoBuffersBehind) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    for (int i = 0; i < 50; ++i)
        ShowMeshes(window, 8, redAndGreen, TwoSlabs);
    EXPECT_EQ(CountBuffers(), 6) << "vertices, normals and indices of two";
    window.Picture();
    ShowMeshes(window, 8, redAndGreen, Cube);
    EXPECT_EQ(CountBuffers(), 3);
    ShowMeshes(window, 8, redAndGreen, [](auto...) -> unsigned short { return 0; });
    EXPECT_EQ(CountBuffers(), 0);
    HideDecorationsOf(window);
    EXPECT_TRUE(LitPixels(window.Picture()).empty());
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(VolumeMeshes, APaintLeavesNoErrorAndNoStateBehind) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, [](auto...) { return Voxel{9, 9, 9, 255}; });
    ShowMeshes(window, 8, redAndGreen, TwoSlabs);
    window.Picture();
    window.Choose(alongX); // the plane is behind
    window.Picture();
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    for (const unsigned off : {unsigned{GL_ALPHA_TEST}, unsigned{GL_CLIP_PLANE0}, unsigned{GL_TEXTURE_3D},
                               unsigned{GL_TEXTURE_GEN_S}, unsigned{GL_TEXTURE_GEN_R}, unsigned{GL_LIGHTING},
                               unsigned{GL_CULL_FACE}, unsigned{GL_VERTEX_ARRAY}, unsigned{GL_NORMAL_ARRAY}})
        EXPECT_FALSE(glIsEnabled(off)) << off;
    GLint value = -1;
    glGetIntegerv(GL_DEPTH_WRITEMASK, &value);
    EXPECT_EQ(value, GL_TRUE) << "or the next picture is not cleared";
    glGetIntegerv(GL_FRONT_FACE, &value);
    EXPECT_EQ(value, GL_CCW);
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &value);
    EXPECT_EQ(value, 1);
    glGetIntegerv(GL_DEPTH_BITS, &value);
    EXPECT_GE(value, 16);
}

/// A mesh that says it has so many, and has nothing.
std::vector<LabelSurface> HollowMesh(std::uint64_t vertexCount, std::uint64_t triangleCount) {
    detail::SurfaceArrays arrays;
    arrays.vertices.Append(3 * vertexCount);
    arrays.normals.Append(3 * vertexCount);
    arrays.indices.Append(3 * triangleCount);
    std::vector<LabelSurface> meshes;
    meshes.emplace_back(static_cast<unsigned short>(7), std::move(arrays));
    return meshes;
}

TEST_F(VolumeMeshes, ThatOpenGLCannotTakeAreLeftOut) {
    const VolumeWindow window(MeshDrawing::Whole);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    MeshBuffers buffers;
    EXPECT_EQ(buffers.Upload(HollowMesh(std::uint64_t{1} << 32, 1), identityMatrix), std::vector<std::uint64_t>{7})
        << "32 bits do not number its vertices";
    EXPECT_EQ(buffers.Upload(HollowMesh(3, std::uint64_t{1} << 40), identityMatrix), std::vector<std::uint64_t>{7})
        << "13 terabytes of indices";
    EXPECT_EQ(CountBuffers(), 0);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    buffers.Draw({}, true);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(VolumeMeshes, ErrorsOfOtherCallsAreNotTakenForTheirs) {
    const VolumeWindow window(MeshDrawing::Whole);
    window.Show(8, nothing);
    HideDecorationsOf(window);
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    glEnable(0xFFFF); // a host's mistake
    const LogCatcher log;
    ShowMeshes(window, 8, onlyRed, Cube);
    EXPECT_TRUE(log.GetEntries().empty());
    ExpectRedSquare(window.Picture(), 27, 33, 6);
}

/// A window without a depth buffer.
struct FlatWindow {
    FlatWindow() {
        frame->SetClientSize({200, 200});
        const LogCatcher quiet;
        EXPECT_TRUE(canvas->Init());
        Settle();
    }
    ~FlatWindow() {
        frame->Destroy();
        Pump();
    }
    FlatWindow(const FlatWindow&) = delete;
    FlatWindow& operator=(const FlatWindow&) = delete;

    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "flat", wxDefaultPosition, {300, 300});
    vol3D_VolVisCanvas* canvas = new vol3D_VolVisCanvas(nullptr, frame, wxID_ANY, {0, 0}, {200, 200}, 0, "flat",
                                                        vol3D_VolVisCanvas::attributes, MeshDrawing::Whole);
};

TEST_F(VolumeMeshes, WithoutADepthBufferEachIsStillWhole) {
    const FlatWindow window;
    vol3D_VolVisCanvas& canvas = *window.canvas;
    ASSERT_TRUE(canvas.MakeCurrent());
    GLint depth = -1;
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    ASSERT_EQ(depth, 0);
    const std::vector<unsigned char> voxels(4 * 10 * 10 * 10, 0);
    canvas.SetVolumeData(voxels.data(), {10, 10, 10}, ComputeVolumeScale({8, 8, 8}, {1, 1, 1}));
    ShowMeshes(canvas, {8, 8, 8}, {1, 1, 1}, onlyRed, Cube);
    canvas.SetShowPlane(false);
    canvas.SetShowBox(false);
    const int middle = canvas.GetClientSize().y / 2;
    const float h = std::sqrt(0.5F);
    // The upper and the lower face that are seen, and not the insides of those behind them, which are lit the other way
    // round. Whatever the order of triangles: also from behind and from below.
    for (const auto& [forward, up] : {ViewDirection{{0, -h, -h}, {0, h, -h}},
                                      {{0, -h, h}, {0, h, h}},
                                      {{0, h, h}, {0, h, -h}},
                                      {{0, h, -h}, {0, h, h}}}) {
        canvas.SetViewDirection(-5.0F, forward.x, forward.y, forward.z, up.x, up.y, up.z);
        const wxImage picture = canvas.TakePicture();
        ASSERT_TRUE(picture.IsOk());
        const int x = picture.GetWidth() / 2, away = 18 * picture.GetHeight() / 200;
        EXPECT_NEAR(ColourAt(picture, {x, middle - away}).Red(), 0.932 * 255, 3) << forward.y << forward.z;
        EXPECT_NEAR(ColourAt(picture, {x, middle + away}).Red(), 0.655 * 255, 3) << forward.y << forward.z;
    }
    // The box is drawn over all, as it is without meshes.
    canvas.SetShowBox(true);
    canvas.SetViewDirection(-5.0F, 0, 0, -1, 0, 1, 0);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(VolumeMeshes, TheDeepestDepthBufferIsAskedFor) {
    using Lists = std::vector<const int*>;
    const int* const none = vol3D_VolVisCanvas::attributes;
    const int* const deep = vol3D_VolVisCanvas::attributesWithDepth;
    const int* const shallow = vol3D_VolVisCanvas::attributesWithSmallDepth;
    EXPECT_EQ(deep[2], WX_GL_DEPTH_SIZE);
    EXPECT_EQ(deep[3], 24);
    EXPECT_EQ(shallow[3], 16);
    Lists asked;
    const auto choose = [&](MeshDrawing drawing, const Lists& supported) {
        asked.clear();
        return ChooseCanvasAttributes(drawing, [&](const int* list) {
            asked.push_back(list);
            return std::find(supported.begin(), supported.end(), list) != supported.end();
        });
    };
    LogCatcher log;
    EXPECT_EQ(choose(MeshDrawing::Halved, {deep, shallow}), none);
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(choose(MeshDrawing::Whole, {deep, shallow}), deep);
    EXPECT_EQ(choose(MeshDrawing::Whole, {shallow}), shallow);
    EXPECT_EQ(asked, (Lists{deep, shallow}));
    EXPECT_TRUE(log.GetEntries().empty());
    EXPECT_EQ(choose(MeshDrawing::Whole, {}), none);
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{{wxLOG_Warning, "This display has no depth buffer for OpenGL. Meshes are drawn one "
                                                   "over the other."}}));
    EXPECT_EQ(vol3D_VolVisCanvas::ChooseAttributes(MeshDrawing::Whole), deep) << "this display has one";
    EXPECT_EQ(vol3D_VolVisCanvas::ChooseAttributes(MeshDrawing::Halved), none);
}

} // namespace
} // namespace zel::test
