#include "dialogs/zel_histgraph.h"

#include "dialogs/controls/zel_paintbuffered.h"

namespace zel {

template <typename T>
HistGraph<T>::HistGraph(wxWindow* parent, const Histogram<T>* shown, wxWindowID id, const wxPoint& pos,
                        const wxSize& size, long style)
    : wxPanel(parent, id, pos, size, style), histogram(shown) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    this->Bind(wxEVT_PAINT, &HistGraph::OnPaint, this);
}

template <typename T>
void HistGraph<T>::SetCells(int vertical, int horizontal) {
    layout.verticalCells = vertical;
    layout.horizontalCells = horizontal;
}

template <typename T>
void HistGraph<T>::OnPaint(wxPaintEvent&) {
    if (!IsShownOnScreen()) { // the dialog has ended, and its histograms may be gone
        const wxPaintDC dc(this);
        return;
    }
    PaintBuffered(*this, [this](wxDC& dc, const wxSize& size) {
        std::span<const std::size_t> counts;
        if (histogram != nullptr)
            counts = {histogram->begin(), histogram->end()};
        const HistGraphGeometry geometry = LayOutHistGraph(counts, layout, size);
        dc.SetBackground(wxBrush(backgroundColour));
        dc.Clear();
        dc.SetPen(wxPen(gridColour));
        dc.SetBrush(wxBrush(backgroundColour));
        dc.DrawRectangle(geometry.frame);
        for (const auto& line : geometry.grid)
            dc.DrawLine(line.from, line.to);
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(wxBrush(barColour));
        for (const wxRect& bar : geometry.bars)
            dc.DrawRectangle(bar);
    });
}

#define ZEL_INSTANTIATE(T) template class HistGraph<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
