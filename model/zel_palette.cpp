#include "model/zel_palette.h"

namespace zel {

namespace {

using Colour = kep::RGB_generic<unsigned char>;

constexpr std::size_t levels = 256;

unsigned char Between(unsigned char from, unsigned char to, float part) {
    return static_cast<unsigned char>(static_cast<float>(from) + static_cast<float>(to - from) * part);
}

/// A ramp hits both of its ends, so the end of one and the start of the next are the same colour twice.
void AppendRamp(Palette& palette, const Colour& from, const Colour& to, int count) {
    for (int i = 0; i < count; ++i) {
        const float part = static_cast<float>(i) / static_cast<float>(count - 1);
        palette.push_back(
            {Between(from.red, to.red, part), Between(from.green, to.green, part), Between(from.blue, to.blue, part)});
    }
}

Palette MakePeriodic() {
    constexpr Colour blue{0, 0, 255}, cyan{0, 255, 255}, green{0, 255, 0}, yellow{255, 255, 0}, red{255, 0, 0},
        magenta{255, 0, 255};
    Palette palette;
    AppendRamp(palette, blue, cyan, 43);
    AppendRamp(palette, cyan, green, 43);
    AppendRamp(palette, green, yellow, 43);
    AppendRamp(palette, yellow, red, 42);
    AppendRamp(palette, red, magenta, 43);
    AppendRamp(palette, magenta, blue, 42);
    return palette;
}

Palette MakeGray() {
    Palette palette;
    for (std::size_t i = 0; i < levels; ++i) {
        const auto level = static_cast<unsigned char>(i);
        palette.push_back({level, level, level});
    }
    return palette;
}

} // namespace

void CreatePalette(long kind, Palette& palette) {
    switch (kind) {
    case zel_labelsPalette:
        palette = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}, {0, 255, 255}, {255, 0, 255},
                   {128, 0, 0}, {0, 128, 0}, {0, 0, 128}, {128, 128, 0}, {0, 128, 128}, {128, 0, 128}};
        break;
    case zel_saturationPalette:
        palette = MakeGray();
        palette.front() = {0, 0, 255};
        palette.back() = {255, 0, 0};
        break;
    case zel_periodicPalette:
        palette = MakePeriodic();
        break;
    case zel_whiteFirstPalette:
        palette = {{255, 255, 255}, {255, 0, 0},   {0, 255, 0},     {0, 0, 255},    {255, 0, 255},
                   {0, 255, 255},   {128, 0, 0},   {0, 128, 0},     {0, 0, 128},    {128, 128, 255},
                   {128, 128, 0},   {128, 0, 255}, {255, 128, 255}, {128, 128, 128}};
        break;
    default:
        palette = MakeGray();
        break;
    }
}

void SpreadPalette(const Palette& palette, PaletteTable& table) {
    if (palette.empty())
        return;
    table.Set(0, {});
    for (int level = 1; level <= table.GetLast(); ++level)
        table.Set(static_cast<unsigned char>(level), palette[static_cast<std::size_t>(level) % palette.size()]);
}

} // namespace zel
