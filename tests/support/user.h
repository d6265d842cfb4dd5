#pragma once

// A user in front of a window: the real pointer and the real keyboard.

#include "tests/support/gui_test.h"

#include <wx/uiaction.h>

#include <array>

namespace zel::test {

/// A control of a dialog by its id. @throws std::bad_cast if it is none of this kind
template <typename Control = wxWindow>
Control& In(const wxWindow& dialog, int id) {
    return dynamic_cast<Control&>(*dialog.FindWindow(id));
}

/// Puts the pointer on a place of the screen.
inline void MovePointer(const wxPoint& screen) {
    wxUIActionSimulator().MouseMove(screen);
    EXPECT_TRUE(WaitUntil([&] { return wxGetMousePosition() == screen; }));
    Settle();
}

inline void MovePointerTo(const wxWindow& window, const wxPoint& at) {
    MovePointer(window.ClientToScreen(at));
}

inline void Click(wxWindow& window) {
    const wxSize size = window.GetClientSize();
    MovePointerTo(window, {size.x / 2, size.y / 2});
    wxUIActionSimulator().MouseClick();
    Settle();
}

/// Clicks one choice of a radio box.
inline void ClickChoice(wxRadioBox& box, int choice) {
    const wxRect area = box.GetScreenRect();
    for (int y = area.GetTop(); y < area.GetBottom(); y += 4)
        for (int x = area.GetLeft(); x < area.GetRight(); x += 4)
            if (box.GetItemFromPoint({x, y}) == choice) {
                MovePointer({x + 4, y + 4});
                wxUIActionSimulator().MouseClick();
                Settle();
                return;
            }
    ADD_FAILURE() << "the choice " << choice << " is not to be seen";
}

/// Presses the left button at the first place and moves over all others; lets go at the last.
inline void Drag(wxWindow& window, const std::vector<wxPoint>& path) {
    MovePointerTo(window, path.front());
    bool isPressed = false;
    const auto note = [&isPressed](wxMouseEvent& event) {
        isPressed = true;
        event.Skip();
    };
    const std::array presses{wxEVT_LEFT_DOWN, wxEVT_LEFT_DCLICK};
    for (const auto& press : presses)
        window.Bind(press, note);
    wxUIActionSimulator hand;
    hand.MouseDown();
    Settle();
    EXPECT_TRUE(WaitUntil([&] { return isPressed; })) << "something else lies at " << path.front().x;
    for (const auto& press : presses)
        window.Unbind(press, note);
    for (std::size_t i = 1; i < path.size(); ++i)
        MovePointerTo(window, path[i]);
    hand.MouseUp();
    Settle();
}

inline void Press(int key, int modifiers = wxMOD_NONE) {
    wxUIActionSimulator().Char(key, modifiers);
    Settle();
}

/// Types into the window that has the focus.
inline void Type(const std::string& text) {
    wxUIActionSimulator().Text(text.c_str());
    Settle();
}

inline void Focus(wxWindow& window) {
    window.SetFocus();
    EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == &window; }));
}

/// Replaces what stands in a field, by typing, and leaves the focus there.
inline void TypeInto(wxTextCtrl& field, const std::string& text) {
    Focus(field);
    Press('A', wxMOD_CONTROL);
    Press(WXK_DELETE);
    wxUIActionSimulator().Text(text.c_str());
    EXPECT_TRUE(WaitUntil([&] { return field.GetValue() == text; })) << field.GetValue().utf8_string();
}

} // namespace zel::test
