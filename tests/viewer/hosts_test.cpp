// What a canvas offers to hosts that ask for it: word of its position, frames that arrive while it is open, and
// pictures that show what is there.

#include "tests/viewer/saving_fixture.h"

#include <atomic>
#include <thread>
#include <vector>

using namespace zel;
using namespace zel::test;

namespace {

class HostsTest : public SavingFixture {
protected:
    void Open(kep::Vector3d<std::size_t> size = {9, 8, 5}, std::size_t frames = 1,
              const kep::Resolution& resolution = {1, 1, 1}, kep::Vector3d<float> offset = {},
              wxSize client = {300, 280}) {
        frame = new wxFrame(nullptr, wxID_ANY, "title of the host");
        MakeCanvas(size, frames, resolution, offset);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, client));
    }
    /// From here on all that is told of the position is noted.
    void Listen() {
        Settle();
        canvas->Bind(zel_EVT_POSITION_CHANGED, [this](zel_PositionEvent& event) { told.push_back(event); });
    }
    std::unique_ptr<kep::Image3d<unsigned short>> MakeFrame(std::size_t t) const {
        auto made = std::make_unique<kep::Image3d<unsigned short>>(&image->GetOffset(), &image->GetResolution());
        made->MakeRoom(image->GetSize().x, image->GetSize().y, image->GetSize().z);
        for (std::size_t i = 0; i < made->GetNumVoxels(); ++i) {
            const kep::Vector3d<std::size_t> p = made->GetPos(i);
            made->SetVoxel(i, Named(p.x, p.y, p.z, t));
        }
        return made;
    }
    void Append() {
        auto made = MakeFrame(image->GetNumFrames());
        image->InsertFrame(made.get(), wxString::Format("frame %zu.tif", image->GetNumFrames()), -1);
        made.release(); // the sequence has taken it
        canvas->OnSequenceChange();
    }
    /// The number that the first pixel of the XY window shows.
    int Shown() {
        canvas->Refresh(false);
        canvas->Update();
        const wxImage picture = canvas->GetDrWin(zel_PT_XY)->GetPointerImage();
        return picture.GetRed(0, 0) + 256 * picture.GetGreen(0, 0);
    }

    std::vector<zel_PositionEvent> told;
};

} // namespace

TEST_F(HostsTest, AreToldWhereTheViewerIs) {
    Open({9, 8, 5}, 3);
    Listen();
    EXPECT_TRUE(told.empty());
    canvas->ChangeCut({2.5F, 4.5F, 2.5F});
    EXPECT_TRUE(told.empty()) << "not before the events at hand are dealt with";
    Settle();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].HasCutChanged());
    EXPECT_FALSE(told[0].HasViewChanged());
    EXPECT_FALSE(told[0].HasTimeChanged());
    canvas->ShowNextImage();
    Settle();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_FALSE(told[1].HasCutChanged());
    EXPECT_TRUE(told[1].HasTimeChanged());
    canvas->ZoomIn();
    Settle();
    ASSERT_EQ(told.size(), 3U);
    EXPECT_FALSE(told[2].HasCutChanged());
    EXPECT_TRUE(told[2].HasViewChanged());
}

TEST_F(HostsTest, AreToldWhereAViewerOpens) {
    frame = new wxFrame(nullptr, wxID_ANY, "title of the host");
    MakeCanvas({9, 8, 5}, 3, {1, 1, 1}, {});
    canvas->Bind(zel_EVT_POSITION_CHANGED, [this](zel_PositionEvent& event) { told.push_back(event); });
    canvas->ChangeCut({2.5F, 4.5F, 2.5F}); // a host may move it before it is seen
    ASSERT_TRUE(ShowAndWait(*frame));
    Settle();
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(told[0].HasCutChanged());
}

TEST_F(HostsTest, AreToldOnceOfAllThatHasChanged) {
    Open({9, 8, 5}, 3);
    Listen();
    for (int i = 0; i < 5; ++i)
        canvas->ChangeCut({1.5F + static_cast<float>(i), 4.5F, 2.5F});
    canvas->GoToFrame(2);
    canvas->ZoomIn();
    Settle();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].HasCutChanged());
    EXPECT_TRUE(told[0].HasViewChanged());
    EXPECT_TRUE(told[0].HasTimeChanged());
}

TEST_F(HostsTest, AreToldNothingOfAMoveToTheSamePlace) {
    Open();
    Listen();
    canvas->ChangeCut(canvas->GetCut());
    canvas->GoToFrame(0);
    canvas->ChangeCut({-1, 0, 0}); // outside: ignored
    canvas->ZoomIn();
    canvas->ZoomOut();
    Settle();
    EXPECT_TRUE(told.empty());
}

TEST_F(HostsTest, AHiddenViewerTellsToo) {
    Open();
    Listen();
    frame->Hide();
    canvas->ChangeCut({2.5F, 4.5F, 2.5F});
    Settle();
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(HostsTest, CanLinkTwoViewers) {
    Open({9, 8, 5}, 3);
    wxFrame* const otherFrame = new wxFrame(nullptr, wxID_ANY, "another");
    const auto otherImage = MakeImage<unsigned short>({9, 8, 5}, 3, Named);
    auto* const other =
        new Canvas(otherFrame, mapper, otherImage.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    ASSERT_TRUE(ShowAndWait(*otherFrame));
    int events = 0;
    const auto link = [&events](Canvas* from, Canvas* to) {
        from->Bind(zel_EVT_POSITION_CHANGED, [from, to, &events](zel_PositionEvent&) {
            ++events;
            to->ChangeCut(from->GetCut());
            to->GoToFrame(from->GetTime());
        });
    };
    Settle();
    link(canvas, other);
    link(other, canvas);
    canvas->ChangeCut({1.5F, 2.5F, 3.5F});
    Settle();
    EXPECT_EQ(other->GetCut(), kep::Vector3d<float>(1.5F, 2.5F, 3.5F));
    other->GoToFrame(2);
    other->ChangeCut({7.5F, 6.5F, 0.5F});
    Settle();
    EXPECT_EQ(canvas->GetTime(), 2);
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(7.5F, 6.5F, 0.5F));
    EXPECT_EQ(events, 4) << "each move, and its echo";
    otherFrame->Destroy();
    Settle(); // before its image goes
}

TEST_F(HostsTest, CentreTheWindowsOnAPoint) {
    Open({200, 180, 90}, 1, {1, 1, 1}, {}, {140, 140});
    canvas->ZoomIn();
    Listen();
    canvas->CentreOn({60, 70, 40});
    const MicronBox& box = canvas->GetVisibleBox();
    EXPECT_NEAR(box.offset.x + box.size.x / 2, 60, 0.51F);
    EXPECT_NEAR(box.offset.y + box.size.y / 2, 70, 0.51F);
    EXPECT_NEAR(box.offset.z + box.size.z / 2, 40, 0.51F);
    Settle();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].HasViewChanged());
    canvas->CentreOn({60, 70, 40});
    Settle();
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(HostsTest, FramesThatArriveAreBrowsed) {
    Open();
    EXPECT_FALSE(canvas->GoToFrame(1));
    Append();
    EXPECT_EQ(canvas->GetImageCount(), 2);
    EXPECT_EQ(canvas->GetTime(), 0);
    EXPECT_EQ(Shown(), Named(0, 0, 2, 0));
    EXPECT_TRUE(canvas->GoToFrame(1));
    EXPECT_EQ(Shown(), Named(0, 0, 2, 1));
    Append();
    EXPECT_TRUE(canvas->ShowNextImage());
    EXPECT_EQ(Shown(), Named(0, 0, 2, 2));
    EXPECT_EQ(canvas->CreateTitle(), "frame 2.tif");
}

TEST_F(HostsTest, ProjectionsFollowFramesThatArrive) {
    Open();
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    EXPECT_EQ(Shown(), Named(0, 0, 4, 0)); // the largest along z
    Append();
    canvas->GoToFrame(1);
    EXPECT_EQ(Shown(), Named(0, 0, 4, 1));
}

TEST_F(HostsTest, AFrameWhoseVoxelsChangeIsProjectedAnew) {
    Open({9, 8, 5}, 2);
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    EXPECT_EQ(Shown(), Named(0, 0, 4, 0));
    for (std::size_t t = 0; t < 2; ++t) {
        image->GetImage(t)->Fill(static_cast<unsigned short>(40 + t));
        canvas->OnFrameChange(t);
    }
    EXPECT_EQ(Shown(), 40);
    canvas->GoToFrame(1);
    EXPECT_EQ(Shown(), 41);
    canvas->OnFrameChange(2); // there is none
    EXPECT_EQ(Shown(), 41);
}

TEST_F(HostsTest, ARangeToTheEndGrowsAndAnotherStays) {
    Open({9, 8, 5}, 4);
    mor::ImageIterator iterator = canvas->GetImageIterator();
    iterator.SetRange(1, 3);
    canvas->UpdateImageIterator(iterator);
    Append();
    EXPECT_EQ(canvas->GetImageIterator().rangeFirst, 1);
    EXPECT_EQ(canvas->GetImageIterator().rangeLast, 4);
    iterator = canvas->GetImageIterator();
    iterator.SetRange(1, 2);
    canvas->UpdateImageIterator(iterator);
    Append();
    EXPECT_EQ(canvas->GetImageIterator().rangeLast, 2);
    EXPECT_EQ(canvas->GetImageIterator().limitLast, 5);
}

TEST_F(HostsTest, FramesThatGoTakeTheTimeWithThem) {
    Open({9, 8, 5}, 5);
    mor::ImageIterator iterator = canvas->GetImageIterator();
    iterator.SetRange(3, 4);
    iterator.SetStep(2);
    canvas->UpdateImageIterator(iterator);
    canvas->GoToFrame(4);
    for (int t = 4; t > 1; --t)
        image->RemoveFrame(t);
    canvas->OnSequenceChange();
    EXPECT_EQ(canvas->GetImageCount(), 2);
    EXPECT_EQ(canvas->GetTime(), 1);
    EXPECT_EQ(Shown(), Named(0, 0, 2, 1));
    EXPECT_EQ(canvas->GetImageIterator().rangeFirst, 0);
    EXPECT_EQ(canvas->GetImageIterator().rangeLast, 1);
    image->RemoveFrame(1);
    canvas->OnSequenceChange();
    EXPECT_EQ(canvas->GetImageIterator().step, 1);
    EXPECT_EQ(Shown(), Named(0, 0, 2, 0));
    image->RemoveFrame(0);
    canvas->OnSequenceChange(); // nothing to show, and nothing breaks
    canvas->Refresh(false);
    canvas->Update();
    canvas->ShowNextImage();
    Append();
    EXPECT_EQ(Shown(), Named(0, 0, 2, 0));
}

TEST_F(HostsTest, FramesThatArriveWhileTheViewerClosesAreIgnored) {
    Open({9, 8, 5}, 2);
    canvas->DetachMapper();
    image.reset(); // the host's, which may go from here on
    canvas->OnSequenceChange();
    canvas->OnFrameChange(0);
    canvas->Refresh(false);
    canvas->Update();
    EXPECT_EQ(canvas->GetImageIterator().limitLast, 1);
}

TEST_F(HostsTest, WhatIsAskedOfAViewerThatClosesNeedsNoImage) {
    Open({9, 8, 5}, 3);
    canvas->DetachMapper();
    image.reset(); // the host's, which may go from here on
    EXPECT_EQ(canvas->GetImage(), nullptr);
    EXPECT_EQ(canvas->GetImageCount(), 0);
    EXPECT_EQ(canvas->GetImageSize(), (kep::Vector3d<std::size_t>(0, 0, 0)));
    EXPECT_FALSE(canvas->GetResolution().IsDefined());
    EXPECT_EQ(canvas->CreateTitle(), "");
    EXPECT_EQ(canvas->GetVoxelText({1, 1, 1}, 0), "---");
    EXPECT_FALSE(canvas->GetPixelInfo(zel_PT_XY, {3, 3}));
    canvas->ShowNextImage();
    canvas->GoToFrame(2);
    canvas->CentreOn({3, 3, 3});
    canvas->ZoomIn();
    canvas->OnDataChange();
    canvas->OnTimeChange();
    canvas->UpdateVolVis();
    zel_DrWin3d& window = *canvas->GetDrWin(zel_PT_XY);
    for (const int key : {int{WXK_HOME}, int{WXK_END}, int{WXK_PAGEDOWN}, int{WXK_SPACE}, int{'+'}, int{'-'}, int{'C'}})
        PressKey(window, key);
    SendMouse(window, wxEVT_MOTION, {4, 4});
    canvas->SaveActualView((folder / "view.tif").c_str(), 0, zel_PT_ALL);
    canvas->SaveGalleryView((folder / "gallery.tif").c_str(), 0, 4, 1, true, 1, 0);
    canvas->Save3dData((folder / "data.tif"));
    Settle();
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(HostsTest, ACameraOnAThreadOfItsOwnIsFollowed) {
    Open();
    constexpr std::size_t frames = 30;
    std::atomic<bool> stopped = false;
    std::thread camera([&] {
        for (std::size_t t = 1; t < frames && !stopped; ++t) {
            std::shared_ptr<kep::Image3d<unsigned short>> made = MakeFrame(t);
            canvas->CallAfter([this, made] {
                image->InsertFrame(*made, "camera", -1);
                canvas->OnSequenceChange();
                canvas->GoToFrame(canvas->GetImageCount() - 1);
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    const bool came = WaitUntil([&] { return canvas->GetImageCount() == static_cast<int>(frames); });
    stopped = true;
    camera.join();
    EXPECT_TRUE(came);
    Settle();
    EXPECT_EQ(canvas->GetTime(), static_cast<int>(frames) - 1);
    EXPECT_EQ(Shown(), Named(0, 0, 2, frames - 1));
}

namespace {

class TruePicturesTest : public HostsTest {
protected:
    Sheet Gallery(const GalleryOptions& o) {
        canvas->SaveGalleryView((folder / "gallery.tif").c_str(), o.first, o.last, o.step, o.byRows, o.count,
                                o.spacing);
        return Read(folder / "gallery.tif");
    }
    /// The only column of a window's picture that is blue all the way down; the pen may leave out an end.
    int BlueColumn(zel_ProjectionType type) {
        canvas->Refresh(false);
        canvas->Update();
        const wxImage picture = canvas->GetDrWin(type)->GetPointerImage();
        int found = -1;
        for (int x = 0; x < picture.GetWidth(); ++x) {
            int blue = 0;
            for (int y = 0; y < picture.GetHeight(); ++y)
                blue += picture.GetBlue(x, y) > 127 ? 1 : 0;
            if (blue >= picture.GetHeight() - 1)
                found = found == -1 ? x : -2;
        }
        return found;
    }
    /// Draws the cut as a blue cross.
    void DrawCut() {
        zel_CutPointerStyle style;
        style.style = 5;
        style.colour = wxColour(0, 0, 255);
        canvas->SetPointerStyle(style);
    }
};

} // namespace

TEST_F(TruePicturesTest, AreAskedFor) {
    Open();
    EXPECT_FALSE(canvas->GetTruePictures().scaleBar);
    EXPECT_FALSE(canvas->GetTruePictures().cutPointer);
    EXPECT_FALSE(canvas->GetTruePictures().gallery);
    EXPECT_FALSE(canvas->GetTruePictures().meshes);
}

TEST_F(TruePicturesTest, AGalleryHasEachSliceWhereItBelongs) {
    Open({9, 8, 5}, 1, {1, 1, 0.3F}, {0, 0, 2});
    canvas->SetTruePictures({false, false, true});
    const kep::Vector3d<float> cut = canvas->GetCut();
    const Sheet sheet = Gallery({0, 4, 1, true, 1, 1});
    ExpectSize(sheet, 5 * 9 + 4, 8);
    for (int z = 0; z < 5; ++z)
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 9; ++x)
                ASSERT_EQ(NumberAt(sheet, z * 10 + x, y),
                          Named(static_cast<std::size_t>(x), static_cast<std::size_t>(y), static_cast<std::size_t>(z)));
    EXPECT_EQ(canvas->GetCut(), cut);
    // Every other slice, the last one too.
    const Sheet some = Gallery({0, 4, 2, true, 1, 0});
    ExpectSize(some, 27, 8);
    EXPECT_EQ(NumberAt(some, 18, 0), Named(0, 0, 4));
}

TEST_F(TruePicturesTest, AGallerysTilesAreWhatTheWindowShowsAtAnyZoom) {
    Open({9, 8, 5});
    canvas->SetTruePictures({false, false, true});
    for (int zoom = 0; zoom < 3; ++zoom) {
        const wxSize tile = canvas->GetDrWin(zel_PT_XY)->GetClientSize();
        EXPECT_EQ(tile, wxSize(9 * (zoom + 1), 8 * (zoom + 1)));
        const Sheet sheet = Gallery({1, 3, 1, true, 1, 0});
        ExpectSize(sheet, 3 * tile.x, tile.y);
        for (int y = 0; y < tile.y; ++y)
            for (int x = 0; x < 3 * tile.x; ++x)
                ASSERT_EQ(NumberAt(sheet, x, y),
                          Named(static_cast<std::size_t>(x % tile.x / (zoom + 1)),
                                static_cast<std::size_t>(y / (zoom + 1)), static_cast<std::size_t>(x / tile.x + 1)));
        canvas->ZoomIn();
    }
}

TEST_F(TruePicturesTest, SlicesBeyondTheImageAreLeftOutOfAGallery) {
    Open({9, 8, 5});
    canvas->SetTruePictures({false, false, true});
    ExpectSize(Gallery({-3, 50, 1, true, 1, 0}), 45, 8);
}

TEST_F(TruePicturesTest, AHiddenWindowHasNoGallery) {
    Open();
    canvas->SetTruePictures({false, false, true});
    canvas->ShowDrWin(zel_PT_XY, false);
    DialogAnswers answers;
    answers.Expect([](wxDialog& box) {
        EXPECT_EQ(dynamic_cast<wxMessageDialog&>(box).GetMessage(),
                  "Selected projection(s) can not be saved\nbecause they are not visible!");
        return wxID_OK;
    });
    canvas->SaveGalleryView((folder / "gallery.tif").c_str(), 0, 4, 1, true, 1, 0);
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(TruePicturesTest, TheCutPointerIsMirroredWithThePicture) {
    Open({9, 8, 5});
    canvas->ZoomIn(); // two pixels a voxel
    DrawCut();
    canvas->ChangeCut({2.5F, 4.5F, 1.5F});
    canvas->SetTruePictures({false, true, false});
    EXPECT_EQ(BlueColumn(zel_PT_XY), 5); // pixels 4 and 5 show voxel 2
    EXPECT_EQ(BlueColumn(zel_PT_YZ), 3);
    canvas->ToggleAxisReverse(0);
    EXPECT_EQ(BlueColumn(zel_PT_XY), 12); // of 18
    EXPECT_EQ(BlueColumn(zel_PT_XZ), 12);
    canvas->ToggleAxisReverse(2);
    EXPECT_EQ(BlueColumn(zel_PT_YZ), 6); // of 10
    canvas->SetTruePictures({});
    EXPECT_EQ(BlueColumn(zel_PT_XY), 5); // as ever, whatever is mirrored
}

TEST_F(TruePicturesTest, TheScaleBarIsThatOfThePicture) {
    Open({60, 50, 40}, 1, {2, 2, 0.5F});
    zel_CanvasSettings settings;
    canvas->GetSettings(settings);
    settings.baseScale = {2, 2, 2}; // true proportions: 60 x 50 x 160 pixels
    settings.showAnnotation = true;
    settings.annotation.textXY = settings.annotation.textXZ = settings.annotation.textYZ = "";
    settings.scaleBar.thickness = 1;
    settings.scaleBar.position = 0;
    settings.scaleBar.colour = wxColour(0, 0, 255);
    canvas->SetSettings(settings);
    ResizeClient(*frame, {400, 400});
    canvas->SetTruePictures({true, false, false});
    canvas->Refresh(false);
    canvas->Update();
    // 60 / 6 = 10 pixels are 5 microns. The leg along z has the same 10 pixels, where the old one had 0.5 * 1 of them.
    const wxImage picture = canvas->GetDrWin(zel_PT_XZ)->GetPointerImage();
    ASSERT_EQ(picture.GetSize(), wxSize(60, 160));
    int longest = 0;
    for (int x = 0; x < picture.GetWidth(); ++x) {
        int blue = 0;
        for (int y = 0; y < picture.GetHeight(); ++y)
            blue += picture.GetBlue(x, y) == 255 && picture.GetRed(x, y) == 0 ? 1 : 0;
        longest = std::max(longest, blue);
    }
    EXPECT_NEAR(longest, 10, 1); // the pen may leave out the last pixel
}
