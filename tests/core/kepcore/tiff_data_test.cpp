// Real files of many programs, each with what an independent reader found in it.

#include "tests/core/kepcore/tiff_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/evp.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <set>

namespace {

using kep::detail::FrameHeader;
using kep::detail::NumberKind;
using nlohmann::json;
using tifftest::Frame;

const std::string data = ZEL_TEST_DATA;

json LoadFacts() {
    std::ifstream in(data + "/expected.json");
    return in ? json::parse(in)["files"] : json();
}

std::string Hash(const std::vector<std::byte>& bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_sha256(), nullptr);
    std::string text;
    for (unsigned i = 0; i < length; ++i) {
        constexpr const char* digits = "0123456789abcdef";
        text += digits[digest[i] >> 4U];
        text += digits[digest[i] & 15U];
    }
    return text;
}

std::string NameOfType(const FrameHeader& header) {
    const std::string bits = std::to_string(8 * header.sample.bytes);
    switch (header.sample.kind) {
    case NumberKind::Unsigned:
        return "uint" + bits;
    case NumberKind::Signed:
        return "int" + bits;
    case NumberKind::Float:
        return header.halfFloat ? "float16" : "float" + bits;
    case NumberKind::ComplexSigned:
        return "complex of int" + bits;
    case NumberKind::ComplexFloat:
        return "complex" + std::to_string(16 * header.sample.bytes);
    }
    return "";
}

/// The number at a place, as a long double, which holds every one of them.
long double GetNumber(const Frame& frame, std::size_t i) {
    const std::byte* at = frame.voxels.data() + i * static_cast<std::size_t>(frame.header.sample.bytes);
    const auto load = [at](auto value) {
        std::memcpy(&value, at, sizeof value);
        return static_cast<long double>(value);
    };
    const bool isFloat = frame.header.sample.kind == NumberKind::Float;
    const bool isSigned = frame.header.sample.kind == NumberKind::Signed;
    switch (frame.header.sample.bytes) {
    case 1:
        return isSigned ? load(std::int8_t{}) : load(std::uint8_t{});
    case 2:
        return isSigned ? load(std::int16_t{}) : load(std::uint16_t{});
    case 4:
        return isFloat ? load(float{}) : isSigned ? load(std::int32_t{}) : load(std::uint32_t{});
    default:
        return isFloat ? load(double{}) : isSigned ? load(std::int64_t{}) : load(std::uint64_t{});
    }
}

/// Smallest, largest and sum of one component, finite numbers only.
struct Summary {
    long double min = std::numeric_limits<long double>::infinity();
    long double max = -std::numeric_limits<long double>::infinity();
    long double sum = 0;
    std::size_t others = 0;
};

Summary Summarise(const Frame& frame, std::size_t component) {
    const auto step = static_cast<std::size_t>(frame.header.components);
    Summary summary;
    for (std::size_t i = component; i < frame.voxels.size() / static_cast<std::size_t>(frame.header.sample.bytes);
         i += step) {
        const long double number = GetNumber(frame, i);
        if (!std::isfinite(number)) {
            ++summary.others;
            continue;
        }
        summary.min = std::min(summary.min, number);
        summary.max = std::max(summary.max, number);
        summary.sum += number;
    }
    return summary;
}

/// The facts' figure of a component, whether they name one or one for each.
long double GetFigure(const json& facts, const char* name, std::size_t component) {
    const json& figure = facts[name];
    return figure.is_array() ? figure[component].get<long double>() : figure.get<long double>();
}

/// JPEG decoders differ by a few units.
bool IsClose(long double a, long double b, long double tolerance) {
    return std::fabs(a - b) <= tolerance;
}

void ExpectSummary(const Frame& frame, const json& facts) {
    const bool isExact = facts["exact"].get<bool>();
    const long double voxels =
        static_cast<long double>(frame.header.size.x * frame.header.size.y * frame.header.size.z);
    for (std::size_t c = 0; c < static_cast<std::size_t>(frame.header.components); ++c) {
        const Summary summary = Summarise(frame, c);
        EXPECT_EQ(summary.others, facts.value("non_finite", std::size_t{0}));
        if (facts["min"].is_null())
            continue; // nothing finite
        const long double unit = isExact ? 0 : 4;
        EXPECT_TRUE(IsClose(summary.min, GetFigure(facts, "min", c), unit)) << "component " << c;
        EXPECT_TRUE(IsClose(summary.max, GetFigure(facts, "max", c), unit)) << "component " << c;
        const long double sum = GetFigure(facts, "sum", c);
        // Sums of floats depend on the order, in the last digits that the facts give.
        const long double slack = frame.header.sample.kind == NumberKind::Float ? 1e-9L * std::fabs(sum) : 0;
        EXPECT_TRUE(IsClose(summary.sum, sum, isExact ? slack : voxels)) << "component " << c << ": " << summary.sum;
    }
}

/// Pixels per micron that the rules of the reader make of the facts: resolutions for printers are none, and a flat
/// picture takes z from x.
std::array<double, 3> GetExpectedResolution(const json& facts) {
    const json& resolution = facts["resolution"];
    if (!resolution.contains("px_per_um") || resolution["px_per_um"].is_null())
        return {0, 0, 0};
    const std::string from = resolution.value("px_per_um_from", "");
    if (from == "X/YResolution with ResolutionUnit") {
        const double perInch = resolution["tag"]["x"].get<double>() * (resolution["tag"]["unit"] == "cm" ? 2.54 : 1.0);
        if (perInch <= 1200 && std::fabs(perInch - std::round(perInch)) < 0.001)
            return {0, 0, 0};
    }
    const json& given = resolution["px_per_um"];
    std::array<double, 3> expected{};
    for (std::size_t i = 0; i < 3; ++i)
        expected[i] = given[i].is_null() ? 0.0 : given[i].get<double>();
    if (given[2].is_null() && facts["z"] == 1)
        expected[2] = expected[0];
    return expected;
}

void ExpectResolution(const FrameHeader& header, const json& facts) {
    const std::array<double, 3> expected = GetExpectedResolution(facts);
    const auto res = header.resolution.GetRes();
    const std::array<float, 3> found{res.x, res.y, res.z};
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(static_cast<double>(found[i]), expected[i], 1e-6 * expected[i]) << "axis " << i;
}

/// The voxels of a file in three channels, page by page as the facts count them.
std::vector<std::byte> TakeChannelsApart(const Frame& frame, bool channelsTogether) {
    const auto bytes = static_cast<std::size_t>(frame.header.sample.bytes);
    const std::size_t slices = frame.header.size.z;
    const std::size_t pixels = frame.header.size.x * frame.header.size.y;
    std::vector<std::byte> apart(frame.voxels.size());
    for (std::size_t z = 0; z < slices; ++z)
        for (std::size_t i = 0; i < pixels; ++i)
            for (std::size_t c = 0; c < 3; ++c) {
                const std::size_t page = channelsTogether ? z * 3 + c : c * slices + z;
                std::memcpy(&apart[(page * pixels + i) * bytes], &frame.voxels[((z * pixels + i) * 3 + c) * bytes],
                            bytes);
            }
    return apart;
}

void ExpectVoxels(const std::string& name, const Frame& frame, const json& facts) {
    const std::string expected = facts["sha256_voxels"];
    const bool hasExtraSamples = facts["samples"] == 4;
    if (frame.header.componentsAreChannels) {
        EXPECT_EQ(Hash(TakeChannelsApart(frame, name.find(".ome.") == std::string::npos)), expected);
        return;
    }
    if (facts["exact"].get<bool>() && !hasExtraSamples && !frame.header.halfFloat) {
        EXPECT_EQ(Hash(frame.voxels), expected);
    }
    if (!frame.header.sample.IsComplex())
        ExpectSummary(frame, facts);
}

void ExpectGeometry(const FrameHeader& header, const json& facts) {
    const std::size_t channels = facts.value("c", std::size_t{1});
    EXPECT_EQ(header.size.x, facts["nx"]);
    EXPECT_EQ(header.size.y, facts["ny"]);
    EXPECT_EQ(header.size.z, facts["pages"].get<std::size_t>() / channels);
    EXPECT_EQ(static_cast<std::size_t>(header.components), channels == 3 || facts["samples"] >= 3 ? 3U : 1U);
    EXPECT_EQ(NameOfType(header), facts["dtype"]);
    EXPECT_EQ(header.storedBits, facts["bits"]);
    EXPECT_EQ(header.palette.size(), facts["photometric"] == "palette" ? 1U << facts["bits"].get<unsigned>() : 0U);
    EXPECT_EQ(header.fileSize, facts["bytes"]);
    EXPECT_TRUE(header.offset == kep::Vector3d<float>());
}

TEST(TiffData, EveryFileHoldsWhatOthersFoundInIt) {
    const json files = LoadFacts();
    if (files.empty())
        GTEST_SKIP() << "no test images under " << data;
    std::size_t read = 0;
    std::set<std::string> refused;
    for (const auto& [name, facts] : files.items()) {
        if (!name.starts_with("tiff/") && !name.starts_with("sequence/"))
            continue;
        SCOPED_TRACE(name);
        Frame frame;
        try {
            frame = tifftest::Read(data + "/" + name);
        } catch (const kep::IOException&) {
            refused.insert(name);
            continue;
        }
        ++read;
        ExpectGeometry(frame.header, facts);
        ExpectResolution(frame.header, facts);
        ExpectVoxels(name, frame, facts);
    }
    // Those of TheRefusedOnesSayWhy.
    EXPECT_EQ(refused, (std::set<std::string>{"tiff/pages-differ/cogeo.tif", "tiff/pages-differ/shapes_multi_size.tif",
                                              "tiff/stack-channels-times/5channel.tif",
                                              "tiff/stack-channels-times/xyzc_16bit__dna_conf_wf.tif",
                                              "tiff/stack-channels-times/xyzc_16bit__spots.tif"}));
    EXPECT_EQ(read, 107U); // 112 files in the two folders
}

TEST(TiffData, TheRefusedOnesSayWhy) {
    if (!std::filesystem::exists(data + "/tiff"))
        GTEST_SKIP() << "no test images under " << data;
    const auto failure = [](const std::string& name) { return tifftest::GetFailure(data + "/tiff/" + name); };
    EXPECT_EQ(failure("pages-differ/cogeo.tif"),
              "ReadImage(): The pages of '" + data + "/tiff/pages-differ/cogeo.tif' differ in size or type.");
    EXPECT_EQ(failure("pages-differ/shapes_multi_size.tif"),
              "ReadImage(): The pages of '" + data +
                  "/tiff/pages-differ/shapes_multi_size.tif' differ in size or type.");
    EXPECT_EQ(failure("stack-channels-times/5channel.tif"),
              "ReadImage(): '" + data +
                  "/tiff/stack-channels-times/5channel.tif' holds 5 channels; one frame holds one.");
    EXPECT_EQ(failure("stack-channels-times/xyzc_16bit__dna_conf_wf.tif"),
              "ReadImage(): '" + data +
                  "/tiff/stack-channels-times/xyzc_16bit__dna_conf_wf.tif' holds 2 channels; one frame holds one.");
}

TEST(TiffData, SlicesOneByOneAreThoseReadAtOnce) {
    if (!std::filesystem::exists(data + "/tiff"))
        GTEST_SKIP() << "no test images under " << data;
    for (const char* name :
         {"/tiff/stack-u16/cell-3d-vesicles-crop.tif", "/tiff/stack-u8-plain/dotdotdot_lzw.tif",
          "/tiff/labels-3d/Platynereis_tp7_channel1_rescaled(256x256x103)_gt.tif",
          "/tiff/stack-channels-times/multi-channel-z-series.ome.tif", "/tiff/rgb-stack/multipage_rgb.tif"}) {
        SCOPED_TRACE(name);
        const Frame whole = tifftest::Read(data + name);
        EXPECT_TRUE(tifftest::Read(data + name, 1).voxels == whole.voxels);
        EXPECT_TRUE(tifftest::Read(data + name, 2).voxels == whole.voxels);
    }
}

TEST(TiffData, WordsAndOddMeaningsStandInTheDescription) {
    if (!std::filesystem::exists(data + "/tiff"))
        GTEST_SKIP() << "no test images under " << data;
    const auto describe = [](const std::string& name) {
        return tifftest::Open(data + "/tiff/" + name)->GetHeader().description;
    };
    using ::testing::Contains;
    using ::testing::Key;
    using ::testing::Not;
    using ::testing::Pair;
    using ::testing::StartsWith;
    const auto turned = describe("orientation/g4_orientation_6.tif");
    EXPECT_THAT(turned, Contains(Pair("orientation", "6")));
    EXPECT_THAT(turned, Contains(Pair("photometric", "min-is-white")));
    const auto usual = describe("palette/palette-1c-8b.tiff");
    EXPECT_THAT(usual, Not(Contains(Key("orientation"))));
    EXPECT_THAT(usual, Not(Contains(Key("photometric"))));
    EXPECT_THAT(usual, Contains(Pair("Software", StartsWith("GraphicsMagick 1.2"))));
    EXPECT_THAT(describe("stack-u8/flybrain.tif"), Contains(Pair("ImageDescription", StartsWith("ImageJ=1.48s\n"))));
}

} // namespace
