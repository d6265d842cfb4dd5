#include "model/zel_truedecorations.h"

#include "model/zel_decorations.h"

#include <algorithm>
#include <cmath>

namespace zel {

namespace {

constexpr double furthest = 1000000; // pixels; beyond, nothing of the picture changes

int HeldPixels(double pixels) {
    return static_cast<int>(std::clamp(pixels, -furthest, furthest));
}

} // namespace

float RoundLength(float wished) {
    const double goal = std::log10(static_cast<double>(wished));
    const double decade = std::floor(goal);
    double nearest = 1;
    for (const double candidate : {2.0, 5.0, 10.0})
        if (std::abs(std::log10(candidate) + decade - goal) < std::abs(std::log10(nearest) + decade - goal))
            nearest = candidate;
    return static_cast<float>(nearest * std::pow(10.0, decade));
}

TrueScaleBar MakeTrueScaleBar(float horizontal, float vertical, int width, float chosen) {
    constexpr float part = 6;
    const bool isChosen = std::isfinite(chosen) && chosen > 0.0F && chosen != ScaleBarShape().length;
    TrueScaleBar bar;
    bar.length = isChosen ? chosen : RoundLength(static_cast<float>(std::max(width, 1)) / part / horizontal);
    const auto pixels = [&bar](float scale) {
        return HeldPixels(std::round(static_cast<double>(bar.length) * static_cast<double>(scale)));
    };
    bar.legs = {pixels(horizontal), pixels(vertical)};
    return bar;
}

std::string TrueScaleBarText(float length, bool inMicrons) {
    std::string text = ScaleBarText(length);
    if (!inMicrons)
        text.replace(text.rfind("\u00b5m"), std::string("\u00b5m").size(), "pixels");
    return text;
}

int TrueCutPointerPlace(const AxisLook& axis, float cut) {
    const double pixel = std::floor((static_cast<double>(cut) - static_cast<double>(axis.visibleOffset)) *
                                    static_cast<double>(axis.scale));
    return HeldPixels(axis.reversed ? axis.pixels - 1 - pixel : pixel);
}

} // namespace zel
