#include "model/zel_volumetexture.h"

#include <algorithm>
#include <array>
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
/// 4096. So a block's first alpha and the brightness of the next one tell all.
class AlphaTable {
public:
    AlphaTable() {
        for (std::uint32_t block = 0; block < blockCount; ++block) {
            std::uint32_t low = block << blockBits, high = std::min(low + (1U << blockBits), brightest + 1);
            const unsigned char first = AlphaOf(low);
            while (low < high) { // the first brightness with another alpha, if there is one before the block's end
                const std::uint32_t middle = low + (high - low) / 2;
                if (AlphaOf(middle) == first)
                    low = middle + 1;
                else
                    high = middle;
            }
            m_first[block] = first;
            m_next[block] = low;
        }
    }
    unsigned char operator[](std::uint32_t brightness) const {
        const std::uint32_t block = brightness >> blockBits;
        return static_cast<unsigned char>(m_first[block] + (brightness >= m_next[block] ? 1 : 0));
    }

private:
    static constexpr std::uint32_t blockBits = 12;
    static constexpr std::uint32_t blockCount = (brightest >> blockBits) + 1;
    std::array<unsigned char, blockCount> m_first;
    std::array<std::uint32_t, blockCount> m_next;
};

constexpr std::size_t voxelBytes = 4;

void FillRow(const Colour* from, std::size_t count, const AlphaTable& alpha, unsigned char* to) {
    for (std::size_t i = 0; i < count; ++i) {
        const Colour colour = from[i];
        to[voxelBytes * i] = colour.red;
        to[voxelBytes * i + 1] = colour.green;
        to[voxelBytes * i + 2] = colour.blue;
        to[voxelBytes * i + 3] = alpha[BrightnessOf(colour)];
    }
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
    static const AlphaTable alpha;
    const kep::Vector3d<std::size_t> padded(size.x + 2, size.y + 2, size.z + 2);
    const std::size_t bytes = CountOf({padded.x, padded.y, padded.z, voxelBytes});
    VolumeTexture volume{padded, std::make_unique_for_overwrite<unsigned char[]>(bytes)};

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
            FillRow(pixels, size.x, alpha, to);
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
