#include "dialogs/wdr/zel_layout.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

namespace zel {

void AddCaption(wxSizer& sizer, wxWindow* parent, const wxString& text) {
    sizer.Add(new wxStaticText(parent, zel_captionId, text), wxSizerFlags().CentreVertical());
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

void FitLayout(wxWindow* dialog, const wxSize& size) {
    dialog->GetSizer()->SetSizeHints(dialog);
    wxSize wished = dialog->GetSize();
    wished.IncTo(size);
    dialog->SetSize(wished);
}

} // namespace zel
