#pragma once

#include <cstddef>

/// While one lives, requests for memory count from 0, in all threads together, and from one of them on all are
/// refused. For programs that link zel_faults.
class FailingMemory {
public:
    explicit FailingMemory(std::size_t number);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether there were so many requests.
    bool HasFailed() const;
};

/// While one lives, memory that its thread takes is no leak, whoever loses it. Means nothing without sanitizers.
class IgnoredLeaks {
public:
    IgnoredLeaks();
    ~IgnoredLeaks();
    IgnoredLeaks(const IgnoredLeaks&) = delete;
    IgnoredLeaks& operator=(const IgnoredLeaks&) = delete;
};
