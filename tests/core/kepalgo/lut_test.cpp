#include "core/kepalgo/kep_lut.h"
#include "core/kepcore/kep_exceptions.h"
#include "tests/support/text_of.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Table8 = kep::LUT<unsigned char, unsigned char>;
using Table16 = kep::LUT<unsigned short, unsigned char>;
using IntTable = kep::LUT<int, unsigned char>;
using FloatTable = kep::LUT<float, unsigned char>;
using Palette = kep::LUT<unsigned char, kep::RGB_generic<unsigned char>>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float inf = std::numeric_limits<float>::infinity();
constexpr const char* outside = "LUT::Set(): The key lies outside the table.";

template <typename T>
kep::LUT<T, unsigned char> MakeTable(long size, T first, T last) {
    kep::LUT<T, unsigned char> table;
    table.Init(size, first, last);
    return table;
}

/// A table whose entry i holds i.
template <typename T>
kep::LUT<T, unsigned char> MakeCountingTable(long size, T first, T last) {
    auto table = MakeTable(size, first, last);
    for (long i = 0; i < size; ++i) {
        const double range = static_cast<double>(last) - static_cast<double>(first);
        const double key = static_cast<double>(first) + static_cast<double>(i) * range / static_cast<double>(size - 1);
        table.Set(static_cast<T>(key), static_cast<unsigned char>(i));
    }
    return table;
}

// --- keys ---

TEST(LookUpTable, WithoutEntriesGivesNothing) {
    Table8 table;
    EXPECT_EQ(table.Get(7), 0);
    table.Set(7, 1); // no place, no complaint
    table.CreateGamma(0, 255, 1.0F, 0, 255);
    table.CreateThresholding(0, 255, 0, 255);
    table.CreateAffine(1.0F, 0.0F, 0, 255);
    EXPECT_EQ(table.Get(7), 0);
    EXPECT_EQ(table.GetSize(), 0U);
    table.Init(-3, 0, 255);
    EXPECT_EQ(table.GetSize(), 0U);
    EXPECT_EQ(Palette().Get(1), kep::RGB_generic<unsigned char>());
}

TEST(LookUpTable, KnowsTheLineThatWasDrawnLast) {
    kep::LUT<unsigned short, unsigned char> table;
    table.Init(65536, 0, 65535);
    EXPECT_FALSE(table.GetRamp());
    table.CreateGamma(900, 300, 1.0F, 10, 200);
    const auto ramp = table.GetRamp();
    ASSERT_TRUE(ramp);
    EXPECT_EQ(ramp->from, 300);
    EXPECT_EQ(ramp->to, 900);
    EXPECT_EQ(ramp->low, 10);
    EXPECT_EQ(ramp->high, 200);
    auto moved = std::move(table);
    EXPECT_TRUE(moved.GetRamp());
    EXPECT_FALSE(table.GetRamp()); // NOLINT(bugprone-use-after-move)
    table = std::move(moved);
    EXPECT_TRUE(table.GetRamp());
    table.CreateGamma(300, 900, 1.1F, 10, 200);
    EXPECT_FALSE(table.GetRamp());
    const auto draw = [&table] { table.CreateGamma(300, 900, 1.0F, 10, 200); };
    draw();
    table.CreateAffine(1.0F, 0.0F, 0, 255);
    EXPECT_FALSE(table.GetRamp());
    draw();
    table.CreateThresholding(5, 9, 0, 255);
    EXPECT_FALSE(table.GetRamp());
    draw();
    table.Init(65536, 0, 65535);
    EXPECT_FALSE(table.GetRamp());
}

TEST(LookUpTable, IsLeftWithoutEntriesWhenItIsMovedFrom) {
    static_assert(std::is_nothrow_move_constructible_v<Table8> && std::is_nothrow_move_assignable_v<Table8>);
    auto table = MakeCountingTable<unsigned char>(256, 0, 255);
    const unsigned char* const entries = table.GetData();
    const auto expectEmpty = [](Table8& empty) {
        EXPECT_TRUE(empty.IsEmpty());
        EXPECT_EQ(empty.GetWholeType(), nullptr) << "it covers nothing";
        EXPECT_EQ(empty.Get(200), 0);
        EXPECT_EQ(empty.GetFirst(), 0);
        EXPECT_EQ(empty.GetLast(), 0);
        empty.Set(7, 1);
        empty.CreateGamma(0, 255, 1.0F, 0, 255);
        empty.CreateThresholding(0, 255, 0, 255);
        empty.CreateAffine(1.0F, 0.0F, 0, 255);
        EXPECT_EQ(Table8(empty).Get(7), 0);
    };
    Table8 moved(std::move(table));
    EXPECT_EQ(moved.GetWholeType(), entries) << "nothing was copied";
    EXPECT_EQ(moved.Get(200), 200);
    EXPECT_EQ(moved.GetLast(), 255);
    expectEmpty(table);
    table.Init(2, 5, 6);
    EXPECT_EQ(table.GetWholeType(), nullptr);

    table = std::move(moved);
    EXPECT_EQ(table.GetWholeType(), entries);
    EXPECT_EQ(table.Get(17), 17);
    expectEmpty(moved);
    auto& self = table;
    table = std::move(self);
    EXPECT_EQ(table.GetWholeType(), entries);
    table = Table8();
    expectEmpty(table);
}

TEST(LookUpTable, ShowsItsEntriesAndTheirKeys) {
    kep::LUT<int, unsigned char> table;
    EXPECT_TRUE(table.IsEmpty());
    table.Init(5, -10, 10); // keys -10, -5, 0, 5, 10
    EXPECT_FALSE(table.IsEmpty());
    EXPECT_EQ(table.GetKey(0), -10);
    EXPECT_EQ(table.GetKey(1), -5);
    EXPECT_EQ(table.GetKey(4), 10);
    table.Set(5, 9);
    EXPECT_EQ(table.GetData()[3], 9);
    table.GetData()[1] = 7;
    EXPECT_EQ(table.Get(-5), 7);
    table.Init(4, 0, 10); // keys 0, 3.33, 6.67, 10
    EXPECT_EQ(table.GetKey(1), 3);
    EXPECT_EQ(table.GetKey(2), 6);
    kep::LUT<float, unsigned char> floats;
    floats.Init(3, 0.5F, 1.0F);
    EXPECT_EQ(floats.GetKey(1), 0.75F);
}

TEST(LookUpTable, IsZeroAtFirstAndAfterEveryInit) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    EXPECT_EQ(table.Get(9), 0);
    table.Set(9, 5);
    EXPECT_EQ(table.Get(9), 5);
    table.Init(256, 0, 255);
    EXPECT_EQ(table.Get(9), 0);
}

TEST(LookUpTable, OfWholeNumbersHasAnEntryEach) {
    auto table = MakeTable<unsigned short>(65536, 0, 65535);
    for (unsigned key = 0; key < 65536; ++key)
        table.Set(static_cast<unsigned short>(key), static_cast<unsigned char>(key * 7 % 251));
    for (unsigned key = 0; key < 65536; ++key)
        ASSERT_EQ(table.Get(static_cast<unsigned short>(key)), key * 7 % 251);
    const auto negative = MakeCountingTable<int>(11, -5, 5);
    for (int key = -5; key <= 5; ++key)
        EXPECT_EQ(negative.Get(key), key + 5);
}

TEST(LookUpTable, TellsWhenItCoversTheType) {
    const auto whole = MakeTable<unsigned char>(256, 0, 255);
    ASSERT_NE(whole.GetWholeType(), nullptr);
    EXPECT_EQ(MakeTable<unsigned char>(255, 0, 254).GetWholeType(), nullptr);
    EXPECT_EQ(MakeTable<unsigned char>(255, 1, 255).GetWholeType(), nullptr);
    EXPECT_EQ(MakeTable<unsigned char>(100, 0, 255).GetWholeType(), nullptr);
    EXPECT_EQ(MakeTable<int>(256, 0, 255).GetWholeType(), nullptr);
    auto words = MakeTable<unsigned short>(65536, 0, 65535);
    words.Set(60000, 3);
    ASSERT_NE(words.GetWholeType(), nullptr);
    EXPECT_EQ(words.GetWholeType()[60000], 3);
    words.Init(0, 0, 65535);
    EXPECT_EQ(words.GetWholeType(), nullptr);
}

TEST(LookUpTable, GivesItsEndsToKeysOutside) {
    const auto bytes = MakeCountingTable<unsigned char>(3, 10, 12);
    EXPECT_EQ(bytes.Get(0), 0);
    EXPECT_EQ(bytes.Get(9), 0);
    EXPECT_EQ(bytes.Get(11), 1);
    EXPECT_EQ(bytes.Get(13), 2);
    EXPECT_EQ(bytes.Get(255), 2);
    const auto numbers = MakeCountingTable<int>(3, -1, 1);
    EXPECT_EQ(numbers.Get(std::numeric_limits<int>::min()), 0);
    EXPECT_EQ(numbers.Get(std::numeric_limits<int>::max()), 2);
    const auto floats = MakeCountingTable<float>(3, -1.0F, 1.0F);
    EXPECT_EQ(floats.Get(-inf), 0);
    EXPECT_EQ(floats.Get(inf), 2);
    EXPECT_EQ(floats.Get(1.0F), 2);
}

TEST(LookUpTable, GivesItsFirstEntryToNaN) {
    auto table = MakeTable<float>(4, 0.0F, 3.0F);
    table.Set(0.0F, 77);
    EXPECT_EQ(table.Get(nan), 77);
}

TEST(LookUpTable, TakesTheNearestEntry) {
    // Entries for 0, 2, 4, 6, 8: the borders between them lie at 1, 3, 5, 7, and belong to the upper entry.
    const auto table = MakeCountingTable<float>(5, 0.0F, 8.0F);
    EXPECT_EQ(table.Get(0.99F), 0);
    EXPECT_EQ(table.Get(1.0F), 1);
    EXPECT_EQ(table.Get(2.99F), 1);
    EXPECT_EQ(table.Get(5.0F), 3);
    EXPECT_EQ(table.Get(6.99F), 3);
    EXPECT_EQ(table.Get(7.0F), 4);
}

TEST(LookUpTable, TakesTheNearestEntryOfFewForAllWholeNumbers) {
    // Entries for -2147483648, -0.5 and 2147483647, 2147483647.5 apart. Half way, at -1073741824.25, the nearest
    // changes: (-1073741825 + 2147483648) / 4294967295 * 2 = 0.49999999965, and one more gives 0.50000000012.
    auto table = MakeTable<int>(3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    table.Set(std::numeric_limits<int>::min(), 1);
    table.Set(0, 2);
    table.Set(std::numeric_limits<int>::max(), 3);
    EXPECT_EQ(table.Get(-1073741825), 1);
    EXPECT_EQ(table.Get(-1073741824), 2);
    EXPECT_EQ(table.Get(0), 2);
    EXPECT_EQ(table.Get(1073741823), 2);
    EXPECT_EQ(table.Get(1073741824), 3);
}

TEST(LookUpTable, GivesAllKeysOneEntryIfTheFirstIsTheLast) {
    for (const long size : {1L, 3L}) {
        auto numbers = MakeTable<int>(size, 5, 5);
        numbers.Set(5, 9);
        auto floats = MakeTable<float>(size, 5.0F, 5.0F);
        floats.Set(5.0F, 9);
        for (const int key : {-100, 4, 5, 6, 100}) {
            EXPECT_EQ(numbers.Get(key), 9);
            EXPECT_EQ(floats.Get(static_cast<float>(key)), 9);
        }
    }
}

TEST(LookUpTable, OfOneEntryGivesItToEveryKey) {
    auto table = MakeTable<float>(1, 0.0F, 8.0F);
    table.Set(8.0F, 6);
    EXPECT_EQ(table.Get(0.0F), 6);
    EXPECT_EQ(table.Get(5.0F), 6);
    EXPECT_EQ(table.Get(8.0F), 6);
    table.CreateAffine(0.0F, 3.0F, 0, 255);
    EXPECT_EQ(table.Get(5.0F), 3);
}

TEST(LookUpTable, SurvivesEndlessKeys) {
    auto table = MakeTable<float>(256, -inf, inf);
    for (const float key : {-inf, -1.0F, 0.0F, 1.0F, inf, nan}) {
        table.Set(-inf, 4);
        EXPECT_LE(table.Get(key), 4);
    }
    table.CreateGamma(-inf, inf, 2.0F, 10, 20);
    for (const float key : {-inf, 0.0F, inf})
        EXPECT_TRUE(table.Get(key) >= 10 && table.Get(key) <= 20);
}

TEST(LookUpTable, FindsTheEntryOfAKeyThatIsHeldAsAFloat) {
    std::mt19937 random(20260101);
    for (int round = 0; round < 300; ++round) {
        const auto first = static_cast<float>(random() % 2000) / 7.0F - 100.0F;
        const float last = first + 0.5F + static_cast<float>(random() % 5000) / 11.0F;
        const auto size = static_cast<long>(2 + random() % 200); // entries lie at least 0.0025 apart, floats 2 ^ -15
        const auto table = MakeCountingTable<float>(size, first, last);
        const double range = static_cast<double>(last) - static_cast<double>(first);
        for (long i = 0; i < size; ++i) {
            const double key =
                static_cast<double>(first) + static_cast<double>(i) * range / static_cast<double>(size - 1);
            ASSERT_EQ(table.Get(static_cast<float>(key)), i) << first << ' ' << last << ' ' << size;
        }
    }
}

// --- Set ---

TEST(LookUpTable, RefusesKeysOutsideAndChangesNothing) {
    auto floats = MakeTable<float>(4, 0.0F, 3.0F);
    for (const float key : {-0.001F, 3.001F, inf, -inf, nan})
        EXPECT_EQ(TextOf<kep::LibException>([&] { floats.Set(key, 1); }), outside);
    for (const float key : {0.0F, 1.0F, 2.0F, 3.0F})
        EXPECT_EQ(floats.Get(key), 0);
    auto numbers = MakeTable<int>(3, -1, 1);
    EXPECT_EQ(TextOf<kep::LibException>([&] { numbers.Set(-2, 1); }), outside);
    EXPECT_EQ(TextOf<kep::LibException>([&] { numbers.Set(2, 1); }), outside);
    auto palette = Palette();
    palette.Init(16, 0, 15);
    EXPECT_EQ(TextOf<kep::LibException>([&] { palette.Set(16, {1, 2, 3}); }), outside);
    palette.Set(15, {1, 2, 3});
    EXPECT_EQ(palette.Get(15), kep::RGB_generic<unsigned char>(1, 2, 3));
}

TEST(LookUpTable, IsEmptyAfterMemoryWasMissing) {
    Palette palette;
    palette.Init(256, 0, 255);
    // More bytes than can be addressed.
    EXPECT_EQ(TextOf<kep::LibException>([&] { palette.Init(std::numeric_limits<long>::max(), 0, 255); }),
              "LUT::Init(): Not enough memory for the table.");
    EXPECT_EQ(palette.GetSize(), 0U);
    EXPECT_EQ(palette.GetWholeType(), nullptr);
    EXPECT_EQ(palette.Get(3), kep::RGB_generic<unsigned char>());
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which ends the process where memory lacks
    auto table = MakeTable<unsigned char>(256, 0, 255);
    EXPECT_EQ(TextOf<kep::LibException>([&] { table.Init(1L << 62, 0, 255); }),
              "LUT::Init(): Not enough memory for the table.");
    EXPECT_EQ(table.GetSize(), 0U);
#endif
}

// --- gamma curves ---

TEST(GammaCurve, OfOneIsAStraightLine) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.CreateGamma(0, 255, 1.0F, 0, 255);
    for (int key = 0; key < 256; ++key)
        ASSERT_EQ(table.Get(static_cast<unsigned char>(key)), key);
    // From 100 to 200 in 100 steps of 2.55: 101 gives 2.55, 102 gives 5.1, 150 gives 127.5, 199 gives 252.45.
    table.CreateGamma(100, 200, 1.0F, 0, 255);
    EXPECT_EQ(table.Get(0), 0);
    EXPECT_EQ(table.Get(100), 0);
    EXPECT_EQ(table.Get(101), 3);
    EXPECT_EQ(table.Get(102), 5);
    EXPECT_EQ(table.Get(150), 128);
    EXPECT_EQ(table.Get(199), 252);
    EXPECT_EQ(table.Get(200), 255);
    EXPECT_EQ(table.Get(255), 255);
}

TEST(GammaCurve, TakesTheRootOfItsOrder) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    // Gamma 2: 255 * sqrt(t). 64 / 255 = 0.25098, its root 0.50098, times 255 = 127.75. 1 / 255 gives 15.97.
    table.CreateGamma(0, 255, 2.0F, 0, 255);
    EXPECT_EQ(table.Get(64), 128);
    EXPECT_EQ(table.Get(1), 16);
    // Gamma 0.5: 255 * t * t. 128 / 255 = 0.50196, squared 0.25196, times 255 = 64.25.
    table.CreateGamma(0, 255, 0.5F, 0, 255);
    EXPECT_EQ(table.Get(128), 64);
    EXPECT_EQ(table.Get(0), 0);
    EXPECT_EQ(table.Get(255), 255);
}

TEST(GammaCurve, MayFall) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.CreateGamma(0, 255, 1.0F, 255, 0);
    for (int key = 0; key < 256; ++key)
        ASSERT_EQ(table.Get(static_cast<unsigned char>(key)), 255 - key);
    // Gamma 2 from 200 down to 100: 200 - 100 * sqrt(64 / 255) = 200 - 50.098 = 149.9.
    table.CreateGamma(0, 255, 2.0F, 200, 100);
    EXPECT_EQ(table.Get(0), 200);
    EXPECT_EQ(table.Get(64), 150);
    EXPECT_EQ(table.Get(255), 100);
}

TEST(GammaCurve, TakesItsBoundsInAnyOrder) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.CreateGamma(200, 100, 1.0F, 0, 255);
    EXPECT_EQ(table.Get(100), 0);
    EXPECT_EQ(table.Get(150), 128);
    EXPECT_EQ(table.Get(200), 255);
}

TEST(GammaCurve, OfOneBoundKeepsItBlack) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.CreateGamma(0, 0, 1.0F, 0, 255);
    EXPECT_EQ(table.Get(0), 0);
    EXPECT_EQ(table.Get(1), 255);
    table.CreateGamma(7, 7, 3.0F, 20, 30);
    EXPECT_EQ(table.Get(6), 20);
    EXPECT_EQ(table.Get(7), 20);
    EXPECT_EQ(table.Get(8), 30);
}

TEST(GammaCurve, KeepsItsLowerBoundBlackAmongFloats) {
    // Between these ends the keys of most entries are no floats. Each taken as a bound, as a float, gives low: with a
    // gamma of 10, a key above the bound by the missing digits would give some 255 * (1e-8) ^ 0.1 = 40.
    auto table = MakeTable<float>(256, 0.1F, 7.3F);
    const double range = static_cast<double>(7.3F) - static_cast<double>(0.1F);
    for (int i = 0; i < 255; ++i) {
        const auto key = static_cast<float>(static_cast<double>(0.1F) + i * range / 255.0);
        table.CreateGamma(key, 7.3F, 10.0F, 0, 255);
        ASSERT_EQ(table.Get(key), 0) << i;
    }
}

TEST(GammaCurve, NeedsAPositiveGamma) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.Set(9, 5);
    for (const float gamma : {0.0F, -1.0F, inf, -inf, nan})
        EXPECT_EQ(TextOf<kep::LibException>([&] { table.CreateGamma(0, 255, gamma, 0, 255); }),
                  "LUT::CreateGamma(): The gamma must be a positive number.");
    EXPECT_EQ(table.Get(9), 5);
}

// --- straight lines ---

TEST(AffineTable, IsHeldBetweenItsOutputs) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.CreateAffine(2.0F, -10.0F, 20, 100);
    EXPECT_EQ(table.Get(0), 20);  // -10
    EXPECT_EQ(table.Get(14), 20); // 18
    EXPECT_EQ(table.Get(20), 30); // 30
    EXPECT_EQ(table.Get(55), 100);
    EXPECT_EQ(table.Get(56), 100); // 102
    EXPECT_EQ(table.Get(255), 100);
    table.CreateAffine(0.5F, 0.0F, 0, 255);
    EXPECT_EQ(table.Get(3), 2);                // 1.5
    EXPECT_EQ(table.Get(254), 127);            // 127
    table.CreateAffine(-1.0F, 255.0F, 200, 0); // the outputs in any order
    EXPECT_EQ(table.Get(0), 200);
    EXPECT_EQ(table.Get(100), 155);
}

TEST(AffineTable, OfNothingIsBlack) {
    auto table = MakeTable<unsigned short>(65536, 0, 65535);
    table.CreateGamma(0, 65535, 1.0F, 255, 255);
    table.CreateAffine(0.0F, 0.0F, 0, 255);
    for (const int key : {0, 1, 30000, 65535})
        EXPECT_EQ(table.Get(static_cast<unsigned short>(key)), 0);
    table.CreateAffine(nan, 0.0F, 7, 255);
    EXPECT_EQ(table.Get(100), 7);
}

// --- thresholds ---

TEST(Thresholds, IncludeBothEnds) {
    auto table = MakeTable<unsigned char>(256, 0, 255);
    table.CreateThresholding(10, 20, 3, 200);
    EXPECT_EQ(table.Get(0), 3);
    EXPECT_EQ(table.Get(9), 3);
    for (int key = 10; key <= 20; ++key)
        EXPECT_EQ(table.Get(static_cast<unsigned char>(key)), 200);
    EXPECT_EQ(table.Get(21), 3);
    EXPECT_EQ(table.Get(255), 3);
    table.CreateThresholding(30, 30, 0, 255);
    EXPECT_EQ(table.Get(29), 0);
    EXPECT_EQ(table.Get(30), 255);
    EXPECT_EQ(table.Get(31), 0);
}

TEST(Thresholds, OutsideTheTableOrTurnedRoundGiveLow) {
    auto table = MakeTable<int>(11, 0, 10);
    const auto isAllLow = [&table] {
        for (int key = -5; key <= 15; ++key)
            if (table.Get(key) != 0)
                return false;
        return true;
    };
    table.CreateThresholding(-8, -1, 0, 255);
    EXPECT_TRUE(isAllLow());
    table.CreateThresholding(11, 20, 0, 255);
    EXPECT_TRUE(isAllLow());
    table.CreateThresholding(6, 5, 0, 255);
    EXPECT_TRUE(isAllLow());
    table.CreateThresholding(-8, 0, 0, 255); // reaches in by its last key
    EXPECT_EQ(table.Get(0), 255);
    EXPECT_EQ(table.Get(1), 0);
    table.CreateThresholding(10, 20, 0, 255);
    EXPECT_EQ(table.Get(9), 0);
    EXPECT_EQ(table.Get(10), 255);
    auto floats = MakeTable<float>(11, 0.0F, 10.0F);
    floats.CreateThresholding(nan, 5.0F, 0, 255);
    EXPECT_EQ(floats.Get(3.0F), 0);
    floats.CreateThresholding(1.0F, nan, 0, 255);
    EXPECT_EQ(floats.Get(3.0F), 0);
}

TEST(Thresholds, GiveHighAtBothEndsAmongFloats) {
    std::mt19937 random(7);
    auto table = MakeTable<float>(100, -3.0F, 4.7F);
    for (int round = 0; round < 200; ++round) {
        float from = -3.0F + static_cast<float>(random() % 7700) / 1000.0F;
        float to = -3.0F + static_cast<float>(random() % 7700) / 1000.0F;
        if (from > to)
            std::swap(from, to);
        table.CreateThresholding(from, to, 0, 255);
        ASSERT_EQ(table.Get(from), 255);
        ASSERT_EQ(table.Get(to), 255);
        ASSERT_EQ(table.Get((from + to) / 2), 255);
        const float bin = 7.7F / 99.0F;
        if (from - 1.01F * bin > -3.0F) {
            ASSERT_EQ(table.Get(from - 1.01F * bin), 0);
        }
        if (to + 1.01F * bin < 4.7F) {
            ASSERT_EQ(table.Get(to + 1.01F * bin), 0);
        }
    }
}

// --- curves beside their slow twins, which compute every entry ---

unsigned char RoundSlowly(double value, unsigned char a, unsigned char b) {
    const double rounded = std::floor(value + 0.5);
    return static_cast<unsigned char>(std::min<double>(std::max<double>(rounded, std::min(a, b)), std::max(a, b)));
}

template <typename T>
unsigned char GammaSlowly(T key, T from, T to, float gamma, unsigned char low, unsigned char high) {
    if (from > to)
        std::swap(from, to);
    if (key <= from)
        return low;
    if (key >= to)
        return high;
    const double t =
        (static_cast<double>(key) - static_cast<double>(from)) / (static_cast<double>(to) - static_cast<double>(from));
    return RoundSlowly(low + (high - low) * std::pow(t, 1.0 / static_cast<double>(gamma)), low, high);
}

/// Looks all keys of a table with an entry each up, after a curve was made.
template <typename T>
void ExpectCurvesAgree(long size, T first, unsigned seed, int rounds) {
    const T last = static_cast<T>(first + static_cast<T>(size - 1));
    auto table = MakeTable<T>(size, first, last);
    std::mt19937 random(seed);
    const auto anyKey = [&] { return static_cast<T>(first + static_cast<T>(random() % static_cast<unsigned>(size))); };
    const auto anyLevel = [&] { return static_cast<unsigned char>(random()); };
    for (int round = 0; round < rounds; ++round) {
        const T from = anyKey();
        const T to = anyKey();
        const float gamma = std::exp(static_cast<float>(random() % 600) / 100.0F - 3.0F); // 0.05 to 20
        const unsigned char low = anyLevel();
        const unsigned char high = anyLevel();
        table.CreateGamma(from, to, gamma, low, high);
        for (long i = 0; i < size; ++i) {
            const T key = static_cast<T>(first + static_cast<T>(i));
            ASSERT_EQ(table.Get(key), GammaSlowly(key, from, to, gamma, low, high))
                << +key << " of " << +from << " to " << +to << ", gamma " << gamma << ", " << +low << " to " << +high;
        }
        const float a = (static_cast<float>(random() % 1000) - 500.0F) / static_cast<float>(size);
        const float b = static_cast<float>(random() % 500) - 250.0F;
        table.CreateAffine(a, b, low, high);
        for (long i = 0; i < size; ++i) {
            const T key = static_cast<T>(first + static_cast<T>(i));
            const double line = static_cast<double>(a) * static_cast<double>(key) + static_cast<double>(b);
            ASSERT_EQ(table.Get(key), RoundSlowly(line, low, high)) << +key << ": " << a << " * key + " << b;
        }
    }
}

TEST(Curves, AgreeWithTheirSlowTwins) {
    ExpectCurvesAgree<unsigned char>(256, 0, 1, 300);
    ExpectCurvesAgree<unsigned short>(65536, 0, 2, 12);
    ExpectCurvesAgree<int>(3001, -1700, 3, 100);
    ExpectCurvesAgree<int>(1, 4, 4, 3);
    ExpectCurvesAgree<int>(2, -4, 5, 20);
}

TEST(Curves, OfFloatsAgreeWithTheirSlowTwins) {
    std::mt19937 random(11);
    for (int round = 0; round < 100; ++round) {
        // Keys that floats hold: eighths from -100 on.
        const long size = 2 + static_cast<long>(random() % 400);
        const float first = -100.0F;
        const float last = first + static_cast<float>(size - 1) / 8.0F;
        auto table = MakeTable<float>(size, first, last);
        const float from = first + static_cast<float>(random() % 800) / 16.0F;
        const float to = first + static_cast<float>(random() % 800) / 16.0F;
        const float gamma = std::exp(static_cast<float>(random() % 600) / 100.0F - 3.0F);
        table.CreateGamma(from, to, gamma, 0, 255);
        for (long i = 0; i < size; ++i) {
            const float key = first + static_cast<float>(i) / 8.0F;
            ASSERT_EQ(table.Get(key), GammaSlowly<float>(key, from, to, gamma, 0, 255)) << key;
        }
    }
}

} // namespace
