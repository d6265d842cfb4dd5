#include "core/kepcore/convert/kep_bytes.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/tiff/kep_tiffplain.h"
#include "core/kepcore/tiff/kep_tiffpredictor.h"
#include "core/kepcore/tiff/kep_tiffqueue.h"
#include "core/kepcore/tiff/kep_tiffunpack.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <set>
#include <span>
#include <thread>

namespace {

using namespace kep::detail;

/// The bits of a sample one by one: the slow twin.
std::uint32_t GetBits(const std::vector<std::byte>& row, std::size_t index, unsigned bits) {
    std::uint32_t value = 0;
    for (std::size_t place = index * bits; place < (index + 1) * bits; ++place) {
        const auto bit = std::to_integer<std::uint32_t>(row[place / 8]) >> (7 - place % 8) & 1U;
        value = value * 2 + bit;
    }
    return value;
}

TEST(TiffUnpack, PackedBitsAreThoseReadOneByOne) {
    std::mt19937 random(17);
    for (unsigned bits = 1; bits <= 15; ++bits) {
        if (bits == 8)
            continue;
        for (const std::size_t stride : {1U, 3U, 4U}) {
            for (const std::size_t count : {1U, 2U, 7U, 8U, 9U, 53U}) {
                // Exactly as long as needed, so that a byte read too much is found by a memory checker.
                std::vector<std::byte> row((count * stride * bits + 7) / 8);
                for (std::byte& byte : row)
                    byte = static_cast<std::byte>(random() & 0xFFU);
                const PackedSamples packed{bits, false};
                const std::size_t bytes = bits < 8 ? 1 : 2;
                ASSERT_EQ(packed.GetUnpackedBytes(), bytes);
                const std::size_t first = stride - 1;
                std::vector<std::byte> unpacked(count * bytes);
                UnpackSamples(row.data(), first, stride, count, packed, unpacked.data(), 1);
                for (std::size_t i = 0; i < count; ++i) {
                    std::uint16_t value = std::to_integer<std::uint8_t>(unpacked[i]);
                    if (bytes == 2)
                        std::memcpy(&value, &unpacked[2 * i], 2);
                    ASSERT_EQ(value, GetBits(row, first + i * stride, bits)) << bits << " bits, number " << i;
                }
            }
        }
    }
}

TEST(TiffUnpack, WholeBytesAndThreeOfThem) {
    const std::vector<unsigned char> row = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const auto* const bytes = reinterpret_cast<const std::byte*>(row.data());
    std::vector<unsigned char> unpacked(12, 0);
    // Every second of the six 16-bit samples, from the second on, into every second place of three.
    UnpackSamples(bytes, 1, 2, 3, {16, false}, reinterpret_cast<std::byte*>(unpacked.data()), 2);
    EXPECT_EQ(unpacked, (std::vector<unsigned char>{3, 4, 0, 0, 7, 8, 0, 0, 11, 12, 0, 0}));

    std::vector<std::uint32_t> wide(2);
    UnpackSamples(bytes, 1, 2, 2, {24, false}, reinterpret_cast<std::byte*>(wide.data()), 1);
    if (std::endian::native == std::endian::little)
        EXPECT_EQ(wide, (std::vector<std::uint32_t>{0x060504, 0x0C0B0A}));
    else
        EXPECT_EQ(wide, (std::vector<std::uint32_t>{0x040506, 0x0A0B0C}));
}

/// A half float by its definition: sign, exponent with bias 15, ten bits of fraction.
double GetHalf(unsigned half) {
    const double sign = (half & 0x8000U) != 0 ? -1.0 : 1.0;
    const int exponent = static_cast<int>(half >> 10U & 31U);
    const double fraction = (half & 1023U) / 1024.0;
    return exponent == 0 ? sign * std::ldexp(fraction, -14) : sign * std::ldexp(1.0 + fraction, exponent - 15);
}

TEST(TiffUnpack, EveryHalfFloatIsTheSameNumberAsAFloat) {
    for (unsigned half = 0; half <= 0xFFFF; ++half) {
        const float value = HalfToFloat(static_cast<std::uint16_t>(half));
        if ((half >> 10U & 31U) != 31) {
            ASSERT_EQ(static_cast<double>(value), GetHalf(half)) << half;
            ASSERT_EQ(std::signbit(value), half >= 0x8000) << half;
        } else if ((half & 1023U) == 0) {
            ASSERT_TRUE(std::isinf(value) && std::signbit(value) == (half >= 0x8000)) << half;
        } else {
            ASSERT_TRUE(std::isnan(value)) << half;
        }
    }
}

TEST(TiffUnpack, SwapsTheBytesOfNumbers) {
    const std::vector<unsigned char> numbers = {1, 2, 3, 4, 5, 6, 7, 8};
    const auto swap = [&](std::size_t size) {
        std::vector<unsigned char> swapped = numbers;
        SwapBytes(reinterpret_cast<std::byte*>(swapped.data()), swapped.size(), size);
        return swapped;
    };
    EXPECT_EQ(swap(1), numbers);
    EXPECT_EQ(swap(2), (std::vector<unsigned char>{2, 1, 4, 3, 6, 5, 8, 7}));
    EXPECT_EQ(swap(4), (std::vector<unsigned char>{4, 3, 2, 1, 8, 7, 6, 5}));
    EXPECT_EQ(swap(8), (std::vector<unsigned char>{8, 7, 6, 5, 4, 3, 2, 1}));
    std::vector<unsigned char> threes = {1, 2, 3, 4, 5, 6};
    SwapBytes(reinterpret_cast<std::byte*>(threes.data()), threes.size(), 3);
    EXPECT_EQ(threes, (std::vector<unsigned char>{3, 2, 1, 6, 5, 4}));
}

template <typename T>
void TestDifferences(std::size_t count, std::size_t step, std::size_t offset) {
    std::mt19937 random(static_cast<unsigned>(100 * count + step));
    std::vector<std::byte> bytes(offset + count * sizeof(T));
    for (std::byte& byte : bytes)
        byte = static_cast<std::byte>(random());
    const std::span<const std::byte> row(bytes.data() + offset, count * sizeof(T));
    std::vector<std::byte> differences(offset + row.size(), std::byte{0xCD});
    TakeDifferences(row, 8 * sizeof(T), step, differences.data() + offset);
    for (std::size_t i = 0; i < count; ++i) {
        const T left = i < step ? T{0} : Load<T>(row.data() + (i - step) * sizeof(T));
        const T wanted = static_cast<T>(Load<T>(row.data() + i * sizeof(T)) - left);
        ASSERT_EQ(wanted, Load<T>(differences.data() + offset + i * sizeof(T))) << count << " " << step << " " << i;
    }
    AddUpDifferences({differences.data() + offset, row.size()}, 8 * sizeof(T), step, false);
    EXPECT_TRUE(std::equal(row.begin(), row.end(), differences.begin() + static_cast<std::ptrdiff_t>(offset)));
}

TEST(TiffPredictor, DifferencesAddUpToTheNumbers) {
    for (std::size_t pixels = 0; pixels < 70; ++pixels)
        for (std::size_t step = 1; step <= 4; ++step)
            for (std::size_t offset = 0; offset < 3; ++offset) {
                TestDifferences<std::uint8_t>(pixels * step, step, offset);
                TestDifferences<std::uint16_t>(pixels * step, step, offset);
                TestDifferences<std::uint32_t>(pixels * step, step, offset);
                TestDifferences<std::uint64_t>(pixels * step, step, offset);
            }
}

TEST(TiffPlain, BytesComeFromWhereTheyLieWhateverTheAlignment) {
    // Longer than two pieces of 256 KiB, so that joined and copied pieces meet.
    const std::size_t length = 700000;
    std::mt19937 random(3);
    std::string content(length, '\0');
    for (char& c : content)
        c = static_cast<char>(random() & 0xFFU);
    const ScratchFolder folder;
    WriteBytes(folder / "bytes", content);
    const InputFile file(folder / "bytes");

    std::vector<std::byte> memory(length + 8192);
    for (const std::size_t at : {0U, 8U, 100U}) {
        for (const std::size_t shift : {0U, 1U, 8U, 16U, 17U, 2048U}) {
            for (const std::size_t swap : {1U, 2U, 8U}) {
                const auto begin = reinterpret_cast<std::uintptr_t>(memory.data());
                std::byte* const to = memory.data() + (4096 - begin % 4096) + shift;
                // Two stretches that follow each other, then one from before: 650,016 bytes in all.
                PlainReader reader(file, to, swap);
                reader.Add(at + 16, 300000);
                reader.Add(at + 300016, 350000);
                reader.Add(at, 16);
                reader.Finish();
                std::string expected = content.substr(at + 16, 650000) + content.substr(at, 16);
                SwapBytes(reinterpret_cast<std::byte*>(expected.data()), expected.size(), swap);
                ASSERT_EQ(std::memcmp(to, expected.data(), expected.size()), 0) << at << ' ' << shift << ' ' << swap;
            }
        }
    }
}

TEST(TiffPlain, TwoThreadsShareWhatIsLarge) {
    // 9 MB in three stretches out of order, the second of which both threads read from.
    const std::size_t length = 9000000;
    std::mt19937 random(4);
    std::string content(length, '\0');
    for (char& c : content)
        c = static_cast<char>(random() & 0xFFU);
    const ScratchFolder folder;
    WriteBytes(folder / "bytes", content);
    const InputFile file(folder / "bytes");
    std::string to(length, '\0');
    for (const std::size_t swap : {1U, 4U}) {
        PlainReader reader(file, reinterpret_cast<std::byte*>(to.data()), swap);
        reader.Add(6000000, 3000000);
        reader.Add(0, 4000000);
        reader.Add(4000000, 2000000);
        reader.Finish();
        std::string expected = content.substr(6000000) + content.substr(0, 6000000);
        SwapBytes(reinterpret_cast<std::byte*>(expected.data()), expected.size(), swap);
        ASSERT_TRUE(to == expected) << swap;
    }
}

TEST(TiffPlain, AFileThatEndsTooEarlyIsDamagedWhicheverThreadSeesIt) {
    const ScratchFolder folder;
    WriteBytes(folder / "bytes", std::string(5000000, 'x'));
    const InputFile file(folder / "bytes");
    std::vector<std::byte> to(9000000);
    for (const std::uint64_t missing : {100U, 4500000U}) {
        PlainReader reader(file, to.data(), 1);
        reader.Add(missing, 9000000 - 4000000);
        EXPECT_THROW(reader.Finish(), kep::IOException) << missing;
    }
}

TEST(TiffQueue, FrontAndBackMeet) {
    BlockQueue queue({2, 0, 1, 3});
    EXPECT_EQ(queue.GetCount(), 6U);
    const auto take = [&](BlockQueue::End end) {
        const auto place = queue.Take(end);
        return place ? std::pair<int, int>(static_cast<int>(place->page), static_cast<int>(place->block))
                     : std::pair<int, int>(-1, -1);
    };
    using P = std::pair<int, int>;
    EXPECT_EQ(take(BlockQueue::End::Back), P(3, 2));
    EXPECT_EQ(take(BlockQueue::End::Front), P(0, 0));
    EXPECT_EQ(take(BlockQueue::End::Front), P(0, 1));
    EXPECT_EQ(take(BlockQueue::End::Front), P(2, 0));
    EXPECT_EQ(take(BlockQueue::End::Back), P(3, 1));
    EXPECT_EQ(take(BlockQueue::End::Front), P(3, 0));
    EXPECT_EQ(take(BlockQueue::End::Back), P(-1, -1));
    EXPECT_EQ(take(BlockQueue::End::Front), P(-1, -1));
}

TEST(TiffQueue, TwoThreadsTakeEveryBlockOnce) {
    BlockQueue queue({100, 1, 250, 0, 49});
    using Places = std::vector<std::pair<std::size_t, std::uint32_t>>;
    Places front;
    Places back;
    const auto takeAll = [&](BlockQueue::End end, Places& places) {
        while (const auto place = queue.Take(end))
            places.emplace_back(place->page, place->block);
    };
    std::thread other([&] { takeAll(BlockQueue::End::Back, back); });
    takeAll(BlockQueue::End::Front, front);
    other.join();
    std::set<std::pair<std::size_t, std::uint32_t>> all(front.begin(), front.end());
    all.insert(back.begin(), back.end());
    EXPECT_EQ(front.size() + back.size(), 400U);
    EXPECT_EQ(all.size(), 400U);
}

TEST(TiffQueue, NothingComesOutOfAClosedOne) {
    BlockQueue queue({3});
    EXPECT_TRUE(queue.Take(BlockQueue::End::Front).has_value());
    queue.Close();
    EXPECT_FALSE(queue.Take(BlockQueue::End::Front).has_value());
}

} // namespace
