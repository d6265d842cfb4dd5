#include "core/kepcore/kep_readingwatch.h"

#include "core/kepcore/file/kep_watchstate.h"

#include <utility>

namespace kep {

ReadingStopped::ReadingStopped() : LibException("ReadImage(): Reading was stopped.") {}

ReadingStopped::~ReadingStopped() = default;

ReadingWatch::ReadingWatch(Report report)
    : state(std::make_shared<detail::WatchState>(std::move(report))), outer(detail::WatchOfThread()) {
    detail::WatchOfThread() = state;
}

ReadingWatch::~ReadingWatch() {
    state->Close();
    detail::WatchOfThread() = std::move(outer);
}

namespace detail {

WatchState::WatchState(ReadingWatch::Report toWhom) : report(std::move(toWhom)), owner(std::this_thread::get_id()) {}

void WatchState::Close() {
    report = nullptr;
}

void WatchState::Begin(std::size_t slices) {
    state = {0, slices, 0};
    bytes = 0;
}

void WatchState::AddSlices(std::size_t count) {
    state.slices += count;
    Tell();
}

void WatchState::AddBytes(std::size_t count) {
    bytes += count;
    if (std::this_thread::get_id() == owner)
        Tell();
    else if (stopped)
        throw ReadingStopped();
}

void WatchState::Tell() {
    if (!report)
        return;
    state.bytes = bytes;
    if (!stopped)
        stopped = !report(state);
    if (stopped)
        throw ReadingStopped();
}

std::shared_ptr<WatchState>& WatchOfThread() {
    thread_local std::shared_ptr<WatchState> watch;
    return watch;
}

} // namespace detail

} // namespace kep
