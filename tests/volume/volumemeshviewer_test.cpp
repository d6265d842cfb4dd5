// Whole meshes in the volume window of a viewer.

#include "tests/overlay/labeled_viewer.h"
#include "tests/volume/volume_window.h"

namespace zel::test {
namespace {

using Byte = unsigned char;
constexpr int hidePlane = 10003, hideBox = 10004;

class VolumeMeshViewer : public GuiTest {};

/// A block of label 1; in later frames it is smaller.
std::unique_ptr<LabelImage<bool>> MakeBlocks() {
    return MakeLabels<bool>({8, 8, 8}, 3, [](auto x, auto y, auto z, auto t) {
        const std::size_t first = t == 0 ? 0 : 2;
        return x >= first && x < 4 && y >= first && y < 4 && z >= first && z < 4;
    });
}

/// A dark image of 8 x 8 x 8 and three frames, so that only meshes are seen.
struct BlockViewer : LabeledViewer<Byte, bool> {
    explicit BlockViewer(bool meshes, std::unique_ptr<LabelImage<bool>> blocks = MakeBlocks())
        : LabeledViewer(MakeImage<Byte>({8, 8, 8}, 3, [](auto...) { return 0; }), std::move(blocks)) {
        for (std::size_t t = 0; t < 3; ++t)
            labels->GetImage(t)->components[1] = {};
        canvas->SetTruePictures({.meshes = meshes});
        module->SetOverlaying(true);
    }

    vol3D_VolVisFrame& OpenVolume() const {
        const LogCatcher quiet;
        EXPECT_TRUE(frame->ProcessCommand(zel_CMD_VOLUME));
        vol3D_VolVisFrame* const volume = canvas->GetVolVisFrame();
        if (volume == nullptr)
            throw std::runtime_error("no volume window");
        Settle();
        EXPECT_TRUE(ResizeClient(*volume, {200, 200}));
        volume->ProcessCommand(hidePlane);
        volume->ProcessCommand(hideBox);
        return *volume;
    }
};

wxImage PictureOf(const vol3D_VolVisFrame& frame) {
    frame.GetCanvas()->Refresh(false);
    frame.GetCanvas()->Update();
    PassFrames(1);
    return frame.GetCanvas()->TakePicture();
}

/// The box round the pixels that are not black.
wxRect LitBox(const wxImage& picture) {
    wxRect box;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x)
            if (!IsBlack(ColourAt(picture, {x, y})))
                box.Union(wxRect(x, y, 1, 1));
    return box;
}

void ExpectBox(const wxRect& box, int left, int right, int top, int bottom) {
    EXPECT_NEAR(box.GetLeft(), left, 2);
    EXPECT_NEAR(box.GetRight(), right, 2);
    EXPECT_NEAR(box.GetTop(), top, 2);
    EXPECT_NEAR(box.GetBottom(), bottom, 2);
}

TEST_F(VolumeMeshViewer, AreOffAtFirst) {
    const BlockViewer viewer(false);
    EXPECT_FALSE(viewer.canvas->GetTruePictures().meshes);
    EXPECT_EQ(viewer.OpenVolume().GetCanvas()->GetMeshDrawing(), MeshDrawing::Halved);
}

TEST_F(VolumeMeshViewer, LieWhereTheLabelsAreAndFollowTheTime) {
    const BlockViewer viewer(true);
    const vol3D_VolVisFrame& volume = viewer.OpenVolume();
    EXPECT_EQ(volume.GetCanvas()->GetMeshDrawing(), MeshDrawing::Whole);
    // From -1 to 0 along each axis, row 0 at the bottom. Its front is in the middle: 274.75 / 5 = 55 to the left and
    // downwards. It begins at the image's border, and is closed there.
    ExpectBox(LitBox(PictureOf(volume)), 45, 100, 100, 155);
    volume.GetCanvas()->SetViewDirection(-5.0F, 0, 0, 1, 0, 1, 0);
    // From behind its face at -1, 4 away, is seen at the right.
    const wxImage behind = PictureOf(volume);
    ExpectBox(LitBox(behind), 100, 168, 100, 168);
    EXPECT_FALSE(IsBlack(ColourAt(behind, {134, 134}))) << "closed";
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    // From -0.5 to 0: the far corner is 4.5 away.
    ExpectBox(LitBox(PictureOf(volume)), 100, 130, 100, 130);
}

TEST_F(VolumeMeshViewer, StayInPlaceInAMirroredView) {
    const BlockViewer viewer(true);
    const vol3D_VolVisFrame& volume = viewer.OpenVolume();
    for (const int axis : {0, 1, 2})
        EXPECT_TRUE(viewer.canvas->ToggleAxisReverse(axis));
    viewer.canvas->UpdateVolVis();
    viewer.canvas->UpdateIsosurface();
    ExpectBox(LitBox(PictureOf(volume)), 45, 100, 100, 155);
}

TEST_F(VolumeMeshViewer, LabelsOfAnotherVoxelSizeLieWhereTheirMicronsSay) {
    const kep::Vector3d<float> offset(2, 0, 0);
    const kep::Resolution resolution(0.5F, 0.5F, 0.5F); // two microns a voxel
    auto coarse = std::make_unique<LabelImage<bool>>(false, &offset, &resolution);
    coarse->MakeRoom({3, 2, 2}, 3);
    FillLabels(*coarse, 0, [](auto x, auto...) { return x == 0 ? 1 : 0; });
    const BlockViewer viewer(true, std::move(coarse));
    // x from 2 to 4 microns of 8, y and z from 0 to 4: from -0.5 to 0, and from -1 to 0. Edges are slanted by half a
    // voxel, a quarter here, so the corners in front are at z = -0.25: 274.75 / 5.25 = 52.3 for each unit.
    ExpectBox(LitBox(PictureOf(viewer.OpenVolume())), 74, 100, 100, 152);
}

TEST_F(VolumeMeshViewer, AFrameWithoutLabelsHasNone) {
    const BlockViewer viewer(true);
    const vol3D_VolVisFrame& volume = viewer.OpenVolume();
    viewer.labels->GetImage(1)->MakeRoom(0, 0, 0);
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    EXPECT_TRUE(LitBox(PictureOf(volume)).IsEmpty());
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    ExpectBox(LitBox(PictureOf(volume)), 72, 100, 100, 128);
}

TEST_F(VolumeMeshViewer, AreHiddenWithTheLabels) {
    const BlockViewer viewer(true);
    const vol3D_VolVisFrame& volume = viewer.OpenVolume();
    viewer.module->SetOverlaying(false);
    zel_OverlayingEvent event(false, false);
    viewer.canvas->OverlayingChanged(event);
    EXPECT_TRUE(LitBox(PictureOf(volume)).IsEmpty());
}

TEST_F(VolumeMeshViewer, AWindowThatIsThereStaysAsItIs) {
    const BlockViewer viewer(false);
    vol3D_VolVisFrame& volume = viewer.OpenVolume();
    viewer.canvas->SetTruePictures({.meshes = true});
    viewer.canvas->UpdateIsosurface();
    EXPECT_EQ(viewer.OpenVolume().GetCanvas()->GetMeshDrawing(), MeshDrawing::Halved);
    volume.Close(true);
    Pump();
    viewer.canvas->UpdateIsosurface(); // there is no window
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    const vol3D_VolVisFrame& next = viewer.OpenVolume();
    EXPECT_EQ(next.GetCanvas()->GetMeshDrawing(), MeshDrawing::Whole);
    ExpectBox(LitBox(PictureOf(next)), 72, 100, 100, 128);
}

TEST_F(VolumeMeshViewer, TwoViewersUploadToTheirOwnWindows) {
    const BlockViewer first(true);
    const vol3D_VolVisFrame& firstVolume = first.OpenVolume();
    {
        const BlockViewer second(true);
        const vol3D_VolVisFrame& secondVolume = second.OpenVolume(); // its context is current now
        EXPECT_TRUE(first.canvas->ShowNextImage());
        ExpectBox(LitBox(PictureOf(firstVolume)), 72, 100, 100, 128);
        ExpectBox(LitBox(PictureOf(secondVolume)), 45, 100, 100, 155);
    }
    EXPECT_TRUE(first.canvas->ShowNextImage());
    first.canvas->UpdateIsosurface();
    ExpectBox(LitBox(PictureOf(firstVolume)), 72, 100, 100, 128);
}

} // namespace
} // namespace zel::test
