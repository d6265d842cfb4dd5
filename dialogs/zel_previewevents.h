#pragma once

#include "model/zel_export.h"

#include <wx/event.h>

// What a dialog tells the mapping module while the user is still choosing. Voxel values of every type are sent as
// floats; the receiver truncates them to its own type.

namespace zel {

/// The channel of a preview is 0 for red (or gray), 1 for green, 2 for blue, or this one for all of them.
constexpr int zel_allChannels = 3;

/// Levels to try; see TLevelsParams for what the five numbers mean.
class ZEL_EXPORT zel_LevelsEvent : public wxEvent {
public:
    /// Takes the numbers of a TLevelsParams, and the channel that they are for.
    explicit zel_LevelsEvent(float inMin = 0.0F, float inMax = 0.0F, double gamma = 1.0, float outMin = 0.0F,
                             float outMax = 255.0F, int channel = zel_allChannels);

    wxEvent* Clone() const override { return new zel_LevelsEvent(*this); } ///< for pending events

    /// @{
    /// As in TLevelsParams.
    float GetInMin() const { return m_inMin; }
    float GetInMax() const { return m_inMax; }
    double GetGamma() const { return m_gamma; }
    float GetOutMin() const { return m_outMin; }
    float GetOutMax() const { return m_outMax; }
    /// @}
    int GetChannel() const { return m_channel; } ///< 0 to 2, or zel_allChannels

private:
    float m_inMin;
    float m_inMax;
    double m_gamma;
    float m_outMin;
    float m_outMax;
    int m_channel;
};

/// Thresholds to try; see ThresParams.
class ZEL_EXPORT zel_ThresholdingEvent : public wxEvent {
public:
    /// Takes the numbers of a ThresParams, and the channel that they are for.
    explicit zel_ThresholdingEvent(float lower = 0.0F, float upper = 0.0F, int channel = zel_allChannels);

    wxEvent* Clone() const override { return new zel_ThresholdingEvent(*this); } ///< for pending events

    /// @{
    /// As in ThresParams.
    float GetLower() const { return m_lower; }
    float GetUpper() const { return m_upper; }
    /// @}
    int GetChannel() const { return m_channel; } ///< 0 to 2, or zel_allChannels

private:
    float m_lower;
    float m_upper;
    int m_channel;
};

/// @{
/// Sent by the dialogs of levels and thresholds to the event handlers of their parent, which is the frame: so to the
/// mapping module.
ZEL_EXPORT extern const wxEventTypeTag<zel_LevelsEvent> zel_EVT_LEVELS_PREVIEW;
ZEL_EXPORT extern const wxEventTypeTag<zel_ThresholdingEvent> zel_EVT_THRESHOLDING_PREVIEW;
/// @}

} // namespace zel
