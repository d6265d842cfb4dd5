#include "dialogs/dlg_set_range.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_viewer3dcanvas.h"
#include "volume/vol3D_canvas.h"

#include <wx/event.h>
#include <wx/stopwatch.h>

namespace zel {

bool zel_Viewer3dCanvas::OnSequenceMenuUpdateUI_PlayingForward() const {
    return m_sequenceTimer.IsRunning() && m_iterator.direction == 1;
}

bool zel_Viewer3dCanvas::OnSequenceMenuUpdateUI_PlayingBackward() const {
    return m_sequenceTimer.IsRunning() && m_iterator.direction == -1;
}

void zel_Viewer3dCanvas::OnSequenceMenuHandler(wxCommandEvent& event, wxString& message) {
    if (event.GetId() < zel_CMD_STOP_BROWSING || event.GetId() > zel_CMD_OSCILLATION_MODE)
        return;
    const wxString unchanged = "No change.";
    try {
        message = RunSequenceCommand(event.GetId()).value_or(unchanged);
    } catch (...) {
        message = unchanged; // whatever a derived canvas throws, also for want of memory: browsing goes on
    }
}

/// @return what to say, possibly nothing; none if the command would change nothing
std::optional<wxString> zel_Viewer3dCanvas::RunSequenceCommand(int id) {
    switch (id) {
    case zel_CMD_STOP_BROWSING:
        m_sequenceTimer.Stop();
        return "Stopped auto browsing.";
    case zel_CMD_BROWSING_RANGE:
        return AskForRange();
    case zel_CMD_FASTER:
        return ChangeFPS(m_iterator.fps + 1);
    case zel_CMD_SLOWER:
        return ChangeFPS(m_iterator.fps - 1);
    case zel_CMD_LARGER_STEP:
        return ChangeStep(m_iterator.step + 1);
    case zel_CMD_SMALLER_STEP:
        return ChangeStep(m_iterator.step - 1);
    case zel_CMD_BROWSE_FORWARD:
        StartBrowsing(1);
        return "Forward auto browsing.";
    case zel_CMD_BROWSE_BACKWARD:
        StartBrowsing(-1);
        return "Backward auto browsing.";
    case zel_CMD_LOOP_MODE:
        m_iterator.loopMode = !m_iterator.loopMode;
        return "";
    case zel_CMD_OSCILLATION_MODE:
        m_iterator.oscillationMode = !m_iterator.oscillationMode;
        return "";
    default:
        return "";
    }
}

std::optional<wxString> zel_Viewer3dCanvas::AskForRange() {
    if (m_iterator.limitFirst >= m_iterator.limitLast)
        return std::nullopt; // a single frame has no range to choose
    long first = m_iterator.rangeFirst;
    long last = m_iterator.rangeLast;
    if (GetLongRangeFromUser(this, m_iterator.limitFirst, m_iterator.limitLast, first, last)) {
        m_iterator.SetRange(static_cast<int>(first), static_cast<int>(last));
        if (m_iterator.moved)
            OnTimeChange();
    }
    return "";
}

std::optional<wxString> zel_Viewer3dCanvas::ChangeFPS(int fps) {
    if (!mor::ImageIterator::IsFPSAllowed(fps))
        return std::nullopt;
    m_iterator.SetFPS(fps);
    RestartTimer();
    return wxString::Format("FPS set to %d.", fps);
}

std::optional<wxString> zel_Viewer3dCanvas::ChangeStep(int step) {
    if (!m_iterator.IsStepAllowed(step))
        return std::nullopt;
    m_iterator.SetStep(step);
    return wxString::Format("Browsing by %d frames.", step);
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
    m_sequenceTimer.BeginTick();
    m_iterator.Advance();
    if (!m_iterator.moved) {
        m_sequenceTimer.Stop();
        return;
    }
    const wxStopWatch watch;
    OnTimeChange();
    if (watch.Time() < m_sequenceTimer.GetInterval())
        return;
    // The next tick is due already and would come before any paint.
    wxGetTopLevelParent(this)->Update();
    if (IsVolVisShown())
        m_volVisFrame->GetCanvas()->Update();
    m_sequenceTimer.Rest();
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

bool zel_Viewer3dCanvas::GoToFrame(int frame) {
    const int before = m_iterator.current;
    m_iterator.current = frame;
    m_iterator.Clamp();
    if (m_iterator.current == before)
        return false;
    OnTimeChange();
    RepaintNow();
    return true;
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
