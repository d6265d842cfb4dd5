// What the texture of the volume view costs: from the mapped pixels of 512 x 512 x 64 voxels to their padded RGBA
// volume.

#include "bench/support/comparison.h"
#include "model/zel_volumetexture.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace {

using namespace zel;
using Colour = kep::RGB_generic<unsigned char>;

constexpr kep::Vector3d<std::size_t> size(512, 512, 64);
constexpr std::size_t count = size.x * size.y * size.z;
constexpr std::size_t bytes = 4 * (size.x + 2) * (size.y + 2) * (size.z + 2);

/// A spread of bits with no order in it.
std::uint32_t Mixed(std::size_t i) {
    auto bits = static_cast<std::uint32_t>(i) * 2654435761U;
    bits ^= bits >> 15;
    return bits * 2246822519U;
}

void AddTexture(const char* name, const std::function<Colour(std::uint32_t)>& colourOf) {
    AddComparison(name, [colourOf] {
        const auto pixels = std::make_shared<std::vector<Colour>>(count);
        for (std::size_t i = 0; i < count; ++i)
            (*pixels)[i] = colourOf(Mixed(i) >> 8);
        const auto make = [pixels] {
            const VolumeTexture volume = MakeVolume(pixels->data(), size);
            benchmark::DoNotOptimize(volume.rgba.get());
            benchmark::ClobberMemory();
        };
        return Comparison{.work = make, .yardstick = MakeCopy(bytes), .limit = 6, .bytes = bytes};
    });
}

[[maybe_unused]] const bool added = [] {
    AddTexture("volume texture, gray noise", [](std::uint32_t bits) {
        const auto level = static_cast<unsigned char>(bits);
        return Colour(level, level, level);
    });
    AddTexture("volume texture, coloured noise", [](std::uint32_t bits) {
        return Colour(static_cast<unsigned char>(bits), static_cast<unsigned char>(bits >> 8),
                      static_cast<unsigned char>(bits >> 16));
    });
    return true;
}();

} // namespace
