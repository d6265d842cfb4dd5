#include "core/kepcore/convert/kep_convert.h"
#include "core/kepcore/kep_exceptions.h"
#include "tests/core/kepcore/conversion_rule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace kep::detail;
using kep::RGB_generic;
using namespace conversion_rule;

template <typename Number>
SampleType SampleOf() {
    const NumberKind kind = std::is_floating_point_v<Number> ? NumberKind::Float
                            : std::is_signed_v<Number>       ? NumberKind::Signed
                                                             : NumberKind::Unsigned;
    return {kind, sizeof(Number)};
}

template <typename Number>
FrameHeader MakeHeader(kep::Vector3d<std::size_t> size, int components = 1) {
    FrameHeader header;
    header.size = size;
    header.sample = SampleOf<Number>();
    header.components = components;
    return header;
}

template <typename Number>
FrameHeader MakeComplexHeader(kep::Vector3d<std::size_t> size) {
    FrameHeader header = MakeHeader<Number>(size);
    header.sample.kind = std::is_floating_point_v<Number> ? NumberKind::ComplexFloat : NumberKind::ComplexSigned;
    return header;
}

template <typename T>
struct Outcome {
    std::vector<T> voxels;
    std::string refusal;
};

/// Converts all voxels of a file at once.
template <typename T, typename Number>
Outcome<T> Convert(const FrameHeader& header, const std::vector<Number>& numbers) {
    const std::size_t count = header.size.x * header.size.y * header.size.z;
    Outcome<T> outcome;
    try {
        const VoxelConverter converter(header, targetType<T>, "a.tif");
        const auto voxels = std::make_unique<T[]>(count);
        converter.Convert(reinterpret_cast<const std::byte*>(numbers.data()), {0, 0, 0}, count,
                          reinterpret_cast<std::byte*>(voxels.get()));
        outcome.voxels.assign(voxels.get(), voxels.get() + count);
    } catch (const kep::IOException& refusal) {
        outcome.refusal = refusal.GetText();
    }
    return outcome;
}

/// Numbers at which something may change, as far as the type has them.
template <typename Number>
std::vector<Number> InterestingNumbers() {
    std::vector<Exact> places;
    for (const int power : {0, 1, 7, 8, 15, 16, 23, 24, 31, 32, 52, 53, 62, 63, 64, 127, 128}) {
        for (const Exact step : {-1.0L, -0.5L, 0.0L, 0.5L, 1.0L}) {
            places.push_back(std::ldexp(1.0L, power) + step);
            places.push_back(-std::ldexp(1.0L, power) + step);
        }
    }
    for (const Exact v : {0.0L, 300.7L, -1.5L, 1e20L, 1e-30L, 1e-320L, 1e300L, 0x1.fffffep127L, 0x1.fffffefffffffp127L,
                          0x1.ffffffp127L, -0x1.ffffffp127L})
        places.push_back(v);
    std::vector<Number> numbers;
    for (const Exact v : places) {
        if constexpr (std::is_floating_point_v<Number>)
            numbers.push_back(static_cast<Number>(v));
        else if (v >= static_cast<Exact>(std::numeric_limits<Number>::min()) &&
                 v <= static_cast<Exact>(std::numeric_limits<Number>::max()))
            numbers.push_back(static_cast<Number>(v));
    }
    if constexpr (std::is_floating_point_v<Number>) {
        numbers.push_back(std::numeric_limits<Number>::quiet_NaN());
        numbers.push_back(std::numeric_limits<Number>::infinity());
        numbers.push_back(-std::numeric_limits<Number>::infinity());
        numbers.push_back(static_cast<Number>(-0.0));
    }
    std::mt19937_64 random(3);
    for (int i = 0; i < 300; ++i) {
        const std::uint64_t bits = random();
        Number v{};
        std::memcpy(&v, &bits, sizeof(v));
        numbers.push_back(v);
    }
    return numbers;
}

template <typename T>
bool AreSame(T a, T b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0 || (a != a && b != b);
}

std::string ExpectedEnd(Verdict verdict, const std::string& at, const char* type) {
    if (verdict == Verdict::NotWhole)
        return " at " + at + " in 'a.tif' is not a whole number and cannot be converted to " + type + ".";
    return " at " + at + " in 'a.tif' does not fit into " + type + ".";
}

template <typename Number, typename Channel>
void CompareSingles() {
    const FrameHeader header = MakeHeader<Number>({1, 1, 1});
    for (const Number number : InterestingNumbers<Number>()) {
        Channel expected{};
        const Verdict verdict = Judge(static_cast<Exact>(number), expected);
        const Outcome<Channel> got = Convert<Channel, Number>(header, {number});
        if (verdict == Verdict::Taken) {
            ASSERT_EQ(got.refusal, "") << +number;
            ASSERT_TRUE(AreSame(got.voxels[0], expected)) << +number << " to " << targetType<Channel>.name;
        } else {
            ASSERT_TRUE(got.refusal.starts_with("ReadImage(): The value ")) << +number;
            ASSERT_TRUE(got.refusal.ends_with(ExpectedEnd(verdict, "(0, 0, 0)", targetType<Channel>.name)))
                << got.refusal;
        }
    }
}

template <typename Number>
class EveryNumber : public testing::Test {};
using Numbers = testing::Types<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t, std::int8_t, std::int16_t,
                               std::int32_t, std::int64_t, float, double>;
TYPED_TEST_SUITE(EveryNumber, Numbers, );

TYPED_TEST(EveryNumber, BecomesTheSameNumberOrIsRefused) {
    CompareSingles<TypeParam, unsigned char>();
    CompareSingles<TypeParam, unsigned short>();
    CompareSingles<TypeParam, int>();
    CompareSingles<TypeParam, unsigned long long>();
    CompareSingles<TypeParam, float>();
    CompareSingles<TypeParam, double>();
    CompareSingles<TypeParam, bool>();
}

TYPED_TEST(EveryNumber, BecomesAllTypesInLongRows) {
    // Numbers from 0 to 100 fit everywhere; 3001 of them are three blocks.
    constexpr std::size_t count = 3001;
    std::vector<TypeParam> numbers(count);
    for (std::size_t i = 0; i < count; ++i)
        numbers[i] = static_cast<TypeParam>(i * 7 % 101);
    const FrameHeader header = MakeHeader<TypeParam>({count, 1, 1});
    const auto gray = Convert<int>(header, numbers);
    const auto colour = Convert<RGB_generic<unsigned char>>(header, numbers);
    const auto deepColour = Convert<RGB_generic<unsigned short>>(header, numbers);
    const auto complex = Convert<std::complex<float>>(header, numbers);
    const auto deepComplex = Convert<std::complex<double>>(header, numbers);
    const auto binary = Convert<bool>(header, numbers);
    ASSERT_EQ(gray.voxels.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        const int v = static_cast<int>(i * 7 % 101);
        const auto byte = static_cast<unsigned char>(v);
        ASSERT_EQ(gray.voxels[i], v);
        ASSERT_EQ(colour.voxels[i], RGB_generic<unsigned char>(byte, byte, byte));
        ASSERT_EQ(deepColour.voxels[i], RGB_generic<unsigned short>(byte, byte, byte));
        ASSERT_EQ(complex.voxels[i], std::complex<float>(byte, 0.0F));
        ASSERT_EQ(deepComplex.voxels[i], std::complex<double>(byte, 0.0));
        ASSERT_EQ(binary.voxels[i], v != 0);
    }
}

TYPED_TEST(EveryNumber, OfColoursIsTakenByComponent) {
    constexpr std::size_t count = 1500;
    std::vector<TypeParam> numbers(3 * count);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = static_cast<TypeParam>(i % 101);
    const FrameHeader header = MakeHeader<TypeParam>({count, 1, 1}, 3);
    const auto colour = Convert<RGB_generic<unsigned char>>(header, numbers);
    const auto binary = Convert<bool>(header, numbers);
    ASSERT_EQ(colour.voxels.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto at = [&](std::size_t c) { return static_cast<unsigned char>((3 * i + c) % 101); };
        ASSERT_EQ(colour.voxels[i], RGB_generic<unsigned char>(at(0), at(1), at(2)));
        ASSERT_TRUE(binary.voxels[i]); // two neighbours of a zero are none
    }
    EXPECT_EQ(Convert<float>(header, numbers).refusal,
              "ReadImage(): 'a.tif' holds colour voxels, which cannot be converted to float.");
}

TYPED_TEST(EveryNumber, OfGrayColoursIsTakenOnce) {
    constexpr std::size_t count = 1500;
    std::vector<TypeParam> numbers(3 * count);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = static_cast<TypeParam>(i / 3 % 101);
    const FrameHeader header = MakeHeader<TypeParam>({count, 1, 1}, 3);
    const auto gray = Convert<unsigned short>(header, numbers);
    const auto complex = Convert<std::complex<double>>(header, numbers);
    ASSERT_EQ(gray.voxels.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(gray.voxels[i], i % 101);
        ASSERT_EQ(complex.voxels[i], std::complex<double>(static_cast<double>(i % 101), 0.0));
    }
    for (const std::size_t component : {0U, 1U, 2U}) { // of the last voxel
        std::vector<TypeParam> tinted = numbers;
        TypeParam& number = tinted[3 * (count - 1) + component];
        number = static_cast<TypeParam>(number + 1);
        EXPECT_EQ(Convert<unsigned short>(header, tinted).refusal,
                  "ReadImage(): 'a.tif' holds colour voxels, which cannot be converted to 16-bit gray.");
    }
}

TEST(Conversion, NamesThePlaceOfTheFirstVoxelThatDoesNotFit) {
    std::vector<std::uint16_t> numbers(40 * 30 * 5, 255);
    numbers[(3 * 30 + 17) * 40 + 21] = 300;
    numbers[(4 * 30 + 0) * 40 + 0] = 400;
    EXPECT_EQ((Convert<unsigned char>(MakeHeader<std::uint16_t>({40, 30, 5}), numbers).refusal),
              "ReadImage(): The value 300 at (21, 17, 3) in 'a.tif' does not fit into 8-bit gray.");
}

TEST(Conversion, NamesTheComponentThatDoesNotFit) {
    std::vector<std::int16_t> numbers(3 * 2000, 1);
    numbers[3 * 1999 + 1] = -7;
    EXPECT_EQ((Convert<RGB_generic<unsigned short>>(MakeHeader<std::int16_t>({1000, 2, 1}, 3), numbers).refusal),
              "ReadImage(): The value -7 at (999, 1, 0) in 'a.tif' does not fit into 16-bit RGB.");
}

TEST(Conversion, WritesValuesWithAllTheirDigits) {
    const auto refusal = [](auto number) {
        return Convert<int>(MakeHeader<decltype(number)>({1, 1, 1}), std::vector<decltype(number)>{number}).refusal;
    };
    const std::string start = "ReadImage(): The value ";
    const std::string fraction =
        " at (0, 0, 0) in 'a.tif' is not a whole number and cannot be converted to 32-bit integer.";
    const std::string large = " at (0, 0, 0) in 'a.tif' does not fit into 32-bit integer.";
    EXPECT_EQ(refusal(300.7F), start + "300.7" + fraction);
    EXPECT_EQ(refusal(0.1), start + "0.1" + fraction);
    EXPECT_EQ(refusal(1e20), start + "1e+20" + large);
    EXPECT_EQ(refusal(std::numeric_limits<double>::quiet_NaN()), start + "nan" + large);
    EXPECT_EQ(refusal(std::uint64_t{18446744073709551615U}), start + "18446744073709551615" + large);
}

TEST(Conversion, BoxesNameThePlaceInTheFile) {
    const FrameHeader header = MakeHeader<float>({10, 10, 10});
    const VoxelConverter converter(header, targetType<unsigned char>, "a.tif");
    const std::vector<float> row{1.0F, 2.0F, -3.0F};
    std::vector<unsigned char> to(3);
    try {
        converter.Convert(reinterpret_cast<const std::byte*>(row.data()), {6, 5, 4}, 3,
                          reinterpret_cast<std::byte*>(to.data()));
        ADD_FAILURE();
    } catch (const kep::IOException& refusal) {
        EXPECT_EQ(refusal.GetText(), "ReadImage(): The value -3 at (8, 5, 4) in 'a.tif' does not fit into 8-bit gray.");
    }
}

TEST(Conversion, OfComplexVoxelsIsByPart) {
    const std::vector<double> parts{1.5, -2.5, 0.0, 0.0, 0.0, 1e-300, std::nan(""), 0.0};
    const FrameHeader header = MakeComplexHeader<double>({4, 1, 1});
    const auto single = Convert<std::complex<float>>(header, parts);
    ASSERT_EQ(single.refusal, "");
    EXPECT_EQ(single.voxels[0], std::complex<float>(1.5F, -2.5F));
    EXPECT_EQ(single.voxels[2], std::complex<float>(0.0F, 0.0F)); // the nearest float
    EXPECT_TRUE(std::isnan(single.voxels[3].real()));
    EXPECT_EQ(Convert<bool>(header, parts).voxels, (std::vector<bool>{true, false, true, true}));
    EXPECT_EQ(
        (Convert<std::complex<float>>(MakeComplexHeader<double>({1, 1, 1}), std::vector<double>{0.0, 1e39}).refusal),
        "ReadImage(): The value 1e+39 at (0, 0, 0) in 'a.tif' does not fit into complex.");

    const std::vector<std::int16_t> whole{-3, 4, 0, 0};
    const auto fromWhole = Convert<std::complex<double>>(MakeComplexHeader<std::int16_t>({2, 1, 1}), whole);
    EXPECT_EQ(fromWhole.voxels[0], std::complex<double>(-3.0, 4.0));
    EXPECT_EQ(Convert<bool>(MakeComplexHeader<std::int16_t>({2, 1, 1}), whole).voxels,
              (std::vector<bool>{true, false}));
}

TEST(Conversion, OfComplexVoxelsToOthersIsRefused) {
    const std::vector<float> parts{1.0F, 0.0F};
    const FrameHeader header = MakeComplexHeader<float>({1, 1, 1});
    const std::string start = "ReadImage(): 'a.tif' holds complex voxels, which cannot be converted to ";
    EXPECT_EQ(Convert<unsigned char>(header, parts).refusal, start + "8-bit gray.");
    EXPECT_EQ(Convert<unsigned short>(header, parts).refusal, start + "16-bit gray.");
    EXPECT_EQ(Convert<int>(header, parts).refusal, start + "32-bit integer.");
    EXPECT_EQ(Convert<unsigned long long>(header, parts).refusal, start + "64-bit integer.");
    EXPECT_EQ(Convert<float>(header, parts).refusal, start + "float.");
    EXPECT_EQ(Convert<double>(header, parts).refusal, start + "double.");
    EXPECT_EQ(Convert<RGB_generic<unsigned char>>(header, parts).refusal, start + "RGB.");
    EXPECT_EQ(Convert<RGB_generic<unsigned short>>(header, parts).refusal, start + "16-bit RGB.");
}

TEST(Conversion, TakesThreeChannelsAsColoursOnly) {
    FrameHeader header = MakeHeader<std::uint8_t>({1, 1, 1}, 3);
    header.componentsAreChannels = true;
    const std::vector<std::uint8_t> equal{5, 5, 5};
    const std::string refusal = "ReadImage(): 'a.tif' holds 3 channels; one frame holds one.";
    EXPECT_EQ(Convert<unsigned char>(header, equal).refusal, refusal);
    EXPECT_EQ(Convert<std::complex<float>>(header, equal).refusal, refusal);
    EXPECT_EQ(Convert<bool>(header, equal).refusal, refusal);
    EXPECT_EQ(Convert<RGB_generic<unsigned short>>(header, equal).voxels[0], RGB_generic<unsigned short>(5, 5, 5));
}

TEST(Conversion, OfColourTablesGivesColoursOrIndexes) {
    FrameHeader header = MakeHeader<std::uint8_t>({3, 1, 1});
    header.palette = {{0x1234, 0x0056, 0xFFFF}, {1, 2, 3}, {0xABCD, 0, 0x8000}};
    const std::vector<std::uint8_t> indexes{2, 0, 1};
    EXPECT_EQ(Convert<RGB_generic<unsigned short>>(header, indexes).voxels,
              (std::vector<RGB_generic<unsigned short>>{{0xABCD, 0, 0x8000}, {0x1234, 0x0056, 0xFFFF}, {1, 2, 3}}));
    EXPECT_EQ(Convert<RGB_generic<unsigned char>>(header, indexes).voxels,
              (std::vector<RGB_generic<unsigned char>>{{0xAB, 0, 0x80}, {0x12, 0, 0xFF}, {0, 0, 0}}));
    EXPECT_EQ(Convert<int>(header, indexes).voxels, (std::vector<int>{2, 0, 1}));
    EXPECT_EQ(Convert<std::complex<float>>(header, indexes).voxels[0], std::complex<float>(2.0F, 0.0F));
    EXPECT_EQ(Convert<bool>(header, indexes).voxels, (std::vector<bool>{true, false, true}));
    EXPECT_EQ((Convert<RGB_generic<unsigned char>>(header, std::vector<std::uint8_t>{0, 1, 3}).refusal),
              "ReadImage(): The file 'a.tif' is damaged: a voxel lies outside its colour table");

    FrameHeader wide = MakeHeader<std::uint16_t>({1, 1, 1});
    wide.palette.resize(65536);
    wide.palette[40000] = {5, 6, 7};
    EXPECT_EQ(Convert<RGB_generic<unsigned short>>(wide, std::vector<std::uint16_t>{40000}).voxels[0],
              RGB_generic<unsigned short>(5, 6, 7));
}

TEST(Conversion, IsLeftOutWhereTheFileHoldsTheVoxelsThemselves) {
    const auto isPlain = [](const FrameHeader& header, const TargetType& type) {
        return VoxelConverter(header, type, "a.tif").IsPlainCopy();
    };
    EXPECT_TRUE(isPlain(MakeHeader<std::uint8_t>({1, 1, 1}), targetType<unsigned char>));
    EXPECT_TRUE(isPlain(MakeHeader<std::uint16_t>({1, 1, 1}), targetType<unsigned short>));
    EXPECT_TRUE(isPlain(MakeHeader<std::int32_t>({1, 1, 1}), targetType<int>));
    EXPECT_TRUE(isPlain(MakeHeader<std::uint64_t>({1, 1, 1}), targetType<unsigned long long>));
    EXPECT_TRUE(isPlain(MakeHeader<float>({1, 1, 1}), targetType<float>));
    EXPECT_TRUE(isPlain(MakeHeader<double>({1, 1, 1}), targetType<double>));
    EXPECT_TRUE(isPlain(MakeHeader<std::uint8_t>({1, 1, 1}, 3), targetType<RGB_generic<unsigned char>>));
    EXPECT_TRUE(isPlain(MakeHeader<std::uint16_t>({1, 1, 1}, 3), targetType<RGB_generic<unsigned short>>));
    EXPECT_TRUE(isPlain(MakeComplexHeader<float>({1, 1, 1}), targetType<std::complex<float>>));
    EXPECT_TRUE(isPlain(MakeComplexHeader<double>({1, 1, 1}), targetType<std::complex<double>>));
    // A byte of a file may be 255, a bool never.
    EXPECT_FALSE(isPlain(MakeHeader<std::uint8_t>({1, 1, 1}), targetType<bool>));
    EXPECT_FALSE(isPlain(MakeHeader<std::uint32_t>({1, 1, 1}), targetType<int>));
    EXPECT_FALSE(isPlain(MakeComplexHeader<std::int32_t>({1, 1, 1}), targetType<std::complex<float>>));
    EXPECT_FALSE(isPlain(MakeHeader<std::uint8_t>({1, 1, 1}, 3), targetType<unsigned char>));
}

TEST(Conversion, WritesOnlyZeroAndOneIntoTwoValuedFrames) {
    const std::vector<std::uint8_t> numbers{0, 1, 2, 255};
    const FrameHeader header = MakeHeader<std::uint8_t>({4, 1, 1});
    std::vector<unsigned char> bytes(4, 77);
    VoxelConverter(header, targetType<bool>, "a.tif")
        .Convert(reinterpret_cast<const std::byte*>(numbers.data()), {0, 0, 0}, 4,
                 reinterpret_cast<std::byte*>(bytes.data()));
    EXPECT_EQ(bytes, (std::vector<unsigned char>{0, 1, 1, 1}));
}

} // namespace
