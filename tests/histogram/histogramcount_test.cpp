#include "model/zel_histogramcount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace {

using zel::Histogram;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

template <typename T>
Histogram<T> Make(T min, T max, std::size_t n) {
    Histogram<T> histogram;
    histogram.Init(min, max, n);
    return histogram;
}

template <typename T>
std::vector<std::size_t> Counters(const Histogram<T>& histogram) {
    return {histogram.begin(), histogram.end()};
}

/// The slow twin: the rule of the bin, voxel by voxel, beside the counting under test. Both add to what was counted.
template <typename T>
void ExpectTwins(const std::vector<T>& values, std::size_t stride, Histogram<T> histogram) {
    histogram[0] = 17;
    histogram[histogram.size() - 1] += 3;
    Histogram<T> twin = histogram;
    const std::size_t number = values.size() / stride;
    for (std::size_t i = 0; i < number; ++i)
        ++twin[twin.GetBinPos(values[i * stride])];
    zel::CountValues(values.data(), number, stride, histogram);
    ASSERT_EQ(Counters(histogram), Counters(twin))
        << number << " values, stride " << stride << ", " << histogram.size() << " bins from "
        << +histogram.GetLeftCenter() << " to " << +histogram.GetRightCenter();
}

/// Short and long inputs around the lengths where the counting takes another way, with a stride or without.
template <typename T, typename MakeValue>
void ExpectTwins(const std::vector<Histogram<T>>& histograms, const std::vector<std::size_t>& numbers,
                 MakeValue&& makeValue) {
    for (const std::size_t number : numbers) {
        for (const std::size_t stride : {1U, 3U}) {
            std::vector<T> values(number * stride);
            for (T& value : values)
                value = makeValue();
            for (const auto& histogram : histograms)
                ASSERT_NO_FATAL_FAILURE(ExpectTwins(values, stride, histogram));
        }
    }
}

TEST(HistogramCount, OfBytesEqualsItsTwin) {
    std::mt19937 random(1);
    ExpectTwins<unsigned char>({Make<unsigned char>(0, 255, 256), Make<unsigned char>(10, 200, 7),
                                Make<unsigned char>(3, 3, 1), Make<unsigned char>(100, 50, 5)},
                               {0, 1, 2, 3, 4, 5, 255, 256, 257, 1000, 4099},
                               [&] { return static_cast<unsigned char>(random()); });
}

TEST(HistogramCount, OfWordsEqualsItsTwin) {
    std::mt19937 random(2);
    ExpectTwins<unsigned short>(
        {Make<unsigned short>(0, 65535, 65536), Make<unsigned short>(500, 60000, 256), Make<unsigned short>(9, 9, 3)},
        {0, 1, 5, 65535, 65536, 65537, 100003}, [&] { return static_cast<unsigned short>(random()); });
}

TEST(HistogramCount, OfBackgroundEqualsItsTwin) {
    std::mt19937 random(3);
    std::vector<unsigned short> dark(300001);
    for (std::size_t i = 0; i < dark.size(); i += 1 + random() % 19)
        dark[i] = static_cast<unsigned short>(random() % 4096);
    ExpectTwins(dark, 1, Make<unsigned short>(0, 65535, 65536));
    ExpectTwins(std::vector<unsigned short>(300007, 65535), 1, Make<unsigned short>(0, 65535, 65536));
    ExpectTwins(std::vector<unsigned char>(300007, 3), 1, Make<unsigned char>(0, 255, 256));
    ExpectTwins(std::vector<float>(300007, 0.5F), 1, Make(0.0F, 1.0F, 256));
}

TEST(HistogramCount, OfIntegersEqualsItsTwin) {
    constexpr int low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    std::mt19937 random(4);
    ExpectTwins<int>({Make(-500, 499, 1000), Make(-1000, 1000, 50), Make(low, high, 1024), Make(-3, -3, 1),
                      Make(-300, 300, 70000), Make(7, -7, 5)},
                     {0, 1, 3, 49, 1023, 1024, 1025, 5000, 70001},
                     [&] { return static_cast<int>(random() % 1400) - 700; });
    ExpectTwins<int>({Make(low, high, 1000), Make(0, high, 65536), Make(low, 0, 65537)}, {1, 999, 65535, 70000},
                     [&] { return static_cast<int>(random()); });
}

TEST(HistogramCount, OfIntegersInManyBinsEqualsItsTwin) {
    std::mt19937 random(12);
    std::uniform_int_distribution<int> value(-400'000, 400'000);
    const std::vector<Histogram<int>> histograms = {Make(-200'000, 199'999, 400'000), Make(0, 65'536, 65'537),
                                                    Make(0, 65'535, 65'536), Make(-300'000, 300'000, 100'000)};
    ASSERT_NO_FATAL_FAILURE(ExpectTwins<int>(histograms, {300'000, 1'600'003},
                                             [&] { return value(random); })); // below and above what tables are for
}

TEST(HistogramCount, OfFloatsEqualsItsTwin) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> uniform(-120.0F, 130.0F);
    ExpectTwins<float>({Make(-100.0F, 100.0F, 256), Make(-120.0F, 130.0F, 1), Make(-100.0F, 100.0F, 2),
                        Make(0.0F, 1e-3F, 1000), Make(-120.0F, 130.0F, 65536), Make(-120.0F, 130.0F, 65537),
                        Make(100.0F, -100.0F, 16), Make(50.0F, 50.0F, 256)},
                       {0, 1, 3, 255, 256, 257, 1023, 1025, 4097, 70001}, [&] { return uniform(random); });
}

TEST(HistogramCount, OfFloatsOnTheCentersEqualsItsTwin) {
    // Where a value lies on a center, the last bit of the division decides about its bin.
    for (const float max : {1.0F, 0.1F, 255.0F, 3.3333333F, 1e-40F, 3e38F}) {
        for (const std::size_t n : {3U, 50U, 256U, 1000U}) {
            const auto histogram = Make(-max, max, n);
            std::vector<float> values;
            for (std::size_t i = 0; i < n; ++i) {
                const float center = histogram.GetBinCenter(i);
                values.insert(values.end(),
                              {center, std::nextafter(center, infinity), std::nextafter(center, -infinity)});
            }
            ASSERT_NO_FATAL_FAILURE(ExpectTwins(values, 1, histogram));
            const std::vector<float> once = values;
            for (int more = 0; more < 3; ++more) // enough for the way that many values take
                values.insert(values.end(), once.begin(), once.end());
            ASSERT_NO_FATAL_FAILURE(ExpectTwins(values, 1, histogram));
        }
    }
}

TEST(HistogramCount, OfOddFloatsEqualsItsTwin) {
    const std::vector<float> odd{nan, -infinity, infinity, -3e38F, 3e38F, 0, -0.0F, 1e-45F, 1, -1};
    std::mt19937 random(6);
    std::vector<Histogram<float>> histograms;
    for (const float low : odd) {
        for (const float high : odd)
            histograms.push_back(Make(low, high, 256));
    }
    ExpectTwins<float>(histograms, {1, 999, 1029}, [&] { return odd[random() % odd.size()]; });
}

TEST(HistogramCount, InTwoThreadsEqualsItsTwin) {
    std::mt19937 random(9);
    std::vector<unsigned short> words(1500011);
    std::vector<int> integers(words.size());
    std::vector<float> floats(words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<unsigned short>(random());
        integers[i] = static_cast<int>(random() % 5000) - 2000;
        floats[i] = static_cast<float>(words[i]) / 7.0F - 900.0F;
    }
    for (const std::size_t stride : {1U, 3U}) { // either way more than half a million
        ExpectTwins(words, stride, Make<unsigned short>(0, 65535, 65536));
        ExpectTwins(integers, stride, Make(-1500, 2500, 4001));
        ExpectTwins(floats, stride, Make(-900.0F, 8000.0F, 256));
    }
}

TEST(HistogramCount, OfWholeFloatsEqualsItsTwin) {
    // Bytes kept as floats: every value lies on a center.
    std::mt19937 random(10);
    ExpectTwins<float>({Make(0.0F, 255.0F, 256), Make(-255.0F, 510.0F, 256)}, {1023, 1024, 5000},
                       [&] { return static_cast<float>(random() % 256); });
}

TEST(HistogramCount, AddsAllVoxelsOfAFrame) {
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(3, 1, 1);
    frame.SetVoxel(2, 255);
    auto histogram = Make<unsigned char>(0, 255, 256);
    zel::CountFrame(frame, histogram);
    zel::CountFrame(frame, histogram);
    EXPECT_EQ(histogram[0], 4U);
    EXPECT_EQ(histogram[255], 2U);
    EXPECT_EQ(histogram.GetSum(), 6U);
}

TEST(HistogramCount, AddsNothingOfAFrameWithoutVoxels) {
    auto gray = Make<unsigned short>(0, 65535, 65536);
    zel::CountFrame(kep::Image3d<unsigned short>(), gray);
    EXPECT_EQ(gray.GetSum(), 0U);
    auto red = Make<unsigned char>(0, 255, 256);
    zel::CountFrame(kep::Image3d<kep::RGB_generic<unsigned char>>(), 0, red);
    EXPECT_EQ(red.GetSum(), 0U);
    zel::ComplexHistograms parts;
    for (auto& part : parts)
        part.Init(0, 1, 2);
    zel::CountFrame(kep::Image3d<std::complex<float>>(), parts);
    for (const auto& part : parts)
        EXPECT_EQ(part.GetSum(), 0U);
}

TEST(HistogramCount, TakesEachComponentOfAColourApart) {
    std::mt19937 random(7);
    kep::Image3d<kep::RGB_generic<unsigned short>> frame;
    frame.MakeRoom(37, 53, 41); // 80401 voxels
    for (auto& voxel : frame)
        voxel = {static_cast<unsigned short>(random()), static_cast<unsigned short>(random() % 4096),
                 static_cast<unsigned short>(random() % 7)};
    for (int channel = 0; channel < 3; ++channel) {
        auto histogram = Make<unsigned short>(0, 65535, 65536);
        auto twin = histogram;
        for (const auto& voxel : frame)
            ++twin[voxel.GetComponent(channel)];
        zel::CountFrame(frame, channel, histogram);
        EXPECT_EQ(Counters(histogram), Counters(twin)) << channel;
    }
}

TEST(HistogramCount, TakesPartsPhaseAndAmplitudeOfComplexVoxels) {
    std::mt19937 random(8);
    std::uniform_real_distribution<float> uniform(-10.0F, 10.0F);
    kep::Image3d<std::complex<float>> frame;
    frame.MakeRoom(101, 83, 1); // 8383 voxels, more than two blocks
    for (auto& voxel : frame)
        voxel = {uniform(random), uniform(random)};
    frame.SetVoxel(5, {nan, 1});
    frame.SetVoxel(6, {-0.0F, -0.0F});
    frame.SetVoxel(7, {infinity, -infinity});
    zel::ComplexHistograms histograms;
    histograms[0].Init(-10, 10, 256);
    histograms[1].Init(-5, 5, 100); // values beyond fall in the end bins
    histograms[2].Init(-3.1415927F, 3.1415927F, 256);
    histograms[3].Init(0, 15, 256);
    auto twins = histograms;
    for (const auto& voxel : frame) {
        const float re = voxel.real(), im = voxel.imag();
        ++twins[0].GetBin(re);
        ++twins[1].GetBin(im);
        ++twins[2].GetBin(std::atan2(im, re));
        ++twins[3].GetBin(std::sqrt(re * re + im * im));
    }
    zel::CountFrame(frame, histograms);
    for (std::size_t c = 0; c < 4; ++c)
        EXPECT_EQ(Counters(histograms[c]), Counters(twins[c])) << c;
}

TEST(HistogramCount, OfManyBytesEqualsItsTwin) {
    std::mt19937 random(21);
    for (const std::size_t number : {999999U, 1000000U, 1000001U, 1500003U}) {
        std::vector<unsigned char> values(number + 1);
        for (unsigned char& value : values)
            value = static_cast<unsigned char>(random());
        std::fill_n(values.begin() + 5000, 300000, values[0]); // background
        ExpectTwins(values, 1, Make<unsigned char>(0, 255, 256));
        values.erase(values.begin()); // the same at an odd place
        ExpectTwins(values, 1, Make<unsigned char>(0, 255, 256));
        ExpectTwins(values, 1, Make<unsigned char>(10, 209, 100));
    }
}

template <typename C>
void ExpectColoursLikeChannels(std::size_t number, std::size_t bins) {
    std::mt19937 random(static_cast<unsigned>(number));
    std::vector<kep::RGB_generic<C>> colours(number);
    for (auto& colour : colours)
        colour = {static_cast<C>(random()), static_cast<C>(random() % 100), static_cast<C>(random() % 7)};
    const auto empty = Make<C>(0, std::numeric_limits<C>::max(), bins);
    std::array histograms{empty, empty, empty};
    std::array twins{empty, empty, empty};
    for (int round = 0; round < 2; ++round) // it adds to what was counted
        zel::CountValues<C>(colours.data(), number, {&histograms[0], &histograms[1], &histograms[2]});
    for (const auto& colour : colours)
        for (int channel = 0; channel < 3; ++channel)
            twins[static_cast<std::size_t>(channel)].GetBin(colour.GetComponent(channel)) += 2;
    for (std::size_t channel = 0; channel < 3; ++channel)
        EXPECT_EQ(Counters(histograms[channel]), Counters(twins[channel])) << number << " " << channel;
}

TEST(HistogramCount, TakesTheThreeComponentsOfColoursInOnePass) {
    for (const std::size_t number : {0U, 1U, 255U, 256U, 65535U, 65536U, 65537U, 999999U, 1000000U, 1000001U}) {
        ExpectColoursLikeChannels<unsigned char>(number, 256);
        ExpectColoursLikeChannels<unsigned short>(number, 65536);
    }
    ExpectColoursLikeChannels<unsigned char>(1000003, 100);
    ExpectColoursLikeChannels<unsigned short>(700001, 1000);
}

/// Complex values counted beside each of their parts by itself.
void ExpectPartsLikeTwins(const std::vector<std::complex<float>>& values, const zel::ComplexHistograms& empty) {
    zel::ComplexHistograms histograms = empty;
    zel::ComplexHistograms twins = empty;
    for (const auto& value : values) {
        const float re = value.real(), im = value.imag();
        ++twins[0].GetBin(re);
        ++twins[1].GetBin(im);
        ++twins[2].GetBin(std::atan2(im, re));
        ++twins[3].GetBin(std::sqrt(re * re + im * im));
    }
    zel::CountValues(values.data(), values.size(), histograms);
    for (std::size_t c = 0; c < 4; ++c)
        EXPECT_EQ(Counters(histograms[c]), Counters(twins[c])) << c << " " << empty[c].size();
}

zel::ComplexHistograms MakeParts(std::size_t bins, float greatest) {
    constexpr float pi = 3.1415927F;
    return {Make(-greatest, greatest, bins), Make(-greatest, greatest, bins), Make(-pi, pi, bins),
            Make(0.0F, 1.4143F * greatest, bins)};
}

TEST(HistogramCount, TakesPhasesThatLieBetweenTwoBins) {
    // Whole numbers, so that phases are multiples of a quarter and an eighth turn and others that repeat; all signs,
    // also of zero, and nothing but one part.
    std::vector<std::complex<float>> values;
    for (int re = -300; re <= 300; ++re)
        for (int im = -300; im <= 300; ++im)
            values.emplace_back(static_cast<float>(re), static_cast<float>(im));
    for (const float zero : {0.0F, -0.0F})
        for (const float other : {0.0F, -0.0F, 1.0F, -1.0F, 1e-40F, -1e-40F, 3e38F, -3e38F, infinity, -infinity, nan}) {
            values.emplace_back(zero, other);
            values.emplace_back(other, zero);
            values.emplace_back(other, other);
            values.emplace_back(other, -other);
        }
    for (const std::size_t bins : {2U, 3U, 256U, 257U, 1024U, 1025U, 65536U})
        ExpectPartsLikeTwins(values, MakeParts(bins, 300.0F));
}

TEST(HistogramCount, TakesComplexVoxelsInThreads) {
    std::mt19937 random(22);
    std::normal_distribution<float> normal(0.0F, 30.0F);
    std::vector<std::complex<float>> values(1200007);
    for (auto& value : values)
        value = {normal(random), normal(random)};
    ExpectPartsLikeTwins(values, MakeParts(256, 100.0F));
    ExpectPartsLikeTwins(values, MakeParts(65536, 100.0F));
    zel::ComplexHistograms some = MakeParts(4096, 100.0F);
    some[1].Init(5.0F, 5.0F, 1); // constant parts have one bin, others are counted by themselves
    some[2].Init(-infinity, infinity, 256);
    ExpectPartsLikeTwins(values, some);
}

} // namespace
