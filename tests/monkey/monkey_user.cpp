// What the monkey does as a user.

#include "tests/monkey/hands.h"
#include "tests/monkey/monkey.h"
#include "viewer/zel_commands.h"
#include "volume/vol3D_canvas.h"
#include "volume/vol3D_frame.h"

#include <wx/menu.h>
#include <wx/mousestate.h>

namespace zel::test {

namespace {

/// All entries of a menu and of those below it that can be chosen.
void CollectEntries(const wxMenu& menu, std::vector<wxMenuItem*>& entries) {
    for (wxMenuItem* const item : menu.GetMenuItems())
        if (item->IsSubMenu())
            CollectEntries(*item->GetSubMenu(), entries);
        else if (!item->IsSeparator())
            entries.push_back(item);
}

} // namespace

zel_DrWin3d& Monkey::AnyDrawingWindow() {
    constexpr zel_ProjectionType types[] = {zel_PT_XY, zel_PT_XZ, zel_PT_YZ};
    return *m_viewer->GetCanvas()->GetDrWin(m_dice.Of(types));
}

/// Of the viewers' windows: frames, volume and info windows, help.
wxWindow* Monkey::AnyTopLevel() {
    std::vector<wxWindow*> shown;
    for (wxWindow* const window : wxTopLevelWindows)
        if (window->IsShown() && window != m_host && !window->IsBeingDeleted())
            shown.push_back(window);
    return shown.empty() ? nullptr : m_dice.Of(shown);
}

void Monkey::ChooseEntryOf(wxFrame& frame) {
    wxMenuBar* const bar = frame.GetMenuBar();
    std::vector<wxMenuItem*> entries;
    for (std::size_t i = 0; i < bar->GetMenuCount(); ++i)
        CollectEntries(*bar->GetMenu(i), entries);
    wxMenuItem* const item = m_dice.Of(entries);
    const int id = item->GetId();
    Note("entry " + std::to_string(id) + " \"" + item->GetItemLabelText().utf8_string() + "\"");
    if (m_dice.OneIn(3)) {
        bar->UpdateMenus();
        frame.ProcessCommand(id);
        return;
    }
    if (item->IsCheckable()) // as a click does; a disabled one too, as a key may come before it is grayed
        item->Check(item->GetKind() == wxITEM_RADIO || !item->IsChecked());
    item->GetMenu()->SendEvent(id, item->IsCheckable() ? item->IsChecked() : -1);
}

void Monkey::ChooseEntry() {
    ChooseEntryOf(*m_viewer->frame);
}

void Monkey::OpenMenu() {
    wxMenuBar* const bar = m_viewer->frame->GetMenuBar();
    wxMenu* const menu = bar->GetMenu(static_cast<std::size_t>(m_dice.Any(static_cast<int>(bar->GetMenuCount()))));
    wxMenuEvent event(wxEVT_MENU_OPEN, 0, menu);
    m_viewer->frame->ProcessWindowEvent(event);
    bar->UpdateMenus();
}

/// A command that may have no entry, or none for now.
void Monkey::SendAnyId() {
    int id = m_dice.OneIn(5) ? zel_firstModuleId + m_dice.Any(60) : 5995 + m_dice.Any(50);
    if (m_viewer->GetCanvas() != nullptr && std::abs(m_viewer->GetCanvas()->GetZoom()) > 25)
        id = zel_CMD_NORMAL_ZOOM; // far in or out there is little to break
    Note("id " + std::to_string(id));
    const wxWeakRef<wxFrame> frame(m_viewer->frame.get());
    wxCommandEvent command(wxEVT_MENU, id);
    command.SetInt(m_dice.Any(3) - 1);
    frame->ProcessWindowEvent(command);
    wxUpdateUIEvent update(id);
    if (frame)
        frame->ProcessWindowEvent(update);
}

void Monkey::PressKey() {
    if (m_viewer->GetCanvas() != nullptr)
        Note(SendAnyKey(AnyDrawingWindow(), m_dice));
}

void Monkey::UseMouse() {
    if (m_viewer->GetCanvas() != nullptr)
        Note(SendAnyMouse(AnyDrawingWindow(), m_dice));
}

void Monkey::DragMouse() {
    if (m_viewer->GetCanvas() != nullptr)
        Note(SendAnyDrag(AnyDrawingWindow(), m_dice));
}

void Monkey::UseHands() {
    m_viewer->frame->Raise();
    wxWindow* target = m_viewer->frame;
    if (m_viewer->GetCanvas() != nullptr && !m_dice.OneIn(4))
        target = &AnyDrawingWindow();
    if (target->IsShownOnScreen())
        Note(UseRealInput(*target, m_dice));
}

void Monkey::Resize() {
    wxFrame& frame = *m_viewer->frame;
    zel_Viewer3dCanvas* const canvas = m_viewer->GetCanvas();
    switch (m_dice.Any(10)) {
    case 0:
        if (canvas != nullptr)
            canvas->SetSize(0, 0);
        break;
    case 1:
        if (canvas != nullptr)
            canvas->SetSize(m_dice.Any(60), m_dice.Any(60));
        break;
    case 2:
        if (canvas != nullptr)
            canvas->SetSize(frame.GetClientSize());
        break;
    case 3:
        frame.Move(m_dice.Any(1200) - 100, m_dice.Any(900) - 100);
        break;
    case 4:
        frame.SetClientSize(m_dice.Any(40), m_dice.Any(40));
        break;
    default:
        frame.SetSize(m_dice.Any(900), m_dice.Any(900));
    }
}

void Monkey::ChangeWindowState() {
    wxFrame& frame = *m_viewer->frame;
    switch (m_dice.Any(7)) {
    case 0:
        frame.Maximize(!frame.IsMaximized());
        break;
    case 1:
        frame.Iconize(true);
        break;
    case 2:
        frame.ShowFullScreen(!frame.IsFullScreen());
        break;
    case 3:
        frame.Hide();
        break;
    case 4:
        frame.Lower();
        break;
    default:
        frame.Iconize(false);
        frame.Show();
        frame.Raise();
    }
}

void Monkey::MoveFocus() {
    const std::vector<wxWindow*> windows = ReachableWindows(*m_viewer->frame);
    if (windows.empty())
        return;
    wxWindow* const window = m_dice.Of(windows);
    if (m_dice.OneIn(3))
        window->Navigate(m_dice.OneIn(2) ? 0 : int{wxNavigationKeyEvent::IsForward});
    else
        window->SetFocus();
}

/// What comes from the system and not from the user's hands.
void Monkey::SendSystemEvent() {
    if (m_viewer->GetCanvas() == nullptr)
        return;
    zel_DrWin3d& window = AnyDrawingWindow();
    const auto send = [&window](auto&& event) {
        event.SetEventObject(&window);
        window.ProcessWindowEvent(event);
    };
    switch (m_dice.Any(7)) {
    case 0:
        send(wxMouseCaptureLostEvent(window.GetId()));
        break;
    case 1:
        send(wxFocusEvent(wxEVT_KILL_FOCUS, window.GetId()));
        break;
    case 2:
        send(wxFocusEvent(wxEVT_SET_FOCUS, window.GetId()));
        break;
    case 3:
        send(wxSysColourChangedEvent());
        break;
    case 4:
        send(wxContextMenuEvent(wxEVT_CONTEXT_MENU, window.GetId(), wxGetMousePosition()));
        break;
    case 5:
        send(wxActivateEvent(wxEVT_ACTIVATE, m_dice.OneIn(2)));
        break;
    default:
        window.Refresh(m_dice.OneIn(2));
        window.Update();
    }
}

void Monkey::TouchAnyWindow() {
    wxWindow* const top = AnyTopLevel();
    if (top == nullptr)
        return;
    const std::vector<wxWindow*> windows = ReachableWindows(*top);
    if (windows.empty())
        return;
    wxWindow* const window = m_dice.Of(windows);
    Note(NameOf(*window) + " of \"" + top->GetLabel().utf8_string() + "\"");
    if (m_dice.OneIn(12) && dynamic_cast<zel_Viewer3dFrame*>(top) == nullptr)
        top->Close();
    else if (m_dice.OneIn(12))
        top->SetSize(m_dice.Any(500), m_dice.Any(500));
    else
        Note(ChangeControl(*window, m_dice));
}

/// The volume window is drawn by the processor here, a tenth of a second for each picture of its size: it stays small
/// and has few sheets.
void Monkey::TameVolume() {
    for (const auto& viewer : m_viewers) {
        vol3D_VolVisFrame* const volume =
            viewer->GetCanvas() != nullptr ? viewer->GetCanvas()->GetVolVisFrame() : nullptr;
        if (volume == nullptr || !volume->IsShown())
            continue;
        if (volume->GetClientSize().x > 150 || volume->GetClientSize().y > 150)
            volume->SetClientSize(60, 60);
        wxKeyEvent fewer(wxEVT_CHAR);
        fewer.m_keyCode = '-';
        for (int i = 0; i < 9 && volume->GetCanvas()->GetSliceCount() > 20; ++i)
            volume->GetCanvas()->ProcessWindowEvent(fewer);
    }
}

void Monkey::UseVolume() {
    if (m_viewer->GetCanvas() == nullptr)
        return;
    vol3D_VolVisFrame* const volume = m_viewer->GetCanvas()->GetVolVisFrame();
    if (volume == nullptr) {
        m_viewer->frame->ProcessCommand(zel_CMD_VOLUME);
        return;
    }
    switch (m_dice.Any(7)) {
    case 0:
        ChooseEntryOf(*volume);
        break;
    case 1:
        Note(SendAnyKey(*volume->GetCanvas(), m_dice));
        break;
    case 2:
        Note(SendAnyDrag(*volume->GetCanvas(), m_dice));
        break;
    case 3:
        volume->SetClientSize(m_dice.Any(120), m_dice.Any(120));
        break;
    case 4:
        volume->Close(m_dice.OneIn(3));
        break;
    case 5:
        volume->Iconize(!volume->IsIconized());
        break;
    default:
        m_viewer->frame->ProcessCommand(zel_CMD_VOLUME);
    }
}

void Monkey::WaitAWhile() {
    for (int i = m_dice.Any(6); i >= 0; --i) {
        PumpFor(20);
        wxMilliSleep(10);
    }
}

void Monkey::CloseViewer() {
    m_viewer->frame->Close(m_dice.OneIn(2));
}

} // namespace zel::test
