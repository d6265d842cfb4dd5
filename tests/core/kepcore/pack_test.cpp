// What packs and unpacks meets zlib, which does both by itself.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/pack/kep_deflate.h"
#include "core/kepcore/pack/kep_gunzip.h"
#include "core/kepcore/pack/kep_inorder.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace kep::detail;
using ::testing::EndsWith;

const Bytef* ToZlib(const void* bytes) {
    return static_cast<const Bytef*>(bytes);
}

std::vector<std::byte> MakeNoise(std::size_t count, unsigned values) {
    std::mt19937 random(static_cast<unsigned>(count) + values);
    std::vector<std::byte> bytes(count);
    for (std::byte& byte : bytes)
        byte = static_cast<std::byte>(random() % values);
    return bytes;
}

/// Unpacks a stream by zlib. @param window  as zlib has it: below 0 for bare deflate data
std::vector<std::byte> UnpackByZlib(const std::vector<std::byte>& packed, std::size_t most, int window) {
    z_stream stream{};
    EXPECT_EQ(Z_OK, inflateInit2(&stream, window));
    std::vector<std::byte> bytes(most + 1);
    stream.next_in = const_cast<Bytef*>(ToZlib(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(Z_STREAM_END, inflate(&stream, Z_FINISH));
    EXPECT_EQ(0U, stream.avail_in);
    bytes.resize(stream.total_out);
    inflateEnd(&stream);
    return bytes;
}

TEST(Deflater, StreamsOfAnyLengthUnpackToWhatTheyWere) {
    Deflater deflater; // the same one for all: nothing of a stream may come up in the next
    for (const unsigned values : {1U, 3U, 256U})
        for (const std::size_t count :
             {0UL, 1UL, 2UL, 3UL, 255UL, 258UL, 259UL, 32767UL, 32768UL, 65535UL, 65537UL, 1000001UL, 18000003UL}) {
            const std::vector<std::byte> bytes = MakeNoise(count, values);
            EXPECT_EQ(bytes, UnpackByZlib(deflater.PackZlib(bytes.data(), count), count, 15)) << values << " " << count;
        }
}

TEST(Deflater, StretchesFollowEachOther) {
    Deflater deflater;
    for (const unsigned values : {1U, 3U, 256U}) {
        const std::vector<std::byte> bytes = MakeNoise(300000, values);
        std::vector<std::byte> packed;
        std::size_t at = 0;
        for (const std::size_t count : {1UL, 5UL, 40000UL, 70000UL, 189994UL}) {
            const auto stretch = deflater.PackStretch(bytes.data() + at, count, at);
            packed.insert(packed.end(), stretch.begin(), stretch.end());
            at += count;
        }
        ASSERT_EQ(bytes.size(), at);
        packed.insert(packed.end(), {std::byte{3}, std::byte{0}});
        EXPECT_EQ(bytes, UnpackByZlib(packed, at, -15)) << values;
    }
}

TEST(Deflater, ChecksumsAreThoseOfZlib) {
    const std::vector<std::byte> bytes = MakeNoise(5000, 256);
    for (std::size_t from = 0; from < 17; ++from)
        for (const std::size_t count : {0UL, 1UL, 7UL, 15UL, 16UL, 17UL, 255UL, 256UL, 257UL, 4900UL})
            for (const std::uint32_t before : {0U, 0x12345678U, 0xFFFFFFFFU})
                EXPECT_EQ(crc32_z(before, ToZlib(bytes.data() + from), count),
                          ExtendChecksum(before, bytes.data() + from, count));
    const std::uint32_t first = ExtendChecksum(0, bytes.data(), 1234);
    const std::uint32_t second = ExtendChecksum(0, bytes.data() + 1234, 3766);
    EXPECT_EQ(ExtendChecksum(0, bytes.data(), 5000), JoinChecksums(first, second, 3766));
}

/// Packs by zlib. @param fields  of the gzip header; null for none
std::string Gzip(const std::vector<std::byte>& bytes, int level, gz_header* fields = nullptr) {
    z_stream stream{};
    EXPECT_EQ(Z_OK, deflateInit2(&stream, level, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY));
    if (fields != nullptr) {
        EXPECT_EQ(Z_OK, deflateSetHeader(&stream, fields));
    }
    std::string packed(2 * bytes.size() + 1000000, '\0');
    stream.next_in = const_cast<Bytef*>(ToZlib(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(Z_STREAM_END, deflate(&stream, Z_FINISH));
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

class Gunzip : public ::testing::Test {
protected:
    /// Unpacks a file of these bytes in pieces. @param before  bytes of the file in front
    std::vector<std::byte> Unpack(const std::string& packed, std::size_t count, std::size_t atOnce,
                                  std::size_t before = 0) const {
        std::ofstream(folder / "a.gz", std::ios::binary) << std::string(before, 'b') << packed;
        GunzipReader reader(std::make_shared<InputFile>(folder / "a.gz"), before);
        std::vector<std::byte> bytes(count);
        for (std::size_t at = 0; at < count; at += atOnce)
            reader.Read(bytes.data() + at, std::min(atOnce, count - at));
        reader.Finish();
        return bytes;
    }
    std::string GetFailure(const std::string& packed) const {
        try {
            Unpack(packed, 1000, 1000);
        } catch (const kep::IOException& failure) {
            return failure.GetText();
        }
        return "";
    }

    ScratchFolder folder;
};

TEST_F(Gunzip, PiecesOfAnySizeAreTheBytes) {
    for (const unsigned values : {1U, 3U, 256U})
        for (const int level : {0, 1, 9}) {
            const std::vector<std::byte> bytes = MakeNoise(700001, values);
            const std::string packed = Gzip(bytes, level);
            for (const std::size_t atOnce : {97UL, 32768UL, 262144UL, 262145UL, 700001UL})
                EXPECT_EQ(bytes, Unpack(packed, bytes.size(), atOnce, 3)) << values << " " << level << " " << atOnce;
        }
}

TEST_F(Gunzip, MembersEndWhereverTheReadingOfTheFileStops) {
    // The file is read 262,144 bytes at a time. Its first member is 262,144 - 23 to 262,144 + 3 bytes long, of which
    // 10 are its header, 8 its trailer, and 5 for each of 4 blocks that are stored.
    for (std::size_t length = 262144 - 23; length <= 262144 + 3; ++length) {
        const std::vector<std::byte> bytes = MakeNoise(length - 10 - 8 - 4 * 5 + 1000, 256);
        const auto middle = bytes.end() - 1000;
        const std::string first = Gzip({bytes.begin(), middle}, 0);
        ASSERT_EQ(length, first.size());
        const std::string packed = first + Gzip({}, 9) + Gzip({middle, bytes.end()}, 9) + "more";
        EXPECT_EQ(bytes, Unpack(packed, bytes.size(), bytes.size()));
        EXPECT_EQ(bytes, Unpack(packed, bytes.size(), 100000));
    }
}

TEST_F(Gunzip, HeadersSayMoreThanIsNeeded) {
    const std::vector<std::byte> bytes = MakeNoise(1000, 256);
    std::array<Bytef, 300> extra{};
    std::string name(300000, 'n'); // more than is read at once
    std::array<Bytef, 8> comment = {'c', 'o', 'm', 'm', 'e', 'n', 't', 0};
    for (int which = 0; which < 16; ++which) {
        gz_header fields{};
        fields.extra = (which & 1) != 0 ? extra.data() : nullptr;
        fields.extra_len = static_cast<uInt>(extra.size());
        fields.name = (which & 2) != 0 ? reinterpret_cast<Bytef*>(name.data()) : nullptr;
        fields.comment = (which & 4) != 0 ? comment.data() : nullptr;
        fields.hcrc = (which & 8) != 0 ? 1 : 0;
        const std::string packed = Gzip(bytes, 9, &fields);
        EXPECT_EQ(bytes, Unpack(packed, bytes.size(), bytes.size())) << which;
    }
}

TEST_F(Gunzip, HeadersThatAreNone) {
    gz_header fields{};
    fields.hcrc = 1;
    const std::string good = Gzip(MakeNoise(1000, 256), 9, &fields);
    EXPECT_EQ("", GetFailure(good));
    const auto change = [&](std::size_t at, char to) {
        std::string bad = good;
        bad[at] = to;
        return GetFailure(bad);
    };
    EXPECT_THAT(change(0, 'x'), EndsWith("is damaged: incorrect header check"));
    EXPECT_THAT(change(1, 'x'), EndsWith("is damaged: incorrect header check"));
    EXPECT_THAT(change(2, 7), EndsWith("is damaged: unknown compression method"));
    EXPECT_THAT(change(3, 0x22), EndsWith("is damaged: unknown header flags set"));
    EXPECT_THAT(change(4, 1), EndsWith("is damaged: header crc mismatch"));
    EXPECT_THAT(change(10, static_cast<char>(good[10] ^ 1)), EndsWith("is damaged: header crc mismatch"));
    for (std::size_t bytes = 0; bytes < good.size(); bytes += bytes < 40 ? 1 : 29)
        EXPECT_THAT(GetFailure(good.substr(0, bytes)),
                    EndsWith("is damaged: its packed data end before the last voxel"));
}

TEST_F(Gunzip, StreamsThatAreNone) {
    const std::string header("\x1F\x8B\x08\0\0\0\0\0\0\xFF", 10);
    const std::string filling(100, '\0');
    // A last block of the kind 3; one that is stored, whose length is not repeated inverted; one of fixed codes that
    // begins with a repetition (length code 257: 0000001, distance code 0: 00000); one with the length code 286,
    // 11000110, which nothing has.
    EXPECT_THAT(GetFailure(header + "\x07" + filling), EndsWith("is damaged: invalid block"));
    EXPECT_THAT(GetFailure(header + "\x01\x05\x05\x05\x05" + filling), EndsWith("is damaged: invalid block"));
    EXPECT_THAT(GetFailure(header + "\x03\x02" + filling), EndsWith("is damaged: invalid distance too far back"));
    EXPECT_THAT(GetFailure(header + "\x1B\x03" + filling), EndsWith("is damaged: invalid code"));
}

TEST(MakeInOrder, ItemsComeInOrderAndALaneHasOneAtATime) {
    for (const std::size_t lanes : {kep::GetThreadLimit(), std::size_t{1}}) {
        std::vector<std::atomic<int>> busy(lanes);
        std::size_t wanted = 0;
        MakeInOrder(
            1000, lanes,
            [&](std::size_t i, std::size_t lane) {
                EXPECT_LT(lane, lanes);
                EXPECT_EQ(0, busy[lane]++);
                const std::size_t item = i * i;
                --busy[lane];
                return item;
            },
            [&](std::size_t i, std::size_t item) {
                EXPECT_EQ(wanted++, i);
                EXPECT_EQ(i * i, item);
            });
        EXPECT_EQ(1000U, wanted);
    }
}

TEST(MakeInOrder, ASlowItemHoldsTheOthersUp) {
    std::atomic<std::size_t> made = 0;
    MakeInOrder(
        200, kep::GetThreadLimit(),
        [&](std::size_t i, std::size_t) {
            if (i == 50)
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            return ++made;
        },
        [&](std::size_t i, std::size_t) { EXPECT_LE(made, i + 3 * kep::GetThreadLimit()); });
    EXPECT_EQ(200U, made);
}

TEST(MakeInOrder, FailuresArriveAndEndIt) {
    std::size_t used = 0;
    const auto make = [](std::size_t i, std::size_t) {
        return i < 20 ? i : throw std::runtime_error(std::to_string(i));
    };
    const auto use = [&](std::size_t i, std::size_t) { EXPECT_EQ(used++, i); };
    for (int round = 0; round < 50; ++round) {
        used = 0;
        EXPECT_THROW(MakeInOrder(100, kep::GetThreadLimit(), make, use), std::runtime_error);
        EXPECT_LE(used, 20U);
        used = 0;
        const auto refuse = [&](std::size_t i, std::size_t) {
            ++used;
            if (i == 3)
                throw std::length_error("full");
        };
        EXPECT_THROW(MakeInOrder(15, kep::GetThreadLimit(), make, refuse), std::length_error);
        EXPECT_EQ(4U, used);
    }
    MakeInOrder(0, 1, make, use);
}

} // namespace
