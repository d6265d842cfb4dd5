#pragma once

#include "model/zel_export.h"

#include <wx/timer.h>

namespace zel {

/// The clock of automatic browsing.
///
/// A timer of the toolkit starves everything else where each tick takes longer than the interval: the next one is due
/// already when it ends, and comes before any layout, paint or idle event. After a tick that ends with Rest, the next
/// one waits until all these had their turn.
class ZEL_EXPORT zel_SequenceTimer : public wxTimer {
public:
    /// Begins to tick, or goes on with another interval.
    bool Start(int milliseconds = -1, bool oneShot = false) override;
    void Stop() override;                          ///< nothing if it does not run
    bool IsRunning() const { return m_isRunning; } ///< between Start and Stop
    int GetInterval() const { return m_interval; } ///< milliseconds, as it was last started

    /// To be called at the beginning of each tick: the ticks are regular again.
    void BeginTick();
    /// To be called at the end of a tick that took longer than the interval.
    void Rest();

private:
    void GoOn();

    int m_interval = 0;
    bool m_isRunning = false;
    bool m_isResting = false;
};

} // namespace zel
