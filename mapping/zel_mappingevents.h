#pragma once

#include "model/zel_export.h"

#include <wx/event.h>

#include <memory>

namespace zel {

/// Tells the host of a command of a mapping module: sent synchronously to the module's frame after each one that came
/// from its menu. GetClientData() is the module, as a zel_ExtensionModule*. Nothing in the library handles it.
class ZEL_EXPORT zel_MappingCommandEvent : public wxCommandEvent {
public:
    /// @param cause  is cloned
    explicit zel_MappingCommandEvent(const wxCommandEvent& cause = wxCommandEvent());
    zel_MappingCommandEvent(const zel_MappingCommandEvent& other); ///< clones the command too

    wxEvent* Clone() const override { return new zel_MappingCommandEvent(*this); } ///< for pending events

    /// The command; this event owns it.
    const wxCommandEvent* GetCommandEvent() const { return m_cause.get(); }

private:
    std::unique_ptr<wxCommandEvent> m_cause;
};

/// Bind it on the frame of the module, or on a window above that.
ZEL_EXPORT extern const wxEventTypeTag<zel_MappingCommandEvent> zel_EVT_MAPPING_COMMAND;

} // namespace zel
