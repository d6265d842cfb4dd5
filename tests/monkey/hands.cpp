#include "tests/monkey/hands.h"

#include "tests/support/system_dialogs.h"

#include <wx/app.h>
#include <wx/checkbox.h>
#include <wx/checklst.h>
#include <wx/choice.h>
#include <wx/evtloop.h>
#include <wx/notebook.h>
#include <wx/radiobox.h>
#include <wx/radiobut.h>
#include <wx/slider.h>
#include <wx/spinctrl.h>
#include <wx/stopwatch.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>
#include <wx/uiaction.h>
#include <wx/weakref.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>

namespace zel::test {

void PumpFor(int milliseconds) {
    wxEventLoopBase* const loop = wxEventLoopBase::GetActive();
    const wxStopWatch watch;
    do {
        while (loop->Pending() && watch.Time() < milliseconds)
            loop->Dispatch();
        wxTheApp->ProcessPendingEvents();
        loop->ProcessIdle();
    } while (loop->Pending() && watch.Time() < milliseconds);
}

std::vector<wxWindow*> ReachableWindows(wxWindow& top) {
    static auto* const isMapped = OfSystem<int(void*)>("gtk_widget_get_mapped");
    std::vector<wxWindow*> windows;
    if (!top.IsShown() || !top.IsEnabled() || isMapped(top.GetHandle()) == 0)
        return windows;
    windows.push_back(&top);
    for (wxWindow* const child : top.GetChildren())
        if (!child->IsTopLevel())
            for (wxWindow* const below : ReachableWindows(*child))
                windows.push_back(below);
    return windows;
}

std::string NameOf(const wxWindow& window) {
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(window).name(), nullptr, nullptr, nullptr), std::free);
    return std::string(name ? name.get() : "window") + " " + std::to_string(window.GetId());
}

namespace {

constexpr int modifierChoices[] = {
    wxMOD_NONE, wxMOD_NONE, wxMOD_NONE, wxMOD_CONTROL, wxMOD_ALT, wxMOD_SHIFT, wxMOD_CONTROL | wxMOD_SHIFT};
constexpr int keyChoices[] = {WXK_LEFT,
                              WXK_RIGHT,
                              WXK_UP,
                              WXK_DOWN,
                              WXK_PAGEUP,
                              WXK_PAGEDOWN,
                              WXK_SPACE,
                              WXK_HOME,
                              WXK_END,
                              WXK_RETURN,
                              WXK_NUMPAD_ADD,
                              WXK_NUMPAD_SUBTRACT,
                              WXK_F1,
                              WXK_F2,
                              WXK_F3,
                              WXK_F9,
                              WXK_F10,
                              WXK_F11,
                              WXK_TAB,
                              WXK_ESCAPE,
                              WXK_DELETE,
                              WXK_BACK,
                              '=',
                              '-',
                              '+',
                              '0',
                              '1',
                              'A',
                              'C',
                              'F',
                              'G',
                              'H',
                              'I',
                              'P',
                              'S',
                              'V',
                              'X',
                              'Y',
                              'Z',
                              'O',
                              'W',
                              '/'};

wxPoint AnyPointNear(const wxWindow& window, Dice& dice) {
    const wxSize size = window.GetClientSize();
    const int beyond = dice.OneIn(4) ? 400 : 0;
    const int x = dice.Any(size.x + 1 + 2 * beyond) - beyond, y = dice.Any(size.y + 1 + 2 * beyond) - beyond;
    return {x, y};
}

std::string At(const wxPoint& at) {
    return " at " + std::to_string(at.x) + ", " + std::to_string(at.y);
}

void SendMouse(wxWindow& window, wxEventType type, const wxPoint& at, int modifiers, int rotation, bool isPressed) {
    wxMouseEvent event(type);
    event.SetPosition(at);
    event.m_wheelRotation = rotation;
    event.m_wheelDelta = 120;
    event.SetLeftDown(isPressed);
    event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
    event.SetShiftDown((modifiers & wxMOD_SHIFT) != 0);
    event.SetAltDown((modifiers & wxMOD_ALT) != 0);
    event.SetId(window.GetId());
    event.SetEventObject(&window);
    window.ProcessWindowEvent(event);
}

void SendKey(wxWindow& window, wxEventType type, int key, int modifiers) {
    wxKeyEvent event(type);
    event.m_keyCode = key;
    event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
    event.SetAltDown((modifiers & wxMOD_ALT) != 0);
    event.SetShiftDown((modifiers & wxMOD_SHIFT) != 0);
    event.SetId(window.GetId());
    event.SetEventObject(&window);
    window.ProcessWindowEvent(event);
}

void SendCommand(wxWindow& control, wxEventType type, int number) {
    wxCommandEvent event(type, control.GetId());
    event.SetInt(number);
    event.SetEventObject(&control);
    control.ProcessWindowEvent(event);
}

wxString AnyText(Dice& dice) {
    static const char* const texts[] = {"",        "0",       "1",     "2",    "5",     "12.5",
                                        "-1",      "abc",     "1e30",  "nan",  "1e-30", "99999999",
                                        "255",     "65535",   " 3",    "0x10", "1,5",   ".",
                                        "a b.tif", "imX.tif", "X.ics", "XXXX", "-1e39", "12345678901234567890"};
    if (dice.OneIn(3))
        return wxString::Format("%d", dice.Any(70));
    return wxString::FromUTF8(dice.Of(texts));
}

} // namespace

std::string SendAnyMouse(wxWindow& window, Dice& dice) {
    static const wxEventType types[] = {wxEVT_LEFT_DOWN,    wxEVT_LEFT_UP,       wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DOWN,
                                        wxEVT_MIDDLE_UP,    wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN,  wxEVT_RIGHT_UP,
                                        wxEVT_RIGHT_DCLICK, wxEVT_AUX1_DOWN,     wxEVT_AUX1_UP,     wxEVT_AUX2_DOWN,
                                        wxEVT_AUX2_UP,      wxEVT_MOTION,        wxEVT_MOTION,      wxEVT_LEAVE_WINDOW,
                                        wxEVT_ENTER_WINDOW, wxEVT_MOUSEWHEEL,    wxEVT_MOUSEWHEEL,  wxEVT_MAGNIFY};
    const int which = dice.Any(static_cast<int>(std::size(types)));
    const wxPoint at = AnyPointNear(window, dice);
    const int modifiers = dice.Of(modifierChoices), rotation = (dice.Any(5) - 2) * 120;
    const bool isPressed = dice.OneIn(2);
    const std::string what = "mouse event " + std::to_string(which) + " on " + NameOf(window) + At(at);
    SendMouse(window, types[which], at, modifiers, rotation, isPressed);
    return what;
}

std::string SendAnyDrag(wxWindow& window, Dice& dice) {
    static const wxEventType buttons[][2] = {{wxEVT_LEFT_DOWN, wxEVT_LEFT_UP},
                                             {wxEVT_LEFT_DCLICK, wxEVT_LEFT_UP},
                                             {wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP},
                                             {wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP}};
    const wxEventType* const button = buttons[dice.Any(4)];
    const int modifiers = dice.Of(modifierChoices);
    const std::string what = "drag on " + NameOf(window);
    const wxWeakRef<wxWindow> self(&window);
    SendMouse(window, button[0], AnyPointNear(window, dice), modifiers, 0, true);
    for (int moves = dice.Any(6); moves > 0 && self; --moves) {
        SendMouse(window, wxEVT_MOTION, AnyPointNear(window, dice), modifiers, 0, true);
        PumpFor(2);
    }
    if (self && !dice.OneIn(10)) // or the release is lost
        SendMouse(window, button[1], AnyPointNear(window, dice), modifiers, 0, false);
    return what;
}

std::string SendAnyKey(wxWindow& window, Dice& dice) {
    const int key = dice.OneIn(10) ? dice.Any(400) : dice.Of(keyChoices), modifiers = dice.Of(modifierChoices);
    const std::string what =
        "key " + std::to_string(key) + " modifiers " + std::to_string(modifiers) + " on " + NameOf(window);
    const wxWeakRef<wxWindow> self(&window);
    SendKey(window, wxEVT_KEY_DOWN, key, modifiers);
    if (self)
        SendKey(window, wxEVT_CHAR, key, modifiers);
    if (self)
        SendKey(window, wxEVT_KEY_UP, key, modifiers);
    return what;
}

std::string UseRealInput(wxWindow& window, Dice& dice) {
    wxUIActionSimulator hand;
    if (dice.OneIn(2)) {
        const int key = dice.Of(keyChoices), modifiers = dice.Of(modifierChoices);
        const std::string what =
            "real key " + std::to_string(key) + " modifiers " + std::to_string(modifiers) + " on " + NameOf(window);
        const wxWeakRef<wxWindow> self(&window);
        window.SetFocus();
        PumpFor(5);
        hand.Char(key, modifiers);
        PumpFor(10);
        if (dice.OneIn(3))
            hand.Char(WXK_ESCAPE); // out of a menu that it may have opened
        return what;
    }
    const std::string what = "real click on " + NameOf(window);
    hand.MouseMove(window.ClientToScreen(AnyPointNear(window, dice)));
    PumpFor(5);
    constexpr int buttons[] = {wxMOUSE_BTN_LEFT, wxMOUSE_BTN_LEFT, wxMOUSE_BTN_MIDDLE, wxMOUSE_BTN_RIGHT};
    const int button = dice.Of(buttons);
    if (dice.OneIn(4)) {
        hand.MouseDblClick(button);
    } else {
        hand.MouseDown(button);
        if (dice.OneIn(2))
            hand.MouseMove(dice.Any(1600), dice.Any(1200));
        PumpFor(5);
        hand.MouseUp(button);
    }
    PumpFor(10);
    return what;
}

std::string ChangeControl(wxWindow& control, Dice& dice) {
    const std::string name = NameOf(control);
    if (auto* const spin = dynamic_cast<wxSpinCtrl*>(&control)) {
        spin->SetValue(dice.OneIn(3) ? dice.Any(100000) - 50000 : dice.Any(20));
        SendCommand(control, wxEVT_TEXT, spin->GetValue());
        wxSpinEvent event(wxEVT_SPINCTRL, spin->GetId());
        event.SetPosition(spin->GetValue());
        event.SetEventObject(spin);
        spin->ProcessWindowEvent(event);
        return name + " spun";
    }
    if (auto* const text = dynamic_cast<wxTextCtrl*>(&control)) {
        const wxString content = AnyText(dice);
        const wxWeakRef<wxWindow> self(text);
        text->SetValue(content);
        if (self && dice.OneIn(2))
            SendCommand(control, wxEVT_TEXT_ENTER, 0);
        if (self && dice.OneIn(2)) {
            wxFocusEvent leaves(wxEVT_KILL_FOCUS, text->GetId());
            leaves.SetEventObject(text);
            text->ProcessWindowEvent(leaves);
        }
        return name + " gets \"" + content.utf8_string() + "\"";
    }
    if (auto* const slider = dynamic_cast<wxSlider*>(&control)) {
        slider->SetValue(slider->GetMin() + dice.Any(slider->GetMax() - slider->GetMin() + 1));
        SendCommand(control, wxEVT_SLIDER, slider->GetValue());
        return name + " slid";
    }
    if (auto* const box = dynamic_cast<wxCheckBox*>(&control)) {
        box->SetValue(!box->GetValue());
        SendCommand(control, wxEVT_CHECKBOX, box->GetValue() ? 1 : 0);
        return name + " checked";
    }
    if (auto* const radio = dynamic_cast<wxRadioButton*>(&control)) {
        radio->SetValue(true);
        SendCommand(control, wxEVT_RADIOBUTTON, 1);
        return name + " chosen";
    }
    if (auto* const radios = dynamic_cast<wxRadioBox*>(&control)) {
        radios->SetSelection(dice.Any(static_cast<int>(radios->GetCount())));
        SendCommand(control, wxEVT_RADIOBOX, radios->GetSelection());
        return name + " chosen";
    }
    if (auto* const choice = dynamic_cast<wxChoice*>(&control); choice != nullptr && !choice->IsEmpty()) {
        choice->SetSelection(dice.Any(static_cast<int>(choice->GetCount())));
        SendCommand(control, wxEVT_CHOICE, choice->GetSelection());
        return name + " chosen";
    }
    if (auto* const list = dynamic_cast<wxCheckListBox*>(&control); list != nullptr && !list->IsEmpty()) {
        const auto item = static_cast<unsigned>(dice.Any(static_cast<int>(list->GetCount())));
        list->Check(item, !list->IsChecked(item));
        SendCommand(control, wxEVT_CHECKLISTBOX, static_cast<int>(item));
        return name + " checked";
    }
    if (auto* const book = dynamic_cast<wxNotebook*>(&control); book != nullptr && book->GetPageCount() > 0) {
        book->SetSelection(static_cast<std::size_t>(dice.Any(static_cast<int>(book->GetPageCount()))));
        return name + " turned";
    }
    if (dynamic_cast<wxButton*>(&control) != nullptr) {
        if ((control.GetId() == wxID_OK || control.GetId() == wxID_CANCEL) && !dice.OneIn(4))
            return name + " left alone";
        SendCommand(control, wxEVT_BUTTON, 0);
        return name + " pressed";
    }
    return dice.OneIn(4)   ? SendAnyKey(control, dice)
           : dice.OneIn(2) ? SendAnyDrag(control, dice)
                           : SendAnyMouse(control, dice);
}

} // namespace zel::test
