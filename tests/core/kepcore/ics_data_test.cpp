// Real files of other programs, with what a reader must find in each.

#include "tests/core/kepcore/ics_support.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/sha.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ics_test {
namespace {

std::string Sha256(const std::string& bytes) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest.data());
    std::string text;
    for (const unsigned char byte : digest) {
        text += "0123456789abcdef"[byte >> 4U];
        text += "0123456789abcdef"[byte & 15U];
    }
    return text;
}

template <typename T>
void CheckValues(const Frame& frame, const nlohmann::json& expected) {
    std::vector<T> voxels(frame.voxels.size() / sizeof(T));
    std::memcpy(voxels.data(), frame.voxels.data(), frame.voxels.size());
    double least = std::numeric_limits<double>::infinity();
    double most = -least;
    double sum = 0.0;
    for (const T voxel : voxels) {
        least = std::min(least, static_cast<double>(voxel));
        most = std::max(most, static_cast<double>(voxel));
        sum += static_cast<double>(voxel);
    }
    EXPECT_EQ(expected.at("min").get<double>(), least);
    EXPECT_EQ(expected.at("max").get<double>(), most);
    EXPECT_NEAR(expected.at("sum").get<double>(), sum, 1e-9 * std::fabs(sum));
}

void CheckFile(const std::string& name, const nlohmann::json& expected) {
    SCOPED_TRACE(name);
    const Frame frame = Read(std::string(ZEL_TEST_DATA) + "/" + name);
    EXPECT_EQ(expected.at("nx").get<std::size_t>(), frame.header.size.x);
    EXPECT_EQ(expected.at("ny").get<std::size_t>(), frame.header.size.y);
    EXPECT_EQ(expected.at("nz").get<std::size_t>(), frame.header.size.z);
    EXPECT_EQ(1, frame.header.components);
    EXPECT_EQ(expected.at("bits").get<int>(), frame.header.storedBits);
    EXPECT_EQ(expected.at("bytes").get<std::uint64_t>(), frame.header.fileSize);
    EXPECT_EQ(expected.at("sha256_voxels").get<std::string>(), Sha256(frame.voxels));

    const nlohmann::json& resolution = expected.at("px_per_um");
    const kep::Vector3d<float> res = frame.header.resolution.GetRes();
    if (resolution.is_null()) {
        EXPECT_EQ(kep::Resolution(), frame.header.resolution);
    } else { // given with seven digits
        EXPECT_NEAR(resolution.at(0).get<float>(), res.x, 1e-7F);
        EXPECT_NEAR(resolution.at(1).get<float>(), res.y, 1e-7F);
        EXPECT_NEAR(resolution.at(2).get<float>(), res.z, 1e-7F);
    }

    const std::string type = expected.at("dtype").get<std::string>();
    if (type == "uint8") {
        EXPECT_EQ((SampleType{NumberKind::Unsigned, 1}), frame.header.sample);
        CheckValues<std::uint8_t>(frame, expected);
    } else if (type == "uint16") {
        EXPECT_EQ((SampleType{NumberKind::Unsigned, 2}), frame.header.sample);
        CheckValues<std::uint16_t>(frame, expected);
    } else if (type == "float32") {
        EXPECT_EQ((SampleType{NumberKind::Float, 4}), frame.header.sample);
        CheckValues<float>(frame, expected);
    } else {
        FAIL() << "a type that this test does not know: " << type;
    }
}

TEST(IcsData, RealFilesGiveWhatIsKnownOfThem) {
    const std::string list = std::string(ZEL_TEST_DATA) + "/expected.json";
    if (!std::filesystem::exists(list))
        GTEST_SKIP() << "no " << list;
    const nlohmann::json all = nlohmann::json::parse(ReadBytes(list));
    int files = 0;
    for (const auto& [name, expected] : all.at("files").items()) {
        if (!name.ends_with(".ics"))
            continue;
        CheckFile(name, expected);
        ++files;
    }
    EXPECT_GT(files, 0);
}

} // namespace
} // namespace ics_test
