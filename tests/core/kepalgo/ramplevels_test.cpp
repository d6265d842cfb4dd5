#include "core/kepalgo/pixels/kep_ramplevels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using Table = kep::LUT<unsigned short, unsigned char>;

/// Whether levels are computed here at all.
bool IsAble() {
#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
#else
    return false;
#endif
}

Table WholeType() {
    Table table;
    table.Init(65536, 0, 65535);
    return table;
}

TEST(RampLevels, AreComputedForTheRangesThatImagesHave) {
    Table table = WholeType();
    std::vector<unsigned short> keys(65536);
    std::iota(keys.begin(), keys.end(), static_cast<unsigned short>(0));
    std::vector<unsigned char> levels(keys.size());
    for (const auto& [from, to] : {std::pair{0, 65535}, {0, 4095}, {0, 255}, {100, 3000}, {37, 59999}, {12, 13}})
        for (const auto& [low, high] : {std::pair{0, 255}, {255, 0}, {10, 200}}) {
            SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to) + ": " + std::to_string(low) + " to " +
                         std::to_string(high));
            table.CreateGamma(static_cast<unsigned short>(from), static_cast<unsigned short>(to), 1.0F,
                              static_cast<unsigned char>(low), static_cast<unsigned char>(high));
            const auto ramp = kep::RampLevels::Of(table);
            const bool mayMiss = low != 0; // other lines may miss the table by a half that rounds the other way
            EXPECT_TRUE(ramp ? IsAble() : !IsAble() || mayMiss);
            if (!ramp)
                continue;
            ramp->Find(keys.data(), keys.size(), levels.data());
            EXPECT_TRUE(std::equal(levels.begin(), levels.end(), table.GetWholeType()));
        }
}

TEST(RampLevels, AreNotComputedForOtherTables) {
    Table table = WholeType();
    EXPECT_FALSE(kep::RampLevels::Of(table)) << "nothing was drawn";
    table.CreateGamma(0, 4095, 0.9F, 0, 255);
    EXPECT_FALSE(kep::RampLevels::Of(table)) << "a curve";
    table.CreateGamma(100, 100, 1.0F, 0, 255);
    EXPECT_FALSE(kep::RampLevels::Of(table)) << "a step";
    for (const auto key : std::initializer_list<unsigned short>{0, 5, 15, 4096, 65535}) {
        table.CreateGamma(0, 4095, 1.0F, 0, 255);
        table.Set(key, static_cast<unsigned char>(table.Get(key) + 1));
        EXPECT_FALSE(kep::RampLevels::Of(table)) << "an entry that was changed at " << key;
    }
    table.Init(4096, 0, 4095);
    table.CreateGamma(0, 4095, 1.0F, 0, 255);
    EXPECT_FALSE(kep::RampLevels::Of(table)) << "not all of the type";
}

TEST(RampLevels, AreThoseOfTheVoxelsAlone) {
    Table table = WholeType();
    table.CreateGamma(200, 1000, 1.0F, 0, 255);
    const auto ramp = kep::RampLevels::Of(table);
    if (!ramp)
        GTEST_SKIP() << "this processor looks levels up";
    for (std::size_t count = 0; count < 70; ++count) {
        std::vector<unsigned short> voxels(count); // as long as they are: reading beyond would show under sanitizers
        for (std::size_t i = 0; i < count; ++i)
            voxels[i] = static_cast<unsigned short>(150 + 17 * i);
        std::vector<unsigned char> levels(count + 1, 99);
        ramp->Find(voxels.data(), count, levels.data());
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(levels[i], table.Get(voxels[i])) << i << " of " << count;
        ASSERT_EQ(levels[count], 99) << count;
    }
}

} // namespace
