#pragma once

#include "model/zel_export.h"

#include <wx/gdicmn.h>

#include <cstddef>
#include <span>
#include <vector>

namespace zel {

/// How the graph of a histogram is divided, in pixels and cells.
struct HistGraphStyle {
    int graphType = 0;        ///< 0 logarithmic, 1 linear
    int verticalCells = 10;   ///< cells side by side, between the vertical lines
    int horizontalCells = 5;  ///< cells one above the other
    int horizontalMargin = 4; ///< pixels, both sides together
    int verticalMargin = 4;   ///< pixels, top and bottom together
};

/// Positions of the parts of the graph, in pixels of the window.
struct HistGraphGeometry {
    /// A line of the grid.
    struct Line {
        wxPoint from; ///< first pixel
        wxPoint to;   ///< not drawn itself
    };
    wxRect frame;             ///< of the area in which the grid and the bars are
    std::vector<Line> grid;   ///< vertical lines, then horizontal ones
    std::vector<wxRect> bars; ///< left to right, neighbours of one height as one rectangle
};

/// Lays out the graph of a histogram. The greatest count but that of the last bin fills the height; the last one may
/// rise above the frame. One pass over the counts, and another over the columns of pixels.
/// @param counts  of the bins; without any there are no bars
/// @param style   the cells and margins
/// @param window  client size
ZEL_EXPORT HistGraphGeometry LayOutHistGraph(std::span<const std::size_t> counts, const HistGraphStyle& style,
                                             wxSize window);

} // namespace zel
