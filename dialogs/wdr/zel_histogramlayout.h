#pragma once

#include <initializer_list>

class wxSizer;
class wxString;
class wxWindow;

namespace zel {

// What the layouts of the levels and the thresholding dialog share.

constexpr int zel_histogramTypeId = 10001; ///< choice: 0 logarithmic, 1 linear, as the graph's types
constexpr int zel_channelId = 10002;       ///< choice; the dialog fills it
constexpr int zel_previewId = 10003;       ///< check box
constexpr int zel_graphId = 10004;         ///< the graph of the histogram
constexpr int zel_inputControlId = 10005;  ///< the control of the input values

/// Adds the choices of histogram type and channel, and under them the check box of the preview.
void AddHistogramChoices(wxSizer& column, wxWindow* dialog);

/// Adds a box with windows that the dialog has made already, found by their ids, one under the other. The first of them
/// takes the box's extra height.
/// @param proportion  1 if the box takes the dialog's extra height
void AddValueBox(wxSizer& column, wxWindow* dialog, const wxString& label, std::initializer_list<int> ids,
                 int proportion);

/// Adds the bottom row: "Reset" at the left, "Cancel" and "OK" at the right.
void AddResetRow(wxSizer& column, wxWindow* dialog, int resetId);

} // namespace zel
