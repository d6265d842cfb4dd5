#include "model/zel_volumetexture.h"

#include "core/kepcore/kep_hugepages.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <numbers>

namespace zel {

namespace {

using Colour = kep::RGB_generic<unsigned char>;

// Weights of the brightness in ten-thousandths, so that it is exact in whole numbers.
constexpr std::uint32_t greenWeight = 5870, redWeight = 2989, blueWeight = 1141;
constexpr std::uint32_t brightest = 255 * (greenWeight + redWeight + blueWeight);

constexpr std::uint32_t BrightnessOf(const Colour& colour) {
    return greenWeight * colour.green + redWeight * colour.red + blueWeight * colour.blue;
}

unsigned char AlphaOf(std::uint32_t brightness) {
    const double share = static_cast<double>(brightness) / brightest;
    return static_cast<unsigned char>(255.0 * std::sin(share * std::numbers::pi * 0.5));
}

/// Alpha of all brightnesses, in short: it rises by one after no less than 6000 steps, hence at most once in a block of
/// 4096. An entry says for a block what to add to a brightness so that the sum has the alpha above its lowest 12 bits:
/// the sum passes a multiple of 4096 where the alpha rises.
class AlphaTable {
public:
    AlphaTable() {
        for (std::uint32_t block = 0; block < blockCount; ++block) {
            const std::uint32_t begin = block * blockSize, end = begin + blockSize;
            const std::uint32_t first = AlphaOf(begin);
            m_added[block] = (first + 1) * blockSize - FindRise(begin, std::min(end, brightest + 1), end);
        }
    }
    std::uint32_t operator[](std::uint32_t brightness) const {
        return (m_added[brightness / blockSize] + brightness) / blockSize;
    }

private:
    static constexpr std::uint32_t blockSize = 4096;
    static constexpr std::uint32_t blockCount = brightest / blockSize + 1;

    /// The first brightness whose alpha is not that of `begin`, or `none` if there is none before `end`.
    static std::uint32_t FindRise(std::uint32_t begin, std::uint32_t end, std::uint32_t none) {
        const unsigned char first = AlphaOf(begin);
        if (AlphaOf(end - 1) == first)
            return none;
        std::uint32_t low = begin, high = end - 1; // the rise is behind low and not behind high
        while (high - low > 1) {
            const std::uint32_t middle = low + (high - low) / 2;
            (AlphaOf(middle) == first ? low : high) = middle;
        }
        return high;
    }

    std::array<std::uint32_t, blockCount> m_added;
};

constexpr std::size_t voxelBytes = 4;

static_assert(std::endian::native == std::endian::little); // R, G, B, A are the bytes of a number from the lowest up

/// What each channel adds to the brightness.
struct BrightnessTable {
    std::array<std::uint32_t, 256> red, green, blue;

    BrightnessTable() {
        for (std::uint32_t i = 0; i < 256; ++i) {
            red[i] = redWeight * i;
            green[i] = greenWeight * i;
            blue[i] = blueWeight * i;
        }
    }
};

/// Pixels are read as numbers of four bytes, which takes a byte of the next pixel along, and voxels written as such.
void FillRow(const Colour* from, std::size_t count, unsigned char* to) {
    static const AlphaTable alpha;
    static const BrightnessTable added;
    const auto fill = [&](std::size_t i, std::size_t readable) {
        std::uint32_t rgb = 0;
        std::memcpy(&rgb, from + i, readable);
        rgb &= 0x00FF'FFFFU;
        const std::uint32_t brightness = added.red[rgb & 0xFFU] + added.green[rgb >> 8 & 0xFFU] + added.blue[rgb >> 16];
        const std::uint32_t voxel = rgb | alpha[brightness] << 24;
        std::memcpy(to + voxelBytes * i, &voxel, voxelBytes);
    };
    if (count == 0)
        return;
    for (std::size_t i = 0; i + 1 < count; ++i)
        fill(i, voxelBytes);
    fill(count - 1, sizeof(Colour));
}

/// @throws std::bad_alloc if the product is too big for its type
std::size_t CountOf(std::initializer_list<std::size_t> factors) {
    std::size_t product = 1;
    for (const std::size_t factor : factors)
        if (__builtin_mul_overflow(product, factor, &product))
            throw std::bad_alloc();
    return product;
}

} // namespace

int CountMappedVoxels(const kep::Vector3d<std::size_t>& size) {
    const std::size_t count = CountOf({size.x, size.y, size.z});
    if (count > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::bad_alloc();
    return static_cast<int>(count);
}

kep::Vector3d<float> ComputeVolumeScale(const kep::Vector3d<std::size_t>& size, const kep::Resolution& resolution) {
    const kep::Vector3d<float> r = resolution.GetUsable().GetRes();
    const auto x = static_cast<float>(size.x), y = static_cast<float>(size.y), z = static_cast<float>(size.z);
    const float paddedX = x + 2.0F, paddedY = y + 2.0F, paddedZ = z + 2.0F;
    const float aspectY = paddedX * r.y / paddedY;
    const float aspectZ = paddedX * r.z / paddedZ;
    const float longest = std::max({x / paddedX / r.x, y / paddedY / aspectY, z / paddedZ / aspectZ});
    return {longest * r.x, longest * aspectY, longest * aspectZ * 0.5F};
}

unsigned char VoxelAlpha(const kep::RGB_generic<unsigned char>& colour) {
    return AlphaOf(BrightnessOf(colour));
}

VolumeTexture MakeVolume(const kep::RGB_generic<unsigned char>* pixels, const kep::Vector3d<std::size_t>& size) {
    const kep::Vector3d<std::size_t> padded(size.x + 2, size.y + 2, size.z + 2);
    const std::size_t bytes = CountOf({padded.x, padded.y, padded.z, voxelBytes});
    VolumeTexture volume{padded, std::make_unique_for_overwrite<unsigned char[]>(bytes)};
    kep::AdviseHugePages(volume.rgba.get(), bytes);

    const std::size_t rowBytes = voxelBytes * padded.x, sliceBytes = rowBytes * padded.y;
    unsigned char* to = volume.rgba.get();
    const auto clear = [&to](std::size_t count) {
        std::memset(to, 0, count);
        to += count;
    };
    clear(sliceBytes);
    for (std::size_t z = 0; z < size.z; ++z) {
        clear(rowBytes);
        for (std::size_t y = 0; y < size.y; ++y) {
            clear(voxelBytes);
            FillRow(pixels, size.x, to);
            pixels += size.x;
            to += voxelBytes * size.x;
            clear(voxelBytes);
        }
        clear(rowBytes);
    }
    clear(sliceBytes);
    return volume;
}

} // namespace zel
