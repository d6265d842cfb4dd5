#pragma once

class WXDLLIMPEXP_FWD_CORE wxKeyEvent;
class WXDLLIMPEXP_FWD_CORE wxWindow;

namespace zel {

/// Runs the enabled entry of the menu bar above a window whose shortcut is exactly this key, a printable one without
/// modifiers. The toolkit's input method takes such keys before the menus see them, so a window with the keyboard has
/// to look by itself. Function keys and those with Ctrl or Alt reach the menus unaided and are left to them.
/// @return whether an entry was run
bool RunMenuShortcut(wxWindow& window, const wxKeyEvent& event);

} // namespace zel
