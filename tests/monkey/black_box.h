#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

namespace zel::test {

/// Keeps what was done last, and tells it on standard error when the program crashes, a sanitizer ends it, or one step
/// takes more of the processor than the patience allows, or thirty times as long by the clock; the last ends the
/// program, with the stack of the thread that hangs.
class BlackBox {
public:
    /// @param run  how to do it all again: the seed and the like. One box lives at a time.
    BlackBox(const std::string& run, std::chrono::seconds patience);
    ~BlackBox();
    BlackBox(const BlackBox&) = delete;
    BlackBox& operator=(const BlackBox&) = delete;

    /// A step begins, and the one before has ended.
    void Begin(const std::string& step);
    /// Something of the step under way.
    void Note(const std::string& detail);
    /// The run, and the last steps, the latest at the end.
    std::string Tell() const;

    std::chrono::milliseconds GetLongest() const { return m_longest; }
    const std::string& GetLongestStep() const { return m_longestStep; }

private:
    using Clock = std::chrono::steady_clock;
    void Watch(std::chrono::seconds patience);
    void End();

    std::atomic<Clock::time_point> m_begin = Clock::now();
    std::atomic<double> m_beginProcessor = 0; // seconds of the processor
    std::string m_step;
    std::chrono::milliseconds m_longest{0};
    std::string m_longestStep;
    std::atomic<bool> m_ends = false;
    std::thread m_watch;
};

} // namespace zel::test
