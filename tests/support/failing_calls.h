#pragma once

#include <cstddef>
#include <functional>
#include <string>

// Calls of the system that look at files, open, read, write, rename and remove them, made to fail on demand. Programs
// that link zel_faults have them in place of the system's own; while nothing is asked of them they pass everything on.
// Reading, writing and closing counts on plain files and folders only, so that the toolkit keeps its display.

/// How long a failure lasts.
enum class Failing { Once, FromThenOn };

/// While one lives, the calls count from 0, and one of them fails, or with it all that follow.
class FailingCall {
public:
    /// @param number  of the call that does nothing and returns -1; close still closes
    /// @param error   that errno tells then
    FailingCall(std::size_t number, int error, Failing lasting = Failing::Once);
    ~FailingCall();
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;

    /// Whether there were so many calls.
    bool HasFailed() const;
    /// Which call was the first to fail, as the system names it; with "folder" behind it where the call was about an
    /// open folder, and "to write" where it opened or closed a file for writing. Empty if none failed.
    std::string GetName() const;
};

/// While one lives, the calls count from 0, and before one of them something else happens.
class ActionAtCall {
public:
    /// @param number  of the call
    /// @param action  whose own calls don't count
    ActionAtCall(std::size_t number, std::function<void()> action);
    ~ActionAtCall();
    ActionAtCall(const ActionAtCall&) = delete;
    ActionAtCall& operator=(const ActionAtCall&) = delete;

    /// Whether there were so many calls.
    bool HasHappened() const;
};

/// While one lives, each call that opens, reads, writes or flushes a file is interrupted by a signal, as it were, and
/// works when it is made again. Reads and writes then move a part of the bytes only.
class InterruptedCalls {
public:
    InterruptedCalls();
    ~InterruptedCalls();
    InterruptedCalls(const InterruptedCalls&) = delete;
    InterruptedCalls& operator=(const InterruptedCalls&) = delete;

    /// How many calls were interrupted.
    std::size_t GetCount() const;
};
