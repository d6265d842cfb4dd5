// What a box covers of a frame, and products that must not overflow.

#include "core/kepcore/frame/kep_extent.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace kep::detail {
namespace {

using Size = Vector3d<std::size_t>;
using Box = VOI<T_pair<int, std::size_t>>;

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

TEST(Extent, ProductsAreExactOrThereIsNone) {
    EXPECT_EQ(Multiply({}), 1U);
    EXPECT_EQ(Multiply({3, 5, 7}), 105U);
    EXPECT_EQ(Multiply({largest, 1}), largest);
    EXPECT_EQ(Multiply({std::uint64_t{1} << 32, std::uint64_t{1} << 31}), std::uint64_t{1} << 63);
    EXPECT_EQ(Multiply({std::uint64_t{1} << 32, std::uint64_t{1} << 32}), std::nullopt);
    EXPECT_EQ(Multiply({largest, 2}), std::nullopt);
    EXPECT_EQ(Multiply({largest, 2, 0}), 0U);
    EXPECT_EQ(Multiply({0, largest, 2}), 0U);
}

TEST(Extent, VoxelsAreCountedThatCanBeAddressed) {
    constexpr std::size_t half = std::size_t{1} << 62;
    EXPECT_EQ(CountVoxels({4, 3, 2}, 8), 24U);
    EXPECT_EQ(CountVoxels({0, 3, 2}, 8), 0U);
    EXPECT_EQ(CountVoxels({largest, largest, 0}, 8), 0U);
    EXPECT_EQ(CountVoxels({half, 1, 1}, 1), half);
    EXPECT_EQ(CountVoxels({half, 2, 1}, 1), std::nullopt) << "2^63 bytes";
    EXPECT_EQ(CountVoxels({half, 1, 1}, 2), std::nullopt);
    EXPECT_EQ(CountVoxels({largest, largest, 1}, 1), std::nullopt);
}

/// The overlap along one axis, voxel by voxel.
void ExpectAlongX(int from, std::size_t boxSize, std::size_t frameSize) {
    std::size_t count = 0, inFrame = 0, inBox = 0;
    for (std::size_t i = 0; i < boxSize; ++i) {
        const long long at = from + static_cast<long long>(i);
        if (at < 0 || at >= static_cast<long long>(frameSize))
            continue;
        if (count++ == 0) {
            inFrame = static_cast<std::size_t>(at);
            inBox = i;
        }
    }
    const Overlap overlap = FindOverlap(Box({from, 0, 0}, {boxSize, 1, 1}), {frameSize, 1, 1});
    EXPECT_EQ(overlap.size, count > 0 ? Size(count, 1, 1) : Size()) << from << ' ' << boxSize << ' ' << frameSize;
    EXPECT_EQ(overlap.inFrame, Size(inFrame, 0, 0)) << from << ' ' << boxSize << ' ' << frameSize;
    EXPECT_EQ(overlap.inBox, Size(inBox, 0, 0)) << from << ' ' << boxSize << ' ' << frameSize;
}

TEST(Extent, OverlapsAreThoseThatAWalkOverTheBoxFinds) {
    for (int from = -6; from <= 6; ++from) {
        for (std::size_t boxSize = 0; boxSize <= 8; ++boxSize) {
            for (std::size_t frameSize = 0; frameSize <= 4; ++frameSize)
                ExpectAlongX(from, boxSize, frameSize);
        }
    }
}

TEST(Extent, OverlapsReachTheEndsOfTheirTypes) {
    constexpr int lowest = std::numeric_limits<int>::min();
    const Overlap whole = FindOverlap(Box({lowest, -1, 0}, {largest, 2, 1}), {5, 5, 5});
    EXPECT_EQ(whole.size, Size(5, 1, 1));
    EXPECT_EQ(whole.inBox, Size(std::size_t{1} << 31, 1, 0));
    EXPECT_EQ(whole.inFrame, Size());
    EXPECT_EQ(FindOverlap(Box({lowest, 0, 0}, {std::size_t{1} << 31, 1, 1}), {5, 5, 5}).size, Size());
    EXPECT_EQ(FindOverlap(Box({0, 0, 5}, {5, 5, 1}), {5, 5, 5}).size, Size()) << "beside it on one axis";
}

} // namespace
} // namespace kep::detail
