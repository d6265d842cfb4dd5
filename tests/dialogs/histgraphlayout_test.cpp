#include "dialogs/zel_histgraphlayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace zel;

namespace {

using Counts = std::vector<std::size_t>;
using Rects = std::vector<wxRect>;

constexpr int logarithmic = 0;
constexpr int linear = 1;

HistGraphStyle Style(int graphType) {
    HistGraphStyle style;
    style.graphType = graphType;
    return style;
}

Rects Bars(const Counts& counts, int graphType, wxSize window = {104, 54}) {
    return LayOutHistGraph(counts, Style(graphType), window).bars;
}

/// The height over each column, from all the bars one after the other.
std::vector<int> Heights(const Rects& bars, wxSize window) {
    std::vector<int> heights(static_cast<std::size_t>(window.x));
    for (const wxRect& bar : bars)
        for (int x = std::max(bar.x, 0); x < std::min(bar.x + bar.width, window.x); ++x)
            heights[static_cast<std::size_t>(x)] = std::max(heights[static_cast<std::size_t>(x)], bar.height);
    return heights;
}

/// A rectangle for each bin, as the bars are defined.
Rects BarOfEachBin(const Counts& counts, int graphType, wxSize window) {
    constexpr int margin = 4;
    const int full = window.y - margin;
    const std::size_t max = *std::max_element(counts.begin(), counts.end() - 1);
    const float x = static_cast<float>(window.x - margin) / static_cast<float>(counts.size() - 1);
    Rects bars;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] == 0)
            continue;
        const auto count = static_cast<double>(counts[i]);
        const double height = graphType == linear ? std::round(full * count / static_cast<double>(max))
                                                  : std::round(std::log(count) * full / std::log(max));
        const int whole = static_cast<int>(std::clamp(height, 1.0, 32767.0));
        bars.emplace_back(static_cast<int>(std::trunc(static_cast<float>(i) * x)) + margin / 2,
                          window.y - margin / 2 - whole, static_cast<int>(std::ceil(x)), whole);
    }
    return bars;
}

TEST(HistGraphLayout, FrameAndGrid) {
    HistGraphStyle style;
    style.verticalCells = 8;
    style.horizontalCells = 4;
    const auto geometry = LayOutHistGraph({}, style, {104, 54});
    EXPECT_EQ(wxRect(1, 1, 102, 52), geometry.frame);
    // 1 + round(102 / 8 = 12.75) = 14 across, 1 + 52 / 4 = 14 down.
    ASSERT_EQ(7U + 3U, geometry.grid.size());
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(wxPoint(14 * (i + 1), 1), geometry.grid[static_cast<std::size_t>(i)].from);
        EXPECT_EQ(wxPoint(14 * (i + 1), 53), geometry.grid[static_cast<std::size_t>(i)].to);
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(wxPoint(1, 14 * (i + 1)), geometry.grid[static_cast<std::size_t>(7 + i)].from);
        EXPECT_EQ(wxPoint(103, 14 * (i + 1)), geometry.grid[static_cast<std::size_t>(7 + i)].to);
    }
    EXPECT_TRUE(geometry.bars.empty());
}

TEST(HistGraphLayout, GridRoundsHalvesUpAndFollowsTheMargins) {
    HistGraphStyle style;
    style.verticalCells = 8;
    style.horizontalCells = 1;
    EXPECT_EQ(4, LayOutHistGraph({}, style, {22, 54}).grid[0].from.x) << "1 + 20 / 8 = 2.5";
    EXPECT_EQ(7U, LayOutHistGraph({}, style, {22, 54}).grid.size()) << "one cell has no line";
    style.horizontalMargin = 10;
    style.verticalMargin = 20;
    // 10 / 4 = 2, and 2 + round((102 - 5) / 8 = 12.125) = 14; 20 / 4 = 5.
    EXPECT_EQ(wxPoint(14, 5), LayOutHistGraph({}, style, {102, 54}).grid[0].from);
    EXPECT_EQ(wxPoint(14, 49), LayOutHistGraph({}, style, {102, 54}).grid[0].to);
    EXPECT_EQ(wxRect(2, 5, 97, 44), LayOutHistGraph({}, style, {102, 54}).frame);
    style.verticalCells = 0;
    EXPECT_TRUE(LayOutHistGraph({}, style, {102, 54}).grid.empty());
}

// In 104 x 54 the bars have 100 x 50 pixels from 2 on, with their feet at 52. Five bins stand 25 apart.

TEST(HistGraphLayout, LinearBars) {
    // 10 fills the height. The last bin, 20, rises above the frame and has the 2 pixels that are left.
    EXPECT_EQ((Rects{{2, 47, 25, 5}, {27, 2, 25, 50}, {77, 27, 25, 25}, {102, -48, 2, 100}}),
              Bars({1, 10, 0, 5, 20}, linear));
    EXPECT_EQ((Rects{{2, 51, 25, 1}, {27, 2, 75, 50}}), Bars({1, 200, 200, 200, 0}, linear))
        << "a height of 0.25 counts as 1; equal neighbours are one";
}

TEST(HistGraphLayout, LogarithmicBars) {
    // ln 1 = 0 counts as 1; 50 ln 5 / ln 10 = 34.95; 50 ln 20 / ln 10 = 65.05.
    EXPECT_EQ((Rects{{2, 51, 25, 1}, {27, 2, 25, 50}, {77, 17, 25, 35}, {102, -13, 2, 65}}),
              Bars({1, 10, 0, 5, 20}, logarithmic));
}

TEST(HistGraphLayout, CountsOfOneHaveNoLogarithmicScale) {
    EXPECT_EQ((Rects{{2, 2, 25, 50}, {52, 2, 25, 50}, {102, 2, 2, 50}}), Bars({1, 0, 1, 0, 3}, logarithmic));
    EXPECT_EQ((Rects{{2, 2, 25, 50}, {52, 2, 25, 50}, {102, -98, 2, 150}}), Bars({1, 0, 1, 0, 3}, linear));
}

TEST(HistGraphLayout, CountsInTheLastBinAlone) {
    for (const int type : {logarithmic, linear})
        EXPECT_EQ((Rects{{102, 2, 2, 50}}), Bars({0, 0, 0, 0, 7}, type));
}

TEST(HistGraphLayout, OneBinFillsTheGraph) {
    for (const int type : {logarithmic, linear}) {
        EXPECT_EQ((Rects{{2, 2, 100, 50}}), Bars({7}, type));
        EXPECT_EQ(Rects{}, Bars({0}, type));
    }
}

TEST(HistGraphLayout, HeightsStayCoordinates) {
    EXPECT_EQ((Rects{{2, 2, 100, 50}, {102, 52 - 32767, 2, 32767}}), Bars({1, 100000000000}, linear));
}

TEST(HistGraphLayout, NoRoomNoBars) {
    for (const wxSize window : {wxSize(4, 54), wxSize(104, 4), wxSize(1, 1)})
        EXPECT_TRUE(Bars({1, 2, 3}, linear, window).empty());
    EXPECT_TRUE(Bars({}, linear).empty());
    EXPECT_TRUE(Bars(Counts(300), logarithmic).empty());
}

TEST(HistGraphLayout, ColumnsShowWhatABarForEachBinWould) {
    std::mt19937 random(7);
    for (const std::size_t bins : {2U, 3U, 17U, 100U, 101U, 102U, 255U, 256U, 257U, 1000U, 65536U})
        for (const wxSize window : {wxSize(104, 54), wxSize(5, 9), wxSize(260, 68), wxSize(1001, 333)})
            for (const int type : {logarithmic, linear})
                for (const unsigned limit : {2U, 5U, 100000U}) {
                    Counts counts(bins);
                    for (std::size_t& count : counts)
                        count = random() % 3 == 0 ? 0 : random() % (limit + 1);
                    counts[0] = 2; // a scale there must be
                    EXPECT_EQ(Heights(BarOfEachBin(counts, type, window), window),
                              Heights(Bars(counts, type, window), window))
                        << bins << " bins in " << window.x << " x " << window.y << ", type " << type;
                }
}

TEST(HistGraphLayout, BarsStandOnOneLineAndDoNotOverlap) {
    std::mt19937 random(11);
    Counts counts(1000);
    for (std::size_t& count : counts)
        count = random() % 50;
    int end = 0;
    for (const wxRect& bar : Bars(counts, linear, {300, 100})) {
        EXPECT_GE(bar.x, end);
        EXPECT_EQ(98, bar.y + bar.height);
        end = bar.x + bar.width;
    }
    EXPECT_LE(end, 300);
}

} // namespace
