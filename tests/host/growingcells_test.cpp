// The program's own cells, of which a window shows the first frame while the others are painted.

#include "host/growingcells.h"
#include "host/opening.h"
#include "mapping/zel_graymapping.h"
#include "overlay/zel_basicoverlayingmodule.h"
#include "tests/support/gui_test.h"
#include "viewer/zel_imagecanvas3d.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace zelviewer {
namespace {

using namespace zel;
using namespace zel::test;
using Image = mor::Image4d<unsigned short>;

class GrowingCells : public GuiTest {
protected:
    void SetUp() override { frame = MakeGrowingCells({}); }
    void TearDown() override {
        if (frame)
            frame->Destroy();
        GuiTest::TearDown();
    }
    zel_ImageViewer3dCanvas<unsigned short>& Canvas() {
        return dynamic_cast<zel_ImageViewer3dCanvas<unsigned short>&>(*frame->GetCanvas());
    }
    const Image& GetImage() { return *Canvas().GetImage(); }
    bool IsPainted(std::size_t t) {
        const auto& shown = *GetImage()[t];
        return std::any_of(shown.begin(), shown.end(), [](unsigned short voxel) { return voxel != 0; });
    }
    template <typename Module>
    Module& Find() {
        for (wxEvtHandler* handler = frame->GetEventHandler(); handler; handler = handler->GetNextHandler())
            if (auto* const module = dynamic_cast<Module*>(handler))
                return *module;
        throw std::logic_error("no such module");
    }
    std::size_t CountedVoxels() {
        const auto& histogram = Find<zel_GrayMappingModule<unsigned short>>().GetHistograms().Get();
        return std::accumulate(histogram.begin(), histogram.end(), std::size_t{0});
    }

    wxWeakRef<zel_Viewer3dFrame> frame;
};

TEST_F(GrowingCells, AreWholeInTheEnd) {
    EXPECT_EQ(GetImage().GetNumFrames(), 10U);
    EXPECT_TRUE(IsPainted(0));
    EXPECT_FALSE(IsPainted(9)); // no event has come yet
    EXPECT_EQ(CountedVoxels(), GetImage().GetFrameSize());
    ASSERT_TRUE(ShowAndWait(*frame));
    ASSERT_TRUE(WaitUntil([&] { return IsPainted(9) && CountedVoxels() == 10 * GetImage().GetFrameSize(); }));

    const LabeledCells whole = OpenSyntheticCells();
    const auto& overlayer = Find<zel_BasicOverlayingModule<unsigned short, unsigned short>>();
    for (std::size_t t = 0; t < 10; ++t) {
        EXPECT_TRUE(std::equal(GetImage()[t]->begin(), GetImage()[t]->end(), (*whole.image)[t]->begin())) << t;
        const auto* const labels = overlayer.GetLabeledImage(false, false, t);
        ASSERT_NE(labels, nullptr) << t;
        EXPECT_EQ(labels->components, whole.labels->GetImage(t)->components) << t;
        EXPECT_EQ(GetImage().GetImageName(t), whole.image->GetImageName(t));
    }
    EXPECT_EQ(GetImage().GetExtremes(), whole.image->GetExtremes());
    EXPECT_EQ(GetImage().TestConsistency(), 0);
}

TEST_F(GrowingCells, ShowTheFrameThatTheUserIsAt) {
    ASSERT_TRUE(ShowAndWait(*frame));
    Canvas().GoToFrame(9);
    ASSERT_TRUE(WaitUntil([&] { return IsPainted(9); }));
    zel_DrWin3d& window = *Canvas().GetDrWin(zel_PT_XY);
    EXPECT_TRUE(WaitUntil([&] {
        const wxImage picture = Screen(window);
        int bright = 0;
        for (int y = 10; y < picture.GetHeight() - 60; y += 3)
            for (int x = 10; x < picture.GetWidth() - 60; x += 3)
                bright += picture.GetRed(x, y) > 100 && picture.GetRed(x, y) == picture.GetGreen(x, y);
        return bright > 20;
    }));
}

TEST_F(GrowingCells, MayBeClosedWhileTheyArePainted) {
    ASSERT_TRUE(ShowAndWait(*frame));
    frame->Close(true);
    EXPECT_TRUE(WaitUntil([&] { return !frame; }));
}

TEST_F(GrowingCells, MayGoBeforeTheyWereShown) {
    frame->Destroy();
    EXPECT_TRUE(WaitUntil([&] { return !frame; }));
}

} // namespace
} // namespace zelviewer
