#include "core/kepcore/tiff/kep_tiffdecode.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace kep::detail {

namespace {

constexpr unsigned codeClear = 256;
constexpr unsigned codeEnd = 257;
constexpr unsigned firstString = 258;
constexpr unsigned shortestCode = 9;
constexpr unsigned longestCode = 12;
constexpr std::size_t tableSize = std::size_t{1} << longestCode;

/// Where codes begin in a byte. The writers that began at the low end also use longer codes one string later.
enum class Bits { FromHigh, FromLow };

std::uint64_t LoadEightBytes(const std::byte* from, Bits order) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof bytes);
    const bool isTurned = (std::endian::native == std::endian::little) == (order == Bits::FromHigh);
    return isTurned ? __builtin_bswap64(bytes) : bytes;
}

/// Takes codes from a stream.
template <Bits order>
class CodeSource {
public:
    explicit CodeSource(PackedBytes from) : stream(from) {}

    /// The next code; false if the stream has too few bits for it.
    bool Take(unsigned width, unsigned& code) {
        if (held < width && !Fill(width))
            return false;
        code = Peek(width);
        bits = order == Bits::FromHigh ? bits << width : bits >> width;
        held -= width;
        return true;
    }

    /// Whether no more strings follow: too few bits for a code, the end mark, or padding. Some writers make the mark
    /// one bit too short, where the codes have just become longer.
    bool IsAtEnd(unsigned width) {
        if (held < width && !Fill(width))
            return true;
        return Peek(width) == codeEnd || Peek(width - 1) == codeEnd || (bits == 0 && IsPadding(stream.subspan(at)));
    }

private:
    unsigned Peek(unsigned width) const {
        if constexpr (order == Bits::FromHigh)
            return static_cast<unsigned>(bits >> (64 - width));
        else
            return static_cast<unsigned>(bits & ((std::uint64_t{1} << width) - 1));
    }

    bool Fill(unsigned width) {
        if (stream.size() - at >= 8) {
            // As many whole bytes as fit. The bits of the next one that come along are the same when they come again.
            const std::uint64_t next = LoadEightBytes(&stream[at], order);
            bits |= order == Bits::FromHigh ? next >> held : next << held;
            const unsigned bytes = (63 - held) / 8;
            at += bytes;
            held += 8 * bytes;
            return true;
        }
        for (; held <= 56 && at < stream.size(); held += 8, ++at) {
            const auto byte = std::to_integer<std::uint64_t>(stream[at]);
            bits |= order == Bits::FromHigh ? byte << (56 - held) : byte << held;
        }
        return held >= width;
    }

    PackedBytes stream;
    std::size_t at = 0;     ///< of the next byte
    std::uint64_t bits = 0; ///< taken from the stream but not yet from here
    unsigned held = 0;      ///< how many of them count
};

/// A string that a code stands for: it came before, in the block, or is one byte.
struct String {
    const std::byte* at;
    std::size_t length;
};

/// Copies a string to the place behind what is done. Its last byte may be the first one of the copy. Short ones, nearly
/// all of them, go in one piece of eight bytes where the block has room for it: what is too much is written over by the
/// next.
void CopyString(const String& string, std::byte* to, std::size_t room) {
    if (string.length <= 8 && room >= 8) {
        std::uint64_t piece = 0;
        std::memcpy(&piece, string.at, sizeof piece);
        std::memcpy(to, &piece, sizeof piece);
    } else {
        std::memcpy(to, string.at, string.length - 1);
    }
    to[string.length - 1] = string.at[string.length - 1];
}

/// All bytes, each a string, and room to read eight bytes from the last one on.
constexpr auto singleBytes = [] {
    std::array<std::byte, 256 + 7> bytes{};
    for (std::size_t i = 0; i < 256; ++i)
        bytes[i] = static_cast<std::byte>(i);
    return bytes;
}();

template <Bits order>
StreamEnd Decode(PackedBytes stream, BlockBytes block) {
    // A new string is the last one and the byte behind it in the block, so none is ever copied for the table.
    std::array<String, tableSize> table;
    for (std::size_t i = 0; i < 256; ++i)
        table[i] = {&singleBytes[i], 1};
    constexpr unsigned widenEarly = order == Bits::FromHigh ? 1 : 0;

    CodeSource<order> source(stream);
    unsigned next = firstString; // code of the string that the next one completes
    unsigned width = shortestCode;
    String last{nullptr, 0}; // none yet, or not since the table was cleared
    std::byte* to = block.data();
    std::size_t room = block.size();
    unsigned code = 0;
    while (room > 0) {
        if (!source.Take(width, code) || code == codeEnd)
            return StreamEnd::TooEarly;
        if (code == codeClear) {
            next = firstString;
            width = shortestCode;
            last.length = 0;
            continue;
        }
        if (last.length > 0 && next < tableSize) {
            table[next] = {last.at, last.length + 1};
            ++next;
            if (next + widenEarly == std::size_t{1} << width && width < longestCode)
                ++width;
        }
        if (code >= next || (last.length == 0 && code > 255))
            return StreamEnd::Broken;
        const String string = table[code];
        if (string.length > room)
            return StreamEnd::TooLate;
        CopyString(string, to, room);
        last = {to, string.length};
        to += string.length;
        room -= string.length;
    }
    while (!source.IsAtEnd(width)) {
        if (!source.Take(width, code) || code != codeClear)
            return StreamEnd::TooLate;
        width = shortestCode;
    }
    return StreamEnd::Exact;
}

} // namespace

StreamEnd DecodeLzw(PackedBytes stream, BlockBytes block) {
    // A stream begins with the code that clears the table, and this is how that looks from the low end.
    const bool isFromLow =
        stream.size() >= 2 && stream[0] == std::byte{0} && (stream[1] & std::byte{1}) != std::byte{0};
    return isFromLow ? Decode<Bits::FromLow>(stream, block) : Decode<Bits::FromHigh>(stream, block);
}

} // namespace kep::detail
