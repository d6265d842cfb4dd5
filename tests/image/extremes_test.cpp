#include "model/zel_extremes.h"
#include "tests/support/failing_memory.h"
#include "tests/support/frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using mor::ExtremaValues;
using RGB8 = kep::RGB_generic<unsigned char>;
using RGB16 = kep::RGB_generic<unsigned short>;

template <typename T>
ExtremaValues<T> ExtremesOf(const std::vector<T>& voxels) {
    ExtremaValues<T> extremes;
    mor::ComputeFrameExtremes(FrameOf(voxels), extremes);
    return extremes;
}

// --- the slow twin: the rule as told, voxel by voxel ---

template <typename N>
void Follow(N& min, N& max, N value) {
    if (value < min)
        min = value;
    else if (value > max)
        max = value;
}

template <typename T>
ExtremaValues<T> SlowExtremes(const std::vector<T>& voxels) {
    ExtremaValues<T> e{voxels[0], voxels[0]};
    for (const T& v : voxels)
        Follow(e.min, e.max, v);
    return e;
}

template <typename C>
ExtremaValues<kep::RGB_generic<C>> SlowExtremes(const std::vector<kep::RGB_generic<C>>& voxels) {
    ExtremaValues<kep::RGB_generic<C>> e{voxels[0], voxels[0]};
    for (const auto& v : voxels) {
        Follow(e.min.red, e.max.red, v.red);
        Follow(e.min.green, e.max.green, v.green);
        Follow(e.min.blue, e.max.blue, v.blue);
    }
    return e;
}

template <typename F>
ExtremaValues<std::complex<F>> SlowExtremes(const std::vector<std::complex<F>>& voxels) {
    const auto amplitude = [](const std::complex<F>& v) -> F {
        const F square = v.real() * v.real() + v.imag() * v.imag();
        return std::sqrt(square);
    };
    const auto phase = [](const std::complex<F>& v) -> F { return std::atan2(v.imag(), v.real()); };
    F reMin = voxels[0].real(), reMax = reMin, imMin = voxels[0].imag(), imMax = imMin;
    F aMin = amplitude(voxels[0]), aMax = aMin, pMin = phase(voxels[0]), pMax = pMin;
    for (const auto& v : voxels) {
        Follow(reMin, reMax, v.real());
        Follow(imMin, imMax, v.imag());
        Follow(aMin, aMax, amplitude(v));
        Follow(pMin, pMax, phase(v));
    }
    return {{reMin, imMin}, {reMax, imMax}, aMin, aMax, pMin, pMax};
}

// --- exact comparison: NaN equals NaN, and zeros differ by their sign ---

template <typename T>
std::vector<long double> NumbersOf(const T& v) {
    return {static_cast<long double>(v)};
}
template <typename C>
std::vector<long double> NumbersOf(const kep::RGB_generic<C>& v) {
    return {static_cast<long double>(v.red), static_cast<long double>(v.green), static_cast<long double>(v.blue)};
}
template <typename F>
std::vector<long double> NumbersOf(const std::complex<F>& v) {
    return {v.real(), v.imag()};
}
template <typename T>
std::vector<long double> AllNumbers(const ExtremaValues<T>& e) {
    std::vector<long double> all = NumbersOf(e.min);
    for (const long double n : NumbersOf(e.max))
        all.push_back(n);
    if constexpr (requires { e.phaseMin; })
        all.insert(all.end(), {e.amplitudeMin, e.amplitudeMax, e.phaseMin, e.phaseMax});
    return all;
}

template <typename T>
void ExpectSame(const ExtremaValues<T>& actual, const ExtremaValues<T>& expected, const std::string& what) {
    const auto a = AllNumbers(actual);
    const auto b = AllNumbers(expected);
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool same =
            std::isnan(a[i]) ? std::isnan(b[i]) : a[i] == b[i] && std::signbit(a[i]) == std::signbit(b[i]);
        EXPECT_TRUE(same) << what << ", entry " << i << ": " << a[i] << " instead of " << b[i];
    }
}

// --- random voxels ---

/// Numbers over the whole range of the type, or close together so that values repeat.
template <typename N>
N RandomNumber(std::mt19937_64& random, bool wide) {
    if constexpr (std::is_floating_point_v<N>) {
        if (!wide)
            return static_cast<N>(static_cast<int>(random() % 9) - 4);
        switch (random() % 16) {
        case 0:
            return std::numeric_limits<N>::quiet_NaN();
        case 1:
            return random() % 2 ? N(0) : -N(0);
        case 2:
            return random() % 2 ? std::numeric_limits<N>::infinity() : -std::numeric_limits<N>::infinity();
        case 3:
            return std::numeric_limits<N>::max() * (random() % 2 ? N(0.75) : N(-0.75));
        case 4:
            return std::numeric_limits<N>::denorm_min() * static_cast<N>(random() % 5);
        default:
            return static_cast<N>(static_cast<double>(random() % 2000001) / 1e6 - 1.0);
        }
    } else {
        return static_cast<N>(wide ? random() : random() % 5);
    }
}

template <typename T>
struct RandomVoxel {
    static T Make(std::mt19937_64& random, bool wide) { return RandomNumber<T>(random, wide); }
};
template <typename C>
struct RandomVoxel<kep::RGB_generic<C>> {
    static kep::RGB_generic<C> Make(std::mt19937_64& random, bool wide) {
        const C r = RandomNumber<C>(random, wide), g = RandomNumber<C>(random, wide);
        return {r, g, RandomNumber<C>(random, wide)};
    }
};
template <typename F>
struct RandomVoxel<std::complex<F>> {
    static std::complex<F> Make(std::mt19937_64& random, bool wide) {
        const F re = RandomNumber<F>(random, wide);
        return {re, RandomNumber<F>(random, wide)};
    }
};

template <typename T>
class ExtremesOfType : public testing::Test {};
using ContainerTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double, RGB8,
                                      RGB16, std::complex<float>, std::complex<double>>;
TYPED_TEST_SUITE(ExtremesOfType, ContainerTypes);

TYPED_TEST(ExtremesOfType, AgreeWithTheRuleFollowedVoxelByVoxel) {
    std::mt19937_64 random(20240607);
    for (std::size_t length = 1; length < 200; ++length) { // all remainders of the steps of the kernel
        for (int round = 0; round < 12; ++round) {
            std::vector<TypeParam> voxels(length);
            for (auto& voxel : voxels)
                voxel = RandomVoxel<TypeParam>::Make(random, round % 2 == 0);
            ExpectSame(ExtremesOf(voxels), SlowExtremes(voxels), std::to_string(length) + " voxels");
        }
    }
}

TYPED_TEST(ExtremesOfType, AreThoseOfAllBlocksThatCome) {
    std::mt19937_64 random(11);
    for (int round = 0; round < 300; ++round) {
        std::vector<TypeParam> voxels(1 + random() % 300);
        for (auto& voxel : voxels)
            voxel = RandomVoxel<TypeParam>::Make(random, round % 2 == 0);
        mor::RunningExtremes<TypeParam> running;
        for (std::size_t at = 0; at < voxels.size();) {
            const std::size_t number = std::min<std::size_t>(random() % 90, voxels.size() - at);
            running.Add(voxels.data() + at, number);
            at += number;
            EXPECT_EQ(running.CountVoxels(), at);
        }
        ExpectSame(running.Get(), SlowExtremes(voxels), "round " + std::to_string(round));
    }
}

TYPED_TEST(ExtremesOfType, DoNotDependOnTheNumberOfThreads) {
    std::mt19937_64 random(12);
    for (int round = 0; round < 4; ++round) {
        std::vector<TypeParam> voxels((std::size_t{10} << 20) / sizeof(TypeParam) + 7); // parts for two threads
        for (auto& voxel : voxels)
            voxel = RandomVoxel<TypeParam>::Make(random, round % 2 == 0);
        const ExtremaValues<TypeParam> found = ExtremesOf(voxels);
        kep::SetThreadLimit(1);
        ExpectSame(found, ExtremesOf(voxels), "round " + std::to_string(round));
        kep::SetThreadLimit(0);
    }
}

TYPED_TEST(ExtremesOfType, FindASingleOutlierAtEveryPlace) {
    std::mt19937_64 random(7);
    for (std::size_t at = 0; at < 131; ++at) {
        std::vector<TypeParam> voxels(131, TypeParam());
        voxels[at] = RandomVoxel<TypeParam>::Make(random, true);
        ExpectSame(ExtremesOf(voxels), SlowExtremes(voxels), "outlier at " + std::to_string(at));
    }
}

TYPED_TEST(ExtremesOfType, AFrameWithoutVoxelsLeavesThemAsTheyAre) {
    const ExtremaValues<TypeParam> before = ExtremesOf(std::vector<TypeParam>(3, TypeParam()));
    ExtremaValues<TypeParam> extremes = before;
    mor::ComputeFrameExtremes(kep::Image3d<TypeParam>(), extremes);
    EXPECT_EQ(extremes, before);
    mor::MergeFrameExtremes(kep::Image3d<TypeParam>(), extremes);
    EXPECT_EQ(extremes, before);
}

TEST(Extremes, OfAnEmptyImageAreTheEndsOfTheType) {
    EXPECT_EQ(ExtremaValues<unsigned char>().min, 255);
    EXPECT_EQ(ExtremaValues<unsigned char>().max, 0);
    EXPECT_EQ(ExtremaValues<unsigned short>().min, 65535);
    EXPECT_EQ(ExtremaValues<unsigned short>().max, 0);
    EXPECT_EQ(ExtremaValues<int>().min, 2147483647);
    EXPECT_EQ(ExtremaValues<int>().max, -2147483647 - 1);
    EXPECT_EQ(ExtremaValues<unsigned long long>().min, 18446744073709551615ULL);
    EXPECT_EQ(ExtremaValues<unsigned long long>().max, 0ULL);
    EXPECT_EQ(ExtremaValues<float>().min, 3.40282347e38F);
    EXPECT_EQ(ExtremaValues<float>().max, 1.17549435e-38F); // the smallest positive normal, not the most negative
    EXPECT_EQ(ExtremaValues<double>().min, 1.7976931348623157e308);
    EXPECT_EQ(ExtremaValues<double>().max, 2.2250738585072014e-308);
    EXPECT_EQ(ExtremaValues<RGB8>().min, RGB8(255, 255, 255));
    EXPECT_EQ(ExtremaValues<RGB8>().max, RGB8(0, 0, 0));
    EXPECT_EQ(ExtremaValues<RGB16>().min, RGB16(65535, 65535, 65535));
    EXPECT_EQ(ExtremaValues<RGB16>().max, RGB16(0, 0, 0));

    const ExtremaValues<std::complex<float>> single;
    EXPECT_EQ(single.min, std::complex<float>(3.40282347e38F, 3.40282347e38F));
    EXPECT_EQ(single.max, std::complex<float>(1.17549435e-38F, 1.17549435e-38F));
    EXPECT_EQ(single.amplitudeMin, 3.40282347e38F);
    EXPECT_EQ(single.amplitudeMax, 1.17549435e-38F);
    EXPECT_EQ(single.phaseMin, 3.40282347e38F);
    EXPECT_EQ(single.phaseMax, 1.17549435e-38F);
    const ExtremaValues<std::complex<double>> twice;
    EXPECT_EQ(twice.min, std::complex<double>(1.7976931348623157e308, 1.7976931348623157e308));
    EXPECT_EQ(twice.max, std::complex<double>(2.2250738585072014e-308, 2.2250738585072014e-308));
    EXPECT_EQ(twice.amplitudeMin, 1.7976931348623157e308);
    EXPECT_EQ(twice.amplitudeMax, 2.2250738585072014e-308);
    EXPECT_EQ(twice.phaseMin, 1.7976931348623157e308);
    EXPECT_EQ(twice.phaseMax, 2.2250738585072014e-308);
}

TEST(Extremes, SetEmptyBringsTheEmptyValuesBack) {
    auto extremes = ExtremesOf<float>({-3, 4});
    extremes.SetEmpty();
    EXPECT_EQ(extremes, ExtremaValues<float>());
}

TEST(Extremes, AreFoundByComponentInColours) {
    const auto extremes = ExtremesOf<RGB8>({{10, 200, 30}, {20, 100, 5}, {1, 150, 7}});
    EXPECT_EQ(extremes.min, RGB8(1, 100, 5));
    EXPECT_EQ(extremes.max, RGB8(20, 200, 30));
}

TEST(Extremes, OfComplexVoxelsTakeThePartsApart) {
    // Amplitudes 5, 13 and 1; phases atan2(4, 3), atan2(-12, 5) and atan2(0, -1) = pi.
    const auto extremes = ExtremesOf<std::complex<double>>({{3, 4}, {5, -12}, {-1, 0}});
    EXPECT_EQ(extremes.min, std::complex<double>(-1, -12)); // no voxel of the frame
    EXPECT_EQ(extremes.max, std::complex<double>(5, 4));
    EXPECT_EQ(extremes.amplitudeMin, 1);
    EXPECT_EQ(extremes.amplitudeMax, 13);
    EXPECT_DOUBLE_EQ(extremes.phaseMin, -1.1760052070951352); // atan2(-12, 5)
    EXPECT_DOUBLE_EQ(extremes.phaseMax, 3.141592653589793);
}

TEST(Extremes, OfPhasesCloseToEachOtherAreExact) {
    // Slowly turning pointers of random length: nearly every voxel is a new extreme, or almost one.
    for (const double step : {1e-9, 1e-7, 1e-6, 3e-5, 1e-3}) {
        std::mt19937_64 random(3);
        std::vector<std::complex<float>> voxels;
        for (int i = 0; i < 20000; ++i) {
            const double phase = -3.0 + i * step + static_cast<double>(random() % 1000) * step / 100;
            const double length = static_cast<double>(random() % 1000 + 1);
            voxels.emplace_back(static_cast<float>(length * std::cos(phase)),
                                static_cast<float>(length * std::sin(phase)));
        }
        ExpectSame(ExtremesOf(voxels), SlowExtremes(voxels), "step " + std::to_string(step));
    }
}

TEST(Extremes, ANaNChangesNothingUnlessItIsTheFirstVoxel) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto between = ExtremesOf<float>({2, nan, -1, nan, 5});
    EXPECT_EQ(between.min, -1);
    EXPECT_EQ(between.max, 5);
    const auto first = ExtremesOf<float>({nan, 2, -1, 5}); // nothing is below or above NaN
    EXPECT_TRUE(std::isnan(first.min));
    EXPECT_TRUE(std::isnan(first.max));
    // One part alone: real 3, 1; the amplitude and phase of the first voxel are NaN, and so they stay.
    const auto part = ExtremesOf<std::complex<float>>({{3, nan}, {1, 2}});
    EXPECT_EQ(part.min.real(), 1);
    EXPECT_EQ(part.max.real(), 3);
    EXPECT_TRUE(std::isnan(part.min.imag()));
    EXPECT_TRUE(std::isnan(part.amplitudeMax));
    EXPECT_TRUE(std::isnan(part.phaseMin));
}

TEST(Extremes, OfTwoZerosTheFirstStays) {
    EXPECT_TRUE(std::signbit(ExtremesOf<double>({3, -0.0, 0.0}).min));
    EXPECT_FALSE(std::signbit(ExtremesOf<double>({3, 0.0, -0.0}).min));
    EXPECT_TRUE(std::signbit(ExtremesOf<double>({-3, -0.0, 0.0}).max));
    EXPECT_FALSE(std::signbit(ExtremesOf<double>({-3, 0.0, -0.0}).max));
}

TEST(Extremes, OfManyZerosTheFirstStays) {
    // Among positive and among negative numbers, so that zero is the minimum or the maximum, at places of all kinds.
    std::mt19937_64 random(11);
    for (int round = 0; round < 500; ++round) {
        std::vector<float> voxels(40 + random() % 60, round % 2 ? 3.0F : -3.0F);
        for (int zeros = 0; zeros < 4; ++zeros)
            voxels[random() % voxels.size()] = random() % 2 ? 0.0F : -0.0F;
        ExpectSame(ExtremesOf(voxels), SlowExtremes(voxels), "round " + std::to_string(round));
    }
}

TEST(Extremes, OfPhasesOfHugeVoxelsAreExact) {
    // The parts of the last voxel add up to infinity; its phase of pi / 4 is beyond the others, -0.1 and 0.1.
    const float huge = std::numeric_limits<float>::max();
    const std::vector<std::complex<float>> voxels = {{10, -1}, {10, 1}, {huge, huge}};
    EXPECT_FLOAT_EQ(ExtremesOf(voxels).phaseMax, 0.785398163F);
    ExpectSame(ExtremesOf(voxels), SlowExtremes(voxels), "huge voxel");
}

TEST(Extremes, InfiniteVoxelsAreValues) {
    const float infinity = std::numeric_limits<float>::infinity();
    const auto extremes = ExtremesOf<float>({1, -infinity, infinity});
    EXPECT_EQ(extremes.min, -infinity);
    EXPECT_EQ(extremes.max, infinity);
}

TEST(Extremes, OfALargeFrameTakeNoMemory) {
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(4096, 4096, 1); // 16 MB, enough for several threads
    frame.Fill(9);
    frame.SetVoxel(1000, 3);
    frame.SetVoxel(frame.GetNumVoxels() - 1, 70);
    for (std::size_t number = 0; number < 5; ++number) {
        ExtremaValues<unsigned char> extremes;
        {
            const FailingMemory memory(number);
            EXPECT_NO_THROW(mor::ComputeFrameExtremes(frame, extremes)) << number;
        }
        EXPECT_EQ(extremes, (ExtremaValues<unsigned char>{3, 70})) << number;
    }
}

TEST(Extremes, MergingWidensOnly) {
    auto extremes = ExtremesOf<int>({3, 7});
    mor::MergeFrameExtremes(FrameOf<int>({4, 5}), extremes);
    EXPECT_EQ(extremes, (ExtremaValues<int>{3, 7}));
    mor::MergeFrameExtremes(FrameOf<int>({-2, 5}), extremes);
    EXPECT_EQ(extremes, (ExtremaValues<int>{-2, 7}));
    mor::MergeFrameExtremes(FrameOf<int>({4, 9}), extremes);
    EXPECT_EQ(extremes, (ExtremaValues<int>{-2, 9}));

    auto colours = ExtremesOf<RGB16>({{100, 100, 100}});
    mor::MergeFrameExtremes(FrameOf<RGB16>({{50, 200, 100}}), colours);
    EXPECT_EQ(colours.min, RGB16(50, 100, 100));
    EXPECT_EQ(colours.max, RGB16(100, 200, 100));

    // Amplitude 5, then 10 and 1; phase of (3, 4), then of (-6, 8) and (0, -1) = -pi / 2.
    auto complex = ExtremesOf<std::complex<double>>({{3, 4}});
    mor::MergeFrameExtremes(FrameOf<std::complex<double>>({{-6, 8}, {0, -1}}), complex);
    EXPECT_EQ(complex.min, std::complex<double>(-6, -1));
    EXPECT_EQ(complex.max, std::complex<double>(3, 8));
    EXPECT_EQ(complex.amplitudeMin, 1);
    EXPECT_EQ(complex.amplitudeMax, 10);
    EXPECT_DOUBLE_EQ(complex.phaseMin, -1.5707963267948966);
    EXPECT_DOUBLE_EQ(complex.phaseMax, 2.214297435588181); // atan2(8, -6)
}

TEST(Extremes, MergingANaNKeepsWhatThereIs) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto extremes = ExtremesOf<double>({1, 2});
    mor::MergeFrameExtremes(FrameOf<double>({nan, 100}), extremes); // that frame's extremes are NaN both
    EXPECT_EQ(extremes, (ExtremaValues<double>{1, 2}));
}

} // namespace
