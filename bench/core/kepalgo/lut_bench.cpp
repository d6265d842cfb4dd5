#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "core/kepalgo/kep_lut.h"
#include "core/kepalgo/kep_lutpixels.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

using Pixel = kep::RGB_generic<unsigned char>;
using Palette = kep::LUT<unsigned char, Pixel>;

/// The gamma table of 16-bit images, which each step of a dragged triangle makes anew.
void AddGamma(const std::string& name, float gamma) {
    AddComparison(name, [gamma] {
        const auto table = std::make_shared<kep::LUT<unsigned short, unsigned char>>();
        table->Init(65536, 0, 65535);
        return Comparison{
            .work = [=] { table->CreateGamma(0, 65535, gamma, 0, 255); }, .yardstick = MakeCopy(65536), .bytes = 65536};
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
    AddGamma("gamma table, straight", 1.0F);
    AddGamma("gamma table, 2.2", 2.2F);
    AddPicture<unsigned short>("pixels gray uint16", 65536, 0, 65535, false, 4);
    AddPicture<unsigned short>("pixels palette uint16", 65536, 0, 65535, true, 4);
    AddPicture<unsigned char>("pixels gray uint8", 256, 0, 255, false, 4);
    AddPicture<int>("pixels gray int", 4096, 0, 4095, false, 0);
    AddPicture<float>("pixels gray float", 256, 0.0F, 4095.0F, false, 0);
    return true;
}();

} // namespace
