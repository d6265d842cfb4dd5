#include "tests/mapping/menu_rows.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/support/scratch_folder.h"

#include <wx/filedlg.h>
#include <wx/numdlg.h>
#include <wx/spinctrl.h>

using namespace zel;
using namespace zel::test;

namespace {

using Log = std::vector<std::string>;
using Marks = std::vector<int>;

class MappingMenu : public GuiTest {
protected:
    LogCatcher toolkitLog; // the traces of the stretches
    DialogAnswers answers;
};

/// The entries of a gray module in their order.
Rows GrayRows(bool withBitdepth) {
    Rows rows = CommonRows() + PaletteRows();
    if (withBitdepth)
        rows.insert(rows.begin() + 1, bitdepth);
    return rows;
}

template <typename T>
HistogramSet<T> TwoBins() {
    HistogramSet<T> histograms;
    histograms.Get().Init(0, 1, 2);
    return histograms;
}

template <typename T>
void ExpectGrayMenu(bool withBitdepth) {
    zel_GrayMappingModule<T> module(nullptr, TwoBins<T>());
    int id = 6038;
    const std::unique_ptr<wxMenu> menu(module.CreateMenu(id));
    EXPECT_EQ(id, 6060);
    EXPECT_EQ(module.GetMenuId(0), 6039);
    ExpectMenu(*menu, 6039, GrayRows(withBitdepth));
}

/// A module of colour images that does nothing.
template <typename T>
class PlainModule : public zel_MappingModule<T> {
public:
    PlainModule() : zel_MappingModule<T>(nullptr, HistogramSet<T>(), 0.25) {}
    void Map(const T*, ColourBuffer&) const override {}
    void SetRange() override {}
    void SetBitdepth() override {}
    void SetIdentity() override {}
    void SetLinearStretch() override {}
    void SetPercentilStretch() override {}
    void SetHistEqualStretch() override {}
    bool SetLevelsStretch() override { return false; }
    bool SetThreshold() override { return false; }
    void ReadFromConfig(wxFileConfig&) override {}
    void WriteToConfig(wxFileConfig&) override {}
    void ReadLevelsFromConfig(wxFileConfig&) override {}
    void WriteLevelsToConfig(wxFileConfig&) override {}
    void OnHistogramChange(const HistogramSet<T>&) override {}
    void ResetMapping() override {}
    bool HasData() override { return false; }
};

/// A module whose levels have a gamma for which there is no curve.
class NoCurve : public zel_GrayMappingModule<unsigned char> {
public:
    NoCurve() : zel_GrayMappingModule<unsigned char>(nullptr, TwoBins<unsigned char>()) {
        GetChannel(0).levels.gamma = 0.0;
        SetStretchEntry(zel_ME_LEVELS);
    }
};

/// Bytes from 10 to 200, and all of them in the middle layer: 10, 20, ... 200 along x.
std::unique_ptr<mor::Image4d<unsigned char>> Steps() {
    return MakeImage<unsigned char>({20, 16, 9}, 2, [](auto x, auto, auto, auto) { return 10 + 10 * x; });
}

} // namespace

TEST_F(MappingMenu, HoldsTheEntriesOfItsTypeInTheirOrder) {
    ExpectGrayMenu<unsigned char>(true);
    ExpectGrayMenu<unsigned short>(true);
    ExpectGrayMenu<int>(false);
    ExpectGrayMenu<float>(false);
}

TEST_F(MappingMenu, OfColoursHasNoEqualisation) {
    PlainModule<kep::RGB_generic<unsigned short>> module;
    int id = 100;
    const std::unique_ptr<wxMenu> menu(module.CreateMenu(id));
    EXPECT_EQ(id, 122);
    EXPECT_EQ(module.GetMenuId(0), 101);
    EXPECT_EQ(module.GetPercentilValue(), 0.25);
    ASSERT_EQ(menu->GetMenuItemCount(), 9U);
    const wxMenuItem* const item = menu->FindItem(106);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetItemLabel(), "&Histogram equalization");
    EXPECT_FALSE(item->IsEnabled());
    EXPECT_TRUE(menu->IsEnabled(105));
    EXPECT_TRUE(
        toolkitLog.Has(wxLOG_Message, "Disabling Histogram equalization as it is not implemented for color images."));
}

TEST_F(MappingMenu, IsMadeOnce) {
    zel_GrayMappingModule<int> module(nullptr, TwoBins<int>());
    int id = 0;
    const std::unique_ptr<wxMenu> menu(module.CreateMenu(id));
    const std::size_t entries = menu->GetMenuItemCount();
    const AssertCatcher asserts;
    EXPECT_EQ(module.CreateMenu(id), menu.get());
    EXPECT_EQ(id, 22);
    EXPECT_EQ(menu->GetMenuItemCount(), entries);
    ASSERT_EQ(asserts.GetEntries().size(), 1U);
    EXPECT_EQ(asserts.GetEntries()[0].file, "mapping");
    EXPECT_EQ(asserts.GetEntries()[0].function, "zel::zel_MappingModule<int>::CreateMenu");
    EXPECT_EQ(asserts.GetEntries()[0].condition, "this->GetMenuId(0) == 0");
}

TEST_F(MappingMenu, IdsOfTwoModulesAreDisjoint) {
    auto* const frame =
        new zel_Viewer3dFrame(nullptr, wxID_ANY, "two", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    auto* const first = new zel_GrayMappingModule<int>(frame, TwoBins<int>());
    auto* const second = new zel_GrayMappingModule<int>(frame, TwoBins<int>());
    frame->AddExtensionModule(first, "&Mapping", true);
    EXPECT_EQ(first->GetMenuId(0), 6039);
    EXPECT_EQ(frame->GetNextMenuId(), 6060);
    frame->AddExtensionModule(second, "&Other", true);
    EXPECT_EQ(second->GetMenuId(0), 6061);
    EXPECT_EQ(second->GetMenuId(zel_ME_LAST), 6082);
    EXPECT_TRUE(frame->ProcessCommand(first->GetMenuId(zel_PE_LABELS)));
    EXPECT_EQ(first->GetPaletteMode(), 10);
    EXPECT_EQ(second->GetPaletteMode(), 8);
    EXPECT_TRUE(frame->ProcessCommand(second->GetMenuId(zel_ME_LINEAR_STRETCH)));
    EXPECT_EQ(first->GetStretchMode(), 0);
    EXPECT_EQ(second->GetStretchMode(), 1);
    frame->Destroy();
}

TEST_F(MappingMenu, CommandsMarkTheirEntryAndTellTheCanvasAndTheHost) {
    MappedViewer viewer(Steps());
    EXPECT_EQ(viewer.frame->GetMenuBar()->GetMenuLabel(2), "&Mapping");
    EXPECT_EQ(viewer.module->GetFrame(), viewer.frame);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8}));
    for (const int stretch : {3, 4, 5, 2, 2}) {
        viewer.Choose(stretch);
        EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command " + std::to_string(6039 + stretch)}));
        EXPECT_EQ(viewer.GetMarks(), (Marks{stretch, 8}));
        EXPECT_EQ(viewer.module->GetStretchMode(), stretch - 2);
    }
    viewer.Choose(3);
    for (const int palette : {9, 10, 11, 8, 8}) {
        viewer.TakeLog();
        viewer.Choose(palette);
        EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command " + std::to_string(6039 + palette)}));
        EXPECT_EQ(viewer.GetMarks(), (Marks{3, palette}));
    }
}

TEST_F(MappingMenu, AnIdWithoutAnEntryStillEndsInTheEvents) {
    MappedViewer viewer(Steps());
    wxCommandEvent event(wxEVT_MENU, viewer.module->GetMenuId(zel_ME_LAST));
    EXPECT_TRUE(viewer.frame->ProcessWindowEvent(event));
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6060"}));
    wxCommandEvent beyond(wxEVT_MENU, viewer.module->GetMenuId(22));
    EXPECT_FALSE(viewer.frame->ProcessWindowEvent(beyond));
    EXPECT_EQ(viewer.TakeLog(), Log{});
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 8}));
}

TEST_F(MappingMenu, ACommandThatDoesNotPropagateIsNotToldToTheHost) {
    MappedViewer viewer(Steps());
    wxCommandEvent event(wxEVT_MENU, viewer.module->GetMenuId(zel_ME_LINEAR_STRETCH));
    event.StopPropagation();
    EXPECT_TRUE(viewer.frame->ProcessWindowEvent(event));
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed"}));
    EXPECT_EQ(viewer.module->GetStretchMode(), 1);
}

TEST_F(MappingMenu, ACancelledDialogKeepsTheStretchAndPutsTheMarkBack) {
    MappedViewer viewer(Steps());
    viewer.Choose(3);
    viewer.GetMarks();
    viewer.TakeLog();
    for (const int entry : {zel_ME_LEVELS, zel_ME_THRESHOLD}) {
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        viewer.Choose(entry);
        EXPECT_EQ(viewer.module->GetStretchMode(), 1);
        EXPECT_FALSE(viewer.IsChecked(entry)) << "at once";
        EXPECT_TRUE(viewer.IsChecked(3));
        EXPECT_EQ(viewer.TakeLogWithoutPreviews(), (Log{"changed", "command " + std::to_string(6039 + entry)}));
    }
    for (const int entry : {zel_ME_RANGE, zel_ME_BITDEPTH}) {
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        viewer.Choose(entry);
        EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command " + std::to_string(6039 + entry)}));
        EXPECT_EQ(viewer.GetMarks(), (Marks{3, 8}));
    }
}

TEST_F(MappingMenu, AnAcceptedDialogIsTheStretchAndCancellingItsNextOneLeavesItMarked) {
    MappedViewer viewer(Steps());
    for (const int entry : {zel_ME_LEVELS, zel_ME_THRESHOLD}) {
        answers.Expect([](wxDialog&) { return wxID_OK; });
        viewer.Choose(entry);
        EXPECT_EQ(viewer.module->GetStretchMode(), entry - 2);
        EXPECT_EQ(viewer.GetMarks(), (Marks{entry, 8}));
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        viewer.Choose(entry);
        EXPECT_TRUE(viewer.IsChecked(entry)) << "the click had taken its mark away";
        EXPECT_EQ(viewer.module->GetStretchMode(), entry - 2);
    }
}

TEST_F(MappingMenu, BitDepthSetsTheUpperEndOfTheRange) {
    MappedViewer viewer(MakeImage<unsigned short>({20, 16, 9}, 1, [](auto x, auto y, auto, auto) {
        return x == 0 && y == 0 ? 60000 : 100 * x; // 0 to 1900 and one bright voxel
    }));
    viewer.Choose(3);
    EXPECT_EQ(viewer.module->GetLevels().inMax, 60000);
    answers.ExpectDriven([](wxDialog& dialog) {
        EXPECT_EQ(dialog.GetTitle(), "Image Bit Depth");
        EXPECT_NE(dynamic_cast<wxNumberEntryDialog*>(&dialog), nullptr);
        std::vector<std::string> texts;
        wxSpinCtrl* field = nullptr;
        for (wxWindow* const child : dialog.GetChildren()) {
            if (dynamic_cast<wxStaticText*>(child) != nullptr)
                texts.push_back(child->GetLabel().utf8_string());
            if (auto* const spin = dynamic_cast<wxSpinCtrl*>(child))
                field = spin;
        }
        EXPECT_EQ(texts, (std::vector<std::string>{"Set image bit depth", "Bit depth = "}));
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->GetValue(), 16);
        EXPECT_EQ(field->GetMin(), 1);
        EXPECT_EQ(field->GetMax(), 16);
        field->SetValue(12);
        wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
        dialog.ProcessWindowEvent(ok);
    });
    viewer.Choose(0);
    EXPECT_EQ(viewer.module->GetRangeMin(), 0);
    EXPECT_EQ(viewer.module->GetRangeMax(), 4095);
    EXPECT_EQ(viewer.module->GetLevels(), (TLevelsParams<unsigned short, unsigned char>{0, 1900, 1.0, 0, 255}))
        << "the linear stretch, made anew";
    EXPECT_EQ(viewer.GetMarks(), (Marks{3, 8}));
    answers.Expect([](wxDialog&) { return wxID_OK; }); // the number that it begins with, 12
    viewer.Choose(0);
    EXPECT_EQ(viewer.module->GetRangeMax(), 4095);
}

TEST_F(MappingMenu, ABitDepthBelowTheRangeCrossesItsEndsAndAllStretchesWork) {
    MappedViewer viewer(Steps());
    Histogram<unsigned char> upper;
    upper.Init(100, 220, 121);
    viewer.module->OnHistogramChange([&] {
        HistogramSet<unsigned char> set;
        set.Set(upper);
        return set;
    }()); // the range is 100 to 220
    Histogram<unsigned char> whole;
    whole.Init(0, 255, 256);
    whole[40] = 1; // of the four voxels between 31 and 100
    whole[60] = 3;
    whole[200] = 5;
    HistogramSet<unsigned char> set;
    set.Set(whole);
    viewer.module->OnHistogramChange(set);
    answers.ExpectDriven([](wxDialog& dialog) {
        for (wxWindow* const child : dialog.GetChildren())
            if (auto* const spin = dynamic_cast<wxSpinCtrl*>(child))
                spin->SetValue(5);
        wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
        dialog.ProcessWindowEvent(ok);
    });
    viewer.Choose(0);
    EXPECT_EQ(viewer.module->GetRangeMin(), 100);
    EXPECT_EQ(viewer.module->GetRangeMax(), 31);
    const auto level = [&viewer](unsigned char v) { return int{viewer.module->GetMappingTable().Get(v)}; };
    EXPECT_EQ(level(31), 0) << "no stretch: a ramp from 31 to 100";
    EXPECT_EQ(level(100), 255);
    viewer.Choose(3);
    EXPECT_EQ(viewer.module->GetLevels().inMin, 40);
    EXPECT_EQ(viewer.module->GetLevels().inMax, 60);
    viewer.Choose(5);
    EXPECT_EQ(level(39), 0);
    EXPECT_EQ(level(40), 63); // 255 / 4
    EXPECT_EQ(level(59), 63);
    EXPECT_EQ(level(60), 255);
    EXPECT_EQ(level(100), 255);
    EXPECT_EQ(level(101), 0);
}

TEST_F(MappingMenu, ATableThatCannotBeMadeIsToldInABoxAndTheMappingGoesOn) {
    NoCurve module;
    answers.Expect([](wxDialog& dialog) {
        const auto* const box = dynamic_cast<wxMessageDialogBase*>(&dialog);
        if (box == nullptr) {
            ADD_FAILURE() << "no message box";
            return wxID_OK;
        }
        EXPECT_EQ(box->GetMessage(), "LUT::CreateGamma(): The gamma must be a positive number.");
        EXPECT_EQ(box->GetTitle(), wxMessageBoxCaptionStr);
        EXPECT_EQ(box->GetMessageDialogStyle() & (wxOK | wxCANCEL | wxYES_NO | wxCENTRE), wxOK | wxCENTRE);
        return wxID_OK;
    });
    module.ResetMapping();
    EXPECT_EQ(answers.GetPending(), 0U);
    EXPECT_EQ(module.GetMappingTable().Get(1), 0) << "what the table holds";
    module.SetIdentity();
    EXPECT_EQ(module.GetMappingTable().Get(1), 255);
}

TEST_F(MappingMenu, AHostMayAskForAPaletteInItsOwnWay) {
    MappedViewer viewer(Steps());
    const auto colourOf = [&viewer](unsigned char voxel) {
        ColourBuffer buffer(1, 1);
        viewer.module->Map(&voxel, buffer);
        return buffer.data[0];
    };
    bool has = false;
    wxWindow* asked = nullptr;
    viewer.module->SetPaletteQuestion([&](wxWindow* parent, Palette& palette) {
        asked = parent;
        palette = {{1, 2, 3}, {4, 5, 6}};
        return has;
    });
    viewer.Choose(10);
    viewer.Choose(12);
    EXPECT_EQ(asked, viewer.frame);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 10})) << "the palette before, and its mark";
    EXPECT_EQ(colourOf(1), Colour(0, 255, 0));

    has = true;
    viewer.TakeLog();
    viewer.Choose(12);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 12}));
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6051"}));
    EXPECT_EQ(colourOf(1), Colour(4, 5, 6));
    EXPECT_EQ(colourOf(2), Colour(1, 2, 3));
}

TEST_F(MappingMenu, APaletteIsReadFromTheFileChosen) {
    ScratchFolder folder;
    const std::string good = folder / "good.pal";
    WriteBytes(good, "1 2 3\n4 5 6\n7 8 9\n");
    const std::string bad = folder / "bad.pal";
    WriteBytes(bad, "9 9 9\nno colour\n");
    MappedViewer viewer(Steps());
    const auto choose = [this](const std::string& name) {
        answers.ExpectDriven([name](wxDialog& dialog) {
            auto& files = dynamic_cast<wxFileDialog&>(dialog);
            EXPECT_EQ(files.GetMessage(), "Load palette");
            EXPECT_EQ(files.GetWildcard(), "Palettes (*.pal)|*.pal| Text files (*.txt)|*.txt|All files (*.*)|*.*");
            EXPECT_EQ(files.GetWindowStyle() & (wxFD_OPEN | wxFD_FILE_MUST_EXIST), wxFD_OPEN | wxFD_FILE_MUST_EXIST);
            files.SetPath(wxString::FromUTF8(name));
            EXPECT_TRUE(WaitUntil([&] { return files.GetPath() == name; }));
            files.EndModal(wxID_OK);
        });
    };
    const auto colourOf = [&viewer](unsigned char voxel) {
        ColourBuffer buffer(1, 1);
        viewer.module->Map(&voxel, buffer);
        return buffer.data[0];
    };

    viewer.Choose(10);
    viewer.TakeLog();
    answers.Expect([](wxDialog&) { return wxID_CANCEL; });
    viewer.Choose(12);
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 12})) << "also without a file";
    EXPECT_EQ(viewer.TakeLog(), (Log{"changed", "command 6051"}));
    EXPECT_EQ(colourOf(1), Colour(0, 255, 0)) << "the palette before stays";

    choose(good);
    viewer.Choose(12);
    EXPECT_EQ(colourOf(0), Colour(0, 0, 0));
    EXPECT_EQ(colourOf(1), Colour(4, 5, 6));
    EXPECT_EQ(colourOf(2), Colour(7, 8, 9));
    EXPECT_EQ(colourOf(3), Colour(1, 2, 3));
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 12}));

    choose(bad);
    viewer.Choose(12);
    EXPECT_EQ(colourOf(3), Colour(1, 2, 3));
    EXPECT_EQ(viewer.GetMarks(), (Marks{2, 12}));
    for (const auto& entry : toolkitLog.GetEntries())
        EXPECT_NE(entry.level, wxLogLevel(wxLOG_Error)) << entry.text;
}
