#include "core/kepcore/ics/kep_icsdata.h"

#include "core/kepcore/pack/kep_gunzip.h"

#include <archive.h>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

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

/// One gzip stream, or several one behind the other, which together are the voxels.
class GzipData final : public IcsData {
public:
    GzipData(std::shared_ptr<const InputFile> from, std::uint64_t start) : reader(std::move(from), start) {}

    void Read(std::byte* to, std::size_t bytes) override { reader.Read(to, bytes); }
    void Finish() override { reader.Finish(); }

private:
    GunzipReader reader;
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
