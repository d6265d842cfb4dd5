#pragma once

#include "host/displaytype.h"
#include "image/kep.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zelviewer {

/// What a file says of itself, as far as opening it depends on that.
struct FileContents {
    /// Of the whole file, or, where it has several frames, of each; but of three channels together where ReadImage
    /// takes them as a colour.
    kep::ImageInfo info;
    std::optional<kep::FileAxes> axes; ///< of a file with several frames
};

/// Reads what a file says, and no voxels.
/// @throws kep::IOException
FileContents ReadContents(const std::string& name);

/// What the user wants a file to be opened as, where the file leaves it open.
struct OpeningWish {
    std::vector<std::size_t>
        channels;                    ///< from 0: one alone, or two or three as red, green and blue; none: as they come
    std::optional<DisplayType> type; ///< voxel type to read as; none: the file's own
    bool binary = false;             ///< the file is a mask
};

/// What a file becomes in a window.
struct ShownFile {
    DisplayType type = DisplayType::Gray16;
    std::size_t times = 1;
    /// The channels that are shown, from 0: one alone, or two or three as red, green and blue. None: the file is one
    /// frame.
    std::vector<std::size_t> channels;
    bool isOneImage = true; ///< ReadImage takes it whole; else it is read frame by frame
    /// How many channels the user may choose at the most, where it is open which: 1 or 3. `type` and `channels` are
    /// then those of the first channel.
    std::size_t choices = 0;
};

/// What opening makes of a file: two or three channels of 8 or 16 bits become one colour image, of other types or more
/// of them the user chooses. --info tells the same.
/// @throws Failure for a channel that the file does not have, and for channels that are no colours; the text is a
///         sentence about the file, without its name
ShownFile PlanFile(const FileContents& file, const OpeningWish& wish);

/// What tells that the frames of two files are no images of one kind, as a sentence about the second one; empty if they
/// may be.
std::string DifferenceOf(const std::string& firstName, const ShownFile& first, const ShownFile& second);

/// "channels 1 and 2 as red and green", or "channel 3". There is at least one.
std::string DescribeChannels(const std::vector<std::size_t>& channels);

/// What channels are called: by the name that the file has for them, or by their number alone.
std::vector<std::string> NamesOfChannels(const kep::FileAxes& axes);

/// Says, of a file whose channels must be chosen, how this is done on the command line.
/// @param choices  as in ShownFile
std::string HowToChoose(std::size_t channels, std::size_t choices);

} // namespace zelviewer
