// The volume window as a viewer opens, feeds and closes it.

#include "tests/mapping/viewer_fixture.h"
#include "tests/overlay/labeled_viewer.h"
#include "tests/support/user.h"
#include "tests/volume/volume_window.h"
#include "viewer/zel_commands.h"

#include <wx/busyinfo.h>
#include <wx/evtloop.h>
#include <wx/stopwatch.h>

#include <new>

namespace zel::test {
namespace {

using Byte = unsigned char;
constexpr int hidePlane = 10003, hideBox = 10004;

class VolumeViewer : public GuiTest {};

/// Voxels of 255 on the left in even frames and on the right in odd ones.
std::unique_ptr<mor::Image4d<Byte>> HalfBright(std::size_t frames = 1, const kep::Resolution& resolution = {1, 1, 1}) {
    return MakeImage<Byte>(
        {8, 8, 8}, frames, [](auto x, auto, auto, auto t) { return (x < 4) == (t % 2 == 0) ? 255 : 0; }, resolution);
}

/// Opens the volume window as the menu does, and gives it a client area of 200 x 200.
template <typename Viewer>
vol3D_VolVisFrame& OpenVolume(const Viewer& viewer) {
    const LogCatcher quiet;
    EXPECT_TRUE(viewer.frame->ProcessCommand(zel_CMD_VOLUME));
    vol3D_VolVisFrame* const frame = viewer.canvas->GetVolVisFrame();
    if (frame == nullptr)
        throw std::runtime_error("no volume window");
    Settle();
    EXPECT_TRUE(ResizeClient(*frame, {200, 200}));
    return *frame;
}

wxImage PictureOf(const vol3D_VolVisFrame& frame) {
    frame.GetCanvas()->Refresh(false);
    frame.GetCanvas()->Update();
    PassFrames(1);
    return frame.GetCanvas()->TakePicture();
}

/// "left", "right", "both" or "none": where the middle row is bright. At 60 and 140 it lies within both halves.
std::string BrightSide(const vol3D_VolVisFrame& frame) {
    const wxImage picture = PictureOf(frame);
    const bool left = ColourAt(picture, {60, 100}).Green() > 80, right = ColourAt(picture, {140, 100}).Green() > 80;
    return left ? (right ? "both" : "left") : (right ? "right" : "none");
}

TEST_F(VolumeViewer, OpensItWithTheFrameInIt) {
    const kep::Resolution resolution(2, 1, 0.5F);
    MappedViewer<Byte> viewer(HalfBright(1, resolution));
    EXPECT_EQ(viewer.canvas->GetVolVisFrame(), nullptr);
    LogCatcher log;
    viewer.frame->Raise();
    Focus(*viewer.canvas->GetDrWin(zel_PT_XY));
    Press('V');
    ASSERT_NE(viewer.canvas->GetVolVisFrame(), nullptr);
    const vol3D_VolVisFrame& frame = *viewer.canvas->GetVolVisFrame();
    EXPECT_EQ(frame.GetParent(), nullptr);
    EXPECT_EQ(frame.GetTitle(), "Volume visualization");
    EXPECT_EQ(frame.GetSize(), wxSize(600, 600));
    EXPECT_TRUE(frame.IsShown());
    EXPECT_TRUE(frame.GetCanvas()->HasVolume());
    EXPECT_EQ(frame.GetCanvas()->GetTextureScale(), ComputeVolumeScale({8, 8, 8}, resolution));
    ASSERT_EQ(log.GetEntries().size(), 4U);
    EXPECT_EQ(log.GetEntries()[0], (LogCatcher::Entry{wxLOG_Message, "Starting OpenGL window"}));
    for (const auto& [entry, start] : {std::pair{1, "Vendor: "}, {2, "Renderer: "}, {3, "Version: "}}) {
        const std::string text = log.GetEntries()[static_cast<std::size_t>(entry)].text;
        EXPECT_EQ(text.substr(0, std::string(start).size()), start);
        EXPECT_GT(text.size(), std::string(start).size());
    }
    EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == frame.GetCanvas(); })) << "its keys work at once";
    // A voxel is half a micron wide, one high and two deep, so the depth fills the box, and the width a quarter of it.
    // Its front is seen from 0 to 68.7 / 4 = 17 pixels left of the middle, its back from 0 to 11.
    EXPECT_TRUE(ResizeClient(*viewer.canvas->GetVolVisFrame(), {200, 200}));
    const wxImage picture = PictureOf(frame);
    EXPECT_GT(ColourAt(picture, {92, 100}).Green(), 80);
    EXPECT_TRUE(IsBlack(ColourAt(picture, {78, 100})));
    EXPECT_TRUE(IsBlack(ColourAt(picture, {110, 100})));
}

TEST_F(VolumeViewer, TheMappingIsSeenInIt) {
    MappedViewer<Byte> viewer(MakeImage<Byte>({8, 8, 8}, 1, [](auto x, auto...) { return x < 4 ? 100 : 20; }));
    const vol3D_VolVisFrame& frame = OpenVolume(viewer);
    const int before = ColourAt(PictureOf(frame), {60, 100}).Green();
    viewer.Choose(zel_ME_LINEAR_STRETCH); // 100 becomes 255
    EXPECT_GT(ColourAt(PictureOf(frame), {60, 100}).Green(), before + 50);
}

TEST_F(VolumeViewer, TheFrameOfTheTimeIsSeenInIt) {
    MappedViewer<Byte> viewer(HalfBright(3));
    const vol3D_VolVisFrame& frame = OpenVolume(viewer);
    EXPECT_EQ(BrightSide(frame), "left");
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    EXPECT_EQ(BrightSide(frame), "right");
}

TEST_F(VolumeViewer, ChangedDataAreSeenInIt) {
    MappedViewer<Byte> viewer(HalfBright());
    const vol3D_VolVisFrame& frame = OpenVolume(viewer);
    for (Byte& voxel : *viewer.image->GetImage(0))
        voxel = 255;
    viewer.canvas->OnDataChange();
    EXPECT_EQ(BrightSide(frame), "both");
}

TEST_F(VolumeViewer, WhileItIsHiddenNothingIsUploaded) {
    MappedViewer<Byte> viewer(HalfBright(2));
    vol3D_VolVisFrame& frame = OpenVolume(viewer);
    frame.Close();
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    frame.Show(); // by a host
    Settle();
    EXPECT_EQ(BrightSide(frame), "left") << "as it was when it was hidden";
    OpenVolume(viewer);
    EXPECT_EQ(viewer.canvas->GetVolVisFrame(), &frame) << "the same window";
    EXPECT_EQ(BrightSide(frame), "right");
}

TEST_F(VolumeViewer, ShownAgainItHasANewViewAndTheOldMarks) {
    MappedViewer<Byte> viewer(HalfBright());
    vol3D_VolVisFrame& frame = OpenVolume(viewer);
    EXPECT_TRUE(frame.ProcessCommand(hideBox));
    EXPECT_TRUE(frame.ProcessCommand(5009));
    EXPECT_FALSE(IsNear(PictureOf(frame), {31, 100}, IsBlue));
    frame.Close();
    OpenVolume(viewer);
    EXPECT_EQ(frame.GetCanvas()->GetObjectMatrix(), identityMatrix);
    EXPECT_TRUE(IsNear(PictureOf(frame), {31, 100}, IsBlue));
    EXPECT_TRUE(frame.GetMenuBar()->IsChecked(hideBox));
}

TEST_F(VolumeViewer, AfterAForcedCloseThereIsANewOne) {
    MappedViewer<Byte> viewer(HalfBright());
    OpenVolume(viewer).Close(true);
    Pump();
    EXPECT_EQ(viewer.canvas->GetVolVisFrame(), nullptr);
    viewer.canvas->UpdateVolVis();
    viewer.canvas->RefreshVolVisIcon({});
    EXPECT_EQ(BrightSide(OpenVolume(viewer)), "left");
}

TEST_F(VolumeViewer, TheIconsAreTheViewers) {
    MappedViewer<Byte> viewer(HalfBright());
    wxIconBundle icons;
    wxIcon icon;
    icon.CopyFromBitmap(wxBitmap(23, 23));
    icons.AddIcon(icon);
    {
        const LogCatcher quiet;
        viewer.canvas->ShowVolVis(icons);
    }
    ASSERT_NE(viewer.canvas->GetVolVisFrame(), nullptr);
    EXPECT_EQ(viewer.canvas->GetVolVisFrame()->GetIcons().GetIconByIndex(0).GetWidth(), 23);
    wxIconBundle others;
    icon.CopyFromBitmap(wxBitmap(17, 17));
    others.AddIcon(icon);
    viewer.canvas->RefreshVolVisIcon(others);
    EXPECT_EQ(viewer.canvas->GetVolVisFrame()->GetIcons().GetIconByIndex(0).GetWidth(), 17);
    viewer.frame->RefreshIcon();
    EXPECT_EQ(viewer.canvas->GetVolVisFrame()->GetIcons().GetIconByIndex(0).GetWidth(), 16) << "as the frame's own";
}

TEST_F(VolumeViewer, TwoViewersUploadToTheirOwnWindows) {
    MappedViewer<Byte> first(HalfBright(3));
    const vol3D_VolVisFrame& firstVolume = OpenVolume(first);
    {
        MappedViewer<Byte> second(HalfBright(2));
        const vol3D_VolVisFrame& secondVolume = OpenVolume(second); // its context is current now
        EXPECT_TRUE(first.canvas->ShowNextImage());
        EXPECT_EQ(BrightSide(firstVolume), "right");
        EXPECT_EQ(BrightSide(secondVolume), "left"); // and again
    }                                                // it goes with its viewer, and no context is current
    EXPECT_TRUE(first.canvas->ShowNextImage());
    EXPECT_EQ(BrightSide(firstVolume), "left");
}

TEST_F(VolumeViewer, TheKeyboardStaysWhereItWas) {
    MappedViewer<Byte> viewer(HalfBright(3));
    OpenVolume(viewer);
    viewer.frame->Raise();
    wxWindow& window = *viewer.canvas->GetDrWin(zel_PT_XY);
    Focus(window);
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    Settle();
    EXPECT_EQ(wxWindow::FindFocus(), &window);
    EXPECT_TRUE(window.IsEnabled() && viewer.frame->IsEnabled());
    Press('1'); // the keys of the frame still work
    EXPECT_EQ(viewer.canvas->GetTime(), 1);
}

TEST_F(VolumeViewer, GoesWithTheViewer) {
    for (const bool shown : {true, false}) {
        wxWeakRef<vol3D_VolVisFrame> frame;
        {
            MappedViewer<Byte> viewer(HalfBright());
            frame = &OpenVolume(viewer);
            frame->ProcessCommand(5006);
            if (!shown)
                frame->Close();
        }
        EXPECT_FALSE(frame);
    }
}

TEST_F(VolumeViewer, MayGoWithTheViewerUnderItsOwnDialog) {
    auto image = HalfBright();
    zel_Viewer3dFrame* const viewer = zel_CreateImage3dFrame<Byte>(
        image.get(), false, nullptr, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    EXPECT_TRUE(ShowAndWait(*viewer));
    {
        const LogCatcher quiet;
        viewer->ProcessCommand(zel_CMD_VOLUME);
    }
    const wxWeakRef<vol3D_VolVisFrame> frame = viewer->GetCanvas()->GetVolVisFrame();
    ASSERT_TRUE(frame);
    DialogAnswers answers;
    answers.ExpectDriven([&](wxDialog&) {
        viewer->Destroy();
        EXPECT_TRUE(WaitUntil([&] { return !frame; }));
    });
    frame->ProcessCommand(10006);
    EXPECT_FALSE(frame);
}

TEST_F(VolumeViewer, AViewerMayBeClosedWhileOpenGLStarts) {
    auto image = HalfBright();
    wxWeakRef<zel_Viewer3dFrame> viewer = zel_CreateImage3dFrame<Byte>(
        image.get(), false, nullptr, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    EXPECT_TRUE(ShowAndWait(*viewer));
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        if (viewer)
            delete viewer.get(); // at once, as a host's parent window does
    });
    timer.StartOnce(1);
    wxMilliSleep(3); // so that it comes with the first event that is dispatched
    const LogCatcher quiet;
    viewer->GetCanvas()->ShowVolVis({});
    Pump();
    if (viewer)
        viewer->Destroy();
    Pump();
    EXPECT_FALSE(viewer);
    EXPECT_TRUE(wxTopLevelWindows.IsEmpty());
}

TEST_F(VolumeViewer, IsPaintedWhileFramesFollowEachOtherWithoutAPause) {
    auto image = HalfBright(3);
    zel_Viewer3dFrame* const viewer = zel_CreateImage3dFrame<Byte>(
        image.get(), false, nullptr, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    EXPECT_TRUE(ShowAndWait(*viewer));
    zel_Viewer3dCanvas& canvas = *viewer->GetCanvas();
    const LogCatcher quiet;
    canvas.ShowVolVis({});
    ASSERT_TRUE(canvas.GetVolVisFrame());
    Settle();
    mor::ImageIterator iterator = canvas.GetImageIterator();
    iterator.SetFPS(1000);
    canvas.UpdateImageIterator(iterator);
    viewer->ProcessCommand(zel_CMD_LOOP_MODE);
    int paints = 0;
    canvas.GetVolVisFrame()->GetCanvas()->Bind(wxEVT_PAINT, [&paints](wxPaintEvent& event) {
        ++paints;
        event.Skip();
    });
    viewer->ProcessCommand(zel_CMD_BROWSE_FORWARD);
    EXPECT_EQ(canvas.GetSequenceInterval(), 1) << "an upload takes longer";
    const wxStopWatch watch;
    while (watch.Time() < 10000 && paints < 20)
        wxEventLoopBase::GetActive()->Dispatch();
    EXPECT_GE(paints, 20);
    viewer->ProcessCommand(zel_CMD_STOP_BROWSING);
    viewer->Destroy();
    Pump();
}

/// Shows values as they are, until it has no memory left.
class StarvingMapper : public zel_Mapper<Byte> {
public:
    void Map(const Byte* data, ColourBuffer& buffer) const override {
        if (starves && buffer.height == 1)
            throw std::bad_alloc();
        for (int i = 0; i < buffer.width * buffer.height; ++i)
            buffer.data[i] = {data[i], data[i], data[i]};
    }
    bool starves = false;
};

TEST_F(VolumeViewer, WithoutMemoryThatIsSaidOnceAndTheOldVolumeStays) {
    StarvingMapper mapper;
    const auto image = MakeImage<Byte>({8, 8, 8}, 4, [](auto x, auto...) { return x < 4 ? 255 : 0; });
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "host");
    auto* const canvas =
        new zel_ImageViewer3dCanvas<Byte>(frame, mapper, image.get(), false, wxID_ANY, {0, 0}, {99, 99});
    EXPECT_TRUE(ShowAndWait(*frame));
    {
        const LogCatcher quiet;
        canvas->ShowVolVis({});
    }
    ASSERT_NE(canvas->GetVolVisFrame(), nullptr);
    mapper.starves = true;
    DialogAnswers answers;
    answers.Expect([&](wxDialog& dialog) {
        auto& box = dynamic_cast<wxMessageDialog&>(dialog);
        EXPECT_EQ(box.GetMessage(), "Not enough memory to create the 3D texture!");
        EXPECT_EQ(box.GetTitle(), "Error");
        EXPECT_EQ(box.GetMessageDialogStyle(), wxOK);
        EXPECT_EQ(box.GetParent(), frame);
        canvas->ShowNextImage(); // browsing goes on under the box
        canvas->UpdateVolVis();
        Pump();
        return wxID_OK;
    });
    canvas->ShowNextImage();
    Pump();
    EXPECT_EQ(answers.GetPending(), 0U);
    EXPECT_TRUE(canvas->GetVolVisFrame()->GetCanvas()->HasVolume());
    EXPECT_GT(PictureOf(*canvas->GetVolVisFrame()).GetRed(250, 280), 80);

    answers.Expect([](wxDialog&) { return wxID_OK; }); // told again when it happens again
    canvas->UpdateVolVis();
    Pump();
    EXPECT_EQ(answers.GetPending(), 0U);
    frame->Destroy();
    Pump();
}

bool ShowsText(const wxWindow& window, const wxString& text) {
    if (window.GetLabel() == text)
        return true;
    const wxWindowList& children = window.GetChildren();
    return std::any_of(children.begin(), children.end(), [&](wxWindow* child) { return ShowsText(*child, text); });
}

/// Looks at the screen while a volume is mapped.
class WatchingMapper : public StarvingMapper {
public:
    void Map(const Byte* data, ColourBuffer& buffer) const override {
        if (buffer.height == 1 && watched != nullptr) {
            wasEnabled = watched->IsEnabled();
            for (const wxWindow* window : wxTopLevelWindows)
                wasTold = wasTold || ShowsText(*window, "Updating 3D data...");
        }
        StarvingMapper::Map(data, buffer);
    }
    wxWindow* watched = nullptr;
    mutable bool wasEnabled = true, wasTold = false;
};

TEST_F(VolumeViewer, TheUserIsKeptOutWhileItIsUpdatedAndToldWhy) {
    WatchingMapper mapper;
    const auto image = MakeImage<Byte>({8, 8, 8}, 1, [](auto x, auto...) { return x; });
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "host");
    auto* const canvas =
        new zel_ImageViewer3dCanvas<Byte>(frame, mapper, image.get(), false, wxID_ANY, {0, 0}, {99, 99});
    EXPECT_TRUE(ShowAndWait(*frame));
    mapper.watched = frame;
    {
        const LogCatcher quiet;
        canvas->ShowVolVis({});
    }
    EXPECT_FALSE(mapper.wasEnabled);
    EXPECT_TRUE(mapper.wasTold);
    EXPECT_TRUE(frame->IsEnabled());
    Pump();
    for (const wxWindow* window : wxTopLevelWindows)
        EXPECT_FALSE(ShowsText(*window, "Updating 3D data..."));
    frame->Destroy();
    Pump();
}

TEST_F(VolumeViewer, ACanvasWithoutAnImageOpensAnEmptyWindow) {
    PlainMapper<Byte> mapper;
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "host");
    auto* const canvas = new zel_ImageViewer3dCanvas<Byte>(frame, mapper, nullptr, false, wxID_ANY, {0, 0}, {99, 99});
    EXPECT_TRUE(ShowAndWait(*frame));
    {
        const LogCatcher quiet;
        canvas->ShowVolVis({});
    }
    ASSERT_NE(canvas->GetVolVisFrame(), nullptr);
    EXPECT_FALSE(canvas->GetVolVisFrame()->GetCanvas()->HasVolume());
    frame->Destroy();
    Pump();
}

TEST_F(VolumeViewer, NothingIsUploadedOnceTheMapperIsGone) {
    MappedViewer<Byte> viewer(HalfBright(2));
    const vol3D_VolVisFrame& frame = OpenVolume(viewer);
    viewer.canvas->DetachMapper();
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    EXPECT_EQ(BrightSide(frame), "left");
}

// Surfaces of labels.

/// A dark image, so that only surfaces are seen, with a block of label 1 in the middle; in odd frames it is smaller.
struct BlockViewer : LabeledViewer<Byte, bool> {
    BlockViewer()
        : LabeledViewer(MakeImage<Byte>({8, 8, 8}, 3, [](auto...) { return 0; }),
                        MakeLabels<bool>({8, 8, 8}, 3, [](auto x, auto y, auto z, auto t) {
                            const std::size_t first = t % 2 == 0 ? 1 : 3;
                            return x >= first && x < 8 - first && y >= first && y < 8 - first && z >= first &&
                                   z < 8 - first;
                        })) {
        for (std::size_t t = 0; t < 3; ++t)
            labels->GetImage(t)->components[1] = {};
    }
};

/// Pixels that are not black, with box and plane hidden.
int CountLit(const vol3D_VolVisFrame& frame) {
    const wxImage picture = PictureOf(frame);
    int lit = 0;
    for (int y = 0; y < picture.GetHeight(); ++y)
        for (int x = 0; x < picture.GetWidth(); ++x)
            lit += IsBlack(ColourAt(picture, {x, y})) ? 0 : 1;
    return lit;
}

vol3D_VolVisFrame& OpenBare(const BlockViewer& viewer) {
    vol3D_VolVisFrame& frame = OpenVolume(viewer);
    frame.ProcessCommand(hidePlane);
    frame.ProcessCommand(hideBox);
    return frame;
}

TEST_F(VolumeViewer, SurfacesAreSeenWhileLabelsAre) {
    const BlockViewer viewer;
    const vol3D_VolVisFrame& frame = OpenBare(viewer);
    EXPECT_EQ(CountLit(frame), 0) << "labels are off at first";
    viewer.module->SetOverlaying(true);
    zel_OverlayingEvent event(false, false);
    viewer.canvas->OverlayingChanged(event);
    const int lit = CountLit(frame);
    EXPECT_GT(lit, 500);
    viewer.module->SetOverlaying(false);
    viewer.canvas->OverlayingChanged(event);
    EXPECT_EQ(CountLit(frame), 0);
    viewer.module->SetOverlaying(true);
    viewer.canvas->OverlayingChanged(event);
    EXPECT_EQ(CountLit(frame), lit) << "they were kept";
}

TEST_F(VolumeViewer, TheUserIsToldThatSurfacesAreMade) {
    const BlockViewer viewer;
    const auto isTold = [] {
        return std::any_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                           [](const wxWindow* window) { return ShowsText(*window, "Updating isosurface data..."); });
    };
    OpenBare(viewer);
    EXPECT_FALSE(isTold());
    viewer.canvas->UpdateIsosurface();
    EXPECT_TRUE(isTold()) << "the notice that is over stands in the list until the next events";
    Pump();
    EXPECT_FALSE(isTold());
}

TEST_F(VolumeViewer, SurfacesFollowTheTimeAlsoWhileTheWindowIsHidden) {
    const BlockViewer viewer;
    viewer.module->SetOverlaying(true);
    vol3D_VolVisFrame& frame = OpenBare(viewer);
    const int large = CountLit(frame);
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    const int small = CountLit(frame);
    EXPECT_LT(small, large / 2);
    frame.Close();
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    frame.Show();
    Settle();
    EXPECT_EQ(CountLit(frame), large);
}

TEST_F(VolumeViewer, AReloadMakesSurfacesAnewWhileTheWindowIsShown) {
    const BlockViewer viewer;
    viewer.module->SetOverlaying(true);
    vol3D_VolVisFrame& frame = OpenBare(viewer);
    const int large = CountLit(frame);
    FillLabels(*viewer.labels, 0, [](auto x, auto y, auto z, auto) {
        return x >= 3 && x < 5 && y >= 3 && y < 5 && z >= 3 && z < 5 ? 1 : 0;
    });
    zel_OverlayingEvent reload(true, true);
    frame.Show(false);
    viewer.canvas->OverlayingChanged(reload);
    frame.Show(true);
    Settle();
    EXPECT_EQ(CountLit(frame), large) << "hidden, it keeps its meshes";
    viewer.canvas->OverlayingChanged(reload);
    EXPECT_LT(CountLit(frame), large / 2);
}

TEST_F(VolumeViewer, SurfacesHaveTheColoursOfTheLabels) {
    const BlockViewer viewer;
    viewer.module->SetOverlaying(true);
    const vol3D_VolVisFrame& frame = OpenBare(viewer);
    const kep::RGB_generic<unsigned char> colour =
        viewer.module->GetPalette()[1 % viewer.module->GetPaletteSize()]; // of label 1
    const wxImage picture = PictureOf(frame);
    std::array<long, 3> sum{};
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) {
            sum[0] += picture.GetRed(x, y);
            sum[1] += picture.GetGreen(x, y);
            sum[2] += picture.GetBlue(x, y);
        }
    const std::array<int, 3> wanted{colour.red, colour.green, colour.blue};
    // Ambient and specular light are white; what is diffuse has the colour.
    for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = 0; b < 3; ++b)
            if (wanted[a] > wanted[b]) {
                EXPECT_GT(sum[a], sum[b] + sum[b] / 10) << a << b;
            }
    EXPECT_FALSE(wanted[0] == wanted[1] && wanted[1] == wanted[2]) << "a gray would say nothing";
}

TEST_F(VolumeViewer, AFrameWithoutLabelsKeepsTheSurfaces) {
    const BlockViewer viewer;
    viewer.module->SetOverlaying(true);
    const vol3D_VolVisFrame& frame = OpenBare(viewer);
    const int lit = CountLit(frame);
    viewer.labels->GetImage(1)->MakeRoom(0, 0, 0);
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    EXPECT_EQ(CountLit(frame), lit);
}

} // namespace
} // namespace zel::test
