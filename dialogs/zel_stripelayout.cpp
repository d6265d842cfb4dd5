#include "dialogs/zel_stripelayout.h"

#include <algorithm>
#include <cmath>

namespace zel {

namespace {

wxColour Darken(const wxColour& colour, double share) {
    const auto part = [share](unsigned char component) {
        return static_cast<unsigned char>(std::lround(component * share));
    };
    return {part(colour.Red()), part(colour.Green()), part(colour.Blue())};
}

/// Brightness at t of the ramp, 0 <= t < 1.
double Shade(double t, double gamma) {
    const double shade = std::pow(t, 1.0 / gamma);
    return shade > 0.0 ? std::min(shade, 1.0) : 0.0; // a gamma that is no sense must not leave the colours
}

} // namespace

std::vector<StripeFill> LayOutStripe(const StripeState& state, wxSize window) {
    const bool crossed = state.left > state.right;
    const int first = std::min(state.left, state.right);
    const int second = std::max(state.left, state.right);
    const wxColour& startColour = crossed ? state.rightColour : state.leftColour;
    const wxColour& endColour = crossed ? state.leftColour : state.rightColour;
    const float scale = static_cast<float>(window.x) / static_cast<float>(state.count);
    const auto whole = [](float x) { return static_cast<int>(x); };
    const float firstX = static_cast<float>(first) * scale;
    const float secondX = static_cast<float>(second) * scale;

    std::vector<StripeFill> fills;
    const auto fill = [&fills, &window](int x, int width, const wxColour& colour) {
        fills.push_back({wxRect(x, 0, width, window.y), colour});
    };
    fill(0, window.x, startColour); // for the column at which an uncrossed ramp does not begin yet
    int start = 0;
    if (first != 0) {
        fill(0, whole(std::ceil(firstX)), startColour);
        start = whole(firstX);
    }
    int end = window.x;
    if (second != state.count - 1) {
        fill(whole(secondX), whole(std::ceil(static_cast<float>(window.x) - secondX)), endColour);
        end = whole(std::ceil(secondX));
    }
    if (!state.shaded) {
        fill(start, end - start + 1, state.rampColour);
        return fills;
    }
    for (int i = 0; i < end - start; ++i) {
        const double shade = Shade(static_cast<double>(i) / (end - start), state.gamma);
        fill(crossed ? end - 1 - i : start + 1 + i, 1, Darken(state.rampColour, shade));
    }
    return fills;
}

} // namespace zel
