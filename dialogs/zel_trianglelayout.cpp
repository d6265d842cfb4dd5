#include "dialogs/zel_trianglelayout.h"

#include "dialogs/zel_fieldnumber.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zel {

int MiddlePosition(const TriangleRow& row) {
    const double offset = std::round((1.0 - std::log10(row.gamma)) * (row.right - row.left) * 0.5);
    if (std::isnan(offset))
        return row.left; // a gamma below 0
    return HoldNumber<int>(row.left + offset);
}

std::optional<double> GammaAtPosition(const TriangleRow& row, int position) {
    const float half = static_cast<float>(row.right - row.left) * 0.5F;
    if (half == 0.0F)
        return std::nullopt;
    const float exponent = (std::round(half) + static_cast<float>(row.left - position)) / half;
    return std::min(std::pow(10.0, static_cast<double>(exponent)), 10.0);
}

int TipOfTriangle(int position, int count, int width) {
    if (count < 2)
        return 2;
    constexpr double furthest = 32000.0; // that a device draws at
    const double tip = static_cast<double>(position) * (width - 4) / (count - 1) + 2.0;
    return static_cast<int>(std::clamp(tip, -furthest, furthest));
}

int PositionUnderMouse(int x, int count, int width) {
    if (width <= 2 || count < 1)
        return 0;
    const float along = static_cast<float>(x - 2) / static_cast<float>(width - 2) * static_cast<float>(count);
    return static_cast<int>(std::clamp(static_cast<double>(along), 0.0, static_cast<double>(count - 1)));
}

TriangleId ChooseTriangle(const TriangleRow& row, int position) {
    const auto distance = [position](long long from) { return std::abs(from - position); };
    const long long toLeft = distance(row.left);
    const long long toRight = distance(row.right);
    if (!row.showGamma)
        return toRight >= toLeft ? zel_triangleLeft : zel_triangleRight;
    const long long toMiddle = distance(row.middle);
    if (toLeft <= toMiddle)
        return position > row.left && row.middle == row.left ? zel_triangleMiddle : zel_triangleLeft;
    if (toMiddle <= toRight)
        return position > row.middle && row.middle == row.right ? zel_triangleRight : zel_triangleMiddle;
    return zel_triangleRight;
}

std::optional<int> DragTriangle(const TriangleRow& row, TriangleId triangle, int position) {
    switch (triangle) {
    case zel_triangleRight:
        if (position == row.right)
            return std::nullopt;
        return row.allowCrossing ? position : std::max(position, row.left);
    case zel_triangleLeft:
        if (position == row.left)
            return std::nullopt;
        return row.allowCrossing ? position : std::min(position, row.right);
    case zel_triangleMiddle:
        if (position < row.left || position > row.right)
            return std::nullopt;
        return position;
    default:
        return std::nullopt;
    }
}

wxColour MiddleColour(const wxColour& left, const wxColour& right) {
    const auto half = [](int from, int to) { return static_cast<unsigned char>(std::abs(to - from) / 2); };
    return {half(left.Red(), right.Red()), half(left.Green(), right.Green()), half(left.Blue(), right.Blue())};
}

std::vector<TriangleLine> LayOutTriangle(int tip, const wxColour& colour) {
    std::vector<TriangleLine> lines;
    for (int row = 0; row < 8; ++row)
        lines.push_back({{tip - row / 2, row}, {tip + row / 2, row}, colour});
    const wxColour outline(0, 0, 0);
    lines.push_back({{tip, 0}, {tip - 3, 7}, outline});
    lines.push_back({{tip, 0}, {tip + 3, 7}, outline});
    lines.push_back({{tip - 3, 7}, {tip + 4, 7}, outline});
    return lines;
}

} // namespace zel
