#include "viewer/menus/zel_menushortcut.h"

#include <wx/accel.h>
#include <wx/frame.h>
#include <wx/menu.h>

#include <cctype>
#include <memory>

namespace zel {

namespace {

const wxMenuItem* FindShortcut(const wxMenu& menu, int keyCode) {
    for (const wxMenuItem* const item : menu.GetMenuItems()) {
        if (item->IsSubMenu()) {
            if (const wxMenuItem* const found = FindShortcut(*item->GetSubMenu(), keyCode))
                return found;
            continue;
        }
        const std::unique_ptr<wxAcceleratorEntry> shortcut(item->GetAccel());
        if (shortcut != nullptr && shortcut->GetFlags() == wxACCEL_NORMAL &&
            std::toupper(shortcut->GetKeyCode()) == keyCode && item->IsEnabled())
            return item;
    }
    return nullptr;
}

} // namespace

bool RunMenuShortcut(wxWindow& window, const wxKeyEvent& event) {
    const int keyCode = event.GetKeyCode();
    if (event.GetModifiers() != wxMOD_NONE || keyCode <= WXK_SPACE || keyCode >= WXK_DELETE)
        return false;
    auto* const frame = wxDynamicCast(wxGetTopLevelParent(&window), wxFrame);
    const wxMenuBar* const bar = frame != nullptr ? frame->GetMenuBar() : nullptr;
    if (bar == nullptr)
        return false;
    for (std::size_t i = 0; i < bar->GetMenuCount(); ++i)
        if (const wxMenuItem* const item = FindShortcut(*bar->GetMenu(i), std::toupper(keyCode))) {
            frame->ProcessCommand(item->GetId());
            return true;
        }
    return false;
}

} // namespace zel
