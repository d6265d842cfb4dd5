#include "host/readingprogress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace zelviewer {

namespace {

constexpr int wholeDialog = 1000; // steps of the bar

std::string Of(std::size_t number, std::size_t count) {
    return std::to_string(std::min(number, count)) + " of " + std::to_string(count);
}

} // namespace

std::string DescribePlace(const ReadingPlace& place) {
    const bool hasSlices = place.within.allSlices > 1;
    std::string text = place.frames > 1 ? "Reading frame " + Of(place.frame + 1, place.frames) : "Reading";
    if (hasSlices)
        text += (place.frames > 1 ? ": slice " : " slice ") + Of(place.within.slices + 1, place.within.allSlices);
    return text;
}

double FractionRead(const ReadingPlace& place, std::uint64_t frameBytes) {
    const kep::ReadingState& state = place.within;
    double within = 0;
    if (state.allSlices > 1 || (state.allSlices > 0 && state.slices == state.allSlices))
        within = static_cast<double>(state.slices) / static_cast<double>(state.allSlices);
    else if (frameBytes > 0)
        within = std::min(1.0, static_cast<double>(state.bytes) / static_cast<double>(frameBytes));
    return (static_cast<double>(place.frame) + within) / static_cast<double>(std::max<std::size_t>(place.frames, 1));
}

ReadingProgress::ReadingProgress(std::size_t frames, std::uint64_t bytes, bool inDialog)
    : m_frames(frames),
      m_bytes(bytes),
      m_inDialog(inDialog),
      m_onTerminal(!inDialog && isatty(STDERR_FILENO) == 1),
      m_start(std::chrono::steady_clock::now()) {}

ReadingProgress::~ReadingProgress() {
    if (m_lineIsOpen)
        std::fputs("\r\033[K", stderr);
}

bool ReadingProgress::Report(std::size_t frame, const kep::ReadingState& within) {
    if (!IsTimeToShow())
        return !m_isCancelled;
    const ReadingPlace place{frame, m_frames, within};
    return Show(DescribePlace(place), FractionRead(place, m_bytes / std::max<std::size_t>(m_frames, 1)));
}

bool ReadingProgress::Report(const std::string& step, double fraction) {
    return IsTimeToShow() ? Show(step, fraction) : !m_isCancelled;
}

/// A gigabyte is read in about a second where it is not compressed and lies near: for much less nothing is shown at
/// first. What has been shown stays for a moment, as drawing it takes time.
bool ReadingProgress::IsTimeToShow() {
    constexpr std::uint64_t manyBytes = 400'000'000;
    constexpr std::chrono::milliseconds patience{400}, pause{50};
    const auto now = std::chrono::steady_clock::now();
    const bool isLong = m_bytes > manyBytes || now - m_start > patience;
    if (!isLong || now - m_lastShown < pause)
        return false;
    m_lastShown = now;
    return true;
}

bool ReadingProgress::Show(const std::string& text, double fraction) {
    if (m_onTerminal) {
        std::fprintf(stderr, "\r\033[Kzelviewer: %s", text.c_str());
        m_lineIsOpen = true;
    }
    if (!m_inDialog || m_isCancelled)
        return !m_isCancelled;
    if (!m_dialog)
        m_dialog = std::make_unique<wxProgressDialog>("zelviewer", wxString(text) + wxString(' ', 20), wholeDialog,
                                                      nullptr, wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_REMAINING_TIME);
    // At its end the dialog would wait for the user.
    m_isCancelled = !m_dialog->Update(std::clamp(static_cast<int>(fraction * wholeDialog), 0, wholeDialog - 1), text);
    return !m_isCancelled;
}

} // namespace zelviewer
