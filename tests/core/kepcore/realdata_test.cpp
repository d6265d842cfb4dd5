// Real files of many programs, read as frames of every voxel type.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "tests/core/kepcore/conversion_rule.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <complex>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace {

using namespace conversion_rule;
using kep::Image3d;
using kep::RGB_generic;
using kep::VoxelType;
using nlohmann::json;

const std::string data = ZEL_TEST_DATA;

/// The numbers of a voxel type.
template <typename T>
struct Parts {
    using Channel = T;
    static constexpr std::size_t count = 1;
};
template <typename Number>
struct Parts<RGB_generic<Number>> {
    using Channel = Number;
    static constexpr std::size_t count = 3;
};
template <typename Number>
struct Parts<std::complex<Number>> {
    using Channel = Number;
    static constexpr std::size_t count = 2;
};

/// A frame as exact numbers.
struct Numbers {
    std::size_t perVoxel = 1; ///< 3 for colour, 2 for complex
    std::vector<Exact> all;
    kep::Vector3d<std::size_t> size;
    kep::Vector3d<float> offset;
    kep::Resolution resolution;
};

struct Outcome {
    std::optional<Numbers> numbers;
    std::string refusal;
};

template <typename T>
Outcome Read(const std::string& name) {
    using Channel = typename Parts<T>::Channel;
    Outcome outcome;
    try {
        const Image3d<T> frame(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        Numbers numbers{Parts<T>::count, {}, frame.GetSize(), frame.GetOffset(), frame.GetResolution()};
        const auto* const first = reinterpret_cast<const Channel*>(frame.begin());
        numbers.all.assign(first, first + frame.GetNumVoxels() * Parts<T>::count);
        outcome.numbers = std::move(numbers);
    } catch (const kep::IOException& refusal) {
        outcome.refusal = refusal.GetText();
    }
    return outcome;
}

/// Reads a file as the type that holds all its voxels.
Outcome ReadNaturally(const std::string& name, VoxelType type) {
    switch (type) {
    case VoxelType::Binary:
        return Read<bool>(name);
    case VoxelType::Gray8:
        return Read<unsigned char>(name);
    case VoxelType::Gray16:
        return Read<unsigned short>(name);
    case VoxelType::Int:
        return Read<int>(name);
    case VoxelType::UInt64:
        return Read<unsigned long long>(name);
    case VoxelType::Float:
        return Read<float>(name);
    case VoxelType::Double:
        return Read<double>(name);
    case VoxelType::RGB8:
        return Read<RGB_generic<unsigned char>>(name);
    case VoxelType::RGB16:
        return Read<RGB_generic<unsigned short>>(name);
    case VoxelType::Complex:
        return Read<std::complex<float>>(name);
    case VoxelType::DoubleComplex:
        return Read<std::complex<double>>(name);
    case VoxelType::Other:
        break;
    }
    ADD_FAILURE() << name << " has no type of its own";
    return {};
}

template <typename Stored>
std::string HashAs(const std::vector<Exact>& numbers) {
    std::vector<Stored> stored;
    stored.reserve(numbers.size());
    for (const Exact v : numbers)
        stored.push_back(static_cast<Stored>(v));
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    EVP_Digest(stored.data(), stored.size() * sizeof(Stored), digest.data(), &length, EVP_sha256(), nullptr);
    std::string text;
    for (unsigned i = 0; i < length; ++i) {
        constexpr const char* digits = "0123456789abcdef";
        text += digits[digest[i] >> 4U];
        text += digits[digest[i] & 15U];
    }
    return text;
}

/// The hash of the voxels as they are stored; empty for half floats, which no type of C++ makes again.
std::string Hash(const std::vector<Exact>& numbers, const std::string& type) {
    if (type == "uint8")
        return HashAs<std::uint8_t>(numbers);
    if (type == "uint16")
        return HashAs<std::uint16_t>(numbers);
    if (type == "uint32")
        return HashAs<std::uint32_t>(numbers);
    if (type == "int8")
        return HashAs<std::int8_t>(numbers);
    if (type == "int16" || type == "complex of int16")
        return HashAs<std::int16_t>(numbers);
    if (type == "int32" || type == "complex of int32")
        return HashAs<std::int32_t>(numbers);
    if (type == "float32" || type == "complex64")
        return HashAs<float>(numbers);
    if (type == "float64" || type == "complex128")
        return HashAs<double>(numbers);
    EXPECT_EQ(type, "float16");
    return "";
}

VoxelType GetExpectedType(const json& facts) {
    const std::string stored = facts["dtype"];
    const int bits = facts["bits"];
    const bool isColour = facts.value("samples", 1) >= 3 || facts.value("c", 1) == 3;
    if (isColour)
        return stored == "uint8" ? VoxelType::RGB8 : stored == "uint16" ? VoxelType::RGB16 : VoxelType::Other;
    if (stored.starts_with("complex"))
        return stored == "complex64" || stored == "complex of int16" ? VoxelType::Complex : VoxelType::DoubleComplex;
    if (stored.starts_with("float"))
        return stored == "float64" ? VoxelType::Double : VoxelType::Float;
    if (stored.starts_with("int"))
        return VoxelType::Int;
    return bits == 1    ? VoxelType::Binary
           : bits <= 8  ? VoxelType::Gray8
           : bits <= 16 ? VoxelType::Gray16
                        : VoxelType::UInt64;
}

/// Three channels as the facts count them: page by page, in the order of the file.
std::vector<Exact> TakeChannelsApart(const Numbers& numbers) {
    std::vector<Exact> apart;
    const std::size_t pixels = numbers.size.x * numbers.size.y;
    for (std::size_t z = 0; z < numbers.size.z; ++z) {
        for (std::size_t c = 0; c < 3; ++c) {
            for (std::size_t i = 0; i < pixels; ++i)
                apart.push_back(numbers.all[(z * pixels + i) * 3 + c]);
        }
    }
    return apart;
}

/// What a voxel becomes in another type: none, if it does not fit.
template <typename T>
std::optional<std::array<typename Parts<T>::Channel, 3>> ConvertVoxel(const Exact* voxel, std::size_t parts) {
    using Channel = typename Parts<T>::Channel;
    constexpr std::size_t wantedParts = Parts<T>::count;
    std::array<Exact, 3> wanted{};
    if (std::is_same_v<T, bool>)
        wanted[0] = std::any_of(voxel, voxel + parts, [](Exact v) { return v != 0.0L; }) ? 1.0L : 0.0L;
    else if (parts == wantedParts)
        std::copy_n(voxel, parts, wanted.begin());
    else if (parts == 2 || (parts == 3 && (voxel[0] != voxel[1] || voxel[0] != voxel[2])))
        return std::nullopt;
    else if (wantedParts == 3)
        wanted.fill(voxel[0]);
    else
        wanted[0] = voxel[0];
    std::array<Channel, 3> numbers{};
    for (std::size_t part = 0; part < wantedParts; ++part) {
        if (Judge(wanted[part], numbers[part]) != Verdict::Taken)
            return std::nullopt;
    }
    return numbers;
}

/// Whether every voxel fits into a type; if so, each must be in the frame as the twin converts it.
template <typename T>
bool CompareVoxels(const Numbers& natural, const Image3d<T>& frame) {
    using Channel = typename Parts<T>::Channel;
    const auto* at = reinterpret_cast<const Channel*>(frame.begin());
    std::size_t different = 0;
    for (std::size_t i = 0; i < natural.all.size(); i += natural.perVoxel) {
        const auto expected = ConvertVoxel<T>(&natural.all[i], natural.perVoxel);
        if (!expected)
            return false;
        for (std::size_t part = 0; at != nullptr && part < Parts<T>::count; ++part, ++at) {
            const Channel wanted = (*expected)[part];
            different += *at == wanted || (*at != *at && wanted != wanted) ? 0 : 1;
        }
    }
    EXPECT_EQ(different, 0U);
    return true;
}

template <typename T>
void ExpectConversion(const std::string& name, const Numbers& natural) {
    SCOPED_TRACE(typeid(T).name());
    Image3d<T> frame;
    std::string refusal;
    try {
        frame.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    } catch (const kep::IOException& failure) {
        refusal = failure.GetText();
    }
    const bool fits = CompareVoxels(natural, frame);
    EXPECT_EQ(refusal.empty(), fits) << refusal;
    if (!refusal.empty()) {
        EXPECT_NE(refusal.find("'" + name + "'"), std::string::npos) << refusal;
        return;
    }
    EXPECT_EQ(frame.GetSize(), natural.size);
    EXPECT_EQ(frame.GetOffset(), natural.offset);
    EXPECT_EQ(frame.GetResolution(), natural.resolution);
}

struct RealFile {
    std::string name;
    json facts;
};

std::ostream& operator<<(std::ostream& out, const RealFile& file) {
    return out << file.name;
}

std::vector<RealFile> ListRealFiles() {
    std::vector<RealFile> files;
    std::ifstream in(data + "/expected.json");
    if (!in)
        return files;
    const json all = json::parse(in)["files"];
    for (const auto& [name, facts] : all.items()) {
        if (facts["kind"] != "corrupt")
            files.push_back({name, facts});
    }
    return files;
}

class RealData : public testing::TestWithParam<RealFile> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RealData);

TEST_P(RealData, IsReadAsEveryTypeThatHoldsIt) {
    const json& facts = GetParam().facts;
    const std::string name = data + "/" + GetParam().name;
    const int channels = facts.value("c", 1);
    if (!facts.value("pages_alike", true)) {
        EXPECT_EQ(Read<RGB_generic<unsigned char>>(name).refusal,
                  "ReadImage(): The pages of '" + name + "' differ in size or type.");
        return;
    }
    if (channels != 1 && channels != 3) {
        const std::string refusal =
            "ReadImage(): '" + name + "' holds " + std::to_string(channels) + " channels; one frame holds one.";
        EXPECT_EQ(Read<unsigned short>(name).refusal, refusal);
        EXPECT_EQ(Read<RGB_generic<unsigned short>>(name).refusal, refusal);
        return;
    }

    const kep::ImageInfo info = kep::ReadImageInfo(name.c_str());
    EXPECT_EQ(info.size.x, facts["nx"]);
    EXPECT_EQ(info.size.y, facts["ny"]);
    EXPECT_EQ(info.size.z, facts.contains("nz") ? facts["nz"] : facts["z"]);
    EXPECT_EQ(info.voxelType, GetExpectedType(facts));
    if (info.voxelType == VoxelType::Other) {
        // Colours of floats from 0 to 1, and three channels of signed numbers, one of them -1: no type holds them.
        for (const Outcome& outcome : {Read<RGB_generic<unsigned short>>(name), Read<double>(name), Read<int>(name)})
            EXPECT_NE(outcome.refusal, "");
        return;
    }

    const Outcome outcome = ReadNaturally(name, info.voxelType);
    ASSERT_TRUE(outcome.numbers) << outcome.refusal;
    const Numbers& natural = *outcome.numbers;
    EXPECT_EQ(natural.size, info.size);
    EXPECT_EQ(natural.offset, info.offset);
    EXPECT_EQ(natural.resolution, info.resolution);
    if (facts["exact"] && facts.value("samples", 1) != 4) {
        const std::vector<Exact> inOrder = channels == 3 ? TakeChannelsApart(natural) : natural.all;
        const std::string hash = Hash(inOrder, facts["dtype"]);
        if (!hash.empty()) {
            EXPECT_EQ(hash, facts["sha256_voxels"]);
        }
    }
    if (channels == 3)
        return; // others than colours refuse the file, as a test of its own says
    if (facts.value("photometric", "") == "palette") {
        ExpectConversion<int>(name, natural); // colours come out of the table
        return;
    }
    ExpectConversion<unsigned char>(name, natural);
    ExpectConversion<unsigned short>(name, natural);
    ExpectConversion<int>(name, natural);
    ExpectConversion<unsigned long long>(name, natural);
    ExpectConversion<float>(name, natural);
    ExpectConversion<double>(name, natural);
    ExpectConversion<RGB_generic<unsigned char>>(name, natural);
    ExpectConversion<RGB_generic<unsigned short>>(name, natural);
    ExpectConversion<std::complex<float>>(name, natural);
    ExpectConversion<std::complex<double>>(name, natural);
    ExpectConversion<bool>(name, natural);
}

INSTANTIATE_TEST_SUITE_P(Files, RealData, testing::ValuesIn(ListRealFiles()), [](const auto& file) {
    std::string name;
    for (const char c : file.param.name)
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    return name;
});

TEST(RealDataFolder, IsThere) {
    if (!std::filesystem::exists(data + "/expected.json"))
        GTEST_SKIP() << "no real images under " << data;
    EXPECT_GT(ListRealFiles().size(), 100U);
}

TEST(RealDataFolder, DamagedFilesAreRefusedOrRead) {
    if (!std::filesystem::exists(data + "/corrupt"))
        GTEST_SKIP() << "no real images under " << data;
    std::size_t tried = 0;
    for (const auto& entry : std::filesystem::directory_iterator(data + "/corrupt")) {
        const std::string name = entry.path().string();
        SCOPED_TRACE(name);
        ++tried;
        for (const Outcome& outcome : {Read<double>(name), Read<RGB_generic<unsigned char>>(name), Read<bool>(name)}) {
            if (!outcome.numbers) {
                EXPECT_TRUE(outcome.refusal.starts_with("ReadImage(): "));
                EXPECT_NE(outcome.refusal.find("'" + name + "'"), std::string::npos) << outcome.refusal;
            }
        }
    }
    EXPECT_GT(tried, 30U);
}

} // namespace
