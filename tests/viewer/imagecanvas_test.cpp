#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/dcmemory.h>

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

/// A voxel that names its place: 1 + x + 10 y + 100 z + 1000 t, in an image below 10 x 10 x 10.
unsigned short Named(std::size_t x, std::size_t y, std::size_t z, std::size_t t = 0) {
    return static_cast<unsigned short>(1 + x + 10 * y + 100 * z + 1000 * t);
}

std::unique_ptr<mor::Image4d<unsigned short>> NamedImage(kep::Vector3d<std::size_t> size, std::size_t frames = 1,
                                                         const kep::Resolution& resolution = {1, 1, 1},
                                                         kep::Vector3d<float> offset = {}) {
    return MakeImage<unsigned short>(size, frames, Named, resolution, offset);
}

class OpenCanvas : public zel_ImageViewer3dCanvas<unsigned short> {
public:
    using zel_ImageViewer3dCanvas<unsigned short>::zel_ImageViewer3dCanvas;
    using zel_ImageViewer3dCanvas<unsigned short>::GetSlice;
    using zel_ImageViewer3dCanvas<unsigned short>::IsColourDirty;
    using zel_ImageViewer3dCanvas<unsigned short>::IsDataDirty;
    using zel_Viewer3dCanvas::m_iterator;

    void UpdateVolVis() override { ++volumeUpdates; }
    void InfoFrame_UpdatePixelInfo() override { ++pixelInfos; }
    int volumeUpdates = 0;
    int pixelInfos = 0;
};

class ImageCanvasTest : public GuiTest {
protected:
    void Open(std::unique_ptr<mor::Image4d<unsigned short>> newImage, wxSize client = {300, 280}) {
        image = std::move(newImage);
        frame = new wxFrame(nullptr, wxID_ANY, "title of the host");
        canvas = new OpenCanvas(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
        HideDecorations(*canvas);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, client));
    }
    void TearDown() override {
        if (frame != nullptr)
            frame->Destroy();
        GuiTest::TearDown();
    }
    /// The number that a pixel of a window's picture shows.
    int At(zel_ProjectionType type, int x, int y) {
        const wxImage picture = canvas->GetDrWin(type)->GetPointerImage();
        return picture.GetRed(x, y) + 256 * picture.GetGreen(x, y);
    }
    wxSize Inner(zel_ProjectionType type) { return canvas->GetDrWin(type)->GetClientSize(); }
    /// The windows' numbers are those that the layout and the voxels give, pixel by pixel.
    void ExpectCut(std::size_t cx, std::size_t cy, std::size_t cz, int zoom = 1) {
        canvas->Refresh(false);
        canvas->Update();
        const auto n = [zoom](int pixel) { return static_cast<std::size_t>(pixel / zoom); };
        const wxImage xy = canvas->GetDrWin(zel_PT_XY)->GetPointerImage();
        for (int y = 0; y < xy.GetHeight(); ++y)
            for (int x = 0; x < xy.GetWidth(); ++x)
                ASSERT_EQ(xy.GetRed(x, y) + 256 * xy.GetGreen(x, y), Named(n(x), n(y), cz)) << x << " " << y;
        const wxImage xz = canvas->GetDrWin(zel_PT_XZ)->GetPointerImage();
        for (int y = 0; y < xz.GetHeight(); ++y)
            for (int x = 0; x < xz.GetWidth(); ++x)
                ASSERT_EQ(xz.GetRed(x, y) + 256 * xz.GetGreen(x, y), Named(n(x), cy, n(y))) << x << " " << y;
        const wxImage yz = canvas->GetDrWin(zel_PT_YZ)->GetPointerImage();
        for (int y = 0; y < yz.GetHeight(); ++y)
            for (int x = 0; x < yz.GetWidth(); ++x)
                ASSERT_EQ(yz.GetRed(x, y) + 256 * yz.GetGreen(x, y), Named(cx, n(y), n(x))) << x << " " << y;
    }

    PlainMapper<unsigned short> mapper;
    std::unique_ptr<mor::Image4d<unsigned short>> image;
    wxFrame* frame = nullptr;
    OpenCanvas* canvas = nullptr;
};

} // namespace

TEST_F(ImageCanvasTest, ShowsTheThreeCutsThroughTheMiddle) {
    Open(NamedImage({9, 8, 5}));
    EXPECT_EQ(Inner(zel_PT_XY), wxSize(9, 8));
    EXPECT_EQ(Inner(zel_PT_XZ), wxSize(9, 5));
    EXPECT_EQ(Inner(zel_PT_YZ), wxSize(5, 8));
    // The middle voxel is 9 / 2, 8 / 2, 5 / 2 = 4, 4, 2; its centre is half a voxel further.
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(4.5F, 4.5F, 2.5F));
    ExpectCut(4, 4, 2);
    EXPECT_EQ(canvas->GetImageSize(), (kep::Vector3d<std::size_t>(9, 8, 5)));
    EXPECT_EQ(canvas->GetImageCount(), 1);
    EXPECT_EQ(canvas->GetTime(), 0);
    EXPECT_EQ(canvas->GetResolution(), kep::Resolution(1, 1, 1));
}

TEST_F(ImageCanvasTest, IsExactForOddResolutionsOffsetsAndZooms) {
    Open(NamedImage({9, 8, 5}, 1, {1 / 0.0645F, 1 / 0.0913F, 1 / 0.2017F}, {-17.31F, 2033.7F, 0.123F}));
    EXPECT_EQ(Inner(zel_PT_XY), wxSize(9, 8));
    ExpectCut(4, 4, 2);
    canvas->ZoomIn();
    canvas->ZoomIn();
    EXPECT_EQ(Inner(zel_PT_XY), wxSize(27, 24));
    ExpectCut(4, 4, 2, 3);
}

TEST_F(ImageCanvasTest, AnisotropicVoxelsArePixelsAtTheStart) {
    Open(NamedImage({9, 8, 5}, 1, {5, 5, 1}));
    EXPECT_EQ(canvas->GetBaseScale(), kep::Vector3d<float>(5, 5, 1));
    EXPECT_FLOAT_EQ(canvas->GetCutStep().x, 0.2F);
    EXPECT_FLOAT_EQ(canvas->GetCutStep().z, 1.0F);
    ExpectCut(4, 4, 2);
}

TEST_F(ImageCanvasTest, AnUndefinedResolutionIsShownAsOnePixelAMicron) {
    Open(NamedImage({9, 8, 5}, 1, {0, 0, 0}));
    EXPECT_EQ(canvas->GetResolution(), kep::Resolution(0, 0, 0));
    EXPECT_EQ(canvas->GetBoundingBox().size, kep::Vector3d<float>(9, 8, 5));
    ExpectCut(4, 4, 2);
}

TEST_F(ImageCanvasTest, TheCutShowsInAllWindows) {
    Open(NamedImage({9, 8, 5}));
    canvas->ChangeCut({0.5F, 7.5F, 4.5F});
    ExpectCut(0, 7, 4);
}

TEST_F(ImageCanvasTest, ACutOnTheFarFaceShowsTheLastLayer) {
    Open(NamedImage({9, 8, 5}));
    zel_CanvasSettings settings;
    static_cast<zel_Viewer3dCanvas*>(canvas)->GetSettings(settings);
    // Only a host's own arithmetic can bring the cut there: half a float below the face.
    settings.cut = {std::nextafter(9.0F, 0.0F), std::nextafter(8.0F, 0.0F), std::nextafter(5.0F, 0.0F)};
    static_cast<zel_Viewer3dCanvas*>(canvas)->SetSettings(settings);
    ExpectCut(8, 7, 4);
}

TEST_F(ImageCanvasTest, ReversedAxesMirrorThePicturesInPlaceAndAfterResampling) {
    Open(NamedImage({9, 8, 5}));
    canvas->Update();
    const auto expect = [&](bool rx, bool ry, bool rz) {
        const auto m = [](bool reversed, int i, int extent) {
            return static_cast<std::size_t>(reversed ? extent - 1 - i : i);
        };
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 9; ++x)
                ASSERT_EQ(At(zel_PT_XY, x, y), Named(m(rx, x, 9), m(ry, y, 8), 2));
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 9; ++x)
                ASSERT_EQ(At(zel_PT_XZ, x, y), Named(m(rx, x, 9), 4, m(rz, y, 5)));
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 5; ++x)
                ASSERT_EQ(At(zel_PT_YZ, x, y), Named(4, m(ry, y, 8), m(rz, x, 5)));
    };
    bool flags[3] = {false, false, false};
    for (const int axis : {0, 1, 2, 0, 2, 1}) {
        flags[axis] = canvas->ToggleAxisReverse(axis);
        const int maps = mapper.maps;
        canvas->Update();
        EXPECT_EQ(mapper.maps, maps) << "mirrored without mapping anew";
        expect(flags[0], flags[1], flags[2]);
        canvas->MakeDirtyAndRefresh(zel_PT_ALL);
        canvas->Update();
        EXPECT_EQ(mapper.maps, maps + 3);
        expect(flags[0], flags[1], flags[2]);
    }
}

TEST_F(ImageCanvasTest, AHiddenWindowIsMirroredWhenItIsNextResampled) {
    Open(NamedImage({9, 8, 5}));
    canvas->ShowDrWin(zel_PT_XZ, false);
    canvas->Update();
    canvas->ToggleAxisReverse(2);
    canvas->ShowDrWin(zel_PT_XZ, true);
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XZ, 3, 0), Named(3, 4, 4));
}

TEST_F(ImageCanvasTest, AHiddenWindowIsResampledWhenItIsShown) {
    Open(NamedImage({9, 8, 5}));
    canvas->ShowDrWin(zel_PT_YZ, false);
    Settle();
    canvas->ChangeCut({1.5F, 4.5F, 2.5F});
    canvas->Update();
    EXPECT_TRUE(canvas->IsDataDirty(zel_PT_YZ));
    EXPECT_FALSE(canvas->IsDataDirty(zel_PT_XY));
    wxBitmap bitmap(5, 8);
    wxMemoryDC dc(bitmap);
    canvas->Draw(dc, zel_PT_YZ); // not even when somebody has it drawn
    EXPECT_TRUE(canvas->IsDataDirty(zel_PT_YZ));
    canvas->ShowDrWin(zel_PT_YZ, true);
    EXPECT_TRUE(WaitUntil([&] { return !canvas->IsDataDirty(zel_PT_YZ); }));
    EXPECT_EQ(At(zel_PT_YZ, 3, 2), Named(1, 2, 3));
}

TEST_F(ImageCanvasTest, AChangeOfMappingDoesNotResample) {
    Open(NamedImage({9, 8, 5}));
    canvas->ShowDrWin(zel_PT_YZ, false);
    Settle();
    image->SetVoxel(0, 0, 2, 0, 9999); // behind the canvas's back: shows only after resampling
    const int maps = mapper.maps;
    zel_MappingEvent committed(true);
    canvas->MappingChanged(committed);
    EXPECT_TRUE(canvas->IsColourDirty(zel_PT_XY));
    EXPECT_EQ(canvas->volumeUpdates, 1);
    EXPECT_EQ(mapper.maps, maps) << "the work is done by the next paint";
    canvas->Update();
    EXPECT_EQ(mapper.maps, maps + 2);
    EXPECT_TRUE(canvas->IsColourDirty(zel_PT_YZ)) << "it maps when it is shown";
    EXPECT_EQ(At(zel_PT_XY, 0, 0), Named(0, 0, 2));
    canvas->MakeDirtyAndRefresh(zel_PT_XY);
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 0, 0), 9999);

    zel_MappingEvent preview(false);
    const int before = mapper.maps;
    canvas->MappingChanged(preview);
    EXPECT_EQ(mapper.maps, before + 2) << "a preview is painted at once";
    EXPECT_EQ(canvas->volumeUpdates, 1) << "and does not reach the volume";
}

TEST_F(ImageCanvasTest, APaintForAnyOtherReasonOnlyBlits) {
    Open(NamedImage({9, 8, 5}));
    const int maps = mapper.maps;
    canvas->Refresh(false);
    canvas->Update();
    EXPECT_EQ(mapper.maps, maps);
}

TEST_F(ImageCanvasTest, ScrollingAWindowLeavesTheOthersAlone) {
    Open(NamedImage({9, 8, 5}));
    const int maps = mapper.maps;
    canvas->OnVis3dChange(zel_PT_XZ);
    canvas->Update();
    EXPECT_EQ(mapper.maps, maps + 1);
}

TEST_F(ImageCanvasTest, CutAndContentOfAWindowLeaveTheOthersAlone) {
    Open(NamedImage({9, 8, 5}));
    int maps = mapper.maps;
    canvas->OnCutChange(zel_PT_YZ);
    canvas->Update();
    EXPECT_EQ(mapper.maps, maps + 1);
    maps = mapper.maps;
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_XZ);
    canvas->Update();
    EXPECT_EQ(mapper.maps, maps + 1);
    EXPECT_EQ(At(zel_PT_XZ, 3, 2), Named(3, 7, 2));
    EXPECT_EQ(At(zel_PT_XY, 3, 2), Named(3, 2, 2));
}

TEST_F(ImageCanvasTest, DrawingLeavesGreenForTextsAndTellsOfThePixelUnderThePointer) {
    Open(NamedImage({9, 8, 5}));
    for (const int type : {1, 2, 4, 0, 3, 7}) { // the last three are no windows
        wxBitmap bitmap(9, 8);
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxRED_BRUSH);
        dc.Clear();
        dc.SetTextForeground(*wxBLUE);
        canvas->pixelInfos = 0;
        canvas->Draw(dc, static_cast<zel_ProjectionType>(type));
        EXPECT_EQ(dc.GetTextForeground(), *wxGREEN) << type;
        EXPECT_EQ(canvas->pixelInfos, 1) << type;
        dc.SelectObject(wxNullBitmap);
        const bool isWindow = type == 1 || type == 2 || type == 4;
        EXPECT_EQ(ColourAt(bitmap.ConvertToImage(), {2, 2}) != *wxRED, isWindow) << type;
    }
}

TEST_F(ImageCanvasTest, AutofocusShowsTheMaximumAlongTheThirdAxis) {
    Open(NamedImage({9, 8, 5}, 2));
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 3, 2), Named(3, 2, 4));
    EXPECT_EQ(At(zel_PT_XZ, 3, 2), Named(3, 7, 2));
    EXPECT_EQ(At(zel_PT_YZ, 3, 2), Named(8, 2, 3));
    // Kept: a change of data does not show in a picture that was made before.
    image->SetVoxel(3, 2, 0, 0, 60000);
    canvas->OnDataChange();
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 3, 2), Named(3, 2, 4));
    // Each frame has its own.
    canvas->m_iterator.current = 1;
    canvas->OnTimeChange();
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 3, 2), Named(3, 2, 4, 1));
}

TEST_F(ImageCanvasTest, AutofocusIsFoundWithAnOffsetToo) {
    Open(NamedImage({9, 8, 5}, 1, {2, 3, 4}, {-100, 250, 33}));
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 3, 2), Named(3, 2, 4));
    EXPECT_EQ(At(zel_PT_XZ, 3, 2), Named(3, 7, 2));
    EXPECT_EQ(At(zel_PT_YZ, 3, 2), Named(8, 2, 3));
}

TEST_F(ImageCanvasTest, TimeChangesFrameAndTitle) {
    auto newImage = NamedImage({9, 8, 5}, 3);
    newImage->SetImageName(1, "/data/run 7/cells_01.ome.tif");
    Open(std::move(newImage));
    EXPECT_EQ(frame->GetTitle(), "title of the host");
    EXPECT_EQ(canvas->GetImageIterator().limitLast, 2);
    EXPECT_EQ(canvas->GetImageIterator().rangeLast, 2);
    canvas->m_iterator.current = 1;
    canvas->OnTimeChange();
    EXPECT_EQ(canvas->GetTime(), 1);
    EXPECT_EQ(canvas->volumeUpdates, 1);
    EXPECT_EQ(frame->GetTitle(), "cells_01.ome.tif");
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 3, 2), Named(3, 2, 2, 1));
    canvas->m_iterator.current = 17; // held in the range
    canvas->OnTimeChange();
    EXPECT_EQ(canvas->GetTime(), 2);
}

TEST_F(ImageCanvasTest, AChangeOfDataTakesGeometryAndMakesTheViewIsotropic) {
    Open(NamedImage({9, 8, 5}, 1, {2, 4, 8}));
    EXPECT_EQ(canvas->GetBaseScale(), kep::Vector3d<float>(2, 4, 8));
    image->SetResolution(kep::Resolution(4, 2, 1));
    image->SetOffset({1, 2, 3});
    canvas->OnDataChange();
    EXPECT_EQ(canvas->GetBaseScale(), kep::Vector3d<float>(4, 4, 4));
    EXPECT_EQ(canvas->GetBoundingBox(), MicronBox({1, 2, 3}, {2.25F, 4, 5}));
    EXPECT_EQ(canvas->GetCutStep(), kep::Vector3d<float>(0.25F, 0.5F, 1));
    EXPECT_EQ(canvas->volumeUpdates, 1);
}

TEST_F(ImageCanvasTest, AChangeOfDataBringsTheViewToACutThatIsOutOfSight) {
    Open(MakeImage<unsigned short>({600, 4, 3}, 1, [](auto x, auto, auto, auto) { return x; }));
    const auto showsFrom = [&](float x) {
        canvas->GetView().visibleBox.offset.x = x;
        canvas->OnDataChange();
        return canvas->GetVisibleBox().offset.x;
    };
    const float seen = canvas->GetVisibleBox().size.x; // microns, and pixels
    ASSERT_GT(seen, 200);
    ASSERT_LT(seen, 300);
    ASSERT_EQ(canvas->GetCut().x, 300.5F);
    EXPECT_EQ(showsFrom(100), 100) << "the cut is seen";
    EXPECT_EQ(showsFrom(320), 300.5F - seen / 2);
    canvas->ChangeCut({599.5F, 2, 1});
    EXPECT_EQ(showsFrom(0), 600 - seen);
}

TEST_F(ImageCanvasTest, RemovedFramesPaintNothing) {
    Open(NamedImage({9, 8, 5}, 2));
    canvas->m_iterator.current = 1;
    canvas->OnTimeChange();
    image->RemoveFrame(1);
    canvas->MakeDirtyAndRefresh(zel_PT_ALL);
    canvas->Update();
    EXPECT_EQ(At(zel_PT_XY, 3, 2), 0);
    EXPECT_EQ(canvas->CreateTitle(), "");
}

TEST_F(ImageCanvasTest, XYAsksForNewIconsWhenItIsRecoloured) {
    Open(NamedImage({9, 8, 5}));
    const auto asked = std::make_shared<int>(0); // pending events may come after the test
    frame->Bind(
        wxEVT_UPDATE_UI, [asked](wxUpdateUIEvent&) { ++*asked; }, 6035);
    canvas->MakeDirtyAndRefresh(zel_PT_YZ);
    Settle();
    EXPECT_EQ(*asked, 0);
    canvas->MakeDirtyAndRefresh(zel_PT_XY);
    Settle();
    EXPECT_EQ(*asked, 1);
}

TEST_F(ImageCanvasTest, PicturesLargerThanTheWindowShowTheMiddle) {
    Open(MakeImage<unsigned short>({600, 4, 3}, 1, [](auto x, auto, auto, auto) { return x; }), {300, 280});
    // The visible range is centred on the middle voxel's centre at the first opening, and keeps its centre.
    const MicronBox& visible = canvas->GetVisibleBox();
    EXPECT_LT(visible.size.x, 300);
    EXPECT_GE(visible.offset.x, 0);
    EXPECT_LE(visible.offset.x + visible.size.x, 600);
    const int first = kep::MicronsToVoxel(visible.offset, image->GetOffset(), image->GetResolution()).x;
    for (int x = 0; x < Inner(zel_PT_XY).x; ++x)
        ASSERT_EQ(At(zel_PT_XY, x, 1), first + x);
}

TEST_F(ImageCanvasTest, ANullImageIsAnEmptyCanvas) {
    Open(nullptr);
    EXPECT_EQ(canvas->GetImageSize(), (kep::Vector3d<std::size_t>()));
    EXPECT_EQ(canvas->GetImageCount(), 0);
    EXPECT_EQ(canvas->GetResolution(), kep::Resolution());
    EXPECT_EQ(canvas->CreateTitle(), "");
    EXPECT_EQ(canvas->GetBoundingBox(), MicronBox({0, 0, 0}, {20, 20, 7}));
    canvas->OnDataChange();
    canvas->OnTimeChange();
    EXPECT_EQ(frame->GetTitle(), "title of the host");
    EXPECT_EQ(At(zel_PT_XY, 5, 5), 0);
    EXPECT_EQ(mapper.maps, 0);
    wxBitmap bitmap(9, 8);
    wxMemoryDC dc(bitmap);
    dc.SetTextForeground(*wxBLUE);
    canvas->Draw(dc, zel_PT_XY);
    EXPECT_EQ(dc.GetTextForeground(), *wxBLUE) << "drawing ends at once";
}

TEST_F(ImageCanvasTest, AnImageWithoutFramesIsRefused) {
    frame = new wxFrame(nullptr, wxID_ANY, "empty");
    mor::Image4d<unsigned short> empty;
    EXPECT_THROW(OpenCanvas(frame, mapper, &empty, true, wxID_ANY, wxDefaultPosition, wxDefaultSize),
                 kep::InternalException);
}

TEST_F(ImageCanvasTest, AnOwnedImageGoesWithTheCanvas) {
    frame = new wxFrame(nullptr, wxID_ANY, "owner");
    new OpenCanvas(frame, mapper, NamedImage({3, 3, 3}).release(), true, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    ASSERT_TRUE(ShowAndWait(*frame)); // a leak or a second deletion shows under a memory checker
}

template <typename T>
class ImageCanvasTypes : public GuiTest {};
using DisplayTypes = ::testing::Types<unsigned char, unsigned short, int, float, kep::RGB_generic<unsigned char>,
                                      kep::RGB_generic<unsigned short>, std::complex<float>>;
TYPED_TEST_SUITE(ImageCanvasTypes, DisplayTypes);

namespace {

template <typename T>
const char* expectedName = nullptr;
template <>
const char* expectedName<unsigned char> = "GRAY8";
template <>
const char* expectedName<unsigned short> = "GRAY16";
template <>
const char* expectedName<int> = "Unknown";
template <>
const char* expectedName<float> = "float";
template <>
const char* expectedName<kep::RGB_generic<unsigned char>> = "RGB";
template <>
const char* expectedName<kep::RGB_generic<unsigned short>> = "RGB16";
template <>
const char* expectedName<std::complex<float>> = "complex";

template <typename T>
T Voxel(int v) {
    return static_cast<T>(v);
}
template <>
std::complex<float> Voxel(int v) {
    return {static_cast<float>(v), 0.0F};
}
template <>
kep::RGB_generic<unsigned char> Voxel(int v) {
    return {static_cast<unsigned char>(v), 3, 4};
}
template <>
kep::RGB_generic<unsigned short> Voxel(int v) {
    return {static_cast<unsigned short>(v), 3, 4};
}

} // namespace

TYPED_TEST(ImageCanvasTypes, ShowsItsVoxels) {
    using T = TypeParam;
    const auto image = MakeImage<T>(
        {7, 6, 5}, 1, [](auto x, auto y, auto z, auto) { return Voxel<T>(static_cast<int>((z * 6 + y) * 7 + x)); });
    PlainMapper<T> mapper;
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "types");
    auto* const canvas =
        new zel_ImageViewer3dCanvas<T>(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    HideDecorations(*canvas);
    EXPECT_EQ(canvas->GetImageTypeName(), expectedName<T>);
    EXPECT_EQ(canvas->GetImage(), image.get());
    EXPECT_EQ(&canvas->GetMapper(), &mapper);
    ASSERT_TRUE(ShowAndWait(*frame));
    ASSERT_TRUE(ResizeClient(*frame, {300, 280}));
    const wxImage xy = canvas->GetDrWin(zel_PT_XY)->GetPointerImage();
    ASSERT_EQ(xy.GetSize(), wxSize(7, 6));
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 7; ++x) {
            const auto colour = ToColour<T>::Of(Voxel<T>((2 * 6 + y) * 7 + x));
            ASSERT_EQ(ColourAt(xy, {x, y}), wxColour(colour.red, colour.green, colour.blue));
        }
    zel_ImageCanvasSettings settings;
    canvas->GetSettings(settings);
    EXPECT_EQ(settings.baseScale, kep::Vector3d<float>(1, 1, 1));
    frame->Destroy();
    Pump();
}
