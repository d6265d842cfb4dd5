#include "core/kepcore/kep_tiffplain.h"

#include "core/kepcore/kep_tiffunpack.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace kep::detail {

namespace {

/// A piece that is still in the cache when it is looked at again.
constexpr std::size_t pieceBytes = std::size_t{1} << 18U;

constexpr std::uint64_t pageBytes = 4096;

/// Places in the memory's and the file's pages that are one to sixteen bytes apart make the system's copy take two to
/// four times as long on some processors. Large blocks begin 16 bytes into a page, so this is not rare.
bool IsSlow(std::uint64_t at, const std::byte* to) {
    const std::uint64_t ahead = (reinterpret_cast<std::uintptr_t>(to) - at) % pageBytes;
    return ahead >= 1 && ahead <= 16;
}

/// Memory for a piece, half a page off the place that it goes to.
class PieceBuffer {
public:
    std::byte* GetFor(const std::byte* to) {
        memory.resize(pieceBytes + pageBytes);
        const auto from = reinterpret_cast<std::uintptr_t>(memory.data());
        const auto target = reinterpret_cast<std::uintptr_t>(to);
        return memory.data() + (target + pageBytes / 2 - from) % pageBytes;
    }

private:
    std::vector<std::byte> memory;
};

} // namespace

PlainReader::PlainReader(const InputFile& source, std::byte* target, std::size_t swapBytes)
    : file(source), to(target), swap(swapBytes) {}

void PlainReader::Add(std::uint64_t at, std::size_t bytes) {
    if (runBytes == 0 || at != runAt + runBytes) {
        Finish();
        runAt = at;
    }
    runBytes += bytes;
}

void PlainReader::Finish() {
    Read(runAt, to, runBytes);
    to += runBytes;
    runBytes = 0;
}

void PlainReader::Read(std::uint64_t at, std::byte* target, std::size_t bytes) const {
    const bool isSlow = IsSlow(at, target) && bytes > pageBytes;
    if (!isSlow && swap == 1)
        return file.ReadExactly(at, target, bytes);
    PieceBuffer buffer;
    for (std::size_t done = 0; done < bytes; done += pieceBytes) {
        const std::size_t piece = std::min(pieceBytes, bytes - done);
        std::byte* const place = target + done;
        std::byte* const first = isSlow ? buffer.GetFor(place) : place;
        file.ReadExactly(at + done, first, piece);
        if (isSlow)
            std::memcpy(place, first, piece);
        SwapBytes(place, piece, swap);
    }
}

} // namespace kep::detail
