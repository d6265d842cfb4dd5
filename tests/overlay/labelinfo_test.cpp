// The label under the pointer.

#include "tests/overlay/labeled_viewer.h"
#include "tests/viewer/info_fixture.h"

#include <random>

using namespace zel;
using namespace zel::test;

namespace {

using Texts = std::vector<std::string>;
using Size3 = kep::Vector3d<std::size_t>;
using Viewer = LabeledViewer<unsigned char, bool>;

const Size3 size{20, 16, 9};

/// Each voxel has a label of its own, and so is a boundary, too.
std::size_t Label(std::size_t x, std::size_t y, std::size_t z) {
    return 1 + x + 20 * (y + 16 * z);
}

std::string LabelText(const Size3& at) {
    return std::to_string(Label(at.x, at.y, at.z));
}

class LabelInfo : public GuiTest {
protected:
    /// In the middle voxel (10, 8, 4), at one pixel a voxel: XY is 20 by 16 pixels, XZ 20 by 9, YZ 9 by 16.
    void SetUp() override {
        viewer = std::make_unique<Viewer>(
            PlainImage(size, 2),
            MakeLabels<bool>(size, 1, [](auto x, auto y, auto z, auto) { return Label(x, y, z); }));
        viewer->Choose(0); // show them
        Paint();
    }
    void TearDown() override {
        viewer.reset();
        GuiTest::TearDown();
    }
    void Paint() {
        Settle();
        viewer->canvas->Update();
    }
    std::string LabelAt(zel_ProjectionType type, int x, int y) {
        wxString text = "as it was";
        viewer->canvas->GetLabelInfo(type, x, y, text);
        return text.utf8_string();
    }
    void ShowInfo() {
        viewer->Run(zel_CMD_SHOW_INFO);
        Settle();
    }
    std::string OverlayText() { return InfoText(*viewer->canvas, 10016); }

    std::unique_ptr<Viewer> viewer;
};

} // namespace

TEST_F(LabelInfo, ThePixelPageHasARowMore) {
    ShowInfo();
    EXPECT_EQ(viewer->canvas->InfoFrame_Get()->GetTitle(), "Info frame");
    EXPECT_EQ(viewer->canvas->InfoFrame_Get()->GetMaxSize(), wxSize(380, 200));
    const Texts texts = PageTexts(*viewer->canvas, 0);
    ASSERT_EQ(texts.size(), 10U);
    EXPECT_EQ(texts[4], "10000 Original value:");
    EXPECT_EQ(texts[6], "10000 Overlay value:");
    EXPECT_EQ(texts[7].substr(0, 6), "10016 ");
    EXPECT_EQ(texts[8], "10000 Mapped colour:");
    EXPECT_EQ(PageTexts(*viewer->canvas, 1).size(), 8U);
    EXPECT_EQ(PageTexts(*viewer->canvas, 2).size(), 10U);
    EXPECT_EQ(In(*viewer->canvas->InfoFrame_Get(), 10005).GetSize(), wxSize(30, 20));
}

TEST_F(LabelInfo, TheRowFollowsThePointer) {
    ShowInfo();
    viewer->canvas->InfoFrame_Get()->Move(1200, 900);
    for (const Plane& plane : planes) {
        MovePointerTo(*viewer->canvas->GetDrWin(plane.type), {3, 7});
        const auto info = viewer->canvas->GetPixelInfo(plane.type, {3, 7});
        ASSERT_TRUE(info);
        EXPECT_EQ(OverlayText(), LabelText(info->voxel));
        EXPECT_EQ(InfoText(*viewer->canvas, 10003), "100");
    }
    MovePointer({1590, 1190});
    EXPECT_EQ(OverlayText(), "---");
    EXPECT_EQ(InfoText(*viewer->canvas, 10003), "---");
}

TEST_F(LabelInfo, LabelsAreThoseOfTheVoxelThatIsShown) {
    std::mt19937 random(3);
    const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    auto& canvas = *viewer->canvas;
    for (int round = 0; round < 12; ++round) {
        round < 9 ? canvas.ZoomIn() : canvas.NormalZoom();
        canvas.ChangeCut({static_cast<float>(below(20)) + 0.4F, static_cast<float>(below(16)) + 0.4F,
                          static_cast<float>(below(9)) + 0.4F});
        canvas.Apply(canvas.GetView().CentreOnCut());
        Paint();
        for (const Plane& plane : planes)
            for (int i = 0; i < 40; ++i) {
                const wxSize client = canvas.GetDrWin(plane.type)->GetClientSize();
                const wxPoint pixel(below(client.x), below(client.y));
                const auto info = canvas.GetPixelInfo(plane.type, pixel);
                ASSERT_TRUE(info);
                ASSERT_EQ(LabelAt(plane.type, pixel.x, pixel.y), LabelText(info->voxel));
            }
    }
}

TEST_F(LabelInfo, AllWindowsAreMirroredByTheXYPicture) {
    auto& canvas = *viewer->canvas;
    canvas.ToggleAxisReverse(0);
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), LabelText({16, 7, 4})); // 20 - 3 - 1
    EXPECT_EQ(LabelAt(zel_PT_XZ, 3, 7), LabelText({16, 8, 7}));
    EXPECT_EQ(LabelAt(zel_PT_YZ, 3, 7), LabelText({10, 7, 3}));
    canvas.ToggleAxisReverse(0);
    canvas.ToggleAxisReverse(1);
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), LabelText({3, 8, 4})); // 16 - 7 - 1
    EXPECT_EQ(LabelAt(zel_PT_XZ, 3, 7), LabelText({3, 8, 7}));
    // In YZ by the width of XY: 20 - 7 - 1 = 12, where the picture shows 16 - 7 - 1 = 8.
    EXPECT_EQ(LabelAt(zel_PT_YZ, 3, 7), LabelText({10, 12, 3}));
    EXPECT_EQ(canvas.GetPixelInfo(zel_PT_YZ, {3, 7})->voxel, Size3(10, 8, 3));
    EXPECT_EQ(LabelAt(zel_PT_YZ, 3, 3), "---"); // 20 - 3 - 1 = 16
    canvas.ToggleAxisReverse(1);
    canvas.ToggleAxisReverse(2);
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), LabelText({3, 7, 4}));
    // In XZ and YZ by the height of XY: 16 - 7 - 1 = 8, where the pictures show 9 - 7 - 1 = 1.
    EXPECT_EQ(LabelAt(zel_PT_XZ, 3, 7), LabelText({3, 8, 8}));
    EXPECT_EQ(canvas.GetPixelInfo(zel_PT_XZ, {3, 7})->voxel, Size3(3, 8, 1));
    EXPECT_EQ(LabelAt(zel_PT_YZ, 7, 3), LabelText({10, 3, 8}));
    EXPECT_EQ(LabelAt(zel_PT_XZ, 3, 6), "---"); // 16 - 6 - 1 = 9
    EXPECT_EQ(LabelAt(zel_PT_YZ, 6, 3), "---");
}

TEST_F(LabelInfo, OutsideThePictureThereIsNone) {
    for (const Plane& plane : planes) {
        const wxSize client = viewer->canvas->GetDrWin(plane.type)->GetClientSize();
        EXPECT_EQ(LabelAt(plane.type, -1, 0), "---");
        EXPECT_EQ(LabelAt(plane.type, 0, -1), "---");
        EXPECT_EQ(LabelAt(plane.type, client.x, 0), "---");
        EXPECT_EQ(LabelAt(plane.type, 0, client.y), "---");
    }
    for (const int type : {0, 3, 7})
        EXPECT_EQ(LabelAt(static_cast<zel_ProjectionType>(type), 3, 7), "as it was");
}

TEST_F(LabelInfo, AFrameWithoutLabelsHasNone) {
    ShowInfo();
    MovePointerTo(*viewer->canvas->GetDrWin(zel_PT_XY), {3, 7});
    ASSERT_EQ(OverlayText(), LabelText({3, 7, 4}));
    PressKey(*viewer->canvas->GetDrWin(zel_PT_XY), '=');
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), "---") << "not those of the frame before";
    Paint();
    EXPECT_EQ(OverlayText(), "---");
    EXPECT_EQ(InfoText(*viewer->canvas, 10003), "101");
    PressKey(*viewer->canvas->GetDrWin(zel_PT_XY), '-');
    Paint();
    EXPECT_EQ(OverlayText(), LabelText({3, 7, 4}));
}

TEST_F(LabelInfo, AutofocusTellsTheProjectedLabel) {
    viewer->canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), "---") << "until it is painted";
    Paint();
    // The largest label along a line is that of its last voxel.
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), LabelText({3, 7, 8}));
    EXPECT_EQ(LabelAt(zel_PT_XZ, 3, 7), LabelText({3, 15, 7}));
    EXPECT_EQ(LabelAt(zel_PT_YZ, 3, 7), LabelText({19, 7, 3}));
    viewer->canvas->ChangeContent(zel_PC_CUT, zel_PT_ALL);
    Paint();
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), LabelText({3, 7, 4}));
}

TEST_F(LabelInfo, LabelsAreToldWhileTheyAreHidden) {
    viewer->Choose(0);
    Paint();
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), LabelText({3, 7, 4}));
}

TEST_F(LabelInfo, AViewerThatGoesHasNone) {
    ShowInfo();
    viewer->frame->Destroy();
    viewer->image.reset();
    viewer->labels.reset();
    EXPECT_EQ(LabelAt(zel_PT_XY, 3, 7), "as it was");
    viewer->canvas->InfoFrame_UpdatePixelInfo();
}
