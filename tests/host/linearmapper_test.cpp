#include "host/linearmapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
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

TEST(LinearMapper, ColoursStayOrGiveTheirHighByte) {
    using RGB16 = kep::RGB_generic<unsigned short>;
    EXPECT_THAT(Map<Colour>(Between(Colour(9, 9, 9), Colour(9, 9, 9)), {{1, 2, 3}, {255, 0, 128}}),
                ElementsAre(Colour(1, 2, 3), Colour(255, 0, 128)));
    EXPECT_THAT(Map<RGB16>(Between(RGB16(0, 0, 0), RGB16(1, 1, 1)), {{0x00FF, 0x0100, 0xFFFF}}),
                ElementsAre(Colour(0, 1, 255)));
}

mor::ExtremaValues<std::complex<float>> Amplitudes(float min, float max) {
    mor::ExtremaValues<std::complex<float>> extremes;
    extremes.amplitudeMin = min;
    extremes.amplitudeMax = max;
    return extremes;
}

TEST(LinearMapper, ComplexVoxelsShowTheirAmplitude) {
    // |3 - 4i| = 5, the middle; |-6 + 8i| = 10.
    EXPECT_THAT(Map<std::complex<float>>(Amplitudes(0.0F, 10.0F), {{0, 0}, {3, -4}, {-6, 8}}),
                ElementsAre(Gray(0), Gray(128), Gray(255)));
    // From 100 to 200: 110 is 25.5 and rounded up; outside is held, and what is not a number is black.
    EXPECT_THAT(Map<std::complex<float>>(Amplitudes(100.0F, 200.0F),
                                         {{0, 99}, {-100, 0}, {110, 0}, {0, 200}, {255, 0}, {NAN, 0}}),
                ElementsAre(Gray(0), Gray(0), Gray(26), Gray(255), Gray(255), Gray(0)));
}

TEST(LinearMapper, TheLargestAmplitudeDoesNotOverflow) {
    constexpr float high = std::numeric_limits<float>::max();
    EXPECT_THAT(Map<std::complex<float>>(Amplitudes(0.0F, high), {{0, 0}, {high / 2, 0}, {0, high}}),
                ElementsAre(Gray(0), Gray(128), Gray(255)));
}

TEST(LinearMapper, AConstantAmplitudeIsMiddleGray) {
    EXPECT_THAT(Map<std::complex<float>>(Amplitudes(5.0F, 5.0F), {{4, 0}, {3, -4}, {6, 0}}),
                ElementsAre(Gray(0), Gray(128), Gray(255)));
}

} // namespace
} // namespace zelviewer
