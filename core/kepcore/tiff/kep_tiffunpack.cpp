#include "core/kepcore/tiff/kep_tiffunpack.h"

#include "core/kepcore/convert/kep_bytes.h"

#include <bit>

namespace kep::detail {

namespace {

/// Three bytes, in the machine's order.
std::uint32_t LoadThreeBytes(const std::byte* from) {
    const auto at = [from](std::size_t i) { return std::to_integer<std::uint32_t>(from[i]); };
    if constexpr (isMachineBigEndian)
        return at(2) | at(1) << 8U | at(0) << 16U;
    else
        return at(0) | at(1) << 8U | at(2) << 16U;
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
    case 16:
    case 32:
    case 64:
    case 128: {
        const std::size_t bytes = packed.bits / 8;
        return CopyApart(bytes, row + first * bytes, stride, count, to, toStride);
    }
    case 24:
        for (std::size_t i = 0; i < count; ++i)
            Store(to + i * toStride * 4, LoadThreeBytes(row + (first + i * stride) * 3));
        return;
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

} // namespace kep::detail
