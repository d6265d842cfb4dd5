#include "dialogs/wdr/zel_layout.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

namespace zel {

void AddCaption(wxSizer& sizer, wxWindow* parent, const wxString& text, int id) {
    sizer.Add(new wxStaticText(parent, id, text), wxSizerFlags().CentreVertical());
}

wxSpinCtrl* AddSpin(wxSizer& sizer, wxWindow* parent, int id, const SpinRange& range) {
    auto* const spin = new wxSpinCtrl(parent, id, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS,
                                      range.min, range.max, range.initial);
    sizer.Add(spin, wxSizerFlags().CentreVertical());
    return spin;
}

wxSpinCtrl* AddSpinRow(wxSizer& grid, wxWindow* parent, const wxString& caption, int captionId, int id,
                       const SpinRange& range) {
    AddCaption(grid, parent, caption, captionId);
    return AddSpin(grid, parent, id, range);
}

wxSizer* MakeGrid() {
    auto* const grid = new wxFlexGridSizer(2, zel_layoutGap, zel_columnGap);
    grid->AddGrowableCol(1);
    return grid;
}

wxStaticBoxSizer* MakeBox(wxWindow* parent, const wxString& label) {
    return new wxStaticBoxSizer(new wxStaticBox(parent, wxID_ANY, label), wxVERTICAL);
}

void AddButton(wxSizer& row, wxWindow* parent, int id, const wxString& label) {
    row.Add(new wxButton(parent, id, label), wxSizerFlags().Border(wxALL, zel_layoutGap));
}

void AddOkButton(wxSizer& row, wxWindow* parent) {
    auto* const ok = new wxButton(parent, wxID_OK, "OK");
    ok->SetDefault();
    row.Add(ok, wxSizerFlags().Border(wxALL, zel_layoutGap));
}

wxSizer* MakeClosingButtons(wxWindow* dialog) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->AddStretchSpacer();
    AddOkButton(*row, dialog);
    AddButton(*row, dialog, wxID_CANCEL, "Cancel");
    return row;
}

void FitLayout(wxWindow* dialog, const wxSize& size) {
    dialog->GetSizer()->SetSizeHints(dialog);
    wxSize wished = dialog->GetSize();
    wished.IncTo(size);
    dialog->SetSize(wished);
}

} // namespace zel
