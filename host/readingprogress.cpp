#include "host/readingprogress.h"

#include <unistd.h>

#include <cstdio>

namespace zelviewer {

ReadingProgress::ReadingProgress(std::size_t files, std::uint64_t voxels, bool inDialog)
    : m_files(files),
      m_bytes(voxels),
      m_inDialog(inDialog),
      m_onTerminal(!inDialog && isatty(STDERR_FILENO) == 1),
      m_start(std::chrono::steady_clock::now()) {}

ReadingProgress::~ReadingProgress() {
    if (m_lineIsOpen)
        std::fputs("\r\033[K", stderr);
}

/// A gigabyte is read in about a second where it is not compressed and lies near. What has been read tells better.
bool ReadingProgress::IsLong(std::size_t done) const {
    constexpr std::uint64_t manyBytes = 400'000'000;
    constexpr double moment = 0.4; // seconds
    if (m_bytes > manyBytes)
        return true;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
    return elapsed.count() > moment && done < m_files;
}

bool ReadingProgress::Report(std::size_t done) {
    if (!IsLong(done))
        return true;
    const auto text = "Reading file " + std::to_string(std::min(done + 1, m_files)) + " of " + std::to_string(m_files);
    if (m_onTerminal) {
        std::fprintf(stderr, "\rzelviewer: %s", text.c_str());
        m_lineIsOpen = true;
    }
    if (!m_inDialog)
        return true;
    if (!m_dialog)
        m_dialog = std::make_unique<wxProgressDialog>("zelviewer", text, static_cast<int>(m_files), nullptr,
                                                      wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_REMAINING_TIME);
    return m_dialog->Update(static_cast<int>(done), text);
}

} // namespace zelviewer
