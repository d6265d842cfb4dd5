#include "host/voxelsize.h"

#include <gtest/gtest.h>

namespace zelviewer {
namespace {

TEST(VoxelSize, TheUserOnlySaysWhatTheFileDoesNot) {
    const std::optional<kep::Vector3d<float>> given = kep::Vector3d<float>(7, 8, 9);
    EXPECT_EQ(CompleteResolution({}, given), kep::Resolution(7, 8, 9));
    EXPECT_EQ(CompleteResolution({1, 2, 3}, given), kep::Resolution(1, 2, 3));
    EXPECT_EQ(CompleteResolution({1, 2, 0}, given), kep::Resolution(1, 2, 9));
    EXPECT_EQ(CompleteResolution({1, 2, 0}, std::nullopt), kep::Resolution(1, 2, 0));
}

} // namespace
} // namespace zelviewer
