#include "core/kepcore/tiff/kep_tiffunpack.h"

#include <bit>
#include <cstring>
#include <utility>

namespace kep::detail {

namespace {

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

/// Samples of whole bytes, 1 to 16 of them.
template <std::size_t Bytes>
void CopySamples(const std::byte* row, std::size_t first, std::size_t stride, std::size_t count, std::byte* to,
                 std::size_t toStride) {
    if (stride == 1 && toStride == 1) {
        std::memcpy(to, row + first * Bytes, count * Bytes);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(to + i * toStride * Bytes, row + (first + i * stride) * Bytes, Bytes);
}

/// Three bytes, in the machine's order.
std::uint32_t LoadThreeBytes(const std::byte* from) {
    const auto at = [from](std::size_t i) { return std::to_integer<std::uint32_t>(from[i]); };
    if constexpr (std::endian::native == std::endian::little)
        return at(0) | at(1) << 8U | at(2) << 16U;
    else
        return at(2) | at(1) << 8U | at(0) << 16U;
}

/// Up to 16 bits from a place in a row of bits on. Reads no byte beyond them.
std::uint32_t LoadBits(const std::byte* row, std::size_t place, unsigned bits) {
    const std::size_t firstByte = place / 8;
    const std::size_t lastByte = (place + bits - 1) / 8;
    std::uint32_t value = 0;
    for (std::size_t i = firstByte; i <= lastByte; ++i)
        value = value << 8U | std::to_integer<std::uint32_t>(row[i]);
    const std::size_t behind = (lastByte + 1) * 8 - (place + bits);
    return value >> behind & ((1U << bits) - 1U);
}

template <typename T>
void UnpackBits(const std::byte* row, std::size_t first, std::size_t stride, std::size_t count, unsigned bits,
                std::byte* to, std::size_t toStride) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t value = LoadBits(row, (first + i * stride) * bits, bits);
        Store(to + i * toStride * sizeof(T), static_cast<T>(value));
    }
}

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

} // namespace

std::size_t PackedSamples::GetUnpackedBytes() const {
    if (half || bits == 24)
        return 4;
    return bits <= 8 ? 1 : bits <= 16 ? 2 : bits / 8;
}

void UnpackSamples(const std::byte* row, std::size_t first, std::size_t stride, std::size_t count,
                   const PackedSamples& packed, std::byte* to, std::size_t toStride) {
    if (packed.half) {
        for (std::size_t i = 0; i < count; ++i)
            Store(to + i * toStride * 4, HalfToFloat(Load<std::uint16_t>(row + (first + i * stride) * 2)));
        return;
    }
    switch (packed.bits) {
    case 8:
        return CopySamples<1>(row, first, stride, count, to, toStride);
    case 16:
        return CopySamples<2>(row, first, stride, count, to, toStride);
    case 24:
        for (std::size_t i = 0; i < count; ++i)
            Store(to + i * toStride * 4, LoadThreeBytes(row + (first + i * stride) * 3));
        return;
    case 32:
        return CopySamples<4>(row, first, stride, count, to, toStride);
    case 64:
        return CopySamples<8>(row, first, stride, count, to, toStride);
    case 128:
        return CopySamples<16>(row, first, stride, count, to, toStride);
    default:
        if (packed.bits < 8)
            UnpackBits<std::uint8_t>(row, first, stride, count, packed.bits, to, toStride);
        else
            UnpackBits<std::uint16_t>(row, first, stride, count, packed.bits, to, toStride);
    }
}

float HalfToFloat(std::uint16_t half) {
    const std::uint32_t sign = (half & 0x8000U) << 16U;
    const std::uint32_t exponent = half >> 10U & 0x1FU;
    const std::uint32_t fraction = half & 0x3FFU;
    if (exponent == 0) { // zero, or a fraction of 2^-14 in steps of 2^-24: a float holds it exactly
        const float value = static_cast<float>(fraction) * 0x1p-24F;
        return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) | sign);
    }
    const std::uint32_t widened = exponent == 0x1FU ? 0xFFU : exponent + 127U - 15U;
    return std::bit_cast<float>(sign | widened << 23U | fraction << 13U);
}

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

} // namespace kep::detail
