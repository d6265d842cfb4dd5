// How images are mapped to colours when they open.

#include "host/firstmapping.h"
#include "image/zel_framereading.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_graymapping.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/support/frames.h"

#include <gtest/gtest.h>

#include <complex>
#include <numeric>

namespace zelviewer {
namespace {

using Colour = kep::RGB_generic<unsigned short>;
using Complex = std::complex<float>;

/// Modes of a module, as GetStretchMode numbers them.
constexpr int none = 0, linear = 1, percentil = 2;

template <typename T>
mor::Image4d<T> ImageOf(const std::vector<T>& voxels) {
    mor::Image4d<T> image;
    mor::AppendFrame<T>(image, std::make_unique<kep::Image3d<T>>(FrameOf(voxels)), "row");
    return image;
}

/// 0, 1, 2, ... up to last.
template <typename T>
std::vector<T> CountTo(int last) {
    std::vector<T> voxels;
    for (int i = 0; i <= last; ++i)
        voxels.push_back(static_cast<T>(i));
    return voxels;
}

template <typename T>
int ModeOf(const std::vector<T>& voxels, std::optional<Stretch> stretch = std::nullopt) {
    return MakeMapping(ImageOf(voxels), {stretch, {}})->GetStretchMode();
}

/// The levels of the voxels on the screen.
template <typename T>
std::vector<int> GraysOf(const std::vector<T>& voxels) {
    const auto module = MakeMapping(ImageOf(voxels), {});
    zel::ColourBuffer buffer(static_cast<int>(voxels.size()), 1);
    module->Map(voxels.data(), buffer);
    std::vector<int> grays;
    for (std::size_t i = 0; i < voxels.size(); ++i)
        grays.push_back(buffer.data[i].red);
    return grays;
}

TEST(FirstStretch, IsPercentilForMoreThan8Bits) {
    for (const DisplayType type : {DisplayType::Gray16, DisplayType::Int, DisplayType::Float, DisplayType::RGB16})
        EXPECT_EQ(FirstStretch(type), Stretch::Percentil) << NameOf(type);
    for (const DisplayType type : {DisplayType::Gray8, DisplayType::RGB8, DisplayType::Complex})
        EXPECT_EQ(FirstStretch(type), Stretch::None) << NameOf(type);
}

TEST(FirstMapping, StretchesAsSuitsTheTypeOrAsTold) {
    EXPECT_EQ(ModeOf(CountTo<unsigned char>(200)), none);
    EXPECT_EQ(ModeOf(CountTo<unsigned short>(200)), percentil);
    EXPECT_EQ(ModeOf(CountTo<int>(200)), percentil);
    EXPECT_EQ(ModeOf(CountTo<float>(200)), percentil);
    EXPECT_EQ(ModeOf<Complex>({{1, 2}, {3, 4}}), none);
    EXPECT_EQ(ModeOf<Colour>({{1, 2, 3}, {4, 5, 600}}), percentil);
    EXPECT_EQ(ModeOf(CountTo<unsigned short>(200), Stretch::None), none);
    EXPECT_EQ(ModeOf(CountTo<unsigned char>(200), Stretch::Linear), linear);
}

TEST(FirstMapping, AFewBrightDotsInTheDarkKeepTheirLevels) {
    // Less than one in a thousand voxels is not 0: without them nothing is left but black and white.
    std::vector<unsigned short> dots(10'000, 0);
    dots[7] = 100;
    dots[8] = 200;
    EXPECT_EQ(ModeOf(dots), linear);
    EXPECT_EQ(GraysOf(dots)[7], 128);
    EXPECT_EQ(GraysOf(dots)[8], 255);
    EXPECT_EQ(ModeOf(dots, Stretch::Percentil), percentil) << "that was asked for";
    std::vector<float> floats(10'000, 0.0F);
    floats[3] = -5.0F;
    EXPECT_EQ(ModeOf(floats), linear);
    std::vector<Colour> colours(10'000, Colour{0, 0, 0});
    colours[3] = {0, 300, 0};
    EXPECT_EQ(ModeOf(colours), linear);
}

TEST(FirstMapping, TheRangeOf16BitsEndsWithTheBitsThatOccur) {
    const auto rangeOf = [](std::vector<unsigned short> voxels, std::optional<Stretch> stretch) {
        const auto module = MakeMapping(ImageOf(voxels), {stretch, {}});
        const auto& gray = dynamic_cast<const zel::zel_GrayMappingModule<unsigned short>&>(*module);
        EXPECT_EQ(gray.GetRangeMin(), 0);
        EXPECT_EQ(gray.GetHistograms().Get().size(), 65536U) << "the user can widen it again";
        return gray.GetRangeMax();
    };
    EXPECT_EQ(rangeOf({100, 2048}, {}), 4095);
    EXPECT_EQ(rangeOf({100, 4095}, {}), 4095);
    EXPECT_EQ(rangeOf({100, 4096}, Stretch::Linear), 8191);
    EXPECT_EQ(rangeOf({100, 65535}, {}), 65535);
    EXPECT_EQ(rangeOf({100, 200}, Stretch::None), 65535) << "all as it is";
    const auto colours = MakeMapping(ImageOf<Colour>({{1, 2, 3}, {1000, 5, 4}}), {});
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_EQ(dynamic_cast<const zel::zel_RGBMappingModule<unsigned short>&>(*colours).GetRangeMax(channel), 1023);
}

TEST(FirstMapping, ImagesOfOneValueShowItAsAGray) {
    EXPECT_EQ(GraysOf<unsigned char>({7, 7}), (std::vector<int>{7, 7}));
    EXPECT_EQ(GraysOf<unsigned short>({8, 8}), (std::vector<int>{136, 136})); // of 0 to 15
    EXPECT_EQ(GraysOf<int>({5, 5}), (std::vector<int>{255, 255}));            // of 0 to 5
    EXPECT_EQ(GraysOf<int>({-5, -5}), (std::vector<int>{0, 0}));              // of -5 to 0
    EXPECT_EQ(GraysOf<int>({0, 0}), (std::vector<int>{0, 0}));
    EXPECT_EQ(GraysOf<int>({2'147'483'647, 2'147'483'647}), (std::vector<int>{255, 255}));
    EXPECT_EQ(GraysOf<float>({0.5F, 0.5F}), (std::vector<int>{255, 255}));
    EXPECT_EQ(GraysOf<Complex>({{0, 1}, {0, 1}}), (std::vector<int>{0, 0}));          // the real part
    EXPECT_EQ(GraysOf<Colour>({{7, 8, 9}, {7, 8, 9}}), (std::vector<int>{119, 119})); // 7 of 0 to 15
}

TEST(FirstMapping, ImagesOfOneValueAreSpokenOf) {
    EXPECT_EQ(DescribeConstant(ImageOf<unsigned char>({5, 5})), "All voxels have the value 5.");
    EXPECT_EQ(DescribeConstant(ImageOf<int>({-7, -7})), "All voxels have the value -7.");
    EXPECT_EQ(DescribeConstant(ImageOf<float>({0.5F, 0.5F})), "All voxels have the value 0.5.");
    EXPECT_EQ(DescribeConstant(ImageOf<Complex>({{1, 2}, {1, 2}})), "All voxels have the value 1 + 2i.");
    EXPECT_EQ(DescribeConstant(ImageOf<Colour>({{1, 2, 300}, {1, 2, 300}})), "All voxels have the value (1, 2, 300).");
    EXPECT_EQ(DescribeConstant(ImageOf<int>({5, 6})), std::nullopt);
    EXPECT_EQ(DescribeConstant(ImageOf<Colour>({{1, 2, 3}, {1, 2, 4}})), std::nullopt);
}

TEST(FirstMapping, IntegersFarApartShareBins) {
    const auto module = MakeMapping(ImageOf<int>({-2'147'483'647, 2'147'483'647}), {});
    EXPECT_EQ(module->GetHistograms().Get().size(), std::size_t{1} << 20);
    EXPECT_EQ(MakeMapping(ImageOf<int>({3, 10}), {})->GetHistograms().Get().size(), 8U);
}

TEST(FirstMapping, APartThatDoesNotVaryIsRefused) {
    const auto image = ImageOf<Complex>({{1, 2}, {1, 3}});
    EXPECT_THROW(MakeMapping(image, {{}, zel::Real}), kep::InternalException);
    const auto shown = MakeMapping(image, {{}, zel::Phase});
    EXPECT_EQ(dynamic_cast<const zel::zel_ComplexMappingModule<float>&>(*shown).GetShowMode(), zel::Phase);
}

TEST(FirstMapping, CountingIsToldAndCanBeStopped) {
    // 5 million voxels in blocks of 2 097 152.
    mor::Image4d<unsigned char> image;
    image.MakeRoom(2500, 1000, 2, 1);
    for (std::size_t i = 0; i < image.GetFrameSize(); ++i)
        image.SetVoxel(i, 0, static_cast<unsigned char>(i % 3));
    std::vector<double> told;
    const auto module = MakeMapping(image, {{}, {}, [&told](double done) {
                                                told.push_back(done);
                                                return true;
                                            }});
    ASSERT_EQ(told.size(), 3U);
    EXPECT_DOUBLE_EQ(told[0], 2097152.0 / 5e6);
    EXPECT_DOUBLE_EQ(told[2], 1.0);
    const auto& histogram = module->GetHistograms().Get();
    EXPECT_EQ(histogram[0] + histogram[1] + histogram[2], 5'000'000U);
    int calls = 0;
    EXPECT_THROW(MakeMapping(image, {{}, {}, [&calls](double) { return ++calls < 2; }}), kep::ReadingStopped);
    EXPECT_EQ(calls, 2);
}

} // namespace
} // namespace zelviewer
