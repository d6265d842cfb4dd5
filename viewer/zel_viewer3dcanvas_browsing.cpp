#include "dialogs/dlg_set_range.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/event.h>

namespace zel {

namespace {

/// Lets the user choose the browsed range. @return whether that has moved the current frame
bool AskForRange(wxWindow* parent, mor::ImageIterator& iterator) {
    if (iterator.limitFirst >= iterator.limitLast)
        throw kep::InternalException("A single frame has no range to choose.");
    long first = iterator.rangeFirst;
    long last = iterator.rangeLast;
    if (!GetLongRangeFromUser(parent, iterator.limitFirst, iterator.limitLast, first, last))
        return false;
    iterator.SetRange(static_cast<int>(first), static_cast<int>(last));
    return iterator.moved;
}

} // namespace

bool zel_Viewer3dCanvas::OnSequenceMenuUpdateUI_PlayingForward() const {
    return m_sequenceTimer.IsRunning() && m_iterator.direction == 1;
}

bool zel_Viewer3dCanvas::OnSequenceMenuUpdateUI_PlayingBackward() const {
    return m_sequenceTimer.IsRunning() && m_iterator.direction == -1;
}

void zel_Viewer3dCanvas::OnSequenceMenuHandler(wxCommandEvent& event, wxString& message) {
    if (event.GetId() < zel_CMD_STOP_BROWSING || event.GetId() > zel_CMD_OSCILLATION_MODE)
        return;
    try {
        message = RunSequenceCommand(event.GetId());
    } catch (...) {
        message = "No change."; // the normal end of going slower at one frame a second
    }
}

wxString zel_Viewer3dCanvas::RunSequenceCommand(int id) {
    const auto speed = [this] { return wxString::Format("FPS set to %d.", m_iterator.fps); };
    const auto step = [this] { return wxString::Format("Browsing by %d frames.", m_iterator.step); };
    switch (id) {
    case zel_CMD_STOP_BROWSING:
        m_sequenceTimer.Stop();
        return "Stopped auto browsing.";
    case zel_CMD_BROWSING_RANGE:
        if (AskForRange(this, m_iterator))
            OnTimeChange();
        return {};
    case zel_CMD_FASTER:
        m_iterator.SetFPS(m_iterator.fps + 1);
        RestartTimer();
        return speed();
    case zel_CMD_SLOWER:
        m_iterator.SetFPS(m_iterator.fps - 1);
        RestartTimer();
        return speed();
    case zel_CMD_LARGER_STEP:
        m_iterator.SetStep(m_iterator.step + 1);
        return step();
    case zel_CMD_SMALLER_STEP:
        m_iterator.SetStep(m_iterator.step - 1);
        return step();
    case zel_CMD_BROWSE_FORWARD:
        StartBrowsing(1);
        return "Forward auto browsing.";
    case zel_CMD_BROWSE_BACKWARD:
        StartBrowsing(-1);
        return "Backward auto browsing.";
    case zel_CMD_LOOP_MODE:
        m_iterator.loopMode = !m_iterator.loopMode;
        return {};
    case zel_CMD_OSCILLATION_MODE:
        m_iterator.oscillationMode = !m_iterator.oscillationMode;
        return {};
    default:
        return {};
    }
}

void zel_Viewer3dCanvas::RestartTimer() {
    if (m_sequenceTimer.IsRunning())
        m_sequenceTimer.Start(m_iterator.GetInterval());
}

void zel_Viewer3dCanvas::StartBrowsing(int direction) {
    m_iterator.direction = direction;
    if (m_iterator.Clamp())
        OnTimeChange();
    if (!m_sequenceTimer.IsRunning())
        m_sequenceTimer.Start(m_iterator.GetInterval());
}

void zel_Viewer3dCanvas::OnSequenceTimerHandler(wxTimerEvent&) {
    m_iterator.Advance();
    if (!m_iterator.moved) {
        m_sequenceTimer.Stop();
        return;
    }
    OnTimeChange();
    // Ticks without a pause between them leave no time for a paint.
    if (m_sequenceTimer.GetInterval() == 0)
        Update();
}

bool zel_Viewer3dCanvas::ShowNextImage() {
    m_iterator.StepForward();
    const bool moved = m_iterator.moved;
    if (moved) {
        OnTimeChange();
        RepaintNow();
    }
    return moved;
}

void zel_Viewer3dCanvas::UpdateImageIterator(const mor::ImageIterator& other) {
    m_iterator.SetRangeFirst(other.rangeFirst);
    bool moved = m_iterator.moved;
    m_iterator.SetRangeLast(other.rangeLast);
    moved = moved || m_iterator.moved;
    m_iterator.SetStep(other.step);
    m_iterator.SetNameTemplate(other.nameTemplate);
    m_iterator.SetFPS(other.fps);
    m_iterator.GoToFirst();
    if (moved || m_iterator.moved) {
        OnTimeChange();
        RepaintNow();
    }
}

} // namespace zel
