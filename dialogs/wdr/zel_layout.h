#pragma once

// What the layouts of the dialogs are built of. Sizes are asked from the controls, which know the font; gaps are
// given in pixels.

#include <wx/gdicmn.h>

class wxSizer;
class wxStaticBoxSizer;
class wxWindow;

namespace zel {

constexpr int zel_layoutGap = 5;     ///< pixels around a control
constexpr int zel_captionId = 10000; ///< of every text that only explains

/// A text that explains what stands beside or below it.
void AddCaption(wxSizer& sizer, wxWindow* parent, const wxString& text);

/// A box whose controls are to be made as children of it.
wxStaticBoxSizer* MakeBox(wxWindow* parent, const wxString& label);

/// Adds a button to a row.
void AddButton(wxSizer& row, wxWindow* parent, int id, const wxString& label);
/// Adds the button "OK", which Enter presses too.
void AddOkButton(wxSizer& row, wxWindow* parent);

/// Gives a dialog the size that its controls need, once they hold their texts. It can't be made smaller.
/// @param size  a larger one that is wished for, or wxDefaultSize
void FitLayout(wxWindow* dialog, const wxSize& size);

} // namespace zel
