#include "dialogs/zel_previewevents.h"

namespace zel {

const wxEventTypeTag<zel_LevelsEvent> zel_EVT_LEVELS_PREVIEW(wxNewEventType());
const wxEventTypeTag<zel_ThresholdingEvent> zel_EVT_THRESHOLDING_PREVIEW(wxNewEventType());

zel_LevelsEvent::zel_LevelsEvent(float inMin, float inMax, double gamma, float outMin, float outMax, int channel)
    : wxEvent(0, zel_EVT_LEVELS_PREVIEW),
      m_inMin(inMin),
      m_inMax(inMax),
      m_gamma(gamma),
      m_outMin(outMin),
      m_outMax(outMax),
      m_channel(channel) {}

zel_ThresholdingEvent::zel_ThresholdingEvent(float lower, float upper, int channel)
    : wxEvent(0, zel_EVT_THRESHOLDING_PREVIEW), m_lower(lower), m_upper(upper), m_channel(channel) {}

} // namespace zel
