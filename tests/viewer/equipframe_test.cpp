// A frame that a host gives what most of them want.

#include "factory/zel_viewerfactory.h"
#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"
#include "viewer/zel_equipframe.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"

using namespace zel;
using namespace zel::test;

namespace {

class EquipFrameTest : public GuiTest {
protected:
    /// 40 x 30 x 10 voxels.
    void Make(const kep::Resolution& resolution) {
        auto image = MakeImage<unsigned char>(
            {40, 30, 10}, 1, [](std::size_t x, auto...) { return x; }, resolution);
        image->SetImageName(0, "somewhere/stack.tif");
        frame = zel_CreateImage3dFrame(image.get(), true, nullptr, wxID_ANY, "made", wxDefaultPosition, wxDefaultSize,
                                       wxDEFAULT_FRAME_STYLE);
        image.release();
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }
    zel_Viewer3dCanvas& Canvas() { return *frame->GetCanvas(); }

    zel_Viewer3dFrame* frame = nullptr;
};

} // namespace

TEST_F(EquipFrameTest, ShowsTrueProportionsInTwoThirdsOfTheDisplay) {
    Make({10, 10, 2}); // 4 x 3 x 5 microns
    EXPECT_TRUE(EquipFrame(*frame));
    const kep::Vector3d<float> scale = Canvas().GetScale();
    EXPECT_EQ(scale.x, scale.y);
    EXPECT_EQ(scale.x, scale.z);
    // 1600 x 1200: 9 microns take (1066 - 8) / 9 = 117.6 pixels, 8 microns (800 - 8) / 8 = 99; 9.5 pixels a voxel.
    EXPECT_FLOAT_EQ(scale.x, 95);
    ASSERT_TRUE(ShowAndWait(*frame));
    EXPECT_TRUE(WaitUntil([this] { return frame->GetTitle() == "stack.tif - 40 x 30 x 10 - 950%"; }))
        << frame->GetTitle();
    EXPECT_TRUE(WaitUntil([this] { return frame->GetClientSize() == Canvas().GetOptimalSize(); }));
    frame->ProcessCommand(zel_CMD_ZOOM_OUT);
    EXPECT_TRUE(WaitUntil([this] { return frame->GetTitle() == "stack.tif - 40 x 30 x 10 - 475%"; }))
        << frame->GetTitle();
}

TEST_F(EquipFrameTest, SaysThatVoxelsLikeNeedlesAreShownAsCubes) {
    Make({10, 10, 0.05F});
    EXPECT_FALSE(EquipFrame(*frame, {.trueProportions = true, .fillsDisplay = false}));
    EXPECT_EQ(Canvas().GetScale(), (kep::Vector3d<float>(10, 10, 0.05F)));
}

TEST_F(EquipFrameTest, LeavesOutWhatIsNotWanted) {
    Make({10, 10, 2});
    EXPECT_TRUE(EquipFrame(*frame, {.trueProportions = false, .fillsDisplay = false}));
    EXPECT_EQ(Canvas().GetScale(), (kep::Vector3d<float>(10, 10, 2))); // one pixel a voxel
}

TEST_F(EquipFrameTest, ShowsThePicturesAsTheyAre) {
    Make({10, 10, 2});
    EXPECT_FALSE(Canvas().GetTruePictures().scaleBar) << "unless asked for";
    EquipFrame(*frame);
    EXPECT_TRUE(Canvas().GetTruePictures().scaleBar);
    EXPECT_TRUE(Canvas().GetTruePictures().cutPointer);
    EXPECT_TRUE(Canvas().GetTruePictures().gallery);
    EXPECT_TRUE(Canvas().GetTruePictures().meshes);
}
