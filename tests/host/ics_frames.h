#pragma once

#include <string>

namespace zelviewer::test {

/// An ICS file of 2 voxels of 8 bits a frame.
/// @param voxels  2 * channels * times bytes: channel after channel, then times
inline std::string IcsOfFrames(int channels, int times, const std::string& voxels) {
    return "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t4\nlayout\torder\tbits\tx\tch\tt\n"
           "layout\tsizes\t8\t2\t" +
           std::to_string(channels) + "\t" + std::to_string(times) +
           "\nrepresentation\tformat\tinteger\nrepresentation\tsign\tunsigned\n"
           "representation\tcompression\tuncompressed\nend\n" +
           voxels;
}

} // namespace zelviewer::test
