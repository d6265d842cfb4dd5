// What lies under a pixel, and the icons.

#include "image/zel_voxeltext.h"
#include "model/zel_complexparts.h"
#include "tests/viewer/info_fixture.h"

#include <wx/iconbndl.h>

#include <malloc.h>

#include <random>

using namespace zel;
using namespace zel::test;

namespace {

using Texts = std::vector<std::string>;
using Microns = kep::Vector3d<float>;

/// Brings the view into a random state of zoom, scrolling, reversal and cut.
class RandomView {
public:
    explicit RandomView(unsigned seed) : m_random(seed) {}
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    float Between(float low, float high) { return std::uniform_real_distribution<float>(low, high)(m_random); }
    wxPoint PixelOf(const wxWindow& window) {
        return {Below(window.GetClientSize().x), Below(window.GetClientSize().y)};
    }
    void Shake(zel_Viewer3dCanvas& canvas, bool withReversals) {
        canvas.NormalZoom();
        for (int level = Below(12) - 2; level != 0; level += level < 0 ? 1 : -1)
            level < 0 ? canvas.ZoomOut() : canvas.ZoomIn();
        const MicronBox& box = canvas.GetBoundingBox();
        const auto inBox = [&](Axis axis) { return At(box.offset, axis) + At(box.size, axis) * Between(0.02F, 0.98F); };
        canvas.ChangeCut({inBox(Axis::X), inBox(Axis::Y), inBox(Axis::Z)});
        for (const Plane& plane : planes)
            canvas.Apply(canvas.GetView().CentreOn(plane, inBox(plane.horizontal), inBox(plane.vertical)));
        for (const int axis : {0, 1, 2})
            if (withReversals && Below(2) == 1)
                canvas.ToggleAxisReverse(axis);
    }

private:
    std::mt19937 m_random;
};

/// A text control's position of a drawing window's pixel, by the window's own conversion.
std::string PositionAt(const zel_DrWin3d& window, const wxPoint& pixel, const Microns& cut) {
    const Microns at = window.WindowToImage(
        {window.WindowXToMicrons(pixel.x), window.WindowYToMicrons(pixel.y), At(cut, window.GetPlane().third)});
    return wxString::Format("[%.3f, %.3f, %.3f]", static_cast<double>(at.x), static_cast<double>(at.y),
                            static_cast<double>(at.z))
        .utf8_string();
}

bool IsInBox(const MicronBox& box, const zel_DrWin3d& window, const wxPoint& pixel) {
    const auto along = [&](Axis axis, float at) {
        return at >= At(box.offset, axis) && at < At(box.offset, axis) + At(box.size, axis);
    };
    return along(window.GetPlane().horizontal, window.WindowXToMicrons(pixel.x)) &&
           along(window.GetPlane().vertical, window.WindowYToMicrons(pixel.y));
}

} // namespace

TEST_F(InfoTest, ValueNumberAndColourAreThoseOfOneVoxel) {
    for (const bool withReversals : {false, true}) {
        Open(Numbered(1, {1.5F, 1, 0.8F}, {-7.25F, 300, 1}), {280, 240});
        RandomView hand(withReversals ? 5 : 6);
        int found = 0, beside = 0;
        for (int round = 0; round < 40; ++round) {
            hand.Shake(*canvas, withReversals);
            canvas->Refresh(false);
            Paint();
            for (const Plane& plane : planes) {
                zel_DrWin3d& window = Window(plane.type);
                const wxImage picture = window.GetPointerImage();
                for (int i = 0; i < 40; ++i) {
                    const wxPoint pixel = hand.PixelOf(window);
                    const auto info = canvas->GetPixelInfo(plane.type, pixel);
                    ASSERT_EQ(info.has_value(), IsInBox(canvas->GetBoundingBox(), window, pixel));
                    if (!info) {
                        ++beside;
                        continue;
                    }
                    ++found;
                    ASSERT_EQ(info->value, std::to_string(Number(info->voxel)));
                    ASSERT_EQ(info->colour, ColourAt(picture, pixel));
                    ASSERT_EQ(info->window, plane.type);
                    ASSERT_EQ(info->pixel, pixel);
                }
            }
        }
        EXPECT_GT(found, 3500);
        EXPECT_EQ(beside > 0, withReversals) << "by the border, and by flags of other axes";
        frame->Destroy();
        Pump();
    }
}

TEST_F(InfoTest, TheTextsFollowThePointer) {
    Open(Numbered(1, {1.5F, 1, 0.8F}, {-7.25F, 300, 1}), {280, 240});
    ShowInfo();
    RandomView hand(8);
    for (int round = 0; round < 8; ++round) {
        hand.Shake(*canvas, round > 2);
        canvas->InfoFrame_Get()->Move(1200, 900); // not over a drawing window
        for (const Plane& plane : planes) {
            zel_DrWin3d& window = Window(plane.type);
            const wxPoint pixel = hand.PixelOf(window);
            MovePointerTo(window, pixel);
            Paint();
            const auto info = canvas->GetPixelInfo(plane.type, pixel);
            if (!info) {
                EXPECT_EQ(PixelTexts(), nothing);
                continue;
            }
            const auto& v = info->voxel;
            const wxColour shown = ColourAt(window.GetPointerImage(), pixel);
            EXPECT_EQ(
                PixelTexts(),
                (Texts{PositionAt(window, pixel, canvas->GetCut()),
                       wxString::Format("[%zu, %zu, %zu, 0]", v.x, v.y, v.z).utf8_string(), std::to_string(Number(v)),
                       wxString::Format("%3d %3d %3d", shown.Red(), shown.Green(), shown.Blue()).utf8_string()}));
            EXPECT_EQ(In(Info(), 10005).GetBackgroundColour(), shown);
        }
    }
}

TEST_F(InfoTest, APaintRenewsThePixelPageUnderAPointerAtRest) {
    Open(Numbered(2));
    ShowInfo();
    MovePointerTo(Window(zel_PT_XY), {4, 7});
    EXPECT_EQ(InfoTexts(*canvas, {10002, 10003}), (Texts{"[4, 7, 10, 0]", std::to_string(Number({4, 7, 10}))}));
    PressKey(Window(zel_PT_XY), WXK_PAGEDOWN);
    Paint();
    EXPECT_EQ(InfoTexts(*canvas, {10002, 10003}), (Texts{"[4, 7, 11, 0]", std::to_string(Number({4, 7, 11}))}));
    PressKey(Window(zel_PT_XY), '=');
    Paint();
    EXPECT_EQ(InfoTexts(*canvas, {10002, 10003}), (Texts{"[4, 7, 11, 1]", std::to_string(Number({4, 7, 11}, 1))}));
}

TEST_F(InfoTest, OutsideTheImageAllIsNothing) {
    Open(Numbered());
    ShowInfo();
    MovePointerTo(Window(zel_PT_XY), {4, 7});
    ASSERT_NE(PixelTexts(), nothing);
    MovePointer({1590, 1190});
    EXPECT_EQ(PixelTexts(), nothing);
    EXPECT_EQ(In(Info(), 10005).GetBackgroundColour(), wxColour(255, 255, 255, 0));
    MovePointer(canvas->ClientToScreen(wxPoint(300, 40))); // the canvas beside its windows
    EXPECT_EQ(PixelTexts(), nothing);
    canvas->GetView().visibleBox.offset.x = -3; // 3 black columns
    canvas->MakeDirtyAndRefresh(zel_PT_ALL);
    Paint();
    MovePointerTo(Window(zel_PT_XY), {2, 7});
    EXPECT_EQ(PixelTexts(), nothing);
    MovePointerTo(Window(zel_PT_XY), {3, 7});
    EXPECT_EQ(InfoText(*canvas, 10002), "[0, 7, 10, 0]");
    canvas->GetView().options.cut.z = 20; // on the upper face, which is outside
    canvas->OnCutChange(zel_PT_ALL);
    Paint();
    MovePointerTo(Window(zel_PT_XY), {4, 7});
    EXPECT_EQ(PixelTexts(), nothing);
}

TEST_F(InfoTest, TheOtherPagesDoNotFollowThePointer) {
    Open(Numbered());
    ShowInfo();
    MovePointerTo(Window(zel_PT_XY), {4, 7});
    for (const int page : {1, 2}) {
        InfoPages(*canvas).ChangeSelection(static_cast<std::size_t>(page));
        const Texts before = PixelTexts();
        const Texts others{PageTexts(*canvas, static_cast<std::size_t>(page))};
        MovePointerTo(Window(zel_PT_XY), {5 + page, 9});
        EXPECT_EQ(PixelTexts(), before);
        EXPECT_EQ(PageTexts(*canvas, static_cast<std::size_t>(page)), others);
    }
    InfoPages(*canvas).ChangeSelection(0);
    MovePointerTo(Window(zel_PT_XY), {9, 9});
    EXPECT_EQ(InfoText(*canvas, 10002), "[9, 9, 10, 0]");
}

TEST_F(InfoTest, PositionsOfMirroredAxesLieABorderBeside) {
    Open(Numbered());
    const float border = static_cast<float>(canvas->GetBorder());
    canvas->ToggleAxisReverse(0);
    // XY is 40 pixels wide. Column 40 - 1 - 9 = 30; the window with its border is wider by it.
    auto info = canvas->GetPixelInfo(zel_PT_XY, {9, 7});
    ASSERT_TRUE(info);
    EXPECT_EQ(info->voxel, (kep::Vector3d<std::size_t>(30, 7, 10)));
    EXPECT_EQ(info->position, Microns(30 + border, 7, 10.5F));
    // YZ is 20 pixels wide; its position follows X's flag, its picture that of Z.
    info = canvas->GetPixelInfo(zel_PT_YZ, {9, 7});
    ASSERT_TRUE(info);
    EXPECT_EQ(info->voxel, (kep::Vector3d<std::size_t>(20, 7, 9)));
    EXPECT_EQ(info->position, Microns(20.5F, 7, 10 + border));
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_XY, {0, 7}), std::nullopt) << "its position is 39 + border";
}

TEST_F(InfoTest, PixelsOutsideThePictureLeaveTextAndColour) {
    Open(Numbered());
    for (const bool reversed : {false, true}) {
        if (reversed)
            for (const int axis : {0, 1, 2})
                canvas->ToggleAxisReverse(axis);
        Paint();
        for (const Plane& plane : planes) {
            const wxSize size = Window(plane.type).GetClientSize();
            for (const wxPoint& pixel : {wxPoint(-1, 0), wxPoint(0, -1), wxPoint(size.x, 0), wxPoint(0, size.y)}) {
                wxString text = "as it was";
                wxColour colour(1, 2, 3, 4);
                canvas->GetColourInfo(plane.type, pixel.x, pixel.y, text, colour);
                EXPECT_EQ(text, "as it was");
                EXPECT_EQ(colour, wxColour(1, 2, 3, 4));
            }
            wxString text;
            wxColour colour;
            canvas->GetColourInfo(plane.type, size.x - 1, size.y - 1, text, colour);
            EXPECT_EQ(colour, ColourAt(Window(plane.type).GetPointerImage(), wxPoint(size.x - 1, size.y - 1)));
            EXPECT_EQ(colour.Alpha(), 255);
        }
    }
    wxString text = "as it was";
    wxColour colour(1, 2, 3);
    for (const int type : {0, 3, 7}) {
        canvas->GetColourInfo(static_cast<zel_ProjectionType>(type), 1, 1, text, colour);
        EXPECT_EQ(canvas->GetPixelInfo(static_cast<zel_ProjectionType>(type), {1, 1}), std::nullopt);
    }
    EXPECT_EQ(text, "as it was");
    canvas->GetNoColourInfo(text);
    EXPECT_EQ(text, "---");
}

TEST_F(InfoTest, AWindowThatWasResizedAndNotPaintedHasNoValueThere) {
    Open(Numbered());
    canvas->ZoomIn(); // 80 pixels wide, the picture still 40
    const auto info = canvas->GetPixelInfo(zel_PT_XY, {70, 7});
    ASSERT_TRUE(info);
    EXPECT_EQ(info->voxel.x, 35U);
    EXPECT_EQ(info->value, "---");
    EXPECT_EQ(info->colour, wxColour(255, 255, 255, 0));
}

TEST_F(InfoTest, AutofocusTellsTheProjection) {
    Open(Numbered());
    canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
    Paint();
    // The greatest number along a line is the last one; the voxel named is that of the cut.
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_XY, {4, 7})->value, std::to_string(Number({4, 7, 19})));
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_XZ, {4, 7})->value, std::to_string(Number({4, 29, 7})));
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_YZ, {4, 7})->value, std::to_string(Number({39, 7, 4})));
    EXPECT_EQ(canvas->GetPixelInfo(zel_PT_XY, {4, 7})->voxel, (kep::Vector3d<std::size_t>(4, 7, 10)));
}

TEST_F(InfoTest, ThePointerIsFoundInAWindowThatIsShown) {
    Open(Numbered());
    zel_DrWin3d* const xy = &Window(zel_PT_XY);
    zel_DrWin3d* const yz = &Window(zel_PT_YZ);
    const auto at = [&](int x, int y) { return xy->ClientToScreen(wxPoint(x, y)); };
    EXPECT_EQ(canvas->MouseInProjection(at(0, 0), xy, yz), xy);
    EXPECT_EQ(canvas->MouseInProjection(at(39, 29), xy, yz), xy);
    EXPECT_EQ(canvas->MouseInProjection(at(40, 29), xy, yz), yz);
    EXPECT_EQ(canvas->MouseInProjection(at(39, 30), xy, nullptr), nullptr);
    EXPECT_EQ(canvas->MouseInProjection(at(-1, 0), xy, yz), yz) << "the border is not the client area";
    canvas->ShowDrWin(zel_PT_XY, false);
    EXPECT_EQ(canvas->MouseInProjection(at(0, 0), xy, yz), yz);
}

TEST_F(InfoTest, TheIconsAreThePictureInSmall) {
    Open(Numbered());
    const auto icons = [&] {
        wxIconBundle bundle;
        canvas->GetIcons(bundle);
        return bundle;
    };
    ASSERT_EQ(icons().GetIconCount(), 2U);
    EXPECT_EQ(icons().GetIconByIndex(0).GetSize(), wxSize(16, 16));
    EXPECT_EQ(icons().GetIconByIndex(1).GetSize(), wxSize(32, 32));
    const auto picture = [&] {
        wxBitmap bitmap;
        bitmap.CopyFromIcon(icons().GetIconByIndex(0));
        return bitmap.ConvertToImage();
    };
    const auto colourOf = [](int number) {
        return wxColour(static_cast<unsigned char>(number & 255), static_cast<unsigned char>(number >> 8), 0);
    };
    const auto isOpaque = [](const wxImage& icon, int x, int y) { return !icon.IsTransparent(x, y); };
    // 40 by 30: 16 / (40 / 30) = 12 rows from 2 on, every second pixel, from column (40 - 32) / 2 = 4 and row
    // (30 - 24) / 2 = 3.
    wxImage small = picture();
    EXPECT_EQ(ColourAt(small, {0, 2}), colourOf(Number({4, 3, 10})));
    EXPECT_EQ(ColourAt(small, {15, 13}), colourOf(Number({34, 25, 10})));
    EXPECT_TRUE(isOpaque(small, 0, 2) && isOpaque(small, 15, 13));
    EXPECT_FALSE(isOpaque(small, 0, 1) || isOpaque(small, 15, 14));
    canvas->ToggleAxisReverse(0);
    EXPECT_EQ(ColourAt(picture(), {0, 2}), colourOf(Number({35, 3, 10})));
    canvas->ToggleAxisReverse(1);
    EXPECT_EQ(ColourAt(picture(), {0, 2}), colourOf(Number({35, 26, 10})));
}

TEST_F(InfoTest, RenewedIconsTakeNoMoreMemory) {
    Open(Numbered());
    const auto heapAfter = [this](int renewals) {
        for (int i = 0; i < renewals; ++i) {
            frame->RefreshIcon();
            Pump();
        }
        Settle();
        const struct mallinfo2 heap = mallinfo2(); // which counts nothing under AddressSanitizer
        return static_cast<double>(heap.uordblks + heap.hblkhd);
    };
    const double before = heapAfter(50);
    EXPECT_LT(heapAfter(500) - before, 500 * 500.0); // a set of icons takes 4 * (16 * 16 + 32 * 32) = 5120 bytes
}

TEST_F(InfoTest, TheIconsOfTheFrameAreTransparentAroundThePicture) {
    Open(Numbered());
    Settle();
    wxBitmap bitmap;
    bitmap.CopyFromIcon(frame->GetIcons().GetIconByIndex(0));
    const wxImage icon = bitmap.ConvertToImage();
    EXPECT_FALSE(icon.IsTransparent(0, 2) || icon.IsTransparent(15, 13));
    EXPECT_TRUE(icon.IsTransparent(0, 1) && icon.IsTransparent(15, 14));
}

TEST_F(InfoTest, WithoutAPictureTheIconsAreTransparent) {
    Open(nullptr);
    wxIconBundle bundle;
    canvas->GetIcons(bundle);
    ASSERT_EQ(bundle.GetIconCount(), 2U);
    wxBitmap bitmap;
    bitmap.CopyFromIcon(bundle.GetIconByIndex(1));
    const wxImage picture = bitmap.ConvertToImage();
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            ASSERT_TRUE(picture.IsTransparent(x, y)) << x << " " << y;
}

TEST_F(InfoTest, TheFramesIconIsRenewedWhenTheXYPictureIs) {
    Open(Numbered());
    const auto corner = [&] {
        Settle();
        wxBitmap bitmap;
        bitmap.CopyFromIcon(frame->GetIcons().GetIconByIndex(0));
        const wxColour colour = ColourAt(bitmap.ConvertToImage(), {0, 2});
        return colour.Red() + 256 * colour.Green();
    };
    EXPECT_EQ(corner(), Number({4, 3, 10}));
    canvas->ChangeCut({20.5F, 15.5F, 12.5F});
    EXPECT_EQ(corner(), Number({4, 3, 12}));
    canvas->ToggleAxisReverse(0);
    EXPECT_EQ(corner(), Number({35, 3, 12}));
}

namespace {

template <typename T>
class PixelInfoTypes : public GuiTest {};
using DisplayTypes = ::testing::Types<unsigned char, unsigned short, int, float, kep::RGB_generic<unsigned char>,
                                      kep::RGB_generic<unsigned short>, std::complex<float>>;
TYPED_TEST_SUITE(PixelInfoTypes, DisplayTypes);

/// A voxel, and how it is written.
template <typename T>
struct Sample {
    T voxel;
    const char* text;
};
template <typename T>
Sample<T> sample{static_cast<T>(201), "201"};
template <>
Sample<float> sample<float>{0.0625F, "0.0625"};
template <>
Sample<kep::RGB_generic<unsigned char>> sample<kep::RGB_generic<unsigned char>>{{1, 20, 255}, "  1  20 255"};
template <>
Sample<kep::RGB_generic<unsigned short>> sample<kep::RGB_generic<unsigned short>>{{1, 20, 40000}, "  1  20 40000"};
template <>
Sample<std::complex<float>> sample<std::complex<float>>{{3, 4}, "3.000000 + 4.000000i\nAmplitude: 5.000000"};

/// Shows the part of complex voxels that it is told.
template <typename T>
class PartMapper : public PlainMapper<T>, public zel_ComplexPartShown {
public:
    ComplexMode GetShowMode() const override { return mode; }
    ComplexMode mode = Amplitude;
};

} // namespace

TYPED_TEST(PixelInfoTypes, ValuesAreWrittenByTheirType) {
    using T = TypeParam;
    const auto image = MakeImage<T>({7, 6, 5}, 1, [](auto, auto, auto, auto) { return sample<T>.voxel; });
    PartMapper<T> mapper;
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "types");
    auto* const canvas =
        new zel_ImageViewer3dCanvas<T>(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    HideDecorations(*canvas);
    ASSERT_TRUE(ShowAndWait(*frame));
    ASSERT_TRUE(ResizeClient(*frame, {300, 280}));
    for (const Plane& plane : planes) {
        wxString text;
        wxColour colour;
        canvas->GetColourInfo(plane.type, 2, 3, text, colour);
        EXPECT_EQ(text, sample<T>.text);
    }
    if constexpr (std::is_same_v<T, std::complex<float>>) {
        wxString text;
        wxColour colour;
        mapper.mode = Phase;
        canvas->GetColourInfo(zel_PT_XY, 2, 3, text, colour);
        EXPECT_EQ(text, "3.000000 + 4.000000i\nPhase: 0.927295 rad");
        mapper.mode = Real;
        canvas->GetColourInfo(zel_PT_XY, 2, 3, text, colour);
        EXPECT_EQ(text, "3.000000 + 4.000000i\n ");
    }
    frame->Destroy();
    Pump();
}
