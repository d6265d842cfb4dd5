#include "core/kepcore/kep_tiffplain.h"

#include "core/kepcore/kep_tiffunpack.h"

#include <algorithm>

namespace kep::detail {

namespace {

/// A piece that is still in the cache when its bytes are turned round.
constexpr std::size_t pieceBytes = std::size_t{1} << 18U;

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
    if (swap == 1)
        return file.ReadExactly(at, target, bytes);
    for (std::size_t done = 0; done < bytes; done += pieceBytes) {
        const std::size_t piece = std::min(pieceBytes, bytes - done);
        file.ReadExactly(at + done, target + done, piece);
        SwapBytes(target + done, piece, swap);
    }
}

} // namespace kep::detail
