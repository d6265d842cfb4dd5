#include "bench/support/comparison.h"
#include "model/zel_isosurfacegenerator.h"
#include "tests/volume/literal_generator.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

namespace {

constexpr std::size_t width = 256, height = 256, depth = 64;

struct Labels {
    std::vector<unsigned short> voxels = std::vector<unsigned short>(width * height * depth);
    std::map<unsigned short, std::size_t> toSurface;
};

/// A hundred cells, flat like the volume, some of which touch: a third of the voxels, with uneven surfaces.
std::shared_ptr<const Labels> MakeCells() {
    auto labels = std::make_shared<Labels>();
    std::mt19937 random(100);
    std::uniform_real_distribution<double> place(0, 1), radius(12, 26);
    for (unsigned short label = 1; label <= 100; ++label) {
        labels->toSurface.emplace(label, labels->toSurface.size());
        const double cx = place(random) * width, cy = place(random) * height, cz = place(random) * depth;
        const double r = radius(random), rz = r / 2;
        for (std::size_t z = 0; z < depth; ++z)
            for (std::size_t y = 0; y < height; ++y)
                for (std::size_t x = 0; x < width; ++x) {
                    const double dx = (static_cast<double>(x) - cx) / r, dy = (static_cast<double>(y) - cy) / r;
                    const double dz = (static_cast<double>(z) - cz) / rz;
                    unsigned short& voxel = labels->voxels[(z * height + y) * width + x];
                    const double distance = dx * dx + dy * dy + dz * dz;
                    if (voxel == 0 && distance < 1 && (distance < 0.9 || place(random) < 0.7))
                        voxel = label;
                }
    }
    return labels;
}

[[maybe_unused]] const bool added = [] {
    AddComparison(
        "surfaces 100 labels",
        [] {
            const auto labels = MakeCells();
            const auto work = [=] {
                zel::IsosurfaceGenerator generator;
                generator.GenerateSurfaces(labels->voxels.data(), labels->toSurface, width, height, depth, 1, 1, 2);
                benchmark::DoNotOptimize(generator.GetSurfaces().data());
            };
            const auto literally = [=] {
                const auto surfaces =
                    LiteralGenerator::Generate(labels->voxels.data(), labels->toSurface, width, height, depth, 1, 1, 2);
                benchmark::DoNotOptimize(surfaces.data());
            };
            return Comparison{.work = work,
                              .yardstick = literally,
                              .unit = "twins",
                              .limit = 0.3,
                              .bytes = labels->voxels.size() * sizeof(unsigned short)};
        },
        1.0);
    return true;
}();

} // namespace
