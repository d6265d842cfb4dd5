#include "mapping/zel_mappingevents.h"

namespace zel {

namespace {

std::unique_ptr<wxCommandEvent> CloneOf(const wxCommandEvent& event) {
    return std::unique_ptr<wxCommandEvent>(static_cast<wxCommandEvent*>(event.Clone()));
}

} // namespace

const wxEventTypeTag<zel_MappingCommandEvent> zel_EVT_MAPPING_COMMAND(wxNewEventType());

zel_MappingCommandEvent::zel_MappingCommandEvent(const wxCommandEvent& cause)
    : wxCommandEvent(zel_EVT_MAPPING_COMMAND, 0), m_cause(CloneOf(cause)) {}

zel_MappingCommandEvent::zel_MappingCommandEvent(const zel_MappingCommandEvent& other)
    : wxCommandEvent(other), m_cause(CloneOf(*other.m_cause)) {}

} // namespace zel
