#include "viewer/zel_sequencetimer.h"

namespace zel {

bool zel_SequenceTimer::Start(int milliseconds, bool oneShot) {
    m_isRunning = wxTimer::Start(milliseconds, oneShot);
    m_interval = wxTimer::GetInterval();
    m_isResting = false;
    return m_isRunning;
}

void zel_SequenceTimer::Stop() {
    wxTimer::Stop();
    m_isRunning = false;
    m_isResting = false;
}

void zel_SequenceTimer::BeginTick() {
    if (m_isRunning && IsOneShot())
        wxTimer::Start(m_interval);
}

void zel_SequenceTimer::Rest() {
    if (!m_isRunning)
        return;
    wxTimer::Stop();
    m_isResting = true;
    CallAfter(&zel_SequenceTimer::GoOn); // comes when nothing else waits
}

/// The tick itself must not run here: whoever yields until nothing is pending would wait for the end of browsing.
void zel_SequenceTimer::GoOn() {
    if (m_isResting)
        wxTimer::Start(1, wxTIMER_ONE_SHOT);
    m_isResting = false;
}

} // namespace zel
