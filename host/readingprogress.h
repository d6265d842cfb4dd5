#pragma once

#include "image/zel_framereading.h"

#include <wx/progdlg.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace zelviewer {

/// Where in a sequence reading is.
struct ReadingPlace {
    std::size_t frame = 0; ///< from 0
    std::size_t frames = 1;
    kep::ReadingState within; ///< of that frame
};

/// "Reading frame 3 of 51: slice 12 of 200". Of a frame with one slice the slices are left out, of a sequence with one
/// frame the frames.
std::string DescribePlace(const ReadingPlace& place);

/// How much has been read, between 0 and 1. A frame with one slice is measured by its bytes, which are fewer in the
/// file than in memory where they are packed.
/// @param frameBytes  of a frame in memory
double FractionRead(const ReadingPlace& place, std::uint64_t frameBytes);

/// Shows the progress of opening an image, once it takes more than a moment: in a dialog, which can cancel it, or in a
/// line on the terminal.
class ReadingProgress {
public:
    /// @param frames    to be read
    /// @param bytes     of all voxels, from which a long wait is predicted
    /// @param inDialog  otherwise on standard error, if that is a terminal
    ReadingProgress(std::size_t frames, std::uint64_t bytes, bool inDialog);
    ~ReadingProgress();
    ReadingProgress(const ReadingProgress&) = delete;
    ReadingProgress& operator=(const ReadingProgress&) = delete;

    /// Tells how far reading is. May be called as often as one likes: now and then it is shown.
    /// @param frame  being read, from 0
    /// @return false if the user has cancelled
    bool Report(std::size_t frame, const kep::ReadingState& within);
    /// Tells of another step that opening takes, in the same way.
    /// @param fraction  of it that is done
    bool Report(const std::string& step, double fraction);

private:
    bool IsTimeToShow();
    bool Show(const std::string& text, double fraction);

    std::size_t m_frames;
    std::uint64_t m_bytes;
    bool m_inDialog;
    bool m_onTerminal;
    bool m_lineIsOpen = false;
    bool m_isCancelled = false;
    std::chrono::steady_clock::time_point m_start, m_lastShown;
    std::unique_ptr<wxProgressDialog> m_dialog;
};

} // namespace zelviewer
