#pragma once

// Private to the library: numbers in rows of bytes. Pure functions, which look at no alignment.

#include <bit>
#include <cstddef>
#include <cstring>

namespace kep::detail {

constexpr bool isMachineBigEndian = std::endian::native == std::endian::big;

template <typename T>
T Load(const std::byte* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <typename T>
void Store(std::byte* to, T value) {
    std::memcpy(to, &value, sizeof value);
}

/// Turns the order of the bytes of each number round. `bytes` is a multiple of `size`: 1, 2, 3, 4 or 8.
void SwapBytes(std::byte* numbers, std::size_t bytes, std::size_t size);

/// Copies numbers that lie apart, or are to lie apart.
/// @param size              bytes of a number: 1, 2, 4, 8 or 16
/// @param fromStep, toStep  numbers from one to the next
void CopyApart(std::size_t size, const std::byte* from, std::size_t fromStep, std::size_t count, std::byte* to,
               std::size_t toStep);

} // namespace kep::detail
