#include "host/linearmapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace zelviewer {
namespace {

using Colour = kep::RGB_generic<unsigned char>;

template <typename T>
std::vector<Colour> Map(const mor::ExtremaValues<T>& extremes, const std::vector<T>& voxels) {
    const LinearMapper<T> mapper(extremes);
    zel::ColourBuffer buffer(static_cast<int>(voxels.size()), 1);
    mapper.Map(voxels.data(), buffer);
    return {buffer.data, buffer.data + voxels.size()};
}

Colour Gray(int level) {
    const auto l = static_cast<unsigned char>(level);
    return {l, l, l};
}

template <typename T>
mor::ExtremaValues<T> Between(T min, T max) {
    mor::ExtremaValues<T> extremes;
    extremes.min = min;
    extremes.max = max;
    return extremes;
}

using testing::ElementsAre;

TEST(LinearMapper, GraysRunFromTheSmallestToTheLargestValue) {
    // 100 to 200: 110 is 25.5 and 150 is 127.5, both rounded up; outside is held.
    EXPECT_THAT(Map<unsigned char>(Between<unsigned char>(100, 200), {0, 100, 110, 150, 200, 255}),
                ElementsAre(Gray(0), Gray(0), Gray(26), Gray(128), Gray(255), Gray(255)));
    EXPECT_THAT(Map<unsigned short>(Between<unsigned short>(0, 65535), {0, 257, 65535}),
                ElementsAre(Gray(0), Gray(1), Gray(255)));
    EXPECT_THAT(Map<float>(Between(-1.0F, 1.0F), {-2.0F, -1.0F, 0.0F, 1.0F, 9.0F}),
                ElementsAre(Gray(0), Gray(0), Gray(128), Gray(255), Gray(255)));
}

TEST(LinearMapper, TheWholeRangeOfIntDoesNotOverflow) {
    constexpr int low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    EXPECT_THAT(Map<int>(Between(low, high), {low, 0, high}), ElementsAre(Gray(0), Gray(128), Gray(255)));
}

TEST(LinearMapper, TheWholeRangeOfFloatDoesNotOverflow) {
    constexpr float high = std::numeric_limits<float>::max();
    EXPECT_THAT(Map<float>(Between(-high, high), {-high, 0.0F, high, std::numeric_limits<float>::quiet_NaN()}),
                ElementsAre(Gray(0), Gray(128), Gray(255), Gray(0)));
}

TEST(LinearMapper, AConstantImageIsMiddleGray) {
    EXPECT_THAT(Map<unsigned char>(Between<unsigned char>(7, 7), {6, 7, 8}),
                ElementsAre(Gray(0), Gray(128), Gray(255)));
    EXPECT_THAT(Map<float>(Between(0.5F, 0.5F), {0.0F, 0.5F}), ElementsAre(Gray(0), Gray(128)));
}

TEST(LinearMapper, ColoursStayOrGiveTheirHighByte) {
    using RGB16 = kep::RGB_generic<unsigned short>;
    EXPECT_THAT(Map<Colour>(Between(Colour(9, 9, 9), Colour(9, 9, 9)), {{1, 2, 3}, {255, 0, 128}}),
                ElementsAre(Colour(1, 2, 3), Colour(255, 0, 128)));
    EXPECT_THAT(Map<RGB16>(Between(RGB16(0, 0, 0), RGB16(1, 1, 1)), {{0x00FF, 0x0100, 0xFFFF}}),
                ElementsAre(Colour(0, 1, 255)));
}

TEST(LinearMapper, ComplexVoxelsShowTheirAmplitude) {
    mor::ExtremaValues<std::complex<float>> extremes;
    extremes.amplitudeMin = 0.0F;
    extremes.amplitudeMax = 10.0F;
    // |3 - 4i| = 5, the middle; |-6 + 8i| = 10.
    EXPECT_THAT(Map<std::complex<float>>(extremes, {{0, 0}, {3, -4}, {-6, 8}}),
                ElementsAre(Gray(0), Gray(128), Gray(255)));
}

} // namespace
} // namespace zelviewer
