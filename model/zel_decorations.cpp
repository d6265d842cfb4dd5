#include "model/zel_decorations.h"

#include "model/zel_truncate.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zel {

namespace {

/// Lengths are the user's and places may lie far outside the window. What is further away than this is clipped all the
/// same; held here, sums stay within int, and coordinates within the few million pixels that can be drawn at.
constexpr int furthest = 1000000;

int Hold(int pixels) {
    return std::clamp(pixels, -furthest, furthest);
}

} // namespace

Point PlaceBlock(int position, const Point& offset, const Size& block, const Size& window) {
    const Point inwards(Hold(offset.x), Hold(offset.y));
    const int right = window.x - inwards.x - block.x;
    const int bottom = window.y - inwards.y - block.y;
    switch (position) {
    case 0:
        return inwards;
    case 1:
        return {right, inwards.y};
    case 2:
        return {inwards.x, bottom};
    case 3:
        return {right, bottom};
    default:
        return {0, 0};
    }
}

int CutPointerPlace(float cut, float visibleOffset, float scale) {
    return Hold(TruncToInt(static_cast<double>((cut - visibleOffset) * scale + 0.5F)));
}

std::vector<Stroke> CutPointerStrokes(int style, const Point& at, const Size& window) {
    constexpr int mark = 10;
    switch (style) {
    case 1:
    case 2:
        return {{{0, at.y}, {mark, at.y}},
                {{window.x - mark, at.y}, {window.x, at.y}},
                {{at.x, 0}, {at.x, mark}},
                {{at.x, window.y - mark}, {at.x, window.y}}};
    case 3:
    case 4:
    case 5:
        return {{{0, at.y}, {window.x, at.y}}, {{at.x, 0}, {at.x, window.y}}};
    default:
        return {};
    }
}

TimeBarGeometry LayOutTimeBar(const TimeBarShape& style, const Size& text, const Size& window, int frame, int count) {
    constexpr int markerHeight = 20;
    const int length = Hold(style.length);
    const int gap = Hold(style.thickness) / 2;
    const Size block(length + text.x + gap, std::max(text.y, markerHeight));
    const Point corner = PlaceBlock(style.position, style.offset, block, window);
    const int baseline = corner.y + block.y;
    const int start = corner.x + text.x + gap;
    const float along = static_cast<float>(frame) * static_cast<float>(length) / static_cast<float>(count - 1);
    const int marker = start + static_cast<int>(std::lround(along));
    return {{corner.x, baseline - text.y},
            {{start, baseline}, {start + length, baseline}},
            {{marker, baseline}, {marker, baseline - markerHeight}}};
}

std::string ScaleBarText(float length) {
    constexpr long long whole = 1000000;
    // The product is a float too: as a double it would show the seventh digit of a length like 0.7.
    const double scaled = std::clamp(static_cast<double>(length * 1e6F), -9e18, 9e18);
    long long remainder = std::isnan(scaled) ? 0 : static_cast<long long>(scaled) % whole;
    int decimals = 6;
    while (decimals > 0 && remainder % 10 == 0) {
        --decimals;
        remainder /= 10;
    }
    const double shown = static_cast<double>(length);
    std::string text(static_cast<std::size_t>(std::snprintf(nullptr, 0, "%.*f \u00b5m: ", decimals, shown)), ' ');
    std::snprintf(text.data(), text.size() + 1, "%.*f \u00b5m: ", decimals, shown);
    return text;
}

int ScaleBarPixels(float length, int zoom, float resolution) {
    return Hold(TruncToInt(static_cast<double>((static_cast<float>(zoom) + 1.0F) * length * resolution)));
}

bool LayOutScaleBar(const ScaleBarShape& style, const Size& text, const Size& legs, const Size& window,
                    ScaleBarGeometry& geometry) {
    if (style.thickness <= 0 || style.position < 0 || style.position > 3)
        return false;
    const int gap = Hold(style.thickness) / 2;
    const Size block(text.x + gap + legs.x, std::max(text.y, legs.y));
    const Point at = PlaceBlock(style.position, style.offset, block, window);
    const bool right = style.position == 1 || style.position == 3;
    const bool bottom = style.position == 2 || style.position == 3;
    const Point corner(at.x + text.x + gap + (right ? legs.x : 0), at.y + (bottom ? block.y : 0));
    geometry.text = {at.x, bottom ? at.y + block.y - text.y : at.y};
    geometry.horizontal = {corner, {corner.x + (right ? -legs.x : legs.x), corner.y}};
    geometry.vertical = {corner, {corner.x, corner.y + (bottom ? -legs.y : legs.y)}};
    return true;
}

} // namespace zel
