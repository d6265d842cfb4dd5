#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "core/kepalgo/kep_lut.h"
#include "core/kepalgo/kep_lutpixels.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
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

template <typename T>
void AddPicture(const std::string& name, long size, T first, T last, bool withPalette, double limit) {
    AddComparison(name, [=] {
        constexpr std::size_t count = 1000 * 800;
        const auto levels = std::make_shared<kep::LUT<T, unsigned char>>();
        levels->Init(size, first, last);
        levels->CreateGamma(first, last, 2.2F, 0, 255);
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
                          .yardstick = MakeCopy(count * sizeof(Pixel)),
                          .limit = limit,
                          .bytes = count * sizeof(Pixel)};
    });
}

[[maybe_unused]] const bool added = [] {
    AddGamma("gamma table, straight", 1.0);
    AddGamma("gamma table, 2.2", 2.2);
    AddPicture<unsigned short>("pixels gray uint16", 65536, 0, 65535, false, 4);
    AddPicture<unsigned short>("pixels palette uint16", 65536, 0, 65535, true, 4);
    AddPicture<unsigned char>("pixels gray uint8", 256, 0, 255, false, 4);
    AddPicture<int>("pixels gray int", 4096, 0, 4095, false, 20);
    AddPicture<float>("pixels gray float", 256, 0.0F, 4095.0F, false, 40);
    return true;
}();

} // namespace
