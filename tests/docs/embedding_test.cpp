// What docs/embedding.md shows does what it says: its code is compiled from the files here, and the order of the events
// that it tells of is looked at.

#include "mapping/zel_mappingevents.h"
#include "overlay/zel_labeledimagecanvas3d.h"
#include "tests/docs/hosting.h"
#include "tests/docs/inverted_grays.h"
#include "tests/docs/slice_picture.h"
#include "tests/docs/voxel_mark.h"
#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"
#include "viewer/zel_commands.h"

#include <atomic>
#include <thread>

using namespace zel;
using namespace zel::docs;
using namespace zel::test;

namespace {

std::unique_ptr<mor::Image4d<unsigned char>> Ramp(std::size_t frames = 1) {
    return MakeImage<unsigned char>({9, 8, 5}, frames, [](auto x, auto y, auto z, auto t) {
        return 1 + x + 10 * y + 20 * z + 5 * t; // 1 to 9 + 70 + 80 + ...
    });
}

class EmbeddingTest : public GuiTest {
protected:
    void Show(zel_Viewer3dFrame* made) {
        frame = made;
        HideDecorations(*frame->GetCanvas());
        ASSERT_TRUE(ShowAndWait(*frame));
        Settle();
    }
    void TearDown() override {
        if (frame)
            frame->Destroy();
        GuiTest::TearDown();
    }
    wxColour Pixel(zel_ProjectionType type, const wxPoint& at) {
        frame->GetCanvas()->Update();
        return ColourAt(frame->GetCanvas()->GetDrWin(type)->GetPointerImage(), at);
    }
    /// Does what the toolkit does when the entry is chosen.
    void Choose(const wxString& label) {
        wxMenuBar& bar = *frame->GetMenuBar();
        const int id = bar.FindMenuItem("Mapping", label);
        ASSERT_NE(id, wxNOT_FOUND);
        EXPECT_TRUE(frame->ProcessCommand(id));
    }

    wxWeakRef<zel_Viewer3dFrame> frame;
};

wxColour Gray(int level) {
    const auto byte = static_cast<unsigned char>(level);
    return {byte, byte, byte};
}

} // namespace

TEST_F(EmbeddingTest, AViewerMadeByHandShowsItsImage) {
    Show(OpenByHand(Ramp(), "by hand", {}));
    EXPECT_EQ(frame->GetTitle(), "by hand");
    EXPECT_EQ(frame->GetMenuBar()->GetMenuCount(), 3U);
    EXPECT_EQ(frame->GetCanvas()->GetDrWin(zel_PT_XY)->GetClientSize(), wxSize(9, 8));
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(1 + 3 + 20 + 40)); // the cut is in the middle slice
}

TEST_F(EmbeddingTest, WhatCannotBeShownLeavesNoFrameBehind) {
    const kep::Vector3d<std::size_t> size{3, 3, 3};
    EXPECT_THROW(OpenByHand(MakeImage<float>(size, 1, [](auto...) { return 4; }), "constant", {}),
                 kep::InternalException);
    Settle(); // the notice on the screen goes in its own time
    EXPECT_TRUE(wxTopLevelWindows.empty());
    zel_MapperOptions options;
    options.acceptsConstant = true;
    Show(OpenByHand(MakeImage<float>(size, 1, [](auto...) { return 4; }), "constant", options));
}

TEST_F(EmbeddingTest, TheInvertedMappingTellsTheCanvasThenTheHost) {
    auto image = Ramp();
    auto* const made =
        new zel_Viewer3dFrame(nullptr, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    HistogramSet<unsigned char> histograms(*image->GetImage(0));
    auto* const module = new InvertedGrays<unsigned char>(made, histograms);
    made->AddExtensionModule(module, "&Mapping", true);
    made->SetCanvas(new zel_ImageViewer3dCanvas<unsigned char>(made, *module, image.release(), true, wxID_ANY,
                                                               wxDefaultPosition, wxDefaultSize));
    Show(made);
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(64));
    std::vector<std::string> told;
    frame->Bind(zel_EVT_MAPPING_CHANGED, [&](zel_MappingEvent& event) {
        told.push_back(event.IsCommitted() ? "changed" : "preview");
        event.Skip();
    });
    frame->Bind(zel_EVT_MAPPING_COMMAND, [&](zel_MappingCommandEvent& event) {
        EXPECT_EQ(event.GetClientData(), static_cast<zel_ExtensionModule*>(module));
        told.emplace_back("command");
    });
    Choose("Inverted");
    EXPECT_EQ(told, (std::vector<std::string>{"changed", "command"}));
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(255 - 64));
    Choose("Inverted");
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(64));
    // Its id is the last of the module: the next module's menu begins behind it.
    EXPECT_EQ(frame->GetMenuBar()->FindMenuItem("Mapping", "Inverted"), frame->GetNextMenuId());
}

TEST_F(EmbeddingTest, TheMarkIsSeenWhereItsVoxelIs) {
    auto image = Ramp(2);
    VoxelMark mark(image->GetOffset(), image->GetResolution(), {3, 2, 2}, 0);
    std::unique_ptr<zel_MappingModule<unsigned char>> module(zel_CreateMapperForType<unsigned char>(nullptr, *image));
    auto* const made =
        new zel_Viewer3dFrame(nullptr, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    const zel_Mapper<unsigned char>& mapper = *module;
    made->AddExtensionModule(module.release(), "&Mapping", true);
    made->SetCanvas(new zel_LabeledImageViewer3dCanvas<unsigned char, unsigned short, unsigned char>(
        made, mapper, mark, image.release(), true, wxID_ANY, wxDefaultPosition, wxDefaultSize));
    Show(made);
    zel_Viewer3dCanvas& canvas = *frame->GetCanvas();
    const wxColour red(255, 0, 0);
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), red);
    EXPECT_EQ(Pixel(zel_PT_XY, {4, 2}), Gray(65));
    EXPECT_EQ(Pixel(zel_PT_XZ, {3, 2}), Gray(1 + 3 + 40 + 40)) << "the cut is at y = 4";
    canvas.ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    EXPECT_EQ(Pixel(zel_PT_XZ, {3, 2}), red);
    EXPECT_EQ(Pixel(zel_PT_YZ, {2, 2}), red);
    canvas.ChangeContent(zel_PC_CUT, zel_PT_ALL);
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), red);
    mark.MoveTo({0, 7, 2});
    zel_OverlayingEvent recoloured;
    frame->ProcessWindowEvent(recoloured);
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), red) << "new colours for the labels that are there";
    zel_OverlayingEvent changed(true, true);
    frame->ProcessWindowEvent(changed);
    EXPECT_EQ(Pixel(zel_PT_XY, {0, 7}), red);
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(64));
    canvas.GoToFrame(1);
    EXPECT_EQ(Pixel(zel_PT_XY, {0, 7}), Gray(1 + 70 + 40 + 5)) << "it marks the other frame";
    frame->Destroy();
    Settle(); // before the mark goes
}

namespace {

/// Notes when it is asked to deal with the mouse.
class MouseCanvas : public zel_ImageViewer3dCanvas<unsigned char> {
public:
    using zel_ImageViewer3dCanvas<unsigned char>::zel_ImageViewer3dCanvas;
    void OnMouse3d(zel_Mouse3dEvent&) override { ++count; }
    int count = 0;
};

} // namespace

TEST_F(EmbeddingTest, TheMouseComesToTheHostThenToTheCanvasIfSkipped) {
    auto* const made = OpenByHand(Ramp(), "viewer", {});
    auto& first = dynamic_cast<zel_ImageViewer3dCanvas<unsigned char>&>(*made->GetCanvas());
    const auto image = Ramp();
    auto* const canvas =
        new MouseCanvas(made, first.GetMapper(), image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    made->SetCanvas(canvas);
    Show(made);
    bool skips = false;
    int before = -1; // what the canvas had counted when the host was told
    canvas->Bind(zel_EVT_MOUSE3D, [&](zel_Mouse3dEvent& event) {
        EXPECT_EQ(event.GetWindow(), canvas->GetDrWin(zel_PT_XZ));
        EXPECT_EQ(event.GetMouseEvent().GetPosition(), wxPoint(3, 2));
        before = canvas->count;
        event.Skip(skips);
    });
    canvas->count = 0;
    SendMouse(*canvas->GetDrWin(zel_PT_XZ), wxEVT_LEFT_DOWN, {3, 2});
    EXPECT_EQ(before, 0);
    EXPECT_EQ(canvas->count, 0) << "the host has dealt with it";
    skips = true;
    SendMouse(*canvas->GetDrWin(zel_PT_XZ), wxEVT_LEFT_DOWN, {3, 2});
    EXPECT_EQ(before, 0);
    EXPECT_EQ(canvas->count, 1);
    frame->Destroy();
    Settle(); // before the image goes
}

TEST_F(EmbeddingTest, ACommandOfTheMappingComesToTheParentOfTheFrameToo) {
    auto* const host = new wxFrame(nullptr, wxID_ANY, "host");
    const auto image = Ramp();
    Show(zel_CreateImage3dFrame(image.get(), false, host, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize,
                                wxDEFAULT_FRAME_STYLE));
    std::vector<std::string> told;
    host->Bind(zel_EVT_MAPPING_COMMAND, [&](zel_MappingCommandEvent&) { told.emplace_back("command"); });
    host->Bind(zel_EVT_MAPPING_CHANGED, [&](zel_MappingEvent&) { told.emplace_back("changed"); });
    host->Bind(zel_EVT_POSITION_CHANGED, [&](zel_PositionEvent&) { told.emplace_back("position"); });
    Choose("Linear stretch");
    frame->GetCanvas()->ChangeCut({1.5F, 2.5F, 3.5F});
    Settle();
    EXPECT_EQ(told, (std::vector<std::string>{"command"}));
    host->Destroy();
    Settle(); // before the image goes
}

TEST_F(EmbeddingTest, AChangeOfTheMappingReachesTheCanvasOnlyIfTheHostSkipsIt) {
    Show(OpenByHand(Ramp(), "viewer", {}));
    bool skips = false;
    frame->Bind(zel_EVT_MAPPING_CHANGED, [&](zel_MappingEvent& event) { event.Skip(skips); });
    Choose("Linear stretch");
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(64)) << "the picture is the one before";
    skips = true;
    Choose("Linear stretch"); // from 1 to 159: (64 - 1) / 158 * 255 = 101.7
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(102));
}

TEST_F(EmbeddingTest, LinkedViewersGoToOnePlace) {
    Show(OpenByHand(Ramp(3), "one", {}));
    wxWeakRef<zel_Viewer3dFrame> other = OpenByHand(Ramp(3), "other", {});
    ASSERT_TRUE(ShowAndWait(*other));
    Settle();
    Follow(*frame->GetCanvas(), *other->GetCanvas());
    Follow(*other->GetCanvas(), *frame->GetCanvas());
    frame->GetCanvas()->ChangeCut({1.5F, 2.5F, 3.5F});
    Settle();
    EXPECT_EQ(other->GetCanvas()->GetCut(), kep::Vector3d<float>(1.5F, 2.5F, 3.5F));
    other->GetCanvas()->GoToFrame(2);
    Settle();
    EXPECT_EQ(frame->GetCanvas()->GetTime(), 2);
    other->Close();
    EXPECT_TRUE(WaitUntil([&] { return !other; }));
    frame->GetCanvas()->GoToFrame(0); // with nobody to follow
    Settle();
}

TEST_F(EmbeddingTest, FramesOfAnotherThreadAreShownAsTheyCome) {
    auto made = Ramp();
    mor::Image4d<unsigned char>& image = *made;
    Show(OpenByHand(std::move(made), "live", {}));
    auto& canvas = dynamic_cast<zel_ImageViewer3dCanvas<unsigned char>&>(*frame->GetCanvas());
    LiveSequence<unsigned char> live(image, canvas);
    constexpr int frames = 12;
    const auto later = Ramp(frames);
    std::thread camera([&] {
        for (std::size_t t = 1; t < frames; ++t)
            live.Deliver(std::make_shared<kep::Image3d<unsigned char>>(*later->GetImage(t)));
    });
    EXPECT_TRUE(WaitUntil([&] { return canvas.GetImageCount() == frames; }));
    camera.join();
    EXPECT_EQ(canvas.GetTime(), frames - 1);
    EXPECT_EQ(Pixel(zel_PT_XY, {3, 2}), Gray(64 + 5 * (frames - 1)));
    live.Deliver(std::make_shared<kep::Image3d<unsigned char>>(*later->GetImage(0)));
    frame->Destroy(); // comes first; what is delivered then goes nowhere
    Settle();
}

TEST_F(EmbeddingTest, ASlicePaintedWithoutAWindowIsWhatTheWindowShows) {
    const auto image = Ramp();
    const std::unique_ptr<zel_MappingModule<unsigned char>> module(
        zel_CreateMapperForType<unsigned char>(nullptr, *image));
    const kep::Image3d<Colour> picture = PaintSlice<unsigned char>(*image, *module, 0, 2);
    EXPECT_EQ(picture.GetSize(), kep::Vector3d<std::size_t>(9, 8, 1));
    EXPECT_EQ(picture.GetVoxel(3, 2, 0), Colour(64, 64, 64));
    Show(OpenByHand(Ramp(), "viewer", {}));
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 9; ++x) {
            const Colour colour = picture.GetVoxel(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0);
            EXPECT_EQ(Pixel(zel_PT_XY, {x, y}), wxColour(colour.red, colour.green, colour.blue));
        }
}
