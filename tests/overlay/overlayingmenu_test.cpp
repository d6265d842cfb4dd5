#include "tests/overlay/labeled_viewer.h"
#include "tests/support/system_dialogs.h"

#include <wx/colordlg.h>
#include <wx/uiaction.h>

using namespace zel;
using namespace zel::test;

namespace {

using Log = std::vector<std::string>;
using Viewer = LabeledViewer<unsigned char, bool>;
using Module = zel_BasicOverlayingModule<unsigned short, bool>;

class OverlayingMenu : public GuiTest {
protected:
    LogCatcher toolkitLog;
    DialogAnswers answers;
};

struct Row {
    int offset; ///< -1 for a separator
    std::string label;
    std::string help;
    wxItemKind kind;
};

const Row separator{-1, "", "", wxITEM_SEPARATOR};
const std::vector<Row> rows{
    {0, "&Enable\tCtrl-1", "Enable/disable overlaying", wxITEM_CHECK},
    separator,
    {2, "&Components\tCtrl-2", "Overlay components (zero transparency)", wxITEM_RADIO},
    {3, "&Boundary\tCtrl-3", "Overlay boundary (full transparency)", wxITEM_RADIO},
    separator,
    {7, "&Increase transparency\tCtrl-4", "Increase overlay transparency", wxITEM_NORMAL},
    {8, "D&ecrease transparency\tCtrl-5", "Decrease overlay transparency", wxITEM_NORMAL},
    separator,
    {4, "&Default palette\tCtrl-6", "Use default palette", wxITEM_CHECK},
    {5, "&User-defined colour\tCtrl-7", "Use selected colour", wxITEM_CHECK},
    separator,
    {6, "&Choose colour...\tCtrl-8", "Select user-defined colour", wxITEM_NORMAL},
    separator,
    {1, "&Reload\tCtrl-R", "Reload", wxITEM_NORMAL},
};

std::unique_ptr<Viewer> OpenViewer() {
    return std::make_unique<Viewer>(
        PlainImage({20, 16, 9}, 2),
        MakeLabels<bool>({20, 16, 9}, 2, [](auto x, auto, auto, auto) { return x < 10 ? 1 : 2; }));
}

} // namespace

TEST_F(OverlayingMenu, HoldsItsEntriesInTheirOrder) {
    Module module(nullptr, nullptr, false);
    EXPECT_EQ(module.GetMenuId(0), 0);
    int id = 6060;
    const std::unique_ptr<wxMenu> menu(module.CreateMenu(id));
    EXPECT_EQ(id, 6070);
    EXPECT_EQ(module.GetMenuId(0), 6061);
    EXPECT_EQ(module.GetMenu(), menu.get());
    ASSERT_EQ(menu->GetMenuItemCount(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const wxMenuItem& item = *menu->FindItemByPosition(i);
        EXPECT_EQ(item.GetKind(), rows[i].kind) << i;
        if (rows[i].offset < 0)
            continue;
        EXPECT_EQ(item.GetId(), 6061 + rows[i].offset) << i;
        EXPECT_EQ(item.GetItemLabel(), rows[i].label) << i;
        EXPECT_EQ(item.GetHelp(), rows[i].help) << i;
        EXPECT_TRUE(item.IsEnabled()) << i;
    }
    EXPECT_TRUE(menu->IsChecked(6063)) << "the toolkit marks the first radio entry";
    EXPECT_FALSE(menu->IsChecked(6061));
}

TEST_F(OverlayingMenu, IsMadeOnce) {
    Module module(nullptr, nullptr, false);
    int id = 0;
    const std::unique_ptr<wxMenu> menu(module.CreateMenu(id));
    const AssertCatcher asserts;
    EXPECT_EQ(module.CreateMenu(id), menu.get());
    EXPECT_EQ(id, 10);
    EXPECT_EQ(menu->GetMenuItemCount(), rows.size());
    ASSERT_EQ(asserts.GetEntries().size(), 1U);
    EXPECT_EQ(asserts.GetEntries()[0].file, "overlaying");
    EXPECT_EQ(asserts.GetEntries()[0].condition, "GetMenuId(0) == 0");
    wxCommandEvent enable(wxEVT_MENU, module.GetMenuId(zel_OE_ENABLE));
    EXPECT_TRUE(module.ProcessEvent(enable));
    EXPECT_TRUE(module.GetOverlaying()) << "toggled once: nothing is bound twice";
}

TEST_F(OverlayingMenu, StandsBehindTheMappingAndSeesEventsFirst) {
    const auto viewer = OpenViewer();
    const wxMenuBar& bar = *viewer->frame->GetMenuBar();
    ASSERT_EQ(bar.GetMenuCount(), 4U);
    for (const auto& [place, label] :
         {std::pair<std::size_t, const char*>{0, "&Sequence"}, {1, "&View"}, {2, "&Mapping"}, {3, "&Overlaying"}})
        EXPECT_EQ(bar.GetMenuLabel(place), label);
    EXPECT_EQ(viewer->module->GetMenuId(0), 6061);
    EXPECT_EQ(viewer->frame->GetNextMenuId(), 6070);
    EXPECT_EQ(viewer->module->GetFrame(), viewer->frame);
    EXPECT_NE(dynamic_cast<zel_GrayMappingModule<unsigned char>*>(viewer->frame->GetEventHandler()->GetNextHandler()),
              nullptr);
    EXPECT_EQ(&viewer->canvas->GetOverlayer(), viewer->module);
}

TEST_F(OverlayingMenu, CommandsChangeTheStateAndTellTheCanvasAndTheHost) {
    const auto viewer = OpenViewer();
    Module& module = *viewer->module;
    const auto expect = [&](int entry, bool on, float transparency, bool isDefault) {
        viewer->Choose(entry);
        EXPECT_EQ(viewer->TakeLog(), (Log{"changed", "command " + std::to_string(entry)}));
        EXPECT_EQ(module.GetOverlaying(), on) << entry;
        EXPECT_EQ(module.GetTransparency(), transparency) << entry;
        EXPECT_EQ(module.IsDefaultPalette(), isDefault) << entry;
    };
    expect(0, true, 0.0F, true);
    expect(0, false, 0.0F, true);
    expect(7, false, 0.05F, true); // neither turns it on
    expect(8, false, 0.0F, true);
    expect(8, false, 0.0F, true);
    expect(3, true, 1.0F, true);
    expect(7, true, 1.0F, true);
    expect(8, true, 1.0F - 0.05F, true);
    EXPECT_TRUE(viewer->IsChecked(3)) << "the radio entries do not follow the transparency";
    expect(2, true, 0.0F, true);
    EXPECT_TRUE(viewer->IsChecked(2));
    EXPECT_FALSE(viewer->IsChecked(3));
    expect(2, true, 0.0F, true);
    expect(5, true, 0.0F, false);
    EXPECT_EQ(module.GetPaletteSize(), 1U);
    EXPECT_EQ(module.GetPalette()[0], Colour(255, 0, 0));
    expect(5, true, 0.0F, false);
    expect(4, true, 0.0F, true);
    EXPECT_EQ(module.GetPaletteSize(), 14U);
    for (int press = 1; press <= 25; ++press)
        viewer->Choose(7);
    EXPECT_EQ(module.GetTransparency(), 1.0F);
    for (int press = 1; press <= 25; ++press)
        viewer->Choose(8);
    EXPECT_EQ(module.GetTransparency(), 0.0F);
}

TEST_F(OverlayingMenu, ReloadTellsTheCanvasAlone) {
    const auto viewer = OpenViewer();
    viewer->Choose(1);
    EXPECT_EQ(viewer->TakeLog(), Log{"reload"});
    EXPECT_FALSE(viewer->module->GetOverlaying());
}

TEST_F(OverlayingMenu, AnIdWithoutAnEntryStillEndsInTheEvents) {
    const auto viewer = OpenViewer();
    wxCommandEvent event(wxEVT_MENU, viewer->module->GetMenuId(9));
    EXPECT_TRUE(viewer->frame->ProcessWindowEvent(event));
    EXPECT_EQ(viewer->TakeLog(), (Log{"changed", "command 9"}));
    EXPECT_FALSE(viewer->module->GetOverlaying());
    wxCommandEvent beyond(wxEVT_MENU, viewer->module->GetMenuId(10));
    EXPECT_FALSE(viewer->frame->ProcessWindowEvent(beyond));
}

TEST_F(OverlayingMenu, ACommandThatDoesNotPropagateIsNotToldToTheHost) {
    const auto viewer = OpenViewer();
    wxCommandEvent event(wxEVT_MENU, viewer->module->GetMenuId(0));
    event.StopPropagation();
    EXPECT_TRUE(viewer->frame->ProcessWindowEvent(event));
    EXPECT_EQ(viewer->TakeLog(), Log{"changed"});
    EXPECT_TRUE(viewer->module->GetOverlaying());
}

TEST_F(OverlayingMenu, MarksFollowTheStateWhenTheMenuOpens) {
    const auto viewer = OpenViewer();
    const auto marks = [&] {
        viewer->frame->GetMenuBar()->UpdateMenus();
        std::vector<int> checked;
        for (const int entry : {0, 2, 3, 4, 5})
            if (viewer->IsChecked(entry))
                checked.push_back(entry);
        return checked;
    };
    EXPECT_EQ(marks(), (std::vector<int>{2, 4}));
    viewer->Choose(3);
    EXPECT_EQ(marks(), (std::vector<int>{0, 3, 4}));
    viewer->Choose(5);
    EXPECT_EQ(marks(), (std::vector<int>{0, 3, 5}));
    viewer->module->SetOverlaying(false);
    viewer->module->SetTransparency(0.0F);
    EXPECT_EQ(marks(), (std::vector<int>{3, 5})) << "a radio entry stays where it was clicked";
}

TEST_F(OverlayingMenu, LeavesTheStateOfOtherEntriesToFrameAndHost) {
    const auto viewer = OpenViewer();
    std::vector<int> asked;
    viewer->frame->Bind(
        wxEVT_UPDATE_UI, [&](wxUpdateUIEvent& event) { asked.push_back(event.GetId()); }, viewer->module->GetMenuId(0),
        viewer->module->GetMenuId(9));
    for (int entry = 0; entry <= 9; ++entry) {
        wxUpdateUIEvent event(viewer->module->GetMenuId(entry));
        viewer->frame->ProcessWindowEvent(event);
        EXPECT_EQ(event.GetSetChecked(), entry == 0 || entry == 4 || entry == 5) << entry;
    }
    std::vector<int> others;
    for (const int entry : {1, 2, 3, 6, 7, 8, 9})
        others.push_back(viewer->module->GetMenuId(entry));
    EXPECT_EQ(asked, others);
}

TEST_F(OverlayingMenu, ShortcutsRunTheirEntries) {
    const auto viewer = OpenViewer();
    wxWindow* const window = viewer->canvas->GetDrWin(zel_PT_XY);
    window->SetFocus();
    ASSERT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == window; }));
    const int zoom = viewer->canvas->GetZoom();
    for (const auto& [key, entry] : {std::pair{'1', 0}, {'2', 2}, {'3', 3}, {'5', 8}, {'4', 7}, {'7', 5}, {'6', 4}}) {
        wxUIActionSimulator().Char(key, wxMOD_CONTROL);
        EXPECT_TRUE(WaitUntil([&] { return viewer->log.size() == 2; })) << key;
        EXPECT_EQ(viewer->TakeLog(), (Log{"changed", "command " + std::to_string(entry)})) << key;
    }
    wxUIActionSimulator().Char('R', wxMOD_CONTROL);
    EXPECT_TRUE(WaitUntil([&] { return viewer->TakeLog() == Log{"reload"}; }));
    EXPECT_EQ(viewer->canvas->GetZoom(), zoom) << "Ctrl+1 is not 1";
}

TEST_F(OverlayingMenu, ARadioEntryThatHasItsMarkWorksAsWell) {
    const auto viewer = OpenViewer();
    wxWindow* const window = viewer->canvas->GetDrWin(zel_PT_XY);
    window->SetFocus();
    ASSERT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == window; }));
    for (const auto& [key, entry] : {std::pair{'2', 2},
                                     {'2', 2},
                                     {'3', 3},
                                     {'5', 8},
                                     {'3', 3},
                                     {'1', 0},
                                     {'3', 3},
                                     {'2', 2},
                                     {'4', 7},
                                     {'2', 2}}) {
        wxUIActionSimulator().Char(key, wxMOD_CONTROL);
        EXPECT_TRUE(WaitUntil([&] { return viewer->log.size() == 2; }, 1000)) << key;
        EXPECT_EQ(viewer->TakeLog(), (Log{"changed", "command " + std::to_string(entry)})) << key;
        EXPECT_TRUE(entry > 3 || entry < 2 || viewer->IsChecked(entry)) << key;
    }
    EXPECT_TRUE(viewer->module->GetOverlaying());
    EXPECT_EQ(viewer->module->GetTransparency(), 0.0F);
    EXPECT_FALSE(viewer->IsChecked(3));
}

TEST_F(OverlayingMenu, AChosenColourIsThatOfAllLabels) {
    const auto viewer = OpenViewer();
    const wxColour chosen(10, 200, 30);
    answers.ExpectDriven([&](wxDialog& dialog) {
        ASSERT_NE(dynamic_cast<wxColourDialog*>(&dialog), nullptr);
        EXPECT_EQ(dialog.GetParent(), viewer->frame);
        EXPECT_EQ(dynamic_cast<wxColourDialog&>(dialog).GetColourData().GetColour(), wxColour(255, 0, 0));
        ChooseColour(dialog, chosen);
    });
    viewer->Choose(6);
    EXPECT_EQ(viewer->TakeLog(), (Log{"changed", "command 6"}));
    EXPECT_EQ(viewer->module->GetColour(), chosen);
    EXPECT_FALSE(viewer->module->IsDefaultPalette());
    EXPECT_TRUE(viewer->IsChecked(5)) << "at once";
    ASSERT_EQ(viewer->module->GetPaletteSize(), 1U);
    EXPECT_EQ(viewer->module->GetPalette()[0], Colour(10, 200, 30));
    viewer->Choose(4);
    EXPECT_EQ(viewer->module->GetPaletteSize(), 14U);
    EXPECT_EQ(viewer->module->GetColour(), chosen) << "kept for later";
    viewer->Choose(5);
    EXPECT_EQ(viewer->module->GetPalette()[0], Colour(10, 200, 30));
}

TEST_F(OverlayingMenu, ACancelledColourChangesNothingAndStillTells) {
    const auto viewer = OpenViewer();
    answers.Expect([](wxDialog&) { return wxID_CANCEL; });
    viewer->Choose(6);
    EXPECT_EQ(viewer->TakeLog(), (Log{"changed", "command 6"}));
    EXPECT_TRUE(viewer->module->IsDefaultPalette());
    EXPECT_EQ(viewer->module->GetPaletteSize(), 14U);
    EXPECT_EQ(viewer->module->GetColour(), wxColour(255, 0, 0));
}

TEST_F(OverlayingMenu, AModuleWithoutMenuOrFrameServesAHostToo) {
    Module module(nullptr, nullptr, false);
    answers.ExpectDriven([](wxDialog& dialog) { ChooseColour(dialog, {1, 2, 3}); });
    module.ChangeColour();
    EXPECT_EQ(module.GetPalette()[0], Colour(1, 2, 3));
    module.SetColour(wxColour());
    module.SetPal();
    EXPECT_EQ(module.GetPalette()[0], Colour(0, 0, 0)) << "no colour is black";
    answers.Expect([](wxDialog&) { return wxID_CANCEL; });
    module.ChangeColour();
    wxCommandEvent enable(wxEVT_MENU, zel_OE_ENABLE); // without a menu ids start at 0
    module.OnOverlaying(enable);
    EXPECT_TRUE(module.GetOverlaying()) << "and nobody is told";
}

TEST_F(OverlayingMenu, AHostMayCloseTheViewerWhileTheColourIsChosen) {
    enum class Way { close, destroy, deletion, withParent };
    for (const Way way : {Way::close, Way::destroy, Way::deletion, Way::withParent}) {
        wxWeakRef<wxFrame> host = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(700, 0), wxSize(100, 100));
        host->Show();
        Viewer viewer(PlainImage({20, 16, 9}, 1),
                      MakeLabels<bool>({20, 16, 9}, 1, [](auto, auto, auto, auto) { return 1; }), host);
        const wxWeakRef<wxEvtHandler> module(viewer.module);
        answers.ExpectDriven([&](wxDialog& dialog) {
            switch (way) {
            case Way::close:
                viewer.frame->Close(true);
                break;
            case Way::destroy:
                viewer.frame->Destroy();
                break;
            case Way::deletion:
                delete viewer.frame.get();
                break;
            case Way::withParent:
                host->Destroy();
                break;
            }
            EXPECT_TRUE(WaitUntil([&] { return viewer.frame == nullptr; }));
            EXPECT_EQ(dialog.GetParent(), nullptr);
        });
        viewer.frame->ProcessCommand(viewer.module->GetMenuId(zel_OE_CHOOSE_COLOUR));
        EXPECT_EQ(viewer.frame.get(), nullptr);
        EXPECT_EQ(module.get(), nullptr);
        EXPECT_EQ(viewer.TakeLog(), Log{}) << "nobody is left to be told";
        if (host)
            host->Destroy();
        Pump();
    }
}

TEST_F(OverlayingMenu, AHostMayCloseTheViewerWhenItIsTold) {
    for (const bool byChange : {true, false}) {
        Viewer viewer(PlainImage({20, 16, 9}, 1),
                      MakeLabels<bool>({20, 16, 9}, 1, [](auto, auto, auto, auto) { return 1; }));
        if (byChange)
            viewer.frame->Bind(zel_EVT_OVERLAYING_CHANGED, [&](zel_OverlayingEvent&) { delete viewer.frame.get(); });
        else
            viewer.frame->Bind(zel_EVT_OVERLAYING_COMMAND,
                               [&](zel_OverlayingCommandEvent&) { viewer.frame->Destroy(); });
        viewer.frame->ProcessCommand(viewer.module->GetMenuId(zel_OE_BOUNDARY));
        EXPECT_TRUE(WaitUntil([&] { return viewer.frame == nullptr; }));
    }
}
