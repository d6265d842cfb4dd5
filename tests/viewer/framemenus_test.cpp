#include "tests/viewer/frame_fixture.h"

using namespace zel;
using namespace zel::test;

namespace {

struct Row {
    int id = 0;
    std::string label;
    std::string help;
    wxItemKind kind = wxITEM_NORMAL;
    int depth = 0;
    bool submenu = false;

    friend bool operator==(const Row& a, const Row& b) = default;
    friend std::ostream& operator<<(std::ostream& out, const Row& row) {
        return out << std::string(static_cast<std::size_t>(2 * row.depth), ' ') << row.id << " \"" << row.label
                   << "\" kind " << row.kind << (row.submenu ? " with a submenu" : "") << " \"" << row.help << '"';
    }
};

void List(const wxMenu& menu, int depth, std::vector<Row>& rows) {
    for (const wxMenuItem* const item : menu.GetMenuItems()) {
        if (item->IsSeparator()) {
            rows.push_back({wxID_SEPARATOR, "", "", wxITEM_SEPARATOR, depth, false});
            continue;
        }
        rows.push_back({item->GetId(), item->GetItemLabel().utf8_string(), item->GetHelp().utf8_string(),
                        item->GetKind(), depth, item->IsSubMenu()});
        if (item->IsSubMenu())
            List(*item->GetSubMenu(), depth + 1, rows);
    }
}

constexpr wxItemKind normal = wxITEM_NORMAL, check = wxITEM_CHECK;
const Row line{wxID_SEPARATOR, "", "", wxITEM_SEPARATOR, 0, false};

const std::vector<Row> sequenceMenu = {
    {6018, "Browse forward\tCtrl+F", "Starts to browse the sequence automatically as a slideshow.", check},
    {6019, "Browse backward\tCtrl+B", "Starts to browse the sequence automatically as a slideshow.", check},
    {6002, "Stop browsing\tCtrl+T", "Stops the automatic browsing immediately.", normal},
    line,
    {6020, "Loop mode", "When end of the sequence is reached, should automatic browsing start again?", check},
    {6021, "Oscillation mode",
     "When end of the sequence is reached, should automatic browsing continue from the beginning or in an opposite "
     "direction?",
     check},
    line,
    {6003, "Set browsing range...", "Open dialog for setting the image ranges", normal},
    {6004, "Increase browsing speed\tF", "Increases FPS (images per second) automatic browsing speed.", normal},
    {6005, "Decrease browsing speed\tS", "Decreases FPS (images per second) automatic browsing speed.", normal},
    {6006, "Increase browsing step", "Increases number of images that are stepped over when moving to a next image.",
     normal},
    {6007, "Decrease browsing step", "Decreases number of images that are stepped over when moving to a next image.",
     normal},
};

const std::vector<Row> viewMenu = {
    {6011, "Save 3D data...\tCtrl+S", "Save original 3D image data", normal},
    {6012, "Save view...\tCtrl+V", "Save current view for publication purposes", normal},
    {6013, "Save gallery...\tCtrl+I", "Save slices of 3D data in chosen increment", normal},
    line,
    {6014, "Adjust frame size\tCtrl+E", "Adjust frame size according to the visible image", normal},
    {6015, "Auto adjust frame size", "Automatically adjust frame on zooming", check},
    line,
    {6016, "3D volume visualization\tV", "Show 3D visualization", normal},
    line,
    {5999, "Zoom In\tF2", "Zoom in", normal},
    {6000, "Zoom Out\tF3", "Zoom out", normal},
    {6001, "Normal Zoom\t1", "Normal zoom", normal},
    line,
    {6025, "Autofocus in all windows\tA", "Autofocus in all windows on/off", check},
    line,
    {6026, "Show windows annotation\tAlt+/", "Show/hide windows annotation", check},
    {6027, "Show info\tI", "Show/hide info window", check},
    line,
    {6010, "Window", "Show/hide window", normal, 0, true},
    {6022, "Show XY\tZ", "Show/hide XY window", check, 1},
    {6023, "Show XZ\tY", "Show/hide XZ window", check, 1},
    {6024, "Show YZ\tX", "Show/hide YZ window", check, 1},
    {6009, "Axis", "Axis options", normal, 0, true},
    {6028, "Reverse X\tF9", "Reverse X axis", check, 1},
    {6029, "Reverse Y\tF10", "Reverse Y axis", check, 1},
    {6030, "Reverse Z\tF11", "Reverse Z axis", check, 1},
    {6034, "Autofocus", "Switch autofocus on/off", normal, 0, true},
    {6031, "Window XY", "Autofocus in XY windows on/off", check, 1},
    {6032, "Window XZ", "Autofocus in XZ windows on/off", check, 1},
    {6033, "Window YZ", "Autofocus in YZ windows on/off", check, 1},
    line,
    {6008, "Preferences\tCtrl-P", "Change screen options", normal},
};

class FrameMenusTest : public FrameTest {
protected:
    /// The commands that a key of the keyboard gives while the XY window has the focus. They are not carried out.
    std::vector<int> CommandsOf(int key, int modifiers = wxMOD_NONE) {
        std::vector<int> commands;
        const auto note = [&commands](wxCommandEvent& event) { commands.push_back(event.GetId()); };
        frame->Bind(wxEVT_MENU, note);
        Press(key, modifiers);
        frame->Unbind(wxEVT_MENU, note);
        return commands;
    }
};

} // namespace

TEST_F(FrameMenusTest, EachEntryHasItsPlaceIdLabelHelpAndKind) {
    const wxMenuBar& bar = *frame->GetMenuBar();
    ASSERT_EQ(bar.GetMenuCount(), 2U);
    EXPECT_EQ(bar.GetMenuLabel(0), "&Sequence");
    EXPECT_EQ(bar.GetMenuLabel(1), "&View");
    for (const auto& [menu, expected] : {std::pair(0, sequenceMenu), std::pair(1, viewMenu)}) {
        std::vector<Row> rows;
        List(*bar.GetMenu(static_cast<std::size_t>(menu)), 0, rows);
        ASSERT_EQ(rows.size(), expected.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(rows[i], expected[i]);
    }
}

TEST_F(FrameMenusTest, FourEntriesAreMarkedAtTheStartAndAllAreEnabled) {
    std::vector<int> marked;
    const zel_Viewer3dFrame* const fresh = MakeFrame();
    for (const auto& menu : {sequenceMenu, viewMenu})
        for (const Row& row : menu) {
            if (row.kind == check && fresh->GetMenuBar()->IsChecked(row.id))
                marked.push_back(row.id);
            if (row.kind != wxITEM_SEPARATOR) {
                EXPECT_TRUE(fresh->GetMenuBar()->IsEnabled(row.id)) << row;
            }
        }
    EXPECT_EQ(marked, (std::vector<int>{6015, 6022, 6023, 6024}));
    delete fresh;
}

TEST_F(FrameMenusTest, StatusBarHasAFreeFieldAndOneForMessages) {
    const wxStatusBar& bar = *frame->GetStatusBar();
    ASSERT_EQ(bar.GetFieldsCount(), 2);
    EXPECT_EQ(bar.GetStatusWidth(0), -1);
    EXPECT_EQ(bar.GetStatusWidth(1), 180);
    EXPECT_EQ(bar.GetId(), 0);
    const long style = wxSTB_SIZEGRIP | wxSTB_SHOW_TIPS | wxSTB_ELLIPSIZE_END | wxFULL_REPAINT_ON_RESIZE;
    EXPECT_EQ(bar.GetWindowStyleFlag() & style, style);
}

TEST_F(FrameMenusTest, KeysOfTheKeyboardGiveTheCommands) {
    struct Shortcut {
        int key, modifiers, command;
    };
    Focus(*canvas->GetDrWin(zel_PT_XY));
    for (const Shortcut& s : std::vector<Shortcut>{
             {WXK_NUMPAD_ADD, wxMOD_CONTROL, 5999},
             {WXK_NUMPAD_SUBTRACT, wxMOD_CONTROL, 6000},
             {WXK_F2, wxMOD_NONE, 5999},
             {WXK_F3, wxMOD_NONE, 6000},
             {WXK_F9, wxMOD_NONE, 6028},
             {WXK_F10, wxMOD_NONE, 6029},
             {WXK_F11, wxMOD_NONE, 6030},
             {'F', wxMOD_CONTROL, 6018},
             {'B', wxMOD_CONTROL, 6019},
             {'T', wxMOD_CONTROL, 6002},
             {'S', wxMOD_CONTROL, 6011},
             {'V', wxMOD_CONTROL, 6012},
             {'I', wxMOD_CONTROL, 6013},
             {'E', wxMOD_CONTROL, 6014},
             {'P', wxMOD_CONTROL, 6008},
             {'/', wxMOD_ALT, 6026},
             {'F', wxMOD_NONE, 6004},
             {'S', wxMOD_NONE, 6005},
             {'V', wxMOD_NONE, 6016},
             {'1', wxMOD_NONE, 6001},
             {'A', wxMOD_NONE, 6025},
             {'I', wxMOD_NONE, 6027},
             {'Z', wxMOD_NONE, 6022},
             {'Y', wxMOD_NONE, 6023},
             {'X', wxMOD_NONE, 6024},
         })
        EXPECT_EQ(CommandsOf(s.key, s.modifiers), std::vector<int>{s.command})
            << "key " << s.key << " with modifiers " << s.modifiers;
}

TEST_F(FrameMenusTest, AMenuOpenedByKeyboardGivesItsEntriesWithTheirMarks) {
    canvas->m_iterator.loopMode = true;
    Focus(*canvas->GetDrWin(zel_PT_XY));
    std::vector<int> commands;
    const auto note = [&commands](wxCommandEvent& event) { commands.push_back(event.GetId()); };
    bool opened = false;
    frame->Bind(wxEVT_MENU_OPEN, [&opened](wxMenuEvent& event) {
        opened = true;
        event.Skip();
    });
    frame->Bind(wxEVT_MENU, note);
    Press('S', wxMOD_ALT);
    ASSERT_TRUE(opened);
    EXPECT_TRUE(frame->GetMenuBar()->IsChecked(6020));
    for (int i = 0; i < 3; ++i) { // from the first entry, 6018, to 6019, 6002 and, over the line, 6020
        Press(WXK_DOWN);
    }
    Press(WXK_RETURN);
    frame->Unbind(wxEVT_MENU, note);
    EXPECT_EQ(commands, (std::vector<int>{6020}));
}
