#include "tests/viewer/noting_canvas.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_frame.h"

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

/// The viewer's own frame, with its menus, around a canvas with a sequence of nine.
class ShortcutTest : public GuiTest {
protected:
    void SetUp() override {
        frame =
            new zel_Viewer3dFrame(nullptr, wxID_ANY, "viewer", wxDefaultPosition, {400, 400}, wxDEFAULT_FRAME_STYLE);
        canvas = new NotingCanvas(frame);
        canvas->Play(9);
        frame->SetCanvas(canvas);
        frame->ResizeFrameIfRequired();
        ASSERT_TRUE(ShowAndWait(*frame));
        Focus(*canvas->GetDrWin(zel_PT_XY));
        canvas->calls.clear();
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }
    std::string Status() { return frame->GetStatusBar()->GetStatusText(1).utf8_string(); }
    /// The commands that reach the frame, from here on. Those that open windows end here.
    std::shared_ptr<std::vector<int>> NoteCommands() {
        auto ids = std::make_shared<std::vector<int>>();
        frame->Bind(wxEVT_MENU, [ids](wxCommandEvent& event) {
            ids->push_back(event.GetId());
            const bool opensWindow = event.GetId() == zel_CMD_VOLUME || event.GetId() == zel_CMD_SHOW_INFO ||
                                     event.GetId() == zel_CMD_PREFERENCES;
            event.Skip(!opensWindow);
        });
        return ids;
    }

    zel_Viewer3dFrame* frame = nullptr;
    NotingCanvas* canvas = nullptr;
};

} // namespace

TEST_F(ShortcutTest, BareLettersRunTheirMenuEntries) {
    const auto commands = NoteCommands();
    struct Case {
        int key;
        int id;
    };
    for (const Case& c : {Case{'F', zel_CMD_FASTER}, Case{'S', zel_CMD_SLOWER}, Case{'V', zel_CMD_VOLUME},
                          Case{'1', zel_CMD_NORMAL_ZOOM}, Case{'A', zel_CMD_AUTOFOCUS_ALL},
                          Case{'I', zel_CMD_SHOW_INFO}, Case{'Y', zel_CMD_SHOW_XZ}, Case{'X', zel_CMD_SHOW_YZ}}) {
        commands->clear();
        Press(c.key);
        EXPECT_EQ(*commands, std::vector<int>{c.id}) << static_cast<char>(c.key);
    }
    EXPECT_FALSE(canvas->IsDrWinShown(zel_PT_XZ));
    EXPECT_FALSE(canvas->IsDrWinShown(zel_PT_YZ));
    EXPECT_EQ(canvas->GetContent(zel_PT_ALL), zel_PC_AUTOFOCUS) << "a check entry toggles once";
    Press('A');
    EXPECT_EQ(canvas->GetContent(zel_PT_ALL), zel_PC_CUT);
    Press('F');
    EXPECT_EQ(canvas->GetImageIterator().fps, 2);
    EXPECT_EQ(Status(), "FPS set to 2.");
}

TEST_F(ShortcutTest, TheToolkitsOwnShortcutsFireOnce) {
    const auto commands = NoteCommands();
    struct Case {
        int key;
        int modifiers;
        int id;
    };
    for (const Case& c :
         {Case{WXK_F2, wxMOD_NONE, zel_CMD_ZOOM_IN}, Case{WXK_F3, wxMOD_NONE, zel_CMD_ZOOM_OUT},
          Case{WXK_NUMPAD_ADD, wxMOD_CONTROL, zel_CMD_ZOOM_IN},
          Case{WXK_NUMPAD_SUBTRACT, wxMOD_CONTROL, zel_CMD_ZOOM_OUT}, Case{WXK_F9, wxMOD_NONE, zel_CMD_REVERSE_X},
          Case{WXK_F10, wxMOD_NONE, zel_CMD_REVERSE_Y}, Case{WXK_F11, wxMOD_NONE, zel_CMD_REVERSE_Z},
          Case{'/', wxMOD_ALT, zel_CMD_SHOW_ANNOTATION}, Case{'F', wxMOD_CONTROL, zel_CMD_BROWSE_FORWARD},
          Case{'B', wxMOD_CONTROL, zel_CMD_BROWSE_BACKWARD}, Case{'T', wxMOD_CONTROL, zel_CMD_STOP_BROWSING},
          Case{'E', wxMOD_CONTROL, zel_CMD_ADJUST_FRAME_SIZE}, Case{'S', wxMOD_CONTROL, zel_CMD_SAVE_3D_DATA},
          Case{'V', wxMOD_CONTROL, zel_CMD_SAVE_VIEW}, Case{'I', wxMOD_CONTROL, zel_CMD_SAVE_GALLERY},
          Case{'P', wxMOD_CONTROL, zel_CMD_PREFERENCES}}) {
        commands->clear();
        canvas->shown.clear();
        Press(c.key, c.modifiers);
        EXPECT_EQ(*commands, std::vector<int>{c.id}) << c.key;
        EXPECT_EQ(canvas->shown, std::vector<int>{}) << "numpad plus with Ctrl does not step";
    }
}

TEST_F(ShortcutTest, KeysOfTheWindowComeBeforeMenus) {
    const auto commands = NoteCommands();
    auto* const menu = new wxMenu;
    menu->Append(7001, "Equal\t=");
    menu->Append(7002, "Centre\tC");
    frame->GetMenuBar()->Append(menu, "Host");
    Press('=');
    Press('C');
    EXPECT_EQ(*commands, std::vector<int>{});
    EXPECT_EQ(canvas->shown, std::vector<int>{1});
}

TEST_F(ShortcutTest, OnlyTheVeryKeyOfAnEnabledEntryCounts) {
    auto* const menu = new wxMenu;
    menu->Append(7001, "Q\tQ");
    menu->Append(7002, "Shift\tShift+W");
    menu->Append(7003, "Small\tk");
    menu->Append(7004, "Digit\t7");
    menu->Append(7005, "Function\tF5");
    frame->GetMenuBar()->Append(menu, "Host");
    const auto commands = NoteCommands();
    zel_DrWin3d& window = *canvas->GetDrWin(zel_PT_XZ);
    struct Case {
        int key;
        int modifiers;
        std::vector<int> ids;
    };
    for (const Case& c : {Case{'Q', wxMOD_NONE, {7001}}, Case{'q', wxMOD_NONE, {7001}}, Case{'Q', wxMOD_SHIFT, {}},
                          Case{'Q', wxMOD_CONTROL, {}}, Case{'Q', wxMOD_ALT, {}}, Case{'W', wxMOD_NONE, {}},
                          Case{'W', wxMOD_SHIFT, {}}, Case{'K', wxMOD_NONE, {7003}}, Case{'k', wxMOD_NONE, {7003}},
                          Case{'7', wxMOD_NONE, {7004}}, Case{'8', wxMOD_NONE, {}}, Case{WXK_F5, wxMOD_NONE, {}}}) {
        commands->clear();
        EXPECT_EQ(PressKey(window, c.key, c.modifiers), !c.ids.empty()) << c.key;
        EXPECT_EQ(*commands, c.ids) << c.key;
    }
    menu->Enable(7001, false);
    commands->clear();
    EXPECT_FALSE(PressKey(window, 'Q'));
    EXPECT_EQ(*commands, std::vector<int>{});
}

TEST_F(ShortcutTest, KeysStillWorkWhenTheWindowThatHadThemIsHidden) {
    Press('Z');
    ASSERT_FALSE(canvas->IsDrWinShown(zel_PT_XY));
    canvas->calls.clear();
    Press(WXK_PAGEDOWN);
    EXPECT_EQ(canvas->calls, (Calls{"OnCutChange 2"})) << "XZ is the first of the windows left";
    Press('Y');
    canvas->calls.clear();
    Press(WXK_PAGEDOWN);
    EXPECT_EQ(canvas->calls, (Calls{"OnCutChange 4"})) << "YZ is left";
    Press('X');
    ASSERT_FALSE(canvas->IsDrWinShown(zel_PT_YZ));
    Press('Z');
    ASSERT_TRUE(canvas->IsDrWinShown(zel_PT_XY));
    canvas->calls.clear();
    Press(WXK_PAGEDOWN);
    EXPECT_EQ(canvas->calls, (Calls{"OnCutChange 1"})) << "the first to come back";
    Press('Y');
    EXPECT_EQ(wxWindow::FindFocus(), canvas->GetDrWin(zel_PT_XY)) << "another window takes nothing";
}
