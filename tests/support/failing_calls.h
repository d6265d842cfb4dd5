#pragma once

#include <cstddef>

// Calls of the system that open, read, write and rename files, made to fail on demand. Programs that link zel_faults
// have them in place of the system's own; while nothing is asked of them they pass everything on.

/// While one lives, the calls count from 0, and one of them fails.
class FailingCall {
public:
    /// @param number  of the call that does nothing and returns -1; close still closes
    /// @param error   that errno tells then
    FailingCall(std::size_t number, int error);
    ~FailingCall();
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;

    /// Whether there were so many calls.
    bool HasFailed() const;
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
