#pragma once

// What the layouts of the dialogs are built of. Sizes are asked from the controls, which know the font; gaps are
// given in pixels.

#include <wx/gdicmn.h>

class wxSizer;
class wxSpinCtrl;
class wxStaticBoxSizer;
class wxWindow;

namespace zel {

constexpr int zel_layoutGap = 5;     ///< pixels around a control
constexpr int zel_columnGap = 10;    ///< pixels between a caption and its control
constexpr int zel_captionId = 10000; ///< of every text that only explains

/// A text that explains what stands beside or below it.
void AddCaption(wxSizer& sizer, wxWindow* parent, const wxString& text, int id = zel_captionId);

/// What a spin control can hold, and holds at first.
struct SpinRange {
    int min;
    int max;
    int initial;
};
/// Adds a spin control as wide as its longest number.
wxSpinCtrl* AddSpin(wxSizer& sizer, wxWindow* parent, int id, const SpinRange& range);
/// Adds the caption and the spin control to a grid of two columns.
wxSpinCtrl* AddSpinRow(wxSizer& grid, wxWindow* parent, const wxString& caption, int captionId, int id,
                       const SpinRange& range);
/// A grid of captions and controls, whose second column grows.
wxSizer* MakeGrid();

/// A box whose controls are to be made as children of it.
wxStaticBoxSizer* MakeBox(wxWindow* parent, const wxString& label);

/// Adds a button to a row.
void AddButton(wxSizer& row, wxWindow* parent, int id, const wxString& label);
/// Adds the button "OK", which Enter presses too.
void AddOkButton(wxSizer& row, wxWindow* parent);
/// A row with OK and Cancel at its right end.
wxSizer* MakeClosingButtons(wxWindow* dialog);

/// Gives a dialog the size that its controls need, once they hold their texts. It can't be made smaller.
/// @param size  a larger one that is wished for, or wxDefaultSize
void FitLayout(wxWindow* dialog, const wxSize& size);

} // namespace zel
