#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_rgb.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kep {

namespace detail {
class FrameSet;
}

/// Reads channels of a file together, as the colours of one frame, time point by time point. The voxels go straight
/// into the frame: a slice is the most that is in memory besides. Like a FrameReader it keeps the file open.
class KEP_EXPORT ColourReader {
public:
    /// Opens a TIFF or ICS file, recognised by content. No voxels are read.
    /// @param fileName  in the file system's encoding
    /// @param channels  counted from 0: one, two or three that become red, green and blue in this order; a colour
    ///                  without a channel is 0
    /// @throws IOException with the texts of Image3d::ReadImage
    ColourReader(const char* fileName, std::vector<std::size_t> channels);
    ~ColourReader();
    /// @{
    /// What is moved from can only be assigned to and destroyed.
    ColourReader(ColourReader&&) noexcept;
    ColourReader& operator=(ColourReader&&) noexcept;
    /// @}

    /// Reads the channels at a time point into `frame`, each voxel converted to C as by Image3d::ReadImage. Exists for
    /// unsigned char and unsigned short.
    /// @param time   counted from 0
    /// @param frame  changed only when all of it has been read
    /// @throws IOException for everything that goes wrong, also for a channel or time point that the file does not
    ///         have; the frame is then unchanged
    template <typename C>
    void ReadFrame(std::size_t time, Image3d<RGB_generic<C>>& frame);

private:
    std::string name;
    std::vector<std::size_t> channels;
    std::unique_ptr<detail::FrameSet> frames;
};

} // namespace kep
