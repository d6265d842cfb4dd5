#include "core/kepcore/tiff/kep_tiffwalk.h"

#include "core/kepcore/tiff/kep_tifflimits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace kep::detail {

namespace {

constexpr std::uint64_t maxEntries = 512;

/// Directories may share values, a palette for instance, but not without end: a stack of small pages that all name
/// the same large value would be read in time that grows with the square of the file.
constexpr std::uint64_t maxSharing = 64;

/// Enough for the directory of a common page and the next one's position, so that most pages cost one read.
constexpr std::size_t readAhead = 512;

constexpr std::uint16_t typeByte = 1;
constexpr std::uint16_t typeText = 2;
constexpr std::uint16_t typeShort = 3;
constexpr std::uint16_t typeLong = 4;
constexpr std::uint16_t typeRational = 5;
constexpr std::uint16_t typeSignedRational = 10;
constexpr std::uint16_t typeFloat = 11;
constexpr std::uint16_t typeDouble = 12;
constexpr std::uint16_t typeDirectory = 13;
constexpr std::uint16_t typeLong8 = 16;
constexpr std::uint16_t typeDirectory8 = 18;

bool HoldsWholeNumbers(std::uint16_t type) {
    return type == typeByte || type == typeShort || type == typeLong || type == typeDirectory || type == typeLong8 ||
           type == typeDirectory8;
}

} // namespace

std::size_t GetTiffTypeBytes(std::uint16_t type) {
    constexpr std::array<unsigned char, 19> bytes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
    return type < bytes.size() ? bytes[type] : 0;
}

TiffStretch TiffEntry::GetStretch() const {
    return {at, at + count * GetTiffTypeBytes(type)}; // the walk has seen that the product fits
}

TiffEntry TiffDirectory::Find(TiffTag tag) const {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [tag](const TiffEntry& entry) { return entry.tag == tag; });
    return found == entries.end() ? TiffEntry{} : *found;
}

TiffValues::TiffValues(const InputFile& source) : file(source) {
    std::array<unsigned char, 16> head{};
    const std::size_t got = file.ReadAt(0, head.data(), head.size());
    if (!LooksLikeTiff(head.data(), got))
        ThrowDamaged(file.GetName(), "it does not begin as a TIFF file");
    bigEndian = head[0] == 'M';
    bigTiff = Decode(&head[2], 2) == 43;
    if (got < GetHeaderBytes())
        ThrowDamaged(file.GetName(), "it ends within its header");
    if (bigTiff && (Decode(&head[4], 2) != 8 || Decode(&head[6], 2) != 0))
        ThrowDamaged(file.GetName(), "its BigTIFF header is not sound");
    firstDirectory = bigTiff ? Decode(&head[8], 8) : Decode(&head[4], 4);
    if (firstDirectory == 0)
        ThrowDamaged(file.GetName(), "it holds no image");
}

void TiffValues::Fail(const TiffEntry& entry, const std::string& what) const {
    ThrowDamaged(file.GetName(), "the values of tag " + std::to_string(entry.tag) + " " + what);
}

std::uint64_t TiffValues::Decode(const unsigned char* bytes, std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8U | bytes[bigEndian ? i : size - 1 - i];
    return value;
}

TiffWalk::TiffWalk(const TiffValues& source)
    : values(source), file(source.GetFile()), next(source.GetFirstDirectory()) {}

void TiffWalk::Fail(const std::string& what) const {
    ThrowDamaged(file.GetName(), "page " + std::to_string(count) + ": " + what);
}

bool TiffWalk::Next(TiffDirectory& directory) {
    if (next == 0)
        return false;
    ++count;
    if (count > mostTiffPages)
        Fail("there are more than " + std::to_string(mostTiffPages) + " pages");
    if (!seen.insert(next).second)
        Fail("its directory was there before, so the pages never end");

    const bool bigTiff = values.IsBigTiff();
    const std::size_t countBytes = bigTiff ? 8 : 2;
    const std::size_t linkBytes = bigTiff ? 8 : 4;
    const std::size_t entryBytes = bigTiff ? 20 : 12;
    const std::uint64_t at = next;
    if (at >= file.GetLength() || file.GetLength() - at < countBytes)
        Fail("its directory lies beyond the end of the file");
    buffer.resize(readAhead);
    std::size_t got = file.ReadAt(at, buffer.data(), buffer.size());
    if (got < countBytes)
        Fail("its directory lies beyond the end of the file");
    const std::uint64_t entryCount = values.Decode(buffer.data(), countBytes);
    if (entryCount == 0 || entryCount > maxEntries)
        Fail("its directory claims " + std::to_string(entryCount) + " entries");
    const std::size_t bytes = countBytes + static_cast<std::size_t>(entryCount) * entryBytes + linkBytes;
    if (got < bytes) {
        buffer.resize(bytes);
        got = file.ReadAt(at, buffer.data(), bytes);
        if (got < bytes)
            Fail("its directory is cut off");
    }
    directoryBytes += bytes;
    if (directoryBytes > file.GetLength())
        Fail("its directory overlaps others");

    directory.at = at;
    directory.bytes = bytes;
    ReadEntries(buffer.data() + countBytes, at + countBytes, entryCount, directory);
    next = values.Decode(buffer.data() + bytes - linkBytes, linkBytes);
    return true;
}

void TiffWalk::ReadEntries(const unsigned char* bytes, std::uint64_t at, std::uint64_t entryCount,
                           TiffDirectory& directory) {
    const std::size_t fieldBytes =
        values.IsBigTiff() ? 8 : 4; // of a count, and of values that need no place of their own
    const std::size_t entryBytes = 4 + 2 * fieldBytes;
    directory.entries.clear();
    std::uint64_t sum = 0;
    for (std::uint64_t i = 0; i < entryCount; ++i) {
        const unsigned char* entry = bytes + i * entryBytes;
        TiffEntry read;
        read.tag = static_cast<std::uint16_t>(values.Decode(entry, 2));
        read.type = static_cast<std::uint16_t>(values.Decode(entry + 2, 2));
        read.count = values.Decode(entry + 4, fieldBytes);
        std::uint64_t size = 0;
        if (__builtin_mul_overflow(read.count, static_cast<std::uint64_t>(GetTiffTypeBytes(read.type)), &size) ||
            __builtin_add_overflow(sum, size, &sum) || sum > file.GetLength())
            Fail("its tags promise more bytes than the file has");
        const std::size_t field = 4 + fieldBytes; // where the values stand, or their position
        read.isInline = size <= fieldBytes;
        std::copy_n(entry + field, fieldBytes, read.inlineBytes.begin());
        read.at = read.isInline ? at + i * entryBytes + field : values.Decode(entry + field, fieldBytes);
        directory.entries.push_back(read);
    }
    valueBytes += sum;
    if (valueBytes / maxSharing > file.GetLength())
        Fail("its tags and those before promise more bytes than the file has");
}

void TiffValues::ReadValues(const TiffEntry& entry, void* to, std::size_t bytes) const {
    if (entry.isInline && bytes <= entry.inlineBytes.size()) {
        std::memcpy(to, entry.inlineBytes.data(), bytes);
        return;
    }
    if (entry.at > file.GetLength() || file.GetLength() - entry.at < bytes || file.ReadAt(entry.at, to, bytes) < bytes)
        Fail(entry, "lie beyond the end of the file");
}

std::vector<std::uint64_t> TiffValues::ReadNumbers(const TiffEntry& entry, std::uint64_t limit) const {
    if (!HoldsWholeNumbers(entry.type))
        Fail(entry, "are not whole numbers");
    const std::size_t size = GetTiffTypeBytes(entry.type);
    const auto wanted = static_cast<std::size_t>(std::min(entry.count, limit));
    std::vector<unsigned char> bytes(wanted * size);
    ReadValues(entry, bytes.data(), bytes.size());
    std::vector<std::uint64_t> numbers(wanted);
    for (std::size_t i = 0; i < wanted; ++i)
        numbers[i] = Decode(&bytes[i * size], size);
    return numbers;
}

std::uint64_t TiffValues::ReadNumber(const TiffEntry& entry, std::uint64_t absent) const {
    return entry.IsThere() ? ReadNumbers(entry, 1).front() : absent;
}

std::optional<double> TiffValues::ReadFraction(const TiffEntry& entry) const {
    if (!entry.IsThere())
        return std::nullopt;
    std::array<unsigned char, 8> bytes{};
    const std::size_t size = GetTiffTypeBytes(entry.type);
    ReadValues(entry, bytes.data(), size);
    double value = 0.0;
    if (entry.type == typeRational)
        value = static_cast<double>(Decode(&bytes[0], 4)) / static_cast<double>(Decode(&bytes[4], 4));
    else if (entry.type == typeSignedRational)
        value = static_cast<double>(static_cast<std::int32_t>(Decode(&bytes[0], 4))) /
                static_cast<double>(static_cast<std::int32_t>(Decode(&bytes[4], 4)));
    else if (entry.type == typeFloat)
        value = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(Decode(bytes.data(), 4))));
    else if (entry.type == typeDouble)
        value = std::bit_cast<double>(Decode(bytes.data(), 8));
    else if (HoldsWholeNumbers(entry.type))
        value = static_cast<double>(Decode(bytes.data(), size));
    else
        return std::nullopt;
    return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

std::string TiffValues::ReadText(const TiffEntry& entry, std::size_t limit) const {
    if (!entry.IsThere() || (entry.type != typeText && entry.type != typeByte))
        return {};
    std::string text(static_cast<std::size_t>(std::min<std::uint64_t>(entry.count, limit)), '\0');
    ReadValues(entry, text.data(), text.size());
    return text.substr(0, text.find('\0'));
}

} // namespace kep::detail
