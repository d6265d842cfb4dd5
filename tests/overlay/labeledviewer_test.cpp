// Labels in whole viewers, pixel by pixel.

#include "model/zel_labelpicture.h"
#include "tests/overlay/labeled_viewer.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/text_of.h"

#include <algorithm>
#include <complex>

using namespace zel;
using namespace zel::test;

namespace {

using Label = unsigned short;
using Size3 = kep::Vector3d<std::size_t>;

/// Bricks with gaps between, which no mirroring or exchange of axes maps onto themselves.
std::size_t Bricks(std::size_t x, std::size_t y, std::size_t z, std::size_t t) {
    const bool gap = x % 6 == 5 || y % 5 == 4 || z == 7;
    return gap ? 0 : 1 + x / 6 + 4 * (y / 10) + 7 * (z / 4) + t + (x < 3 && y > 11 ? 5 : 0);
}

template <typename V>
std::unique_ptr<LabelImage<V>> BrickLabels(Size3 size, std::size_t frames) {
    return MakeLabels<V>(size, frames, Bricks);
}

std::unique_ptr<mor::Image4d<unsigned char>> Ramp(Size3 size, std::size_t frames) {
    return MakeImage<unsigned char>(size, frames,
                                    [](auto x, auto y, auto z, auto t) { return 30 + 3 * x + 2 * y + 9 * z + t; });
}

using Viewer = LabeledViewer<unsigned char, unsigned short>;

std::unique_ptr<Viewer> OpenBricks(Size3 size = {20, 16, 9}, std::size_t frames = 2, std::size_t labelFrames = 2) {
    return std::make_unique<Viewer>(Ramp(size, frames), BrickLabels<unsigned short>(size, labelFrames));
}

/// A window's picture as it lies in memory: XY and XZ as they are seen, YZ with y along its rows.
struct MemoryPicture {
    std::size_t width, height;
    std::vector<Colour> pixels;
};

MemoryPicture ExpectedPicture(const Viewer& viewer, zel_ProjectionType type, std::size_t zoom) {
    const Plane& plane = *FindPlane(type);
    const Size3 size = viewer.image->GetSize();
    const auto t = static_cast<std::size_t>(viewer.canvas->GetTime());
    const bool hasLabels = t < viewer.labels->GetNumFrames();
    const Axis row = plane.isTurned ? plane.vertical : plane.horizontal;
    const Axis column = plane.isTurned ? plane.horizontal : plane.vertical;
    MemoryPicture picture{At(size, row) * zoom, At(size, column) * zoom, {}};
    const bool isCut = viewer.canvas->GetContent(type) == zel_PC_CUT;
    std::vector<LabelPixel> labels, outlines;
    kep::Image3d<unsigned short> projected, outlined;
    if (!isCut && hasLabels) {
        const auto project = type == zel_PT_XY   ? kep::Get_Labeled_AF_XY<Label, unsigned short>
                             : type == zel_PT_XZ ? kep::Get_Labeled_AF_XZ<Label, unsigned short>
                                                 : kep::Get_Labeled_AF_YZ<Label, unsigned short>;
        project(*viewer.labels->GetImage(t), projected, nullptr, false);
        project(*viewer.labels->GetImage(t), outlined, nullptr, true);
    }
    for (std::size_t j = 0; j < picture.height; ++j)
        for (std::size_t i = 0; i < picture.width; ++i) {
            Size3 at;
            At(at, row) = i / zoom;
            At(at, column) = j / zoom;
            Size3 flat = at;
            unsigned char gray = 0;
            if (isCut) {
                At(at, plane.third) = At(size, plane.third) / 2;
                gray = viewer.image->GetVoxel(at, t);
            } else {
                for (std::size_t k = 0; k < At(size, plane.third); ++k) {
                    At(at, plane.third) = k;
                    gray = std::max(gray, viewer.image->GetVoxel(at, t));
                }
            }
            picture.pixels.emplace_back(gray, gray, gray);
            if (!hasLabels)
                continue;
            labels.push_back(isCut ? viewer.labels->GetVoxel(at, t) : projected.GetVoxel(flat));
            if (!isCut)
                outlines.push_back(outlined.GetVoxel(flat));
        }
    if (!hasLabels || !viewer.module->GetOverlaying())
        return picture;
    const auto colourOf = [&](LabelPixel label) {
        return viewer.module->GetPalette()[label % viewer.module->GetPaletteSize()];
    };
    const float transparency = viewer.module->GetTransparency();
    if (isCut) {
        MarkBoundaries(labels.data(), picture.width, picture.height);
        BlendCut(labels.data(), labels.size(), transparency, colourOf, picture.pixels.data());
    } else {
        BlendProjection(labels.data(), outlines.data(), labels.size(), transparency, colourOf, picture.pixels.data());
    }
    return picture;
}

/// All three windows show what the labels and the voxels give, turned and mirrored as the axes ask.
void ExpectPictures(const Viewer& viewer, const std::string& when, std::size_t zoom = 1) {
    for (const Plane& plane : planes) {
        const MemoryPicture expected = ExpectedPicture(viewer, plane.type, zoom);
        const std::size_t width = plane.isTurned ? expected.height : expected.width;
        const std::size_t height = plane.isTurned ? expected.width : expected.height;
        const wxImage picture = viewer.Picture(plane.type);
        ASSERT_EQ(picture.GetSize(), wxSize(static_cast<int>(width), static_cast<int>(height))) << when;
        const auto isReversed = [&](Axis axis) {
            return viewer.canvas->IsAxisReversed(static_cast<std::size_t>(axis));
        };
        int wrong = 0;
        for (std::size_t y = 0; y < height; ++y)
            for (std::size_t x = 0; x < width; ++x) {
                const std::size_t h = isReversed(plane.horizontal) ? width - 1 - x : x;
                const std::size_t v = isReversed(plane.vertical) ? height - 1 - y : y;
                const Colour colour = expected.pixels[plane.isTurned ? h * expected.width + v : v * expected.width + h];
                const int px = static_cast<int>(x), py = static_cast<int>(y);
                if (Colour(picture.GetRed(px, py), picture.GetGreen(px, py), picture.GetBlue(px, py)) != colour)
                    ++wrong;
            }
        EXPECT_EQ(wrong, 0) << when << ", window " << plane.type;
    }
}

class LabeledViewerTest : public GuiTest {
protected:
    LogCatcher toolkitLog;
};

template <typename T>
T VoxelOf(std::size_t value) {
    return static_cast<T>(value);
}
template <>
kep::RGB_generic<unsigned char> VoxelOf(std::size_t value) {
    return {static_cast<unsigned char>(value), 5, 9};
}
template <>
kep::RGB_generic<unsigned short> VoxelOf(std::size_t value) {
    return {static_cast<unsigned short>(256 * value), 5, 9};
}
template <>
std::complex<float> VoxelOf(std::size_t value) {
    return {static_cast<float>(value), 1.0F};
}

/// Opens one of the forms, and looks at a pixel inside of label 5, which is (0, 255, 255), in each window.
template <typename T, typename V>
void ExpectForm(const char* typeName) {
    SCOPED_TRACE(typeName);
    const Size3 size{12, 10, 8};
    LabeledViewer<T, V> viewer(
        MakeImage<T>(size, 2, [](auto x, auto y, auto, auto) { return VoxelOf<T>(20 + x + y); }),
        MakeLabels<V>(size, 2, [](auto x, auto y, auto z, auto) { return x > 1 && y > 1 && z > 1 ? 5 : 0; }));
    EXPECT_EQ(viewer.canvas->GetImageTypeName(), typeName);
    ASSERT_EQ(viewer.frame->GetMenuBar()->GetMenuCount(), 4U);
    const auto at = [&](zel_ProjectionType type, int x, int y) {
        const wxImage picture = viewer.Picture(type);
        return Colour(picture.GetRed(x, y), picture.GetGreen(x, y), picture.GetBlue(x, y));
    };
    const Colour label(0, 255, 255);
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ})
        EXPECT_NE(at(type, 5, 5), label) << "off at first";
    for (const int content : {0, 1}) {
        viewer.Choose(zel_OE_COMPONENTS);
        for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
            EXPECT_EQ(at(type, 5, 5), label) << content << ", window " << type;
            EXPECT_NE(at(type, 0, 0), label) << content << ", window " << type;
        }
        viewer.Choose(zel_OE_BOUNDARY);
        for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
            EXPECT_EQ(at(type, 2, 5), label) << content << ", window " << type;
            EXPECT_NE(at(type, 4, 5), label) << content << ", window " << type;
        }
        viewer.Run(zel_CMD_AUTOFOCUS_ALL);
    }
    viewer.canvas->ShowNextImage();
    EXPECT_EQ(at(zel_PT_XY, 2, 5), label);
}

template <typename T>
void ExpectForms(const char* typeName) {
    ExpectForm<T, unsigned char>(typeName);
    ExpectForm<T, unsigned short>(typeName);
    ExpectForm<T, bool>(typeName);
}

} // namespace

TEST_F(LabeledViewerTest, ExistsForTwentyOneForms) {
    ExpectForms<unsigned char>("GRAY8");
    ExpectForms<unsigned short>("GRAY16");
    ExpectForms<int>("Unknown");
    ExpectForms<float>("float");
    ExpectForms<kep::RGB_generic<unsigned char>>("RGB");
    ExpectForms<kep::RGB_generic<unsigned short>>("RGB16");
    ExpectForms<std::complex<float>>("complex");
}

TEST_F(LabeledViewerTest, ShowsEveryStateOfTheMenu) {
    const auto viewer = OpenBricks();
    ExpectPictures(*viewer, "at first");
    viewer->Choose(zel_OE_ENABLE);
    ExpectPictures(*viewer, "enabled");
    for (int press = 0; press < 7; ++press)
        viewer->Choose(zel_OE_MORE_TRANSPARENT);
    ExpectPictures(*viewer, "at 0.35");
    viewer->Choose(zel_OE_USER_COLOUR);
    ExpectPictures(*viewer, "in the user's colour");
    viewer->Choose(zel_OE_BOUNDARY);
    ExpectPictures(*viewer, "outlined");
    viewer->Choose(zel_OE_DEFAULT_PALETTE);
    ExpectPictures(*viewer, "in 14 colours");
    viewer->Choose(zel_OE_LESS_TRANSPARENT);
    ExpectPictures(*viewer, "at 0.95");
    viewer->Choose(zel_OE_COMPONENTS);
    ExpectPictures(*viewer, "filled");
    viewer->Choose(zel_OE_RELOAD);
    ExpectPictures(*viewer, "reloaded");
    viewer->Choose(zel_OE_ENABLE);
    ExpectPictures(*viewer, "off again");
}

TEST_F(LabeledViewerTest, FollowsTimeCutZoomAndContent) {
    const auto viewer = OpenBricks();
    viewer->Choose(zel_OE_BOUNDARY);
    viewer->Choose(zel_OE_LESS_TRANSPARENT);
    viewer->canvas->ShowNextImage();
    ExpectPictures(*viewer, "the second frame");
    viewer->Run(zel_CMD_AUTOFOCUS_ALL);
    ExpectPictures(*viewer, "in projection");
    viewer->Choose(zel_OE_BOUNDARY);
    ExpectPictures(*viewer, "outlined in projection");
    viewer->Choose(zel_OE_COMPONENTS);
    ExpectPictures(*viewer, "filled in projection");
    viewer->Run(zel_CMD_AUTOFOCUS_XZ); // back to the cut in this one
    ExpectPictures(*viewer, "in two projections and a cut");
    viewer->Run(zel_CMD_AUTOFOCUS_ALL);
    viewer->Run(zel_CMD_AUTOFOCUS_ALL);
    viewer->Choose(zel_OE_BOUNDARY);
    viewer->Run(zel_CMD_ZOOM_IN);
    EXPECT_TRUE(WaitUntil([&] { return viewer->Picture(zel_PT_XY).GetSize() == wxSize(40, 32); }));
    ExpectPictures(*viewer, "twice as large", 2);
}

TEST_F(LabeledViewerTest, MirrorsLabelsWithThePicture) {
    const auto viewer = OpenBricks();
    viewer->Choose(zel_OE_BOUNDARY);
    for (int axes = 1; axes <= 8; ++axes) {
        // A Gray code: all eight states, one axis at a time.
        viewer->Run(zel_CMD_REVERSE_X + (axes % 2 != 0 ? 0 : axes % 4 != 0 ? 1 : 2));
        ExpectPictures(*viewer, "mirrored in place, " + std::to_string(axes));
        viewer->Choose(zel_OE_LESS_TRANSPARENT);
        ExpectPictures(*viewer, "painted over again, " + std::to_string(axes));
        viewer->Run(zel_CMD_AUTOFOCUS_ALL);
        ExpectPictures(*viewer, "in the other content, " + std::to_string(axes));
    }
}

TEST_F(LabeledViewerTest, FramesBeyondTheLabelsAreShownWithoutAndTheNextWithAgain) {
    const auto viewer = OpenBricks({20, 16, 9}, 3, 2);
    viewer->Choose(zel_OE_COMPONENTS);
    for (const int time : {0, 1, 2, 1}) {
        viewer->canvas->GetImageIterator();
        while (viewer->canvas->GetTime() != time)
            PressKey(*viewer->canvas->GetDrWin(zel_PT_XY), time > viewer->canvas->GetTime() ? '=' : '-');
        ExpectPictures(*viewer, "frame " + std::to_string(time));
        viewer->Choose(zel_OE_MORE_TRANSPARENT);
        ExpectPictures(*viewer, "and after a command, frame " + std::to_string(time));
    }
}

TEST_F(LabeledViewerTest, LabelsAddedLaterAreShownAtTheNextCommand) {
    const auto viewer = OpenBricks({20, 16, 9}, 2, 1);
    viewer->canvas->ShowNextImage();
    viewer->Choose(zel_OE_BOUNDARY);
    ExpectPictures(*viewer, "without labels");
    viewer->labels->MakeRoom({20, 16, 9}, 2);
    FillLabels(*viewer->labels, 1, Bricks);
    viewer->Choose(zel_OE_LESS_TRANSPARENT);
    ExpectPictures(*viewer, "with labels");
    viewer->Run(zel_CMD_AUTOFOCUS_ALL);
    ExpectPictures(*viewer, "in projection");
}

TEST_F(LabeledViewerTest, WithoutLabelsIsAPlainViewerWithTheMenu) {
    Viewer viewer(Ramp({20, 16, 9}, 2), nullptr);
    viewer.labels = BrickLabels<unsigned short>({20, 16, 9}, 0); // for the expectations alone
    for (const int entry : {0, 2, 3, 7, 8, 4, 5, 1}) {
        viewer.Choose(entry);
        ExpectPictures(viewer, std::to_string(entry));
    }
    viewer.Run(zel_CMD_AUTOFOCUS_ALL);
    ExpectPictures(viewer, "in projection");
}

TEST_F(LabeledViewerTest, LabelsOfAnotherSizeLieByMicronsAndCoverNoMore) {
    // 5 x 4 x 3 labels from (4, 2, 3) on, in an image of 20 x 16 x 9.
    auto labels = MakeLabels<unsigned short>({5, 4, 3}, 1, [](auto, auto, auto, auto) { return 1; });
    labels->SetOffset({4, 2, 3});
    Viewer viewer(MakeImage<unsigned char>({20, 16, 9}, 1, [](auto, auto, auto, auto) { return 60; }),
                  std::move(labels));
    viewer.Choose(zel_OE_COMPONENTS);
    viewer.canvas->ChangeCut({6.5F, 4.5F, 4.5F});
    const auto letterOf = [](Colour colour) {
        return colour == Colour(255, 0, 0) ? '1' : colour == Colour(60, 60, 60) ? '.' : '?';
    };
    std::vector<std::string> expected(16, std::string(20, '.'));
    for (std::size_t y = 2; y < 6; ++y)
        expected[y].replace(4, 5, "11111");
    EXPECT_EQ(viewer.Letters(zel_PT_XY, letterOf), expected);
    viewer.Run(zel_CMD_AUTOFOCUS_ALL);
    EXPECT_EQ(viewer.Letters(zel_PT_XY, letterOf), expected);
    expected.assign(9, std::string(20, '.'));
    for (std::size_t z = 3; z < 6; ++z)
        expected[z].replace(4, 5, "11111");
    EXPECT_EQ(viewer.Letters(zel_PT_XZ, letterOf), expected);
}

TEST_F(LabeledViewerTest, ASingleVoxelHasItsLabel) {
    Viewer viewer(MakeImage<unsigned char>({1, 1, 1}, 1, [](auto, auto, auto, auto) { return 60; }),
                  MakeLabels<unsigned short>({1, 1, 1}, 1, [](auto, auto, auto, auto) { return 15; }));
    for (const int entry : {zel_OE_COMPONENTS, zel_OE_BOUNDARY}) {
        viewer.Choose(entry);
        for (int content = 0; content < 2; ++content) {
            for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ})
                EXPECT_EQ(ColourAt(viewer.Picture(type), {0, 0}), wxColour(255, 0, 0)) << "15 = 14 + 1";
            viewer.Run(zel_CMD_AUTOFOCUS_ALL);
        }
    }
}

TEST_F(LabeledViewerTest, LabelsOf16BitsLookLikeBoundaries) {
    // 32769 is 1 with the highest bit; 32768 is background with it.
    Viewer viewer(
        MakeImage<unsigned char>({9, 9, 1}, 1, [](auto, auto, auto, auto) { return 60; }),
        MakeLabels<unsigned short>({9, 9, 1}, 1, [](auto x, auto, auto, auto) { return x < 5 ? 32769 : 32768; }));
    viewer.Choose(zel_OE_BOUNDARY);
    EXPECT_EQ(ColourAt(viewer.Picture(zel_PT_XY), {2, 4}), wxColour(255, 0, 0)) << "inside, at full transparency";
    EXPECT_EQ(ColourAt(viewer.Picture(zel_PT_XY), {7, 4}), wxColour(60, 60, 60));
    viewer.Run(zel_CMD_AUTOFOCUS_ALL);
    viewer.Choose(zel_OE_COMPONENTS);
    viewer.Picture(zel_PT_XY);
}

TEST_F(LabeledViewerTest, BearsWindowsWithoutSizeAndAnyOrderOfCommands) {
    const auto viewer = OpenBricks();
    viewer->Choose(zel_OE_BOUNDARY);
    for (const wxSize size : {wxSize(1, 1), wxSize(200, 7), wxSize(3, 200), wxSize(0, 0), wxSize(60, 50)}) {
        viewer->canvas->SetSize(size);
        for (const int entry : {3, 8, 1, 0, 0, 5})
            viewer->Choose(entry);
        viewer->Run(zel_CMD_AUTOFOCUS_ALL);
        viewer->canvas->ShowNextImage();
        viewer->Run(zel_CMD_ZOOM_IN);
        viewer->Run(zel_CMD_ZOOM_OUT);
        viewer->canvas->OnDataChange();
        viewer->canvas->ShowDrWin(zel_PT_ALL, false);
        viewer->Choose(3);
        viewer->canvas->ShowDrWin(zel_PT_ALL, true);
        viewer->canvas->Update();
        Pump();
    }
    viewer->Run(zel_CMD_NORMAL_ZOOM);
    viewer->Run(zel_CMD_ADJUST_FRAME_SIZE);
    EXPECT_TRUE(WaitUntil([&] { return viewer->Picture(zel_PT_XY).GetSize() == wxSize(20, 16); }));
    ExpectPictures(*viewer, "and all is well afterwards");
}

TEST_F(LabeledViewerTest, TheHostMayDeleteItsLabelsOnceTheViewerIsToGo) {
    for (const bool isDeleted : {true, false}) {
        auto viewer = OpenBricks();
        viewer->Choose(zel_OE_BOUNDARY);
        viewer->canvas->MakeDirtyAndRefresh(zel_PT_ALL);
        if (isDeleted)
            delete viewer->frame.get();
        else
            viewer->frame->Destroy();
        viewer->labels.reset();
        viewer->image.reset();
        if (viewer->frame) { // still on the screen, and painted once more
            viewer->canvas->Refresh(false);
            viewer->canvas->Update();
        }
        Pump();
        EXPECT_EQ(viewer->frame.get(), nullptr);
    }
}

TEST_F(LabeledViewerTest, SeveralViewersOfOneLabelImageDoNotMeet) {
    const auto image = Ramp({20, 16, 9}, 1);
    const auto labels = BrickLabels<bool>({20, 16, 9}, 1);
    const auto open = [&] {
        auto* const frame = zel_CreateLabeledImage3dFrame<unsigned char, Label, bool>(
            image.get(), labels.get(), false, false, nullptr, wxID_ANY, "viewer", wxDefaultPosition, wxDefaultSize,
            wxDEFAULT_FRAME_STYLE);
        EXPECT_TRUE(ShowAndWait(*frame));
        return frame;
    };
    auto* const first = open();
    auto* const second = open();
    first->ProcessCommand(6061 + zel_OE_BOUNDARY);
    const auto& other = dynamic_cast<zel_BasicOverlayingModule<Label, bool>&>(*second->GetEventHandler());
    EXPECT_FALSE(other.GetOverlaying());
    first->Destroy();
    Pump();
    second->ProcessCommand(6061 + zel_OE_ENABLE);
    second->GetCanvas()->Update();
    EXPECT_TRUE(other.GetOverlaying());
    second->Destroy();
}

namespace {

class WatchedLabels : public kep::LabeledImage3d<Label, bool> {
public:
    explicit WatchedLabels(bool& gone) : m_gone(gone) { MakeRoom(4, 4, 4); }
    ~WatchedLabels() override { m_gone = true; }

private:
    bool& m_gone;
};

std::unique_ptr<LabelImage<bool>> Watched(bool& gone) {
    gone = false;
    auto labels = MakeLabels<bool>({4, 4, 4}, 1, [](auto, auto, auto, auto) { return 1; });
    delete std::exchange(labels->GetVoxelData()[0], new WatchedLabels(gone));
    return labels;
}

template <typename T>
zel_Viewer3dFrame* OpenOwning(mor::Image4d<T>* image, LabelImage<bool>* labels, bool ownsLabels, wxWindow* parent) {
    return zel_CreateLabeledImage3dFrame<T, Label, bool>(image, labels, true, ownsLabels, parent, 4711, "a title",
                                                         wxPoint(30, 40), wxDefaultSize, wxDEFAULT_FRAME_STYLE);
}

} // namespace

TEST_F(LabeledViewerTest, DeletesWhatItOwnsWhenItGoes) {
    for (const bool ownsLabels : {true, false}) {
        bool gone = false;
        auto labels = Watched(gone);
        auto* const frame = OpenOwning(Ramp({4, 4, 4}, 1).release(), labels.get(), ownsLabels, nullptr);
        if (ownsLabels)
            labels.release();
        EXPECT_EQ(frame->GetTitle(), "a title");
        EXPECT_EQ(frame->GetId(), 4711);
        EXPECT_FALSE(frame->IsShown());
        EXPECT_TRUE(ShowAndWait(*frame));
        EXPECT_FALSE(gone);
        frame->Destroy();
        Pump();
        EXPECT_EQ(gone, ownsLabels);
    }
}

TEST_F(LabeledViewerTest, AFailureLeavesImageAndLabelsToTheCaller) {
    bool gone = false;
    const auto labels = Watched(gone);
    auto* const parent = new wxFrame(nullptr, wxID_ANY, "host");
    const auto constant = MakeImage<float>({4, 4, 4}, 1, [](auto, auto, auto, auto) { return 1.5F; });
    EXPECT_EQ(TextOf([&] { OpenOwning(constant.get(), labels.get(), true, parent); }),
              "Consistency check failed. Constant images are not supported! (Value=1.500000)");
    mor::Image4d<unsigned char> empty;
    EXPECT_EQ(TextOf([&] { OpenOwning(&empty, labels.get(), true, parent); }),
              "Consistency check failed. Empty images are not supported!");
    Pump();
    EXPECT_EQ(parent->GetChildren().size(), 2U) << "the half-made frames";
    EXPECT_EQ(constant->GetVoxel(3, 3, 3, 0), 1.5F);
    parent->Destroy();
    Pump();
    EXPECT_FALSE(gone);
    EXPECT_EQ(labels->GetImage(0)->GetSize(), (Size3{4, 4, 4}));
}

TEST_F(LabeledViewerTest, TakesTheMappingFromTheImageItself) {
    // No copy is made, so what the mapping knows of a float image are the extremes that the image keeps.
    const auto image = MakeImage<float>({9, 8, 7}, 1, [](auto x, auto, auto, auto) { return x; });
    image->SetVoxel(0, 0, 0, 0, -50.0F);
    auto* const frame =
        zel_CreateLabeledImage3dFrame<float, Label, bool>(image.get(), nullptr, false, false, nullptr, wxID_ANY, "",
                                                          wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    const auto& module = dynamic_cast<zel_GrayMappingModule<float>&>(*frame->GetEventHandler()->GetNextHandler());
    EXPECT_EQ(module.GetRangeMin(), 0.0F);
    EXPECT_EQ(module.GetRangeMax(), 8.0F);
    frame->Destroy();
}

TEST_F(LabeledViewerTest, AGalleryHasTheLabelsOfEachSlice) {
    const auto viewer = OpenBricks();
    viewer->Choose(zel_OE_COMPONENTS);
    const ScratchFolder folder;
    const std::string name = folder / "gallery.tif";
    viewer->canvas->SaveGalleryView(name.c_str(), 1, 8, 1, true, 1, 0);
    const kep::Image3d<Colour> sheet(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    ASSERT_EQ(sheet.GetSize(), Size3(8 * 20, 16, 1));
    const kep::Vector3d<float> cut = viewer->canvas->GetCut();
    for (std::size_t z = 1; z < 9; ++z) {
        viewer->canvas->ChangeCut({cut.x, cut.y, static_cast<float>(z) + 0.5F});
        const wxImage picture = viewer->Picture(zel_PT_XY);
        ASSERT_EQ(picture.GetSize(), wxSize(20, 16));
        std::size_t coloured = 0;
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 20; ++x) {
                const Colour seen(picture.GetRed(x, y), picture.GetGreen(x, y), picture.GetBlue(x, y));
                coloured += seen.red != seen.green ? 1 : 0;
                ASSERT_EQ(sheet.GetVoxel((z - 1) * 20 + static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0),
                          seen)
                    << x << " " << y << " " << z;
            }
        EXPECT_EQ(coloured > 0, z != 7) << "there is a gap in the bricks";
    }
}
