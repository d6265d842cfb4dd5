#pragma once

#include "model/zel_export.h"

#include <wx/busyinfo.h>
#include <wx/utils.h>
#include <wx/weakref.h>
#include <wx/window.h>

namespace zel {

/// While one lives, the user is kept out of all windows, and a notice over one of them says why. The keyboard, which a
/// window loses when it is disabled, comes back to the window that had it.
class ZEL_EXPORT zel_UpdateNotice {
public:
    /// @param text  what the notice says
    /// @param over  the window that is updated
    zel_UpdateNotice(const wxString& text, wxWindow* over);
    ~zel_UpdateNotice();
    zel_UpdateNotice(const zel_UpdateNotice&) = delete;
    zel_UpdateNotice& operator=(const zel_UpdateNotice&) = delete;

private:
    struct Keyboard {
        Keyboard();
        ~Keyboard();
        wxWeakRef<wxWindow> window;
    };

    Keyboard m_keyboard; // first, so that it comes back when the windows are enabled again
    wxWindowDisabler m_disabler;
    wxBusyInfo m_notice;
};

} // namespace zel
