#pragma once

#include "dialogs/zel_histgraphlayout.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"

#include <wx/panel.h>

namespace zel {

/// The graph of a histogram over a grid. Paints nothing while it is not shown on the screen, so the histogram has to
/// live only as long as its dialog is open.
template <typename T>
class ZEL_EXPORT HistGraph : public wxPanel {
public:
    /// @param parent, id, pos, size, style  as for wxPanel
    /// @param histogram                     not owned; null for an empty graph
    HistGraph(wxWindow* parent, const Histogram<T>* histogram, wxWindowID id = wxID_ANY,
              const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
              long style = wxBORDER_SUNKEN | wxCLIP_CHILDREN | wxTAB_TRAVERSAL);

    /// False: there is nothing to do in it.
    bool AcceptsFocusFromKeyboard() const override { return false; }

    // The setters do not refresh.
    /// Not owned; null for an empty graph.
    void SetHistogram(const Histogram<T>* newHistogram) { histogram = newHistogram; }
    const Histogram<T>* GetHistogram() const { return histogram; } ///< null without one
    /// @param type  0 logarithmic, 1 linear
    void SetGraphType(int type) { layout.graphType = type; }
    int GetGraphType() const { return layout.graphType; } ///< 0 logarithmic, 1 linear
    /// @param vertical    cells side by side
    /// @param horizontal  cells one above the other
    void SetCells(int vertical, int horizontal);
    void SetBarColour(const wxColour& colour) { barColour = colour; } ///< of the bars

private:
    void OnPaint(wxPaintEvent& event);

    const Histogram<T>* histogram;
    wxColour backgroundColour{255, 255, 255};
    wxColour barColour{255, 0, 0};
    wxColour gridColour{158, 154, 145};
    HistGraphStyle layout;
};

#define ZEL_DECLARE(T) extern template class HistGraph<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
