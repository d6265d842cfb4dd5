#pragma once

// What is fuzzed. Each function takes any bytes. It returns if the code behaves, whether it likes the bytes or refuses
// them, and ends the program if a promise is broken.

#include <string_view>

namespace fuzz {

// Image files, with the voxels of all kinds that they may become.
void ReadImage(std::string_view bytes);     ///< as the file's own voxel type, whole and in part
void ReadConverted(std::string_view bytes); ///< as types that are wider, narrower, or of colours
void ReadFrames(std::string_view bytes);    ///< each frame of a file that may hold several
void ReadInfo(std::string_view bytes);      ///< without voxels
void RoundTrip(std::string_view bytes);     ///< what was read is saved in each format, and comes back

// Image files of which the input is a part.
void ReadTiffBlock(std::string_view bytes); ///< the page's tags in a few bytes, then its one strip or tile
void ReadIcsPair(std::string_view bytes);   ///< header and data file, with a line between them: SplitPair
void ReadIcsPacked(std::string_view bytes); ///< the data behind a sound header, the first byte says how packed

// Other files and texts.
void ReadViewFile(std::string_view bytes);
void StretchValues(std::string_view bytes); ///< a channel's histogram, range, levels and thresholds
void SortNames(std::string_view bytes);     ///< names of files, one a line
void ReadHistogram(std::string_view bytes);
void ReadPaletteFile(std::string_view bytes);
void ReadConfiguration(std::string_view bytes);
void ReadCommandLine(std::string_view bytes); ///< one argument a line

/// A header and its data file, as one input of ReadIcsPair: between them stands a line with the suffix of the second,
/// "--.ids--", "--.ids.gz--" or "--.ids.Z--".
struct Pair {
    std::string_view header;
    std::string_view suffix;
    std::string_view data;
};
Pair SplitPair(std::string_view bytes);

} // namespace fuzz
