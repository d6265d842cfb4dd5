#include "bench/support/comparison.h"
#include "model/zel_picture.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// The picture of a YZ window of 1000 x 800 pixels, which is made in the order of the voxels and then turned.
void AddTurning(const std::string& name, bool mirrored) {
    AddComparison(name, [=] {
        constexpr int width = 800;
        constexpr int height = 1000;
        constexpr std::size_t bytes = std::size_t{3} * width * height;
        const auto picture = std::make_shared<std::vector<zel::Colour>>(width * height, zel::Colour(1, 2, 3));
        const auto turned = std::make_shared<std::vector<zel::Colour>>(width * height);
        const auto turn = [=] {
            zel::TransposePicture(picture->data(), width, height, mirrored, mirrored, turned->data());
            benchmark::ClobberMemory();
        };
        return Comparison{.work = turn, .yardstick = MakeCopy(bytes), .limit = 6, .bytes = bytes};
    });
}

[[maybe_unused]] const bool added = [] {
    AddTurning("turn a picture", false);
    AddTurning("turn and mirror a picture", true);
    return true;
}();

} // namespace
