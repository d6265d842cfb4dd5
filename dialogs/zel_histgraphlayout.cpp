#include "dialogs/zel_histgraphlayout.h"

#include <algorithm>
#include <cmath>

namespace zel {

namespace {

/// Height of a bar by the count of its bin.
class BarScale {
public:
    /// @param greatest  the count that fills the height; 0 if only the last bin holds any
    BarScale(int fullHeight, std::size_t greatest, bool logarithmic)
        : m_full(fullHeight), m_greatest(static_cast<double>(greatest)), m_logarithmic(logarithmic) {}

    /// @param count  above 0
    int GetHeight(std::size_t count) const {
        const auto number = static_cast<double>(count);
        if (m_greatest < 1.0 || (m_logarithmic && m_greatest < 2.0))
            return m_full; // no scale to measure by
        const double height =
            m_logarithmic ? std::log(number) * m_full / std::log(m_greatest) : m_full * number / m_greatest;
        return static_cast<int>(std::clamp(std::round(height), 1.0, 32767.0)); // the most that a device takes
    }

private:
    int m_full;
    double m_greatest;
    bool m_logarithmic;
};

/// The greatest count of the bars over each column of pixels: heights rise with counts, so one height a column is
/// enough, and there may be hundreds of bins to a column.
std::vector<std::size_t> GreatestPerColumn(std::span<const std::size_t> counts, int barsWidth, int leftMargin,
                                           int columns) {
    std::vector<std::size_t> greatest(static_cast<std::size_t>(columns));
    if (counts.size() == 1) {
        std::fill_n(greatest.begin() + leftMargin, barsWidth, counts[0]);
        return greatest;
    }
    const float spacing = static_cast<float>(barsWidth) / static_cast<float>(counts.size() - 1);
    const int barWidth = static_cast<int>(std::ceil(spacing));
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const int left = static_cast<int>(static_cast<float>(i) * spacing) + leftMargin;
        const int end = std::min(left + barWidth, columns); // the last bar stands at the edge
        for (int column = left; column < end; ++column) {
            std::size_t& there = greatest[static_cast<std::size_t>(column)];
            there = std::max(there, counts[i]);
        }
    }
    return greatest;
}

void AddBars(std::span<const std::size_t> counts, const HistGraphStyle& style, wxSize window,
             std::vector<wxRect>& bars) {
    const int barsWidth = window.x - style.horizontalMargin;
    const int fullHeight = window.y - style.verticalMargin;
    if (counts.empty() || barsWidth <= 0 || fullHeight <= 0)
        return;
    const auto scaled = counts.first(counts.size() - 1); // the last bin gathers all that lies above the range
    const std::size_t top = scaled.empty() ? 0 : *std::max_element(scaled.begin(), scaled.end());
    const BarScale scale(fullHeight, top, style.graphType == 0);
    const auto greatest = GreatestPerColumn(counts, barsWidth, style.horizontalMargin / 2, window.x);
    const int foot = window.y - style.verticalMargin / 2;
    for (int column = 0; column < window.x; ++column) {
        const std::size_t count = greatest[static_cast<std::size_t>(column)];
        if (count == 0)
            continue;
        const int height = scale.GetHeight(count);
        if (!bars.empty() && bars.back().GetRight() == column - 1 && bars.back().height == height)
            ++bars.back().width;
        else
            bars.emplace_back(column, foot - height, 1, height);
    }
}

/// Distance of the grid's lines; the offset of the frame counts into it, so that the lines drift a little.
int GridStep(int extent, int margin, int cells) {
    return margin / 4 +
           static_cast<int>(std::lround(static_cast<float>(extent - margin / 2) / static_cast<float>(cells)));
}

} // namespace

HistGraphGeometry LayOutHistGraph(std::span<const std::size_t> counts, const HistGraphStyle& style, wxSize window) {
    const int mx = style.horizontalMargin;
    const int my = style.verticalMargin;
    HistGraphGeometry geometry;
    geometry.frame = wxRect(mx / 4, my / 4, window.x - mx / 2, window.y - my / 2);
    for (int i = 1; i < style.verticalCells; ++i) {
        const int x = i * GridStep(window.x, mx, style.verticalCells);
        geometry.grid.push_back({{x, my / 4}, {x, window.y - my / 4}});
    }
    for (int i = 1; i < style.horizontalCells; ++i) {
        const int y = i * GridStep(window.y, my, style.horizontalCells);
        geometry.grid.push_back({{mx / 4, y}, {window.x - mx / 4, y}});
    }
    AddBars(counts, style, window, geometry.bars);
    return geometry;
}

} // namespace zel
