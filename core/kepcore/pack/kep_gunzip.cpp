#include "core/kepcore/pack/kep_gunzip.h"

#include "core/kepcore/pack/kep_deflate.h"

#include <algorithm>
#include <cstring>
#include <isa-l/igzip_lib.h>
#include <utility>

namespace kep::detail {

namespace {

constexpr std::size_t packedChunk = std::size_t{256} << 10; // bytes of packed data that are read at once
constexpr std::size_t piece = std::size_t{256} << 10;       // unpacked bytes that are still cached for their checksum
constexpr std::size_t keptBytes = 8;                        // the most that the library holds back of its input

const char* Describe(int failure) {
    switch (failure) {
    case ISAL_INVALID_BLOCK:
        return "invalid block";
    case ISAL_INVALID_SYMBOL:
        return "invalid code";
    case ISAL_INVALID_LOOKBACK:
        return "invalid distance too far back";
    default:
        return "its packed data are not gzip data";
    }
}

} // namespace

GunzipReader::GunzipReader(std::shared_ptr<const InputFile> from, std::uint64_t start)
    : file(std::move(from)),
      at(start),
      buffer(keptBytes + packedChunk),
      next(buffer.data() + keptBytes),
      end(next),
      stream(std::make_unique<inflate_state>()) {}

GunzipReader::~GunzipReader() = default;

void GunzipReader::Read(std::byte* to, std::size_t bytes) {
    while (bytes > 0) {
        if (!inStream)
            ReadHeader();
        const std::size_t got = Unpack(to, std::min(bytes, piece));
        to += got;
        bytes -= got;
    }
}

void GunzipReader::Finish() {
    while (inStream) {
        std::byte beyond{};
        if (Unpack(&beyond, 1) > 0)
            Fail("its packed data go on behind the last voxel");
    }
}

void GunzipReader::Fail(const char* what) const {
    ThrowDamaged(file->GetName(), what);
}

/// Reads more, where all that was read before is used. Its last bytes stay in front, as a trailer may begin there.
void GunzipReader::Fill() {
    std::memmove(buffer.data(), end - keptBytes, keptBytes);
    next = buffer.data() + keptBytes;
    end = next;
    const std::size_t got = file->ReadAt(at, next, packedChunk);
    if (got == 0)
        Fail("its packed data end before the last voxel");
    at += got;
    end += got;
}

unsigned GunzipReader::GetByte() {
    if (next == end)
        Fill();
    return std::to_integer<unsigned>(*next++);
}

unsigned GunzipReader::GetHeaderByte() {
    const unsigned number = GetByte();
    const auto byte = static_cast<std::byte>(number);
    checksum = ExtendChecksum(checksum, &byte, 1);
    return number;
}

/// Four bytes, the lowest first.
std::uint32_t GunzipReader::GetNumber() {
    std::uint32_t number = 0;
    for (unsigned i = 0; i < 4; ++i)
        number |= GetByte() << (8 * i);
    return number;
}

void GunzipReader::SkipHeaderText() {
    while (GetHeaderByte() != 0) {
    }
}

void GunzipReader::ReadHeader() {
    constexpr unsigned hasChecksum = 2;
    constexpr unsigned hasExtra = 4;
    constexpr unsigned hasName = 8;
    constexpr unsigned hasComment = 16;
    constexpr unsigned unknownFlags = 0xE0;
    constexpr unsigned deflate = 8;

    checksum = 0;
    const unsigned first = GetHeaderByte();
    if (first != 0x1F || GetHeaderByte() != 0x8B)
        Fail("incorrect header check");
    if (GetHeaderByte() != deflate)
        Fail("unknown compression method");
    const unsigned flags = GetHeaderByte();
    if ((flags & unknownFlags) != 0)
        Fail("unknown header flags set");
    for (int i = 0; i < 6; ++i) // the time, how it was packed, the system
        GetHeaderByte();
    if ((flags & hasExtra) != 0) {
        const unsigned low = GetHeaderByte();
        for (unsigned left = low | GetHeaderByte() << 8U; left > 0; --left)
            GetHeaderByte();
    }
    if ((flags & hasName) != 0)
        SkipHeaderText();
    if ((flags & hasComment) != 0)
        SkipHeaderText();
    if ((flags & hasChecksum) != 0) {
        const unsigned sum = checksum & 0xFFFFU;
        const unsigned low = GetByte();
        if ((low | GetByte() << 8U) != sum)
            Fail("header crc mismatch");
    }
    isal_inflate_init(stream.get());
    checksum = 0;
    length = 0;
    inStream = true;
}

/// A stream ends with its checksum and the length of its data.
void GunzipReader::ReadTrailer() {
    inStream = false;
    if (GetNumber() != checksum)
        Fail("the checksum of its packed data is wrong");
    if (GetNumber() != static_cast<std::uint32_t>(length))
        Fail("the length of its packed data is wrong");
}

/// Unpacks until `room` is full or the stream ends, which is tested then. Returns how many bytes there were.
std::size_t GunzipReader::Unpack(std::byte* to, std::size_t room) {
    stream->next_out = reinterpret_cast<std::uint8_t*>(to);
    stream->avail_out = static_cast<std::uint32_t>(room);
    for (;;) { // the library may have bytes that it has unpacked before, so it is asked before more is read
        stream->next_in = reinterpret_cast<std::uint8_t*>(next);
        stream->avail_in = static_cast<std::uint32_t>(end - next);
        const int result = isal_inflate(stream.get());
        next = end - stream->avail_in;
        if (result != ISAL_DECOMP_OK)
            Fail(Describe(result));
        if (stream->block_state == ISAL_BLOCK_FINISH || stream->avail_out == 0)
            break;
        Fill();
    }
    const std::size_t got = room - stream->avail_out;
    checksum = ExtendChecksum(checksum, to, got);
    length += got;
    if (stream->block_state == ISAL_BLOCK_FINISH) {
        next -= stream->read_in_length / 8; // whole bytes behind the stream that the library has taken
        ReadTrailer();
    }
    return got;
}

} // namespace kep::detail
