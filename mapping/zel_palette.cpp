#include "mapping/zel_palette.h"

#include "mapping/text/zel_firstlines.h"

#include <wx/tokenzr.h>

#include <new>
#include <optional>

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

bool ReadColour(const wxString& line, Colour& colour) {
    wxStringTokenizer tokens(line, " :,");
    long numbers[3];
    for (long& number : numbers)
        if (!tokens.GetNextToken().ToLong(&number, 10))
            return false;
    colour = {static_cast<unsigned char>(numbers[0]), static_cast<unsigned char>(numbers[1]),
              static_cast<unsigned char>(numbers[2])};
    return true;
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

bool LoadPalette(Palette& palette, const wxString& file_name) try {
    constexpr std::size_t longestLine = 4096; // behind the third number is nothing that counts
    std::optional<std::vector<wxString>> lines = ReadFirstLines(file_name, levels, longestLine);
    if (!lines)
        return false;
    palette.resize(lines->size());
    for (std::size_t i = 0; i < palette.size(); ++i) {
        if (!ReadColour((*lines)[i].Trim(true).Trim(false), palette[i]))
            return false;
    }
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

} // namespace zel
