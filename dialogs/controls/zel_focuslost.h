#pragma once

#include <wx/window.h>

namespace zel {

/// Calls a handler when a control loses the focus, which the control sees as well. Focus events reach no parent.
template <typename Handler>
void OnFocusLost(wxWindow& control, const Handler& handler) {
    control.Bind(wxEVT_KILL_FOCUS, [&control, handler](wxFocusEvent& event) {
        event.Skip();
        if (!control.IsBeingDeleted()) // a dialog's own part goes before its controls
            handler();
    });
}

} // namespace zel
