// What labels over a picture cost: marking their boundaries and mixing their colours in, in 1000 x 800 pixels of discs.

#include "bench/support/comparison.h"
#include "model/zel_labelpicture.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

namespace {

using namespace zel;
using Colour = kep::RGB_generic<unsigned char>;

constexpr std::size_t width = 1000, height = 800, count = width * height;

/// Discs of 20 to 40 pixels radius, a hundred a side apart, each with a label of its own.
std::vector<LabelPixel> MakeDiscs() {
    std::vector<LabelPixel> labels(count);
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t disc = 1 + x / 100 + 10 * (y / 100);
            const auto dx = static_cast<double>(x % 100) - 50, dy = static_cast<double>(y % 100) - 50;
            const auto radius = static_cast<double>(20 + disc * 7 % 21);
            if (dx * dx + dy * dy <= radius * radius)
                labels[x + width * y] = static_cast<LabelPixel>(disc);
        }
    return labels;
}

std::vector<LabelPixel> MakeMarkedDiscs() {
    std::vector<LabelPixel> labels = MakeDiscs();
    MarkBoundaries(labels.data(), width, height);
    return labels;
}

/// A projection's outlines: boundaries alone.
std::vector<LabelPixel> MakeOutlines() {
    std::vector<LabelPixel> labels = MakeMarkedDiscs();
    for (LabelPixel& label : labels)
        label = (label & boundaryBit) != 0 ? LabelOf(label) : LabelPixel{0};
    return labels;
}

std::vector<Colour> MakePicture() {
    std::vector<Colour> picture(count);
    for (std::size_t i = 0; i < count; ++i)
        picture[i] = {static_cast<unsigned char>(i), static_cast<unsigned char>(i / 3), 90};
    return picture;
}

Colour ColourOf(LabelPixel label) {
    return {static_cast<unsigned char>(37 * label), static_cast<unsigned char>(91 * label), 128};
}

/// No branch depends on the labels, so a picture that is marked already takes as long.
void AddMarking() {
    AddComparison("mark boundaries", [] {
        constexpr std::size_t bytes = count * sizeof(LabelPixel);
        const auto labels = std::make_shared<std::vector<LabelPixel>>(MakeDiscs());
        const auto mark = [labels] {
            MarkBoundaries(labels->data(), width, height);
            benchmark::ClobberMemory();
        };
        return Comparison{.work = mark, .yardstick = MakeCopy(bytes), .limit = 6, .bytes = bytes};
    });
}

void AddCut(const char* name, float transparency) {
    AddComparison(name, [transparency] {
        const auto labels = std::make_shared<std::vector<LabelPixel>>(MakeMarkedDiscs());
        const auto picture = std::make_shared<std::vector<Colour>>(MakePicture());
        const auto blend = [=] {
            BlendCut(labels->data(), count, transparency, ColourOf, picture->data());
            benchmark::ClobberMemory();
        };
        return Comparison{.work = blend, .yardstick = MakeCopy(3 * count), .limit = 12, .bytes = 3 * count};
    });
}

void AddProjection(const char* name, float transparency) {
    AddComparison(name, [transparency] {
        const auto labels = std::make_shared<std::vector<LabelPixel>>(MakeDiscs());
        const auto outlines = std::make_shared<std::vector<LabelPixel>>(MakeOutlines());
        const auto picture = std::make_shared<std::vector<Colour>>(MakePicture());
        const auto blend = [=] {
            BlendProjection(labels->data(), outlines->data(), count, transparency, ColourOf, picture->data());
            benchmark::ClobberMemory();
        };
        return Comparison{.work = blend, .yardstick = MakeCopy(3 * count), .limit = 12, .bytes = 3 * count};
    });
}

[[maybe_unused]] const bool added = [] {
    AddMarking();
    AddCut("labels of a cut, filled", 0.0F);
    AddCut("labels of a cut, half transparent", 0.5F);
    AddCut("labels of a cut, outlined", 1.0F);
    AddProjection("labels of a projection, half transparent", 0.5F);
    AddProjection("labels of a projection, outlined", 1.0F);
    return true;
}();

} // namespace
