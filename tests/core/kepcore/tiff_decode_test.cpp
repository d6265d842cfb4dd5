// The decoders of packed blocks by themselves: streams made by hand, by slow twins and by libtiff.

#include "core/kepcore/tiff/kep_tiffcodec.h"
#include "core/kepcore/tiff/kep_tiffdecode.h"
#include "core/kepcore/tiff/kep_tifffax.h"
#include "tests/core/kepcore/tiff_streams.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>

namespace kep::detail {

void PrintTo(StreamEnd end, std::ostream* out) {
    constexpr std::array<const char*, 4> names = {"Exact", "TooEarly", "TooLate", "Broken"};
    *out << names[static_cast<std::size_t>(end)];
}

} // namespace kep::detail

namespace {

using kep::detail::BlockBytes;
using kep::detail::FaxCode;
using kep::detail::PackedBytes;
using kep::detail::StreamEnd;

PackedBytes AsBytes(const std::string& text) {
    return {reinterpret_cast<const std::byte*>(text.data()), text.size()};
}

struct Decoded {
    StreamEnd end = StreamEnd::Broken;
    std::string bytes;
};

/// Decodes into a block of some size, with bytes around it that must stay as they are.
template <typename Decode>
Decoded DecodeInto(std::size_t size, const Decode& decode) {
    constexpr std::size_t margin = 16;
    std::string memory(size + 2 * margin, '\x5A');
    Decoded decoded;
    decoded.end = decode(BlockBytes(reinterpret_cast<std::byte*>(memory.data()) + margin, size));
    decoded.bytes = memory.substr(margin, size);
    EXPECT_EQ(memory.substr(0, margin), std::string(margin, '\x5A'));
    EXPECT_EQ(memory.substr(margin + size), std::string(margin, '\x5A'));
    return decoded;
}

Decoded PackBits(const std::string& stream, std::size_t size) {
    return DecodeInto(size, [&](BlockBytes block) { return kep::detail::DecodePackBits(AsBytes(stream), block); });
}
Decoded Lzw(const std::string& stream, std::size_t size) {
    return DecodeInto(size, [&](BlockBytes block) { return kep::detail::DecodeLzw(AsBytes(stream), block); });
}
Decoded Fax(FaxCode code, const std::string& stream, unsigned width, std::size_t rows) {
    return DecodeInto((width + 7) / 8 * rows,
                      [&](BlockBytes block) { return kep::detail::DecodeFax(code, AsBytes(stream), width, block); });
}

TEST(TiffDecode, PackBits) {
    const std::string stream("\x02\x41\x42\x43\xFE\x44\x80\x00\x45", 9); // ABC as they are, three times D, nothing, E
    EXPECT_EQ(PackBits(stream, 7).end, StreamEnd::Exact);
    EXPECT_EQ(PackBits(stream, 7).bytes, "ABCDDDE");
    EXPECT_EQ(PackBits(stream, 8).end, StreamEnd::TooEarly);
    EXPECT_EQ(PackBits(stream, 6).end, StreamEnd::TooLate);
    EXPECT_EQ(PackBits(stream, 5).end, StreamEnd::TooLate) << "in a run";
    EXPECT_EQ(PackBits(stream, 2).end, StreamEnd::TooLate) << "in bytes as they are";
    EXPECT_EQ(PackBits(stream + std::string(5, '\0'), 7).end, StreamEnd::Exact) << "padding";
    EXPECT_EQ(PackBits(stream + "\x80", 7).end, StreamEnd::Exact) << "a code for nothing";
    EXPECT_EQ(PackBits(stream.substr(0, 3), 3).end, StreamEnd::TooEarly);
    EXPECT_EQ(PackBits("\xFE", 3).end, StreamEnd::TooEarly);
    EXPECT_EQ(PackBits("", 3).end, StreamEnd::TooEarly);
}

/// How an encoder of LZW is to be.
struct LzwWay {
    bool fromLow = false; ///< the first writers' order of bits
    bool clears = true;   ///< when the table is full; else it stays as it is
    bool marksEnd = true;
    bool endIsShort = false; ///< the end mark in as many bits as the code before
};

/// A slow encoder with a map of strings.
class LzwEncoder {
public:
    explicit LzwEncoder(const LzwWay& how) : way(how) {}

    std::string Encode(const std::string& bytes) {
        Clear();
        std::string last;
        for (const char byte : bytes) {
            if (table.count(last + byte) != 0) {
                last += byte;
                continue;
            }
            Put(table[last], width);
            if (next < 4096) {
                table[last + byte] = next;
                Step();
            }
            if (way.clears && next == 4094)
                Clear();
            last = std::string(1, byte);
        }
        const unsigned lastWidth = width;
        Put(table[last], width);
        Step();
        if (way.marksEnd)
            Put(257, way.endIsShort ? lastWidth : width);
        return stream;
    }

private:
    void Put(unsigned code, unsigned bits) {
        for (unsigned i = 0; i < bits; ++i, ++place) {
            if (place % 8 == 0)
                stream += '\0';
            const unsigned bit = code >> (way.fromLow ? i : bits - 1 - i) & 1U;
            const unsigned byte = static_cast<unsigned char>(stream.back());
            stream.back() = static_cast<char>(byte | bit << (way.fromLow ? place % 8 : 7 - place % 8));
        }
    }
    void Clear() {
        Put(256, width);
        table.clear();
        for (unsigned i = 0; i < 256; ++i)
            table[std::string(1, static_cast<char>(i))] = i;
        width = 9;
        next = 258;
    }
    /// One string more. With the bits from the high end, codes become longer one string before they must.
    void Step() {
        ++next;
        if (next + (way.fromLow ? 0 : 1) > 1U << width && width < 12)
            ++width;
    }

    LzwWay way;
    std::string stream;
    unsigned place = 0; ///< of the next bit
    unsigned width = 9;
    unsigned next = 258;
    std::map<std::string, unsigned> table;
};

std::string MakeText(std::size_t bytes, unsigned values) {
    std::mt19937 random(values);
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i)
        text += static_cast<char>(random() % values);
    return text;
}

const std::vector<LzwWay>& GetLzwWays() {
    static const std::vector<LzwWay> ways = {
        {}, {.fromLow = true}, {.clears = false}, {.fromLow = true, .clears = false}};
    return ways;
}

TEST(TiffDecode, LzwMeetsItsTwin) {
    for (const LzwWay& way : GetLzwWays()) {
        for (const unsigned values : {1U, 2U, 7U, 256U}) { // one value: each code is the one before and one byte
            for (const std::size_t bytes : {1U, 2U, 3U, 9U, 100U, 20000U}) {
                const std::string text = MakeText(bytes, values);
                const Decoded decoded = Lzw(LzwEncoder(way).Encode(text), bytes);
                EXPECT_EQ(decoded.end, StreamEnd::Exact) << values << " values, " << bytes << " bytes";
                EXPECT_TRUE(decoded.bytes == text) << values << " values, " << bytes << " bytes";
            }
        }
    }
}

TEST(TiffDecode, LzwThatEndsElsewhereSaysSo) {
    for (LzwWay way : GetLzwWays()) {
        for (const unsigned values : {1U, 256U}) {
            for (const std::size_t bytes : {2U, 100U, 253U, 254U, 255U, 9000U}) {
                const std::string stream = LzwEncoder(way).Encode(MakeText(bytes, values));
                EXPECT_EQ(Lzw(stream, bytes + 1).end, StreamEnd::TooEarly) << values << " values, " << bytes;
                EXPECT_EQ(Lzw(stream, bytes - 1).end, StreamEnd::TooLate) << values << " values, " << bytes;
                EXPECT_EQ(Lzw(stream.substr(0, stream.size() / 2), bytes).end, StreamEnd::TooEarly) << bytes;
            }
        }
    }
}

TEST(TiffDecode, LzwWithoutASoundEndMarkIsRead) {
    // At every length: where codes have just become longer too.
    for (std::size_t bytes = 1; bytes < 2100; ++bytes) {
        const std::string text = MakeText(bytes, 256);
        for (const LzwWay& way :
             {LzwWay{.marksEnd = false}, LzwWay{.endIsShort = true}, LzwWay{.fromLow = true, .marksEnd = false},
              LzwWay{.fromLow = true, .endIsShort = true}}) {
            const std::string stream = LzwEncoder(way).Encode(text);
            ASSERT_EQ(Lzw(stream, bytes).end, StreamEnd::Exact) << bytes;
            ASSERT_EQ(Lzw(stream + std::string(9, '\0'), bytes).end, StreamEnd::Exact) << bytes;
        }
    }
}

TEST(TiffDecode, LzwCodesThatMeanNothingAreBroken) {
    // Codes of 9 bits: clear 100000000, A 001000001, 258 100000010, 259 100000011, end 100000001.
    EXPECT_EQ(Lzw(std::string("\x80\x10\x60\x70\x10", 5), 4).end, StreamEnd::Broken) << "clear, A, 259: not yet known";
    EXPECT_EQ(Lzw(std::string("\x80\x10\x60\x50\x10", 5), 3).bytes, "AAA") << "clear, A, 258: known just now";
    EXPECT_EQ(Lzw(std::string("\x80\x40\xA0\x20\x00", 5), 4).end, StreamEnd::Broken)
        << "clear, 258: nothing came before";
    EXPECT_EQ(Lzw("", 4).end, StreamEnd::TooEarly);
    std::mt19937 random(3);
    for (int i = 0; i < 3000; ++i) { // nothing but ends, and nothing written beside the block
        std::string noise(1 + random() % 300, '\0');
        for (char& byte : noise)
            byte = static_cast<char>(random());
        Lzw(noise, random() % 1000);
        PackBits(noise, random() % 1000);
        for (const FaxCode code :
             {FaxCode::Runs, FaxCode::RunsWithMarks, FaxCode::MixedWithMarks, FaxCode::Differences})
            Fax(code, noise, 1 + static_cast<unsigned>(random() % 300), random() % 20);
    }
}

struct FaxWay {
    tifftest::Packing packing;
    FaxCode code;
};

const std::vector<FaxWay>& GetFaxes() {
    static const std::vector<FaxWay> faxes = {
        {{"RLE", COMPRESSION_CCITTRLE, 1}, FaxCode::Runs},
        {{"group 3", COMPRESSION_CCITTFAX3, 1}, FaxCode::RunsWithMarks},
        {{"group 3, filled", COMPRESSION_CCITTFAX3, 1, GROUP3OPT_FILLBITS}, FaxCode::RunsWithMarks},
        {{"group 3, mixed", COMPRESSION_CCITTFAX3, 1, GROUP3OPT_2DENCODING}, FaxCode::MixedWithMarks},
        {{"group 3, mixed and filled", COMPRESSION_CCITTFAX3, 1, GROUP3OPT_2DENCODING | GROUP3OPT_FILLBITS},
         FaxCode::MixedWithMarks},
        {{"group 4", COMPRESSION_CCITTFAX4, 1}, FaxCode::Differences},
    };
    return faxes;
}

void SetBlack(std::string& row, std::size_t pixel) {
    row[pixel / 8] = static_cast<char>(static_cast<unsigned char>(row[pixel / 8]) | 0x80U >> pixel % 8);
}

TEST(TiffDecode, FaxRunsOfEveryLengthAreThoseThatLibtiffWrites) {
    // Of each row, the left part is black or white and the rest the other: runs of 0 to 2680 pixels, which take up to
    // two codes for 2560 and 64.
    constexpr unsigned width = 2680;
    std::string rows;
    for (const bool isLeft : {true, false}) {
        for (unsigned black = 0; black <= width; ++black) {
            std::string row(width / 8, '\0');
            for (unsigned x = isLeft ? 0 : width - black; x < (isLeft ? black : width); ++x)
                SetBlack(row, x);
            rows += row;
        }
    }
    for (const FaxWay& fax : GetFaxes()) {
        const std::string stream = tifftest::PackRows(fax.packing, width, rows);
        const Decoded decoded = Fax(fax.code, stream, width, 2 * (width + 1));
        EXPECT_EQ(decoded.end, StreamEnd::Exact) << fax.packing.name;
        EXPECT_TRUE(decoded.bytes == rows) << fax.packing.name;
    }
}

TEST(TiffDecode, FaxOfPicturesIsWhatLibtiffWrites) {
    // Pictures whose rows differ a little from those above, as differences are coded best; and noise.
    std::mt19937 random(4);
    for (const unsigned width : {8U, 16U, 64U, 1000U}) {
        for (const unsigned changes : {0U, 1U, 3U, 20U}) {
            std::string rows;
            std::string row(width / 8, '\0');
            for (unsigned y = 0; y < 300; ++y) {
                for (unsigned i = 0; i < changes; ++i) {
                    const std::size_t from = random() % width;
                    const std::size_t length = random() % 12;
                    for (std::size_t x = from; x < std::min<std::size_t>(from + length, width); ++x)
                        row[x / 8] = static_cast<char>(static_cast<unsigned char>(row[x / 8]) ^ 0x80U >> x % 8);
                }
                rows += row;
            }
            for (const FaxWay& fax : GetFaxes()) {
                const std::string stream = tifftest::PackRows(fax.packing, width, rows);
                const Decoded decoded = Fax(fax.code, stream, width, 300);
                EXPECT_EQ(decoded.end, StreamEnd::Exact) << fax.packing.name << ", " << width << ", " << changes;
                EXPECT_TRUE(decoded.bytes == rows) << fax.packing.name << ", " << width << ", " << changes;
                EXPECT_EQ(Fax(fax.code, stream, width, 301).end, StreamEnd::TooEarly) << fax.packing.name;
                EXPECT_EQ(Fax(fax.code, stream, width, 299).end, StreamEnd::TooLate) << fax.packing.name;
            }
        }
    }
}

/// Bytes of bits, which may have blanks between them.
std::string Bits(const std::string& text) {
    std::string bytes;
    std::size_t place = 0;
    for (const char bit : text) {
        if (bit == ' ')
            continue;
        if (place % 8 == 0)
            bytes += '\0';
        if (bit == '1')
            SetBlack(bytes, place);
        ++place;
    }
    return bytes;
}

TEST(TiffDecode, FaxByHand) {
    // 8 pixels. White 2: 0111, black 3: 10, white 3: 1000; then the row below the same: three changes above (V0: 1).
    const std::string runs = "0111 10 1000";
    const std::string row = "\x38";
    const std::string mark = "000000000001";
    EXPECT_EQ(Fax(FaxCode::Runs, Bits(runs), 8, 1).end, StreamEnd::Exact);
    EXPECT_EQ(Fax(FaxCode::Runs, Bits(runs), 8, 1).bytes, row);
    EXPECT_EQ(Fax(FaxCode::RunsWithMarks, Bits(mark + runs + mark + runs), 8, 2).bytes, row + row);
    EXPECT_EQ(Fax(FaxCode::RunsWithMarks, Bits(runs + runs), 8, 2).bytes, row + row) << "without marks";
    EXPECT_EQ(Fax(FaxCode::MixedWithMarks, Bits(mark + "1" + runs + "0000" + mark + "0 111"), 8, 2).bytes, row + row);
    EXPECT_EQ(Fax(FaxCode::MixedWithMarks, Bits(mark + "1" + runs + "0 111"), 8, 2).end, StreamEnd::Broken)
        << "no mark, so nothing says how the second row is coded";
    // Group 4: white 2 and black 3 (001), then a change at the end of the row above (1).
    const std::string differences = "001 0111 10 1";
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "111"), 8, 2).bytes, row + row);
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "111" + mark + mark), 8, 2).end, StreamEnd::Exact);
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + mark + mark), 8, 2).end, StreamEnd::TooEarly);
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "111 111 111"), 8, 2).end, StreamEnd::TooLate);
    // The row below moved by one to the right (VR1 twice, V0), then without its black (pass, V0).
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "011 011 1"), 8, 2).bytes, row + "\x1C");
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "0001 1"), 8, 2).bytes, row + std::string(1, '\0'));
    // Rows that are too long, by runs and by a change beyond the end, or go back.
    EXPECT_EQ(Fax(FaxCode::Runs, Bits("0111 10 1011"), 8, 1).end, StreamEnd::Broken); // white 4: 9 pixels
    EXPECT_EQ(Fax(FaxCode::Differences, Bits("011"), 8, 1).end, StreamEnd::Broken);
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "1 000010 1"), 8, 2).bytes, row + "\x20") << "5 - 2 = 3";
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "1 0000010 1"), 8, 2).end, StreamEnd::Broken) << "5 - 3 = 2";
    EXPECT_EQ(Fax(FaxCode::Differences, Bits(differences + "0000001111"), 8, 2).end, StreamEnd::Broken)
        << "an extension";
}

TEST(TiffDecode, SizesOfJpegStreams) {
    const auto find = [](const std::string& stream) { return kep::detail::FindJpegSize(AsBytes(stream)); };
    // A comment, filling, the frame: 8 bits, 3 rows, 258 columns, one component.
    const std::string head("\xFF\xD8\xFF\xFE\x00\x04??\xFF\xFF", 10);
    const std::string frame("\xC0\x00\x0B\x08\x00\x03\x01\x02\x01\x01\x11\x00", 12);
    const auto size = find(head + frame);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 258U);
    EXPECT_EQ(size->height, 3U);
    for (std::size_t bytes = 0; bytes < head.size() + 7; ++bytes)
        EXPECT_FALSE(find((head + frame).substr(0, bytes))) << bytes;
    EXPECT_FALSE(find("\xFF\xD8" + frame)) << "no marker";
    EXPECT_FALSE(find(std::string("\xFF\xD8\xFF\xDA\x00\x04??\xFF", 9) + frame)) << "data before the frame";
    EXPECT_FALSE(find(std::string("\xFF\xD8\xFF\xFE\x00\x01\xFF", 7) + frame)) << "a segment without its own size";
}

} // namespace
