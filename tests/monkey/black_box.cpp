#include "tests/monkey/black_box.h"

#include <execinfo.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <ctime>

// There under a sanitizer only.
extern "C" {
__attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());
__attribute__((weak)) void __sanitizer_print_stack_trace();
}

namespace zel::test {

namespace {

// What a handler of signals reads: no memory is allocated for it.
constexpr std::size_t lineCount = 30;
using Line = std::array<char, 240>;
Line theRun;
std::array<Line, lineCount> theLines;
std::atomic<std::size_t> theCount = 0;
pthread_t theThread;

void Copy(const std::string& text, Line& line) {
    line.fill(0);
    std::copy_n(text.begin(), std::min(text.size(), line.size() - 1), line.begin());
}

std::size_t FirstLine() {
    return theCount > lineCount ? theCount - lineCount : 0;
}

void Write(const char* text) {
    const auto written = write(STDERR_FILENO, text, std::strlen(text));
    static_cast<void>(written);
}

void WriteAll() {
    Write("\n");
    Write(theRun.data());
    Write("\nThe last of what was done:\n");
    for (std::size_t i = FirstLine(); i < theCount; ++i) {
        Write(theLines[i % lineCount].data());
        Write("\n");
    }
}

void OnSignal(int number) {
    std::signal(number, SIG_DFL);
    WriteAll();
    if (__sanitizer_print_stack_trace != nullptr) {
        __sanitizer_print_stack_trace();
    } else {
        std::array<void*, 64> stack{};
        backtrace_symbols_fd(stack.data(), backtrace(stack.data(), static_cast<int>(stack.size())), STDERR_FILENO);
    }
    std::raise(number);
}

/// What the thread that is watched has used.
double ProcessorSeconds() {
    clockid_t clock{};
    timespec used{};
    if (pthread_getcpuclockid(theThread, &clock) != 0 || clock_gettime(clock, &used) != 0)
        return 0.0;
    return static_cast<double>(used.tv_sec) + 1e-9 * static_cast<double>(used.tv_nsec);
}

void TakeSignals() {
    std::array<void*, 2> stack{};
    backtrace(stack.data(), static_cast<int>(stack.size())); // its first call allocates
    std::signal(SIGABRT, OnSignal);
    if (__sanitizer_set_death_callback != nullptr) { // which has handlers of its own for the others
        __sanitizer_set_death_callback(WriteAll);
        return;
    }
    for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(number, OnSignal);
}

} // namespace

BlackBox::BlackBox(const std::string& run, std::chrono::seconds patience) {
    Copy(run, theRun);
    theCount = 0;
    theThread = pthread_self();
    m_beginProcessor = ProcessorSeconds();
    TakeSignals();
    m_watch = std::thread([this, patience] { Watch(patience); });
}

BlackBox::~BlackBox() {
    End();
    m_ends = true;
    m_watch.join();
    for (const int number : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        if (number == SIGABRT || __sanitizer_set_death_callback == nullptr)
            std::signal(number, SIG_DFL);
}

void BlackBox::Watch(std::chrono::seconds patience) {
    while (!m_ends) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const std::chrono::duration<double> used(ProcessorSeconds() - m_beginProcessor);
        if (used < patience && Clock::now() - m_begin.load() < 30 * patience)
            continue; // on a machine with much else to do the clock says little
        Write("\nThe last step does not end.\n");
        pthread_kill(theThread, SIGABRT);
        return;
    }
}

void BlackBox::Begin(const std::string& step) {
    End();
    m_step = step;
    m_begin = Clock::now();
    m_beginProcessor = ProcessorSeconds();
    Note(step);
}

void BlackBox::End() {
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_begin.load());
    if (took > m_longest && !m_step.empty()) {
        m_longest = took;
        m_longestStep = m_step;
    }
}

void BlackBox::Note(const std::string& detail) {
    Copy(detail, theLines[theCount % lineCount]);
    ++theCount;
}

std::string BlackBox::Tell() const {
    std::string text = std::string(theRun.data()) + "\nThe last of what was done:\n";
    for (std::size_t i = FirstLine(); i < theCount; ++i)
        text += std::string(theLines[i % lineCount].data()) + "\n";
    return text;
}

} // namespace zel::test
