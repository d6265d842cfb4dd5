#include "core/kepcore/tiff/kep_tiffplain.h"

#include "core/kepcore/convert/kep_bytes.h"

#include <algorithm>

namespace kep::detail {

namespace {

/// A piece that is still in the cache when it is looked at again.
constexpr std::size_t pieceBytes = std::size_t{1} << 18U;

} // namespace

PlainReader::PlainReader(const InputFile& source, std::byte* target, std::size_t swapBytes)
    : file(source), to(target), swap(swapBytes) {}

void PlainReader::Add(std::uint64_t at, std::size_t bytes) {
    if (stretches.empty() || at != stretches.back().at + stretches.back().bytes)
        stretches.push_back({at, 0});
    stretches.back().bytes += bytes;
    total += bytes;
}

void PlainReader::Finish() const {
    ReadInShares(total, [this](std::size_t from, std::size_t until) { ReadShare(from, until); });
}

void PlainReader::ReadShare(std::size_t from, std::size_t until) const {
    std::size_t begin = 0; // of the stretch, among all bytes
    for (const Stretch& stretch : stretches) {
        const std::size_t end = begin + stretch.bytes;
        const std::size_t first = std::max(begin, from);
        const std::size_t last = std::min(end, until);
        if (first < last)
            ReadStretch(stretch.at + (first - begin), to + first, last - first);
        begin = end;
    }
}

void PlainReader::ReadStretch(std::uint64_t at, std::byte* target, std::size_t bytes) const {
    const std::size_t step = swap == 1 ? bytes : pieceBytes;
    for (std::size_t done = 0; done < bytes; done += step) {
        const std::size_t piece = std::min(step, bytes - done);
        file.ReadVoxels(at + done, target + done, piece);
        SwapBytes(target + done, piece, swap);
    }
}

} // namespace kep::detail
