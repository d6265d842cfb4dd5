#pragma once

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_export.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace kep {

namespace detail {
class WatchState;
}

/// How far the reading of a frame is.
struct ReadingState {
    std::size_t slices = 0;    ///< read so far; of channels that become colours, those of each
    std::size_t allSlices = 0; ///< that will be read
    std::uint64_t bytes = 0;   ///< of the file, packed as they are, that were read since the frame was begun
};

/// Thrown by operations that read, where a watch has asked for it. What was to be filled is unchanged then.
class KEP_EXPORT ReadingStopped : public LibException {
public:
    ReadingStopped();
    /// @{
    /// Copies hold the same text.
    ReadingStopped(const ReadingStopped&) = default;
    ReadingStopped& operator=(const ReadingStopped&) = default;
    /// @}
    ~ReadingStopped() override;
};

/// Watches how files are read, and can stop that. While one lives, all files that are opened on its thread report to
/// it, whichever operation reads them: Image3d::ReadImage, FrameReader, sequences of the layers above. Without one,
/// reading takes no time for it.
///
/// A watch inside the life of another one takes its place meanwhile. A file that was opened before a watch was made, or
/// is read after it has gone, does not report to it.
class KEP_EXPORT ReadingWatch {
public:
    /// Called on the thread of the watch and from nowhere else: after each slice or group of slices, and within them
    /// after each piece of the file, of a megabyte at most. Together that is often: ten thousand times a second and
    /// more. A block that is packed as a whole is one piece.
    /// @return false to stop: the operation that reads throws ReadingStopped, and so does each that follows
    using Report = std::function<bool(const ReadingState&)>;

    explicit ReadingWatch(Report report); ///< watches from here on, on this thread
    ~ReadingWatch();
    ReadingWatch(const ReadingWatch&) = delete;
    ReadingWatch& operator=(const ReadingWatch&) = delete;

private:
    std::shared_ptr<detail::WatchState> state;
    std::shared_ptr<detail::WatchState> outer; ///< the watch that is back when this one goes
};

} // namespace kep
