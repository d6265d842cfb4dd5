#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "core/kepalgo/kep_lut.h"
#include "core/kepalgo/kep_lutpixels.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

namespace {

using Pixel = kep::RGB_generic<unsigned char>;
using Palette = kep::LUT<unsigned char, Pixel>;

/// The gamma table of 16-bit images, which each step of a dragged triangle makes anew, beside computing every entry.
void AddGamma(const std::string& name, double gamma) {
    AddComparison(name, [gamma] {
        const auto table = std::make_shared<kep::LUT<unsigned short, unsigned char>>();
        table->Init(65536, 0, 65535);
        const auto plain = std::make_shared<std::vector<unsigned char>>(65536);
        const auto fillPlainly = [=] {
            for (std::size_t key = 0; key < 65536; ++key)
                (*plain)[key] =
                    static_cast<unsigned char>(255.0 * std::pow(static_cast<double>(key) / 65535.0, 1.0 / gamma) + 0.5);
            benchmark::ClobberMemory();
        };
        return Comparison{.work = [=] { table->CreateGamma(0, 65535, static_cast<float>(gamma), 0, 255); },
                          .yardstick = fillPlainly,
                          .unit = "plain fillings",
                          .limit = 1,
                          .bytes = 65536};
    });
}

/// What a table cannot spare: the place of each voxel, by one division in double precision, and its level.
template <typename T>
std::function<void()> MakeBareDivisions(std::shared_ptr<const kep::Image3d<T>> src, std::size_t count, long size,
                                        T first, T last) {
    const auto levels = std::make_shared<std::vector<unsigned char>>(static_cast<std::size_t>(size), 7);
    const auto pixels = std::make_shared<std::vector<Pixel>>(count);
    return [=] {
        const T* const from = src->GetVoxelAddr(0, 0, 20);
        const double low = static_cast<double>(first), range = static_cast<double>(last) - low;
        for (std::size_t i = 0; i < count; ++i) {
            const double place = (static_cast<double>(from[i]) - low) * static_cast<double>(size - 1) / range;
            const double kept = std::min(std::max(place, 0.0), static_cast<double>(size - 1));
            const unsigned char level = (*levels)[static_cast<std::size_t>(kept)];
            (*pixels)[i] = {level, level, level};
        }
        benchmark::ClobberMemory();
    };
}

template <typename T>
void AddPicture(const std::string& name, long size, T first, T last, bool withPalette, double limit,
                float gamma = 2.2F) {
    AddComparison(name, [=] {
        constexpr std::size_t count = 1000 * 800;
        const auto levels = std::make_shared<kep::LUT<T, unsigned char>>();
        levels->Init(size, first, last);
        levels->CreateGamma(first, last, gamma, 0, 255);
        const auto palette = std::make_shared<Palette>();
        palette->Init(256, 0, 255);
        for (int level = 0; level < 256; ++level)
            palette->Set(static_cast<unsigned char>(level), {static_cast<unsigned char>(level), 0, 77});
        const auto src = GetSampleFrame<T>();
        const auto pixels = std::make_shared<std::vector<Pixel>>(count);
        return Comparison{.work =
                              [=] {
                                  kep::MapToPixels(*levels, withPalette ? palette.get() : nullptr,
                                                   src->GetVoxelAddr(0, 0, 20), count, pixels->data());
                                  benchmark::ClobberMemory();
                              },
                          .yardstick = std::is_unsigned_v<T> ? MakeCopy(count * sizeof(Pixel))
                                                             : MakeBareDivisions<T>(src, count, size, first, last),
                          .unit = std::is_unsigned_v<T> ? "copies" : "bare divisions",
                          .limit = limit,
                          .bytes = count * sizeof(Pixel)};
    });
}

[[maybe_unused]] const bool added = [] {
    AddGamma("gamma table, straight", 1.0);
    AddGamma("gamma table, 2.2", 2.2);
    AddPicture<unsigned short>("pixels gray uint16", 65536, 0, 65535, false, 4);
    AddPicture<unsigned short>("pixels palette uint16", 65536, 0, 65535, true, 4);
    AddPicture<unsigned short>("pixels gray uint16, straight", 65536, 0, 65535, false, 2.5, 1.0F);
    AddPicture<unsigned char>("pixels gray uint8", 256, 0, 255, false, 4);
    AddPicture<int>("pixels gray int", 4096, 0, 4095, false, 1.2);
    AddPicture<float>("pixels gray float", 256, 0.0F, 4095.0F, false, 1.2);
    return true;
}();

} // namespace
