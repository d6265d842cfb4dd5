// The menus of colour and complex images, in whole viewers, by real keys.

#include "mapping/zel_complexmapping.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/mapping/menu_rows.h"
#include "tests/mapping/viewer_fixture.h"

#include <wx/fileconf.h>
#include <wx/sstream.h>
#include <wx/uiaction.h>

using namespace zel;
using namespace zel::test;

namespace {

using Log = std::vector<std::string>;
using Marks = std::vector<int>;
using Colour8 = kep::RGB_generic<unsigned char>;
using Complex = std::complex<float>;
using ColourViewer = MappedViewer<Colour8, zel_RGBMappingModule<unsigned char>>;
using ComplexViewer = MappedViewer<Complex, zel_ComplexMappingModule<float>>;

class ColourMenu : public GuiTest {
protected:
    /// Presses a key where the user looks at the picture, and waits until its command has ended.
    template <typename Viewer>
    void Press(Viewer& viewer, int key) {
        wxWindow* const window = viewer.canvas->GetDrWin(zel_PT_XY);
        window->SetFocus();
        ASSERT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == window; }));
        viewer.TakeLog();
        wxUIActionSimulator hand;
        hand.Char(key);
        EXPECT_TRUE(WaitUntil([&] { return !viewer.log.empty(); })) << "no command came";
    }

    LogCatcher toolkitLog;
    DialogAnswers answers;
};

/// Colour (10, 100, 200), but for two corners that are black and white.
std::unique_ptr<mor::Image4d<Colour8>> Coloured() {
    return MakeImage<Colour8>({20, 16, 9}, 2, [](auto x, auto y, auto z, auto) {
        return x + y + z == 0                 ? Colour8(0, 0, 0)
               : x == 19 && y == 15 && z == 8 ? Colour8(255, 255, 255)
                                              : Colour8(10, 100, 200);
    });
}

/// 3 + 4i, but for two corners: 0 and -6 - 8i.
std::unique_ptr<mor::Image4d<Complex>> Wave() {
    return MakeImage<Complex>({20, 16, 9}, 1, [](auto x, auto y, auto z, auto) {
        return x + y + z == 0 ? Complex(0, 0) : x == 19 && y == 15 && z == 8 ? Complex(-6, -8) : Complex(3, 4);
    });
}

HistogramSet<Complex> PartsOf(float low, float high) {
    HistogramSet<Complex> parts;
    for (const int part : {0, 1, 2, 3})
        parts[part].Init(low, high, 256);
    return parts;
}

} // namespace

TEST_F(ColourMenu, HoldsTheEntriesOfTheChannels) {
    Rows rows = CommonRows();
    rows[5] = {5, "&Histogram equalization", "Apply histogram equalization", wxITEM_CHECK, false};
    rows.insert(rows.begin() + 1, bitdepth);
    rows = rows + Rows{separator,
                       {13, "&Show RGB\tF5", "Show all three rgb channels", wxITEM_NORMAL},
                       separator,
                       {14, "&Red channel\tF6", "Show/hide red channel", wxITEM_CHECK},
                       {15, "&Green channel\tF7", "Show/hide green channel", wxITEM_CHECK},
                       {16, "&Blue channel\tF8", "Show/hide blue channel", wxITEM_CHECK}};
    zel_RGBMappingModule<unsigned char> bytes(nullptr, HistogramSet<Colour8>());
    int id = 6038;
    const std::unique_ptr<wxMenu> menu(bytes.CreateMenu(id));
    EXPECT_EQ(id, 6060);
    ExpectMenu(*menu, 6039, rows);
    EXPECT_TRUE(
        toolkitLog.Has(wxLOG_Message, "Disabling Histogram equalization as it is not implemented for color images."));
    zel_RGBMappingModule<unsigned short> words(nullptr, HistogramSet<kep::RGB_generic<unsigned short>>());
    const std::unique_ptr<wxMenu> other(words.CreateMenu(id));
    EXPECT_EQ(id, 6082);
    ExpectMenu(*other, 6061, rows);
}

TEST_F(ColourMenu, HoldsTheEntriesOfTheParts) {
    const auto rowsOf = [](bool isRealEnabled) {
        return CommonRows() + PaletteRows() +
               Rows{separator,
                    {17, isRealEnabled ? "&Real\tF5" : "&Real", "Show real part", wxITEM_RADIO, isRealEnabled},
                    {18, "&Imaginary\tF6", "Show imaginary part", wxITEM_RADIO},
                    {19, isRealEnabled ? "&Phase\tF7" : "&Phase", "Show phase", wxITEM_RADIO, isRealEnabled},
                    {20, "&Amplitude\tF8", "Show amplitude", wxITEM_RADIO}};
    };
    zel_ComplexMappingModule<float> all(nullptr, PartsOf(0, 1), true, true, true, true);
    int id = 0;
    const std::unique_ptr<wxMenu> menu(all.CreateMenu(id));
    EXPECT_EQ(id, 22);
    ExpectMenu(*menu, 1, rowsOf(true));
    zel_ComplexMappingModule<float> imaginary(nullptr, PartsOf(0, 1), false, true, false, true);
    const std::unique_ptr<wxMenu> other(imaginary.CreateMenu(id));
    ExpectMenu(*other, 23, rowsOf(false));
}

TEST_F(ColourMenu, IsMadeOnce) {
    zel_ComplexMappingModule<float> module(nullptr, PartsOf(0, 1), true, true, true, true);
    int id = 0;
    const std::unique_ptr<wxMenu> menu(module.CreateMenu(id));
    const std::size_t entries = menu->GetMenuItemCount();
    const AssertCatcher asserts;
    EXPECT_EQ(module.CreateMenu(id), menu.get());
    EXPECT_EQ(menu->GetMenuItemCount(), entries);
    EXPECT_EQ(asserts.GetEntries().size(), 1U);
}

TEST_F(ColourMenu, KeysHideAndShowTheChannels) {
    ColourViewer viewer(Coloured());
    EXPECT_EQ(viewer.Middle(), wxColour(10, 100, 200));
    Press(viewer, WXK_F7); // the very first thing that the user does
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6054"}));
    EXPECT_EQ(viewer.Middle(), wxColour(10, 0, 200));
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 14, 16}));
    Press(viewer, WXK_F6);
    Press(viewer, WXK_F8);
    EXPECT_EQ(viewer.Middle(), wxColour(0, 0, 0));
    Press(viewer, WXK_F8);
    EXPECT_EQ(viewer.Middle(), wxColour(0, 0, 200));
    Press(viewer, WXK_F5);
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6052"}));
    EXPECT_EQ(viewer.Middle(), wxColour(10, 100, 200));
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 14, 15, 16}));
}

TEST_F(ColourMenu, AHiddenChannelResamplesNothing) {
    ColourViewer viewer(Coloured());
    viewer.Picture(zel_PT_XY);
    viewer.GetMarks();
    // What is written now would be seen if the slice were taken anew.
    for (Colour8& voxel : *viewer.image->GetImage(0))
        voxel = Colour8(77, 77, 77);
    viewer.Choose(zel_CE_RED);
    EXPECT_EQ(viewer.Middle(), wxColour(0, 100, 200));
}

TEST_F(ColourMenu, EntriesWithoutDataAreGray) {
    ColourViewer viewer(Coloured());
    viewer.module->OnHistogramChange(HistogramSet<Colour8>());
    viewer.GetMarks();
    for (const int entry : {13, 14, 15, 16})
        EXPECT_FALSE(viewer.frame->GetMenuBar()->IsEnabled(viewer.module->GetMenuId(entry))) << entry;
}

TEST_F(ColourMenu, ReadingAConfigurationMarksTheMenuAtOnce) {
    ColourViewer viewer(Coloured());
    const auto read = [&viewer](const wxString& text) {
        wxStringInputStream stream(text);
        wxFileConfig config(stream);
        viewer.module->ReadFromConfig(config);
    };
    read("RGBMAP_STRETCH_MODE=4\nRGBMAP_SHOW_GREEN=0\n");
    EXPECT_TRUE(viewer.IsChecked(4));
    EXPECT_TRUE(viewer.IsChecked(14));
    EXPECT_FALSE(viewer.IsChecked(15));
    EXPECT_EQ(viewer.Middle(), wxColour(10, 100, 200)) << "until the tables are made";
    viewer.module->ResetMapping();
    EXPECT_EQ(viewer.GetMarks(), (Marks{4, 14, 16}));

    // Numbers that name no entry, or one that has no mark; and then a dialog that puts the mark back.
    const AssertCatcher asserts;
    for (const char* const mode : {"0", "1", "13", "9", "21", "2147483647", "-2147483648"}) {
        read(wxString("RGBMAP_STRETCH_MODE=") + mode);
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        viewer.Choose(zel_ME_LEVELS);
        EXPECT_FALSE(viewer.IsChecked(zel_ME_LEVELS)) << mode;
    }
    for (const auto& entry : asserts.GetEntries())
        ADD_FAILURE() << entry.condition;
}

TEST_F(ColourMenu, KeysChooseThePart) {
    ComplexViewer viewer(Wave());
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8, 17}));
    EXPECT_EQ(viewer.Middle(), wxColour(255, 255, 255)); // 3 between -6 and 3
    Press(viewer, WXK_F7);
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6058"}));
    EXPECT_EQ(viewer.module->GetShowMode(), Phase);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8, 19}));
    Press(viewer, WXK_F8);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8, 20}));
    EXPECT_EQ(viewer.Middle(), wxColour(128, 128, 128)); // 5 between 0 and 10
    Press(viewer, WXK_F6);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8, 18}));
    EXPECT_EQ(viewer.Middle(), wxColour(255, 255, 255));
    Press(viewer, WXK_F5);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8, 17}));
}

TEST_F(ColourMenu, APartThatIsConstantHasNoKey) {
    ComplexViewer viewer(
        MakeImage<Complex>({20, 16, 9}, 1, [](auto x, auto, auto, auto) { return Complex(0, static_cast<float>(x)); }));
    EXPECT_EQ(viewer.module->GetShowMode(), Imaginary);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8, 18}));
    Press(viewer, WXK_F8); // the amplitude
    EXPECT_EQ(viewer.module->GetShowMode(), Amplitude);
    viewer.Choose(17); // what a click on a gray entry would be
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6059"})) << "of F8 alone";
    EXPECT_EQ(viewer.module->GetShowMode(), Amplitude);
}

TEST_F(ColourMenu, ChoosingAPartAgainLeavesTheCurveOfTheLevelsUnderAStretch) {
    ComplexViewer viewer(Wave());
    viewer.Choose(zel_ME_EQUALIZATION);
    const int equalised = viewer.Middle().Red();
    EXPECT_EQ(equalised, 255);
    viewer.Choose(20);
    viewer.Choose(zel_ME_EQUALIZATION);
    EXPECT_EQ(viewer.Middle().Red(), 254); // all but one of 2880 voxels are at or below 5
    wxCommandEvent again(wxEVT_MENU, viewer.module->GetMenuId(20));
    again.SetInt(1);
    EXPECT_TRUE(viewer.frame->ProcessWindowEvent(again));
    EXPECT_EQ(viewer.Middle().Red(), 128) << "the ramp of the levels";
    EXPECT_EQ(viewer.module->GetStretchMode(), 3);
}

TEST_F(ColourMenu, AutofocusGoesByThePartShownWhenItWasMade) {
    // Along z: 1, -9, 5i; the greatest real part is 1, imaginary part 5, amplitude 9.
    ComplexViewer viewer(MakeImage<Complex>({20, 16, 3}, 1, [](auto x, auto, auto z, auto) {
        const Complex line[] = {{1, 0}, {-9, 0}, {0, 5}};
        return x == 0 ? Complex(0, 0) : line[z];
    }));
    viewer.Choose(17 + Amplitude);
    viewer.canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_XY);
    EXPECT_EQ(viewer.Middle().Red(), 255) << "9 of 0 to 9";
    viewer.Choose(17 + Real);
    EXPECT_EQ(viewer.Middle().Red(), 0) << "still the voxel -9, whose real part is the least";
    viewer.canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_YZ);
    const wxImage side = viewer.Picture(zel_PT_YZ);
    EXPECT_EQ(ColourAt(side, {0, 5}).Red(), 255) << "made now: 1 along x";
}
