#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_image3d.h"

#include <cstddef>
#include <memory>
#include <string>

namespace kep {

namespace detail {
class FrameSet;
}

/// Reads the frames of one file one by one. The file stays open, so its header is read once, and packed ICS data, which
/// can only be unpacked from the beginning, once for all frames that are read in their order.
class KEP_EXPORT FrameReader {
public:
    /// Opens a TIFF or ICS file, recognised by content. No voxels are read.
    /// @param fileName  in the file system's encoding
    /// @throws IOException with the texts of Image3d::ReadImage
    explicit FrameReader(const char* fileName);
    ~FrameReader();
    /// @{
    /// What is moved from can only be assigned to and destroyed.
    FrameReader(FrameReader&&) noexcept;
    FrameReader& operator=(FrameReader&&) noexcept;
    /// @}

    const FileAxes& GetAxes() const { return axes; } ///< what ReadFileAxes tells of the file

    /// Reads the frame of a channel at a time point into `frame`, converted as by Image3d::ReadImage; the voxels of
    /// other frames are not touched, except where they are packed together with these. Exists for all types of frames.
    /// @param channel  0 <= channel < GetAxes().channels
    /// @param time     0 <= time < GetAxes().times
    /// @param frame    changed only when all of it has been read
    /// @throws IOException for everything that goes wrong, also for a channel or time point that the file does not
    ///         have, and for slices that lie in other files; the frame is then unchanged
    template <typename T>
    void ReadFrame(std::size_t channel, std::size_t time, Image3d<T>& frame);

private:
    std::string name;
    std::unique_ptr<detail::FrameSet> frames;
    FileAxes axes;
};

} // namespace kep
