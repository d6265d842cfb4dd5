#include "host/message.h"

#include <gtest/gtest.h>

namespace zelviewer {
namespace {

TEST(Message, TheNameStandsInFrontAndNotInTheSentence) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"ReadImage(): Cannot open the file 'a b.tif'.", "a b.tif: Cannot open the file."},
        {"ReadImage(): 'a b.tif' is not an ICS or TIFF image.", "a b.tif: The file is not an ICS or TIFF image."},
        {"ReadImage(): The file 'a b.tif' is damaged: page 3: too short.",
         "a b.tif: The file is damaged: page 3: too short."},
        {"ReadImage(): The voxel type of 'a b.tif' is not supported: CMYK.",
         "a b.tif: The voxel type is not supported: CMYK."},
        {"ReadImage(): 'a b.tif' holds colour voxels, which cannot be converted to float.",
         "a b.tif: The file holds colour voxels, which cannot be converted to float."},
        {"ReadImage(): The value 256 at (1, 2, 3) in 'a b.tif' does not fit into 8-bit gray.",
         "a b.tif: The value 256 at (1, 2, 3) does not fit into 8-bit gray."},
        {"ReadImage(): The pages of 'a b.tif' differ in size or type.", "a b.tif: The pages differ in size or type."},
        {"SaveImage(): Cannot write the file 'a b.tif': No space left on device",
         "a b.tif: Cannot write the file: No space left on device"},
        {"ReadSequence(): The frame metadata differs from the sequence metadata!",
         "a b.tif: The frame metadata differs from the sequence metadata!"},
        {"MakeRoom(): The image is too large.", "a b.tif: The image is too large."},
        {"Something (): odd.", "a b.tif: Something (): odd."},
        {"", "a b.tif: "},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(NameAndReason("a b.tif", text), message);
}

} // namespace
} // namespace zelviewer
