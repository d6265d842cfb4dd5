#include "core/kepcore/ics/kep_icsdata.h"

#include <algorithm>
#include <archive.h>
#include <cstring>
#include <exception>
#include <future>
#include <limits>
#include <new>
#include <string>
#include <system_error>
#include <utility>
#include <vector>
#include <zlib.h>

namespace kep::detail {

namespace {

constexpr std::size_t packedChunk = std::size_t{256} << 10; // bytes of packed data that are read at once

// The most bytes that one packed byte can give.
constexpr std::uint64_t mostFromGzip = 1040;
constexpr std::uint64_t mostFromCompress = 2600;

[[noreturn]] void ThrowCutOff(const std::string& fileName) {
    ThrowDamaged(fileName, "its packed data end before the last voxel");
}

[[noreturn]] void ThrowTooLong(const std::string& fileName) {
    ThrowDamaged(fileName, "its packed data go on behind the last voxel");
}

/// Voxels as they are in memory, but for the order of their bytes.
class PlainData final : public IcsData {
public:
    PlainData(std::shared_ptr<const InputFile> from, std::uint64_t at) : file(std::move(from)), start(at) {}

    void Read(std::byte* to, std::size_t bytes) override {
        ReadInShares(bytes, [&](std::size_t from, std::size_t until) {
            file->ReadVoxels(start + place + from, to + from, until - from);
        });
        place += bytes;
    }

    void Finish() override {} // other data may follow

    bool MoveTo(std::uint64_t to) override {
        place = to;
        return true;
    }

private:
    std::shared_ptr<const InputFile> file;
    std::uint64_t start;
    std::uint64_t place = 0;
};

/// The checksum of bytes on their way. It takes as long as unpacking what packs well, so it can be made beside that.
class Checksum {
public:
    explicit Checksum(uLong start) : sum(start) {}

    void Add(const std::byte* bytes, std::size_t count) { sum = Extend(Get(), bytes, count); }

    /// The bytes must stay as they are until the next call.
    void AddBeside(const std::byte* bytes, std::size_t count) {
        const uLong before = Get();
        try {
            pending = std::async(std::launch::async, &Extend, before, bytes, count);
        } catch (const std::system_error&) { // no thread can be had
            sum = Extend(before, bytes, count);
        }
    }

    uLong Get() {
        if (pending.valid())
            sum = pending.get();
        return sum;
    }

private:
    static uLong Extend(uLong sum, const std::byte* bytes, std::size_t count) {
        return crc32_z(sum, reinterpret_cast<const Bytef*>(bytes), count);
    }

    uLong sum;
    std::future<uLong> pending; // its thread has ended when this is gone
};

/// One gzip stream, or several one behind the other, which together are the voxels.
class GzipData final : public IcsData {
public:
    GzipData(std::shared_ptr<const InputFile> from, std::uint64_t start) : file(std::move(from)), at(start) {
        constexpr int gzipOnly = 15 + 16; // the largest window, and the format
        if (inflateInit2(&stream, gzipOnly) != Z_OK)
            throw std::bad_alloc();
        inflateValidate(&stream, 0); // that is done here
    }
    ~GzipData() override { inflateEnd(&stream); }

    void Read(std::byte* to, std::size_t bytes) override {
        constexpr std::size_t piece = std::size_t{256} << 10;
        Checksum sum(checksum);
        const std::byte* open = to; // from here to `to` the sum is still to be made
        while (bytes > 0) {
            if (ended) {
                StartNextMember();
                sum = Checksum(checksum);
            }
            const std::size_t room = std::min(bytes, piece - static_cast<std::size_t>(to - open));
            stream.next_out = reinterpret_cast<Bytef*>(to);
            stream.avail_out = static_cast<uInt>(room);
            Inflate();
            to += room - stream.avail_out;
            bytes -= room - stream.avail_out;
            const auto unpacked = static_cast<std::size_t>(to - open);
            if (ended) {
                sum.Add(open, unpacked);
                CheckTrailer(sum.Get());
                open = to;
            } else if (unpacked == piece && bytes > 0) {
                sum.AddBeside(open, unpacked);
                open = to;
            }
        }
        sum.Add(open, static_cast<std::size_t>(to - open));
        checksum = sum.Get();
    }

    void Finish() override {
        if (ended)
            return;
        while (!ended) {
            Bytef beyond = 0;
            stream.next_out = &beyond;
            stream.avail_out = 1;
            Inflate();
            if (stream.avail_out == 0)
                ThrowTooLong(file->GetName());
        }
        CheckTrailer(checksum);
    }

private:
    /// Unpacks until the output is full, the input is used up, or the stream ends.
    void Inflate() {
        if (stream.avail_in == 0)
            Fill();
        const int result = inflate(&stream, Z_NO_FLUSH);
        if (result == Z_STREAM_END)
            ended = true;
        else if (result == Z_MEM_ERROR)
            throw std::bad_alloc();
        else if (result != Z_OK && result != Z_BUF_ERROR)
            ThrowDamaged(file->GetName(), stream.msg != nullptr ? stream.msg : "its packed data are not gzip data");
    }

    /// Reads more. The last bytes of what was read before stay in front of it, as the trailer may begin there.
    void Fill() {
        if (stream.next_in != nullptr)
            std::memmove(buffer.data(), stream.next_in - trailerBytes, trailerBytes);
        Bytef* const start = buffer.data() + trailerBytes;
        const std::size_t got = file->ReadAt(at, start, packedChunk);
        if (got == 0)
            ThrowCutOff(file->GetName());
        at += got;
        stream.next_in = start;
        stream.avail_in = static_cast<uInt>(got);
    }

    /// A stream ends with its checksum and the length of its data, each in four bytes, the lowest first.
    void CheckTrailer(uLong sum) const {
        const Bytef* const trailer = stream.next_in - trailerBytes;
        uLong sumSaid = 0;
        uLong lengthSaid = 0;
        for (unsigned i = 0; i < 4; ++i) {
            sumSaid |= static_cast<uLong>(trailer[i]) << (8 * i);
            lengthSaid |= static_cast<uLong>(trailer[4 + i]) << (8 * i);
        }
        if (sumSaid != sum)
            ThrowDamaged(file->GetName(), "the checksum of its packed data is wrong");
        if (lengthSaid != (stream.total_out & 0xFFFFFFFFU))
            ThrowDamaged(file->GetName(), "the length of its packed data is wrong");
    }

    void StartNextMember() {
        inflateReset(&stream);
        inflateValidate(&stream, 0);
        checksum = 0;
        ended = false;
    }

    static constexpr std::size_t trailerBytes = 8;

    std::shared_ptr<const InputFile> file;
    std::uint64_t at;
    std::vector<Bytef> buffer = std::vector<Bytef>(trailerBytes + packedChunk);
    z_stream stream{};
    uLong checksum = 0;
    bool ended = false;
};

/// Data of the old program "compress", which have no checksum.
class CompressData final : public IcsData {
public:
    CompressData(std::shared_ptr<const InputFile> from, std::uint64_t start)
        : file(std::move(from)), at(start), reader(archive_read_new()) {
        if (!reader)
            throw std::bad_alloc();
        archive_read_support_filter_compress(reader.get());
        archive_read_support_format_raw(reader.get());
        Check(archive_read_open(reader.get(), this, nullptr, &CompressData::OnRead, nullptr));
        archive_entry* entry = nullptr;
        Check(archive_read_next_header(reader.get(), &entry));
        // Data that are not packed at all would pass as they are.
        if (archive_filter_code(reader.get(), 0) != ARCHIVE_FILTER_COMPRESS)
            ThrowDamaged(file->GetName(), "its packed data are not those of compress");
    }

    void Read(std::byte* to, std::size_t bytes) override {
        while (bytes > 0) {
            const std::size_t got = ReadSome(to, bytes);
            if (got == 0)
                ThrowCutOff(file->GetName());
            to += got;
            bytes -= got;
        }
    }

    void Finish() override {
        std::byte beyond{};
        if (ReadSome(&beyond, 1) != 0)
            ThrowTooLong(file->GetName());
    }

private:
    struct Closer {
        void operator()(archive* open) const { archive_read_free(open); }
    };

    std::size_t ReadSome(std::byte* to, std::size_t bytes) {
        const la_ssize_t got = archive_read_data(reader.get(), to, bytes);
        if (got < 0)
            Check(static_cast<int>(got));
        return static_cast<std::size_t>(got);
    }

    void Check(int result) {
        if (failure)
            std::rethrow_exception(std::exchange(failure, nullptr));
        if (result == ARCHIVE_OK)
            return;
        const char* text = archive_error_string(reader.get());
        ThrowDamaged(file->GetName(), text != nullptr ? text : "its packed data cannot be read");
    }

    /// Called by the library, which knows no exceptions: they wait until it has returned.
    static la_ssize_t OnRead(archive*, void* self, const void** bytes) {
        auto& data = *static_cast<CompressData*>(self);
        try {
            const std::size_t got = data.file->ReadAt(data.at, data.buffer.data(), data.buffer.size());
            data.at += got;
            *bytes = data.buffer.data();
            return static_cast<la_ssize_t>(got);
        } catch (...) {
            data.failure = std::current_exception();
            return ARCHIVE_FATAL;
        }
    }

    std::shared_ptr<const InputFile> file;
    std::uint64_t at;
    std::vector<char> buffer = std::vector<char>(packedChunk);
    std::exception_ptr failure;
    std::unique_ptr<archive, Closer> reader;
};

} // namespace

bool IcsData::MoveTo(std::uint64_t) {
    return false;
}

std::unique_ptr<IcsData> OpenIcsData(std::shared_ptr<const InputFile> file, IcsCompression compression,
                                     std::uint64_t at, std::uint64_t bytes) {
    const std::uint64_t there = file->GetLength() > at ? file->GetLength() - at : 0;
    const std::uint64_t most = compression == IcsCompression::None   ? 1
                               : compression == IcsCompression::Gzip ? mostFromGzip
                                                                     : mostFromCompress;
    if (bytes / most > there || (most == 1 && bytes > there))
        ThrowDamaged(file->GetName(), "its header promises " + std::to_string(bytes) + " bytes of voxels, which " +
                                          std::to_string(there) + " bytes cannot hold");
    switch (compression) {
    case IcsCompression::Gzip:
        return std::make_unique<GzipData>(std::move(file), at);
    case IcsCompression::Compress:
        return std::make_unique<CompressData>(std::move(file), at);
    case IcsCompression::None:
        break;
    }
    return std::make_unique<PlainData>(std::move(file), at);
}

} // namespace kep::detail
