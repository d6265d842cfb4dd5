#include "viewer/zel_events.h"

namespace zel {

const wxEventTypeTag<zel_Mouse3dEvent> zel_EVT_MOUSE3D(wxNewEventType());
const wxEventTypeTag<zel_MappingEvent> zel_EVT_MAPPING_CHANGED(wxNewEventType());
const wxEventTypeTag<zel_OverlayingEvent> zel_EVT_OVERLAYING_CHANGED(wxNewEventType());
const wxEventTypeTag<zel_PositionEvent> zel_EVT_POSITION_CHANGED(wxNewEventType());

zel_Mouse3dEvent::zel_Mouse3dEvent(zel_DrWin3d* drawingWindow, const wxMouseEvent& event)
    : wxEvent(event.GetId(), zel_EVT_MOUSE3D), m_window(drawingWindow), m_mouseEvent(event) {}

zel_MappingEvent::zel_MappingEvent(bool committed) : wxEvent(0, zel_EVT_MAPPING_CHANGED), m_committed(committed) {}

zel_OverlayingEvent::zel_OverlayingEvent(bool dataChanged, bool reload)
    : wxEvent(0, zel_EVT_OVERLAYING_CHANGED), m_dataChanged(dataChanged), m_reload(reload) {}

zel_PositionEvent::zel_PositionEvent(bool cut, bool view, bool time)
    : wxEvent(0, zel_EVT_POSITION_CHANGED), m_cut(cut), m_view(view), m_time(time) {}

} // namespace zel
