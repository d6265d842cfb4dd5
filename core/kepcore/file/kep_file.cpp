#include "core/kepcore/file/kep_file.h"

#include "core/kepcore/file/kep_systemerror.h"
#include "core/kepcore/file/kep_watchstate.h"
#include "core/kepcore/kep_threads.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace kep::detail {

namespace {

/// Enough for the magic number of a TIFF and the first two lines of an ICS header.
constexpr std::size_t headBytes = 512;

/// Calls the opener of the format that a file begins like.
template <typename Opened>
std::unique_ptr<Opened> OpenByContent(const char* fileName,
                                      std::unique_ptr<Opened> (*openTiff)(std::unique_ptr<InputFile>),
                                      std::unique_ptr<Opened> (*openIcs)(std::unique_ptr<InputFile>)) {
    auto file = std::make_unique<InputFile>(fileName != nullptr ? fileName : "");
    std::array<unsigned char, headBytes> head{};
    const std::size_t bytes = file->ReadAt(0, head.data(), head.size());
    if (LooksLikeTiff(head.data(), bytes))
        return openTiff(std::move(file));
    if (LooksLikeIcs(head.data(), bytes))
        return openIcs(std::move(file));
    ThrowCannotRead("", "", file->GetName(), " is not an ICS or TIFF image.");
}

} // namespace

InputFile::InputFile(std::string fileName) : name(std::move(fileName)), file(name.c_str()), watch(WatchOfThread()) {
    if (!file.IsOpen())
        ThrowCannotOpen(name, file.GetError());
}

std::size_t InputFile::ReadAt(std::uint64_t at, void* to, std::size_t bytes) const {
    return watch ? ReadWatched(at, static_cast<std::byte*>(to), bytes) : ReadAtOnce(at, to, bytes);
}

std::size_t InputFile::ReadAtOnce(std::uint64_t at, void* to, std::size_t bytes) const {
    const std::ptrdiff_t got = file.ReadAt(at, to, bytes);
    if (got < 0)
        ThrowDamaged(name, "reading failed: " + SystemReason(errno));
    return static_cast<std::size_t>(got);
}

/// Reads piece by piece, so that the watch can stop it soon, however slow the file is.
std::size_t InputFile::ReadWatched(std::uint64_t at, std::byte* to, std::size_t bytes) const {
    constexpr std::size_t pieceBytes = std::size_t{1} << 20;
    std::size_t done = 0;
    while (done < bytes) {
        const std::size_t piece = std::min(pieceBytes, bytes - done);
        const std::size_t got = ReadAtOnce(at + done, to + done, piece);
        watch->AddBytes(got);
        done += got;
        if (got < piece)
            break;
    }
    return done;
}

void InputFile::ReadExactly(std::uint64_t at, void* to, std::size_t bytes) const {
    const std::size_t got = ReadAt(at, to, bytes);
    if (got < bytes)
        ThrowDamaged(name, "it ends at byte " + std::to_string(at + got) + ", where " + std::to_string(bytes - got) +
                               " more bytes are needed");
}

void InputFile::ReadVoxels(std::uint64_t at, std::byte* to, std::size_t bytes) const {
    // The system copies from whole pages, and the processor takes a store for one that a coming load from the same
    // place of another page must wait for. Where the target stands a few bytes further in its page than the data do in
    // theirs, as every large block of malloc does for data that begin with a page, reading takes twice as long.
    // Reading further on in the target, and moving the bytes while they are in the cache, does not.
    constexpr std::size_t page = 4096;
    constexpr std::size_t tooNear = 64;
    constexpr std::size_t shift = 496;
    constexpr std::size_t chunk = std::size_t{128} << 10;
    const std::size_t distance = (reinterpret_cast<std::uintptr_t>(to) - static_cast<std::size_t>(at)) % page;
    if (distance > 0 && distance < tooNear) {
        while (bytes > 2 * shift) {
            const std::size_t part = std::min(chunk, bytes - shift);
            ReadExactly(at, to + shift, part);
            std::memmove(to, to + shift, part);
            at += part;
            to += part;
            bytes -= part;
        }
    }
    ReadExactly(at, to, bytes);
}

void ReadInShares(std::size_t bytes, const std::function<void(std::size_t from, std::size_t until)>& read) {
    constexpr std::size_t page = std::size_t{2} << 20; // shares are whole pages, also of huge ones, and worth a thread
    const std::size_t shares = std::clamp<std::size_t>(bytes / page, 1, 4 * GetThreadLimit()); // none waits long
    const std::size_t share = (bytes / shares + page - 1) / page * page;
    ForEachPart(shares, [&](std::size_t i) {
        const std::size_t from = std::min(i * share, bytes);
        const std::size_t until = i + 1 == shares ? bytes : std::min(from + share, bytes);
        if (from < until || bytes == 0)
            read(from, until);
    });
}

std::unique_ptr<FrameSource> OpenFrame(const char* fileName) {
    return OpenByContent(fileName, &OpenTiffFrame, &OpenIcsFrame);
}

std::unique_ptr<FrameSet> OpenFrames(const char* fileName) {
    return OpenByContent(fileName, &OpenTiffFrames, &OpenIcsFrames);
}

} // namespace kep::detail
