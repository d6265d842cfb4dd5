#include "overlay/zel_overlayingevents.h"

namespace zel {

namespace {

std::unique_ptr<wxCommandEvent> CloneOf(const wxCommandEvent& event) {
    return std::unique_ptr<wxCommandEvent>(static_cast<wxCommandEvent*>(event.Clone()));
}

} // namespace

const wxEventTypeTag<zel_OverlayingCommandEvent> zel_EVT_OVERLAYING_COMMAND(wxNewEventType());

zel_OverlayingCommandEvent::zel_OverlayingCommandEvent(const wxCommandEvent& cause)
    : wxCommandEvent(zel_EVT_OVERLAYING_COMMAND, 0), m_cause(CloneOf(cause)) {}

zel_OverlayingCommandEvent::zel_OverlayingCommandEvent(const zel_OverlayingCommandEvent& other)
    : wxCommandEvent(other), m_cause(CloneOf(*other.m_cause)) {}

} // namespace zel
