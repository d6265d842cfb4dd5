#pragma once

#include "model/zel_export.h"
#include "viewer/zel_events.h"

#include <memory>

namespace zel {

/// Tells the host of a command of an overlaying module: sent synchronously to the module's frame after each one that
/// came from its menu, but for "Reload". GetClientData() is the module, as a zel_ExtensionModule*. Nothing in the
/// library handles it.
class ZEL_EXPORT zel_OverlayingCommandEvent : public wxCommandEvent {
public:
    /// @param cause  is cloned
    explicit zel_OverlayingCommandEvent(const wxCommandEvent& cause = wxCommandEvent());
    zel_OverlayingCommandEvent(const zel_OverlayingCommandEvent& other); ///< clones the command too

    wxEvent* Clone() const override { return new zel_OverlayingCommandEvent(*this); } ///< for pending events

    /// The command; this event owns it.
    const wxCommandEvent* GetCommandEvent() const { return m_cause.get(); }

private:
    std::unique_ptr<wxCommandEvent> m_cause;
};

/// Bind it on the frame of the module, or on a window above that.
ZEL_EXPORT extern const wxEventTypeTag<zel_OverlayingCommandEvent> zel_EVT_OVERLAYING_COMMAND;

} // namespace zel
