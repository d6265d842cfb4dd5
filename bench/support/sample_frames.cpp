#include "bench/support/sample_frames.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <type_traits>
#include <vector>

namespace {

constexpr std::size_t width = 512, height = 512, depth = 64;

/// Numbers of 0 to 4095, x fastest.
std::vector<unsigned short> MakeCells() {
    std::mt19937 random(1234);
    const auto uniform = [&random](float low, float high) {
        return low + (high - low) * static_cast<float>(random()) * 0x1p-32F;
    };
    std::vector<float> light(width * height * depth, 110.0F); // camera offset and stray light
    for (int cell = 0; cell < 150; ++cell) {
        const float x = uniform(0, width), y = uniform(0, height), z = uniform(0, depth);
        const float radius = uniform(8, 24), flat = 6.25F, peak = uniform(300, 3000);
        const auto from = [radius](float centre, float scale) {
            return static_cast<std::size_t>(std::max(0.0F, centre - 2.5F * radius / scale));
        };
        const auto to = [radius](float centre, float scale, std::size_t extent) {
            return std::min(extent, static_cast<std::size_t>(centre + 2.5F * radius / scale));
        };
        for (std::size_t k = from(z, flat); k < to(z, flat, depth); ++k) {
            for (std::size_t j = from(y, 1.0F); j < to(y, 1.0F, height); ++j) {
                for (std::size_t i = from(x, 1.0F); i < to(x, 1.0F, width); ++i) {
                    const float dx = static_cast<float>(i) - x, dy = static_cast<float>(j) - y;
                    const float dz = (static_cast<float>(k) - z) * flat;
                    const float distance = (dx * dx + dy * dy + dz * dz) / (radius * radius);
                    light[(k * height + j) * width + i] += peak * std::exp(-2.0F * distance);
                }
            }
        }
    }
    std::vector<unsigned short> numbers(light.size());
    for (std::size_t i = 0; i < light.size(); ++i) {
        // Noise of photons and camera: four bytes added up are bell-shaped enough, deviation 148.
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        const std::uint32_t sum = (bits & 255U) + (bits >> 8 & 255U) + (bits >> 16 & 255U) + (bits >> 24);
        const float noise = (static_cast<float>(sum) - 510.0F) / 148.0F;
        numbers[i] = static_cast<unsigned short>(std::clamp(light[i] + noise * std::sqrt(light[i]), 0.0F, 4095.0F));
    }
    return numbers;
}

template <typename T>
struct Convert {
    static T From(unsigned short number) {
        return sizeof(T) == 1 ? static_cast<T>(number / 16) : static_cast<T>(number);
    }
};
template <typename C>
struct Convert<kep::RGB_generic<C>> {
    static kep::RGB_generic<C> From(unsigned short number) {
        const C green = Convert<C>::From(number);
        return {static_cast<C>(green / 3), green, static_cast<C>(green / 2)};
    }
};

} // namespace

template <typename T>
std::shared_ptr<const kep::Image3d<T>> GetSampleFrame() {
    static std::weak_ptr<const kep::Image3d<T>> kept; // types that are done with give their memory back
    if (auto frame = kept.lock())
        return frame;
    static const std::vector<unsigned short> cells = MakeCells();
    auto frame = std::make_shared<kep::Image3d<T>>();
    frame->MakeRoom(width, height, depth);
    std::transform(cells.begin(), cells.end(), frame->begin(), Convert<T>::From);
    frame->SetOffset({12.3F, -45.6F, 7.8F});
    frame->SetResolution({10.0F, 10.0F, 1.6F});
    kept = frame;
    return frame;
}

#define ZEL_INSTANTIATE(T) template std::shared_ptr<const kep::Image3d<T>> GetSampleFrame<T>();
KEP_GRAY_TYPES(ZEL_INSTANTIATE)
KEP_COLOUR_TYPES(ZEL_INSTANTIATE)
ZEL_INSTANTIATE(unsigned long long)
ZEL_INSTANTIATE(double)
