#include "core/kepcore/convert/kep_bytes.h"

#include <cstdint>
#include <utility>

namespace kep::detail {

namespace {

template <typename T>
void SwapAll(std::byte* numbers, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; i += sizeof(T)) {
        const T value = Load<T>(numbers + i);
        if constexpr (sizeof(T) == 2)
            Store<T>(numbers + i, __builtin_bswap16(value));
        else if constexpr (sizeof(T) == 4)
            Store<T>(numbers + i, __builtin_bswap32(value));
        else
            Store<T>(numbers + i, __builtin_bswap64(value));
    }
}

template <std::size_t Size>
void CopyAll(const std::byte* from, std::size_t fromStep, std::size_t count, std::byte* to, std::size_t toStep) {
    if (fromStep == 1 && toStep == 1) {
        std::memcpy(to, from, count * Size);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(to + i * toStep * Size, from + i * fromStep * Size, Size);
}

} // namespace

void SwapBytes(std::byte* numbers, std::size_t bytes, std::size_t size) {
    if (size == 2)
        SwapAll<std::uint16_t>(numbers, bytes);
    else if (size == 3)
        for (std::size_t i = 0; i + 2 < bytes; i += 3)
            std::swap(numbers[i], numbers[i + 2]);
    else if (size == 4)
        SwapAll<std::uint32_t>(numbers, bytes);
    else if (size == 8)
        SwapAll<std::uint64_t>(numbers, bytes);
}

void CopyApart(std::size_t size, const std::byte* from, std::size_t fromStep, std::size_t count, std::byte* to,
               std::size_t toStep) {
    switch (size) {
    case 1:
        return CopyAll<1>(from, fromStep, count, to, toStep);
    case 2:
        return CopyAll<2>(from, fromStep, count, to, toStep);
    case 4:
        return CopyAll<4>(from, fromStep, count, to, toStep);
    case 8:
        return CopyAll<8>(from, fromStep, count, to, toStep);
    default:
        return CopyAll<16>(from, fromStep, count, to, toStep);
    }
}

} // namespace kep::detail
