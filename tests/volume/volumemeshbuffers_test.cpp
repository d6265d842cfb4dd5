// Large meshes, the buffers of meshes, and windows with and without depth.

#include <GL/glew.h> // before any header that brings OpenGL's own

#include "tests/volume/whole_meshes.h"
#include "volume/gl/zel_canvasattributes.h"
#include "volume/gl/zel_meshbuffers.h"

namespace zel::test {
namespace {

class VolumeMeshBuffers : public GuiTest {};

TEST_F(VolumeMeshBuffers, WithMoreVerticesThan16BitsNumberAreWhole) {
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

TEST_F(VolumeMeshBuffers, ThatTakeSeveralCallsAreWhole) {
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

TEST_F(VolumeMeshBuffers, ReplacedManyTimesTheyLeaveNoBuffersBehind) {
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

TEST_F(VolumeMeshBuffers, APaintLeavesNoErrorAndNoStateBehind) {
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

TEST_F(VolumeMeshBuffers, ThatOpenGLCannotTakeAreLeftOut) {
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

TEST_F(VolumeMeshBuffers, ErrorsOfOtherCallsAreNotTakenForTheirs) {
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

TEST_F(VolumeMeshBuffers, WithoutADepthBufferEachIsStillWhole) {
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
    // The box is drawn over all: also over a slab that hides its back elsewhere. That is seen 45.8 from the middle.
    ShowMeshes(canvas, {8, 8, 8}, {1, 1, 1}, onlyRed,
               [](auto, auto, auto z) -> unsigned short { return z >= 2 && z < 6 ? 1 : 0; });
    canvas.SetShowBox(true);
    canvas.SetViewDirection(-5.0F, 0, 0, -1, 0, 1, 0);
    const wxImage picture = canvas.TakePicture();
    const int back = (picture.GetWidth() - static_cast<int>(0.458 * picture.GetHeight())) / 2;
    EXPECT_TRUE(IsNear(picture, {back, middle}, IsBlue));
    EXPECT_GT(ColourAt(picture, {back + 5, middle}).Red(), 150);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(VolumeMeshBuffers, TheDeepestDepthBufferIsAskedFor) {
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
