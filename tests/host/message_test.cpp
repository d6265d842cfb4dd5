#include "host/message.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace zelviewer {
namespace {

TEST(Message, TheNameStandsInFrontAndNotInTheSentence) {
    const kep::IOException damaged("ReadImage(): The file 'a b.tif' is damaged: page 3: too short.", "a b.tif",
                                   "The file is damaged: page 3: too short.");
    EXPECT_EQ(NameAndReason("a b.tif", damaged), "a b.tif: The file is damaged: page 3: too short.");
    const kep::IOException unsupported("ReadImage(): The voxel type of 'a b.tif' is not supported: CMYK.", "a b.tif",
                                       "The voxel type is not supported: CMYK.");
    EXPECT_EQ(NameAndReason("a b.tif", unsupported), "a b.tif: The voxel type is not supported: CMYK.");
}

TEST(Message, AnotherFileKeepsItsNameInTheSentence) {
    const kep::IOException damaged("ReadImage(): The file 'a b.ids' is damaged: too short.", "a b.ids",
                                   "The file is damaged: too short.");
    EXPECT_EQ(NameAndReason("a b.ics", damaged), "a b.ics: The file 'a b.ids' is damaged: too short.");
}

TEST(Message, TheOperationIsLeftOut) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"ReadSequence(): The frame metadata differs from the sequence metadata!",
         "a b.tif: The frame metadata differs from the sequence metadata!"},
        {"MakeRoom(): The image is too large.", "a b.tif: The image is too large."},
        {"Something (): odd.", "a b.tif: Something (): odd."},
        {"", "a b.tif: "},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_EQ(NameAndReason("a b.tif", kep::InternalException(text)), message);
        EXPECT_EQ(NameAndReason("a b.tif", kep::IOException(text)), message);
    }
}

} // namespace
} // namespace zelviewer
