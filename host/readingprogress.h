#pragma once

#include <wx/progdlg.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace zelviewer {

/// Shows the progress of reading a sequence, once it takes more than a moment: in a dialog, which can cancel it, or
/// in a line on the terminal.
class ReadingProgress {
public:
    /// @param files    to be read
    /// @param voxels   bytes of all voxels, from which a long wait is predicted
    /// @param inDialog otherwise on standard error, if that is a terminal
    ReadingProgress(std::size_t files, std::uint64_t voxels, bool inDialog);
    ~ReadingProgress();
    ReadingProgress(const ReadingProgress&) = delete;
    ReadingProgress& operator=(const ReadingProgress&) = delete;

    /// @param done  files read so far
    /// @return false if the user has cancelled
    bool Report(std::size_t done);

private:
    bool IsLong(std::size_t done) const;

    std::size_t m_files;
    std::uint64_t m_bytes;
    bool m_inDialog;
    bool m_onTerminal;
    bool m_lineIsOpen = false;
    std::chrono::steady_clock::time_point m_start;
    std::unique_ptr<wxProgressDialog> m_dialog;
};

} // namespace zelviewer
