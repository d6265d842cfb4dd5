#include "core/kepcore/tiff/kep_tifffax.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

namespace kep::detail {

namespace {

using Codes = std::array<std::string_view, 64>;
using LongCodes = std::array<std::string_view, 27>;

// The codes of ITU-T T.4. A run is any number of codes for multiples of 64 pixels, and one for the rest.
constexpr Codes whiteRests = {
    "00110101", "000111",   "0111",     "1000",     "1011",     "1100",     "1110",     "1111",
    "10011",    "10100",    "00111",    "01000",    "001000",   "000011",   "110100",   "110101",
    "101010",   "101011",   "0100111",  "0001100",  "0001000",  "0010111",  "0000011",  "0000100",
    "0101000",  "0101011",  "0010011",  "0100100",  "0011000",  "00000010", "00000011", "00011010",
    "00011011", "00010010", "00010011", "00010100", "00010101", "00010110", "00010111", "00101000",
    "00101001", "00101010", "00101011", "00101100", "00101101", "00000100", "00000101", "00001010",
    "00001011", "01010010", "01010011", "01010100", "01010101", "00100100", "00100101", "01011000",
    "01011001", "01011010", "01011011", "01001010", "01001011", "00110010", "00110011", "00110100"};
constexpr Codes blackRests = {
    "0000110111",   "010",          "11",           "10",           "011",          "0011",         "0010",
    "00011",        "000101",       "000100",       "0000100",      "0000101",      "0000111",      "00000100",
    "00000111",     "000011000",    "0000010111",   "0000011000",   "0000001000",   "00001100111",  "00001101000",
    "00001101100",  "00000110111",  "00000101000",  "00000010111",  "00000011000",  "000011001010", "000011001011",
    "000011001100", "000011001101", "000001101000", "000001101001", "000001101010", "000001101011", "000011010010",
    "000011010011", "000011010100", "000011010101", "000011010110", "000011010111", "000001101100", "000001101101",
    "000011011010", "000011011011", "000001010100", "000001010101", "000001010110", "000001010111", "000001100100",
    "000001100101", "000001010010", "000001010011", "000000100100", "000000110111", "000000111000", "000000100111",
    "000000101000", "000001011000", "000001011001", "000000101011", "000000101100", "000001011010", "000001100110",
    "000001100111"};
// From 64 to 1728.
constexpr LongCodes whiteSixtyFours = {"11011",     "10010",     "010111",    "0110111",   "00110110",  "00110111",
                                       "01100100",  "01100101",  "01101000",  "01100111",  "011001100", "011001101",
                                       "011010010", "011010011", "011010100", "011010101", "011010110", "011010111",
                                       "011011000", "011011001", "011011010", "011011011", "010011000", "010011001",
                                       "010011010", "011000",    "010011011"};
constexpr LongCodes blackSixtyFours = {
    "0000001111",    "000011001000",  "000011001001",  "000001011011",  "000000110011",  "000000110100",
    "000000110101",  "0000001101100", "0000001101101", "0000001001010", "0000001001011", "0000001001100",
    "0000001001101", "0000001110010", "0000001110011", "0000001110100", "0000001110101", "0000001110110",
    "0000001110111", "0000001010010", "0000001010011", "0000001010100", "0000001010101", "0000001011010",
    "0000001011011", "0000001100100", "0000001100101"};
// From 1792 to 2560, for both colours.
constexpr std::array<std::string_view, 13> longestRuns = {
    "00000001000",  "00000001100",  "00000001101",  "000000010010", "000000010011", "000000010100", "000000010101",
    "000000010110", "000000010111", "000000011100", "000000011101", "000000011110", "000000011111"};

constexpr unsigned longestCode = 13;

/// What the bits at hand begin with.
struct Meaning {
    std::int16_t value = 0; ///< pixels of a run, or a mode
    std::uint8_t bits = 0;  ///< of the code; 0: there is none
};

/// Enters a code for all bits that may follow it.
template <std::size_t Size>
constexpr void AddCode(std::array<Meaning, Size>& table, unsigned tableBits, std::string_view code, int value) {
    std::size_t first = 0;
    for (const char bit : code)
        first = 2 * first + (bit == '1' ? 1 : 0);
    const std::size_t behind = tableBits - code.size();
    for (std::size_t i = 0; i < std::size_t{1} << behind; ++i)
        table[(first << behind) + i] = {static_cast<std::int16_t>(value), static_cast<std::uint8_t>(code.size())};
}

using RunTable = std::array<Meaning, std::size_t{1} << longestCode>;

constexpr RunTable MakeRunTable(const Codes& rests, const LongCodes& sixtyFours) {
    RunTable table;
    for (std::size_t i = 0; i < rests.size(); ++i)
        AddCode(table, longestCode, rests[i], static_cast<int>(i));
    for (std::size_t i = 0; i < sixtyFours.size(); ++i)
        AddCode(table, longestCode, sixtyFours[i], static_cast<int>(64 * (i + 1)));
    for (std::size_t i = 0; i < longestRuns.size(); ++i)
        AddCode(table, longestCode, longestRuns[i], static_cast<int>(64 * (i + 28)));
    return table;
}

constexpr std::array<RunTable, 2> runTables = {MakeRunTable(whiteRests, whiteSixtyFours),
                                               MakeRunTable(blackRests, blackSixtyFours)};

constexpr unsigned longestMode = 7;
constexpr int modePass = 10;
constexpr int modeRuns = 11;

/// Modes of a row that is coded by differences. Those from -3 to 3 say how far right of the one above a change lies.
constexpr auto modeTable = [] {
    std::array<Meaning, std::size_t{1} << longestMode> table;
    AddCode(table, longestMode, "1", 0);
    AddCode(table, longestMode, "011", 1);
    AddCode(table, longestMode, "000011", 2);
    AddCode(table, longestMode, "0000011", 3);
    AddCode(table, longestMode, "010", -1);
    AddCode(table, longestMode, "000010", -2);
    AddCode(table, longestMode, "0000010", -3);
    AddCode(table, longestMode, "0001", modePass);
    AddCode(table, longestMode, "001", modeRuns);
    return table;
}();

/// The bits of a stream, followed by zeros without end.
class FaxBits {
public:
    explicit FaxBits(PackedBytes from) : stream(from) {}

    /// The next bits, at most 16, without going on.
    unsigned Peek(unsigned count) const {
        unsigned bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t byte = at / 8 + i;
            bits = bits << 8U | (byte < stream.size() ? std::to_integer<unsigned>(stream[byte]) : 0U);
        }
        return bits >> (24 - at % 8 - count) & ((1U << count) - 1U);
    }
    void Skip(std::size_t count) { at += count; }
    void SkipToByte() { at = (at + 7) / 8 * 8; }

    /// More was skipped than there is.
    bool IsBeyond() const { return at > 8 * stream.size(); }

    /// Whether nothing is left, or zeros only.
    bool IsPaddingOnly() const {
        if (at >= 8 * stream.size())
            return true;
        const bool isRestOfByteZero = at % 8 == 0 || Peek(static_cast<unsigned>(8 - at % 8)) == 0;
        return isRestOfByteZero && IsPadding(stream.subspan((at + 7) / 8));
    }

    /// Skips a mark: at least 11 zeros and a one. @return false, with nothing skipped, where there is none
    bool SkipMark() {
        if (Peek(11) != 0)
            return false;
        std::size_t end = at + 11;
        while (end < 8 * stream.size() && !GetBit(end))
            ++end;
        if (end >= 8 * stream.size())
            return false;
        at = end + 1;
        return true;
    }

private:
    bool GetBit(std::size_t place) const {
        return (std::to_integer<unsigned>(stream[place / 8]) >> (7 - place % 8) & 1U) != 0;
    }

    PackedBytes stream;
    std::size_t at = 0; ///< of the next bit
};

/// Places where the colour of a row changes, from white at its left edge on: first to black, then to white.
class Changes {
public:
    void Clear() { places.clear(); }

    void Add(std::int64_t place) {
        if (!places.empty() && places.back() == place)
            places.pop_back(); // a run without pixels: both of its ends are none
        else
            places.push_back(static_cast<std::uint32_t>(place));
    }

    /// The first change of a parity behind a place, or the width. Places asked for must not go back.
    std::int64_t FindBehind(std::int64_t place, std::size_t parity, std::int64_t width) {
        while (first < places.size() && places[first] <= place)
            ++first;
        found = first + ((first ^ parity) & 1U);
        return GetPlace(found, width);
    }
    /// The one behind that which was found last.
    std::int64_t GetNext(std::int64_t width) const { return GetPlace(found + 1, width); }

    /// To be called before a row is looked through again.
    void Rewind() { first = 0; }

    /// Paints all runs of black.
    void Paint(std::int64_t width, BlockBytes row) const {
        std::fill(row.begin(), row.end(), std::byte{0});
        for (std::size_t i = 0; i < places.size(); i += 2)
            PaintRun(places[i], GetPlace(i + 1, width), row);
    }

private:
    std::int64_t GetPlace(std::size_t i, std::int64_t width) const { return i < places.size() ? places[i] : width; }

    static void PaintRun(std::int64_t from, std::int64_t until, BlockBytes row) {
        const auto firstByte = static_cast<std::size_t>(from / 8);
        const auto lastByte = static_cast<std::size_t>(until / 8);
        const auto head = static_cast<std::byte>(0xFFU >> from % 8);
        const auto tail = static_cast<std::byte>(0xFF00U >> until % 8 & 0xFFU);
        if (firstByte == lastByte) {
            if (from < until)
                row[firstByte] |= head & tail;
            return;
        }
        row[firstByte] |= head;
        std::memset(row.data() + firstByte + 1, 0xFF, lastByte - firstByte - 1);
        if (until % 8 != 0)
            row[lastByte] |= tail;
    }

    std::vector<std::uint32_t> places;
    std::size_t first = 0; ///< change that is not behind the last place asked for
    std::size_t found = 0;
};

class FaxDecoder {
public:
    FaxDecoder(FaxCode rowCode, PackedBytes stream, std::uint32_t pixels)
        : code(rowCode), bits(stream), width(pixels) {}

    StreamEnd Decode(BlockBytes block) {
        const std::size_t rowBytes = (static_cast<std::size_t>(width) + 7) / 8;
        for (std::size_t done = 0; done < block.size(); done += rowBytes) {
            const StreamEnd end = DecodeRow();
            if (end != StreamEnd::Exact)
                return bits.IsBeyond() ? StreamEnd::TooEarly : end;
            row.Paint(width, block.subspan(done, rowBytes));
            std::swap(row, above);
        }
        return JudgeRest();
    }

private:
    /// @return Exact for a whole row
    StreamEnd DecodeRow() {
        row.Clear();
        above.Rewind();
        bool areRuns = code != FaxCode::Differences;
        if (code == FaxCode::RunsWithMarks || code == FaxCode::MixedWithMarks) {
            const bool isMarked = bits.SkipMark();
            if (code == FaxCode::MixedWithMarks) {
                if (!isMarked)
                    return bits.IsPaddingOnly() ? StreamEnd::TooEarly : StreamEnd::Broken;
                areRuns = bits.Peek(1) == 1;
                bits.Skip(1);
            }
        }
        if (bits.Peek(11) == 0 || bits.IsBeyond()) // no row begins like this, but a mark does: of the end
            return StreamEnd::TooEarly;
        const bool isWhole = areRuns ? DecodeRuns() : DecodeDifferences();
        if (!isWhole || bits.IsBeyond())
            return StreamEnd::Broken;
        if (code == FaxCode::Runs)
            bits.SkipToByte();
        return StreamEnd::Exact;
    }

    bool DecodeRuns() {
        std::int64_t at = 0;
        for (std::size_t colour = 0; at < width; colour ^= 1U)
            if (!TakeRun(colour, at))
                return false;
        return true;
    }

    bool DecodeDifferences() {
        std::int64_t at = -1; // left of the row
        std::size_t colour = 0;
        while (at < width) {
            const Meaning mode = modeTable[bits.Peek(longestMode)];
            if (mode.bits == 0)
                return false;
            bits.Skip(mode.bits);
            const std::int64_t start = std::max<std::int64_t>(at, 0);
            const std::int64_t change = above.FindBehind(at, colour, width);
            if (mode.value == modeRuns) {
                at = start;
                if (!TakeRun(colour, at) || !TakeRun(colour ^ 1U, at))
                    return false;
            } else if (mode.value == modePass) {
                at = above.GetNext(width);
            } else {
                const std::int64_t place = change + mode.value;
                if (place <= at || place > width)
                    return false;
                row.Add(at = place);
                colour ^= 1U;
            }
        }
        return true;
    }

    /// Takes a run that begins at a place, and moves the place behind it.
    bool TakeRun(std::size_t colour, std::int64_t& at) {
        Meaning part;
        do {
            part = runTables[colour][bits.Peek(longestCode)];
            if (part.bits == 0 || bits.IsBeyond())
                return false;
            bits.Skip(part.bits);
            at += part.value;
            if (at > width)
                return false;
        } while (part.value >= 64);
        row.Add(at);
        return true;
    }

    /// What stands behind the last row: an end mark and anything, or padding.
    StreamEnd JudgeRest() {
        if (bits.IsPaddingOnly())
            return StreamEnd::Exact;
        if (!bits.SkipMark())
            return StreamEnd::TooLate;
        if (code == FaxCode::MixedWithMarks)
            bits.Skip(1);
        // Of group 4 and of bare runs, no row begins with a mark. Where all rows do, an end is two of them.
        const bool isEnd =
            code == FaxCode::Differences || code == FaxCode::Runs || bits.IsPaddingOnly() || bits.SkipMark();
        return isEnd ? StreamEnd::Exact : StreamEnd::TooLate;
    }

    FaxCode code;
    FaxBits bits;
    std::int64_t width;
    Changes row;
    Changes above; ///< all white before the first row
};

} // namespace

StreamEnd DecodeFax(FaxCode code, PackedBytes stream, std::uint32_t width, BlockBytes block) {
    return FaxDecoder(code, stream, width).Decode(block);
}

} // namespace kep::detail
