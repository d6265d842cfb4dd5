#include "core/kepcore/tiff/kep_tiffpredictor.h"

#include "core/kepcore/convert/kep_bytes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace kep::detail {

namespace {

/// With the step known to the compiler, the last pixel stays in registers.
template <typename T, std::size_t step>
void AddUp(std::span<std::byte> row) {
    T last[step] = {};
    std::byte* const end = row.data() + row.size() / (sizeof(T) * step) * (sizeof(T) * step);
    for (std::byte* at = row.data(); at < end; at += sizeof(T) * step) {
        for (std::size_t i = 0; i < step; ++i) {
            last[i] = static_cast<T>(last[i] + Load<T>(at + i * sizeof(T)));
            Store(at + i * sizeof(T), last[i]);
        }
    }
}

template <typename T>
void AddUp(std::span<std::byte> row, std::size_t step) {
    switch (step) {
    case 1:
        return AddUp<T, 1>(row);
    case 2:
        return AddUp<T, 2>(row);
    case 3:
        return AddUp<T, 3>(row);
    default: // as many as a page may have
        return AddUp<T, 4>(row);
    }
}

template <typename T>
void TakeDifferences(std::span<const std::byte> row, std::size_t step, std::byte* to) {
    const std::size_t numbers = row.size() / sizeof(T);
    const std::byte* const from = row.data();
    std::copy_n(from, std::min(step, numbers) * sizeof(T), to); // none of an empty row, which may have no address
    for (std::size_t i = step; i < numbers; ++i)
        Store(to + i * sizeof(T),
              static_cast<T>(Load<T>(from + i * sizeof(T)) - Load<T>(from + (i - step) * sizeof(T))));
}

} // namespace

void TakeDifferences(std::span<const std::byte> row, unsigned bits, std::size_t step, std::byte* to) {
    switch (bits) {
    case 8:
        return TakeDifferences<std::uint8_t>(row, step, to);
    case 16:
        return TakeDifferences<std::uint16_t>(row, step, to);
    case 32:
        return TakeDifferences<std::uint32_t>(row, step, to);
    default:
        return TakeDifferences<std::uint64_t>(row, step, to);
    }
}

void AddUpDifferences(std::span<std::byte> row, unsigned bits, std::size_t step, bool swap) {
    if (swap)
        SwapBytes(row.data(), row.size(), bits / 8);
    switch (bits) {
    case 8:
        return AddUp<std::uint8_t>(row, step);
    case 16:
        return AddUp<std::uint16_t>(row, step);
    case 32:
        return AddUp<std::uint32_t>(row, step);
    default:
        return AddUp<std::uint64_t>(row, step);
    }
}

void AddUpFloats(std::span<std::byte> row, unsigned bits, std::size_t step) {
    AddUp<std::uint8_t>(row, step);
    const std::vector<std::byte> apart(row.begin(), row.end());
    const std::size_t bytes = bits / 8;
    const std::size_t count = row.size() / bytes;
    for (std::size_t k = 0; k < bytes; ++k) { // of the highest bytes, then of the next
        const std::size_t place = isMachineBigEndian ? k : bytes - 1 - k;
        for (std::size_t i = 0; i < count; ++i)
            row[i * bytes + place] = apart[k * count + i];
    }
}

} // namespace kep::detail
