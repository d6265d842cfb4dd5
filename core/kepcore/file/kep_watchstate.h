#pragma once

// Private to the library: what a ReadingWatch and the files that report to it share.

#include "core/kepcore/kep_readingwatch.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>

namespace kep::detail {

class WatchState {
public:
    explicit WatchState(ReadingWatch::Report toWhom);

    /// The watch has gone: nothing is reported any more.
    void Close();

    // On the thread of the watch.

    /// A frame is going to be read.
    void Begin(std::size_t slices);
    /// @throws ReadingStopped
    void AddSlices(std::size_t count);

    /// On any thread that reads for that one. @throws ReadingStopped
    void AddBytes(std::size_t count);

private:
    void Tell();

    ReadingWatch::Report report;
    std::thread::id owner;
    ReadingState state;
    std::atomic<std::uint64_t> bytes{0};
    std::atomic<bool> stopped{false};
};

/// The watch of this thread; null if there is none.
std::shared_ptr<WatchState>& WatchOfThread();

} // namespace kep::detail
