#include "dialogs/wdr/zel_histogramlayout.h"

#include "dialogs/wdr/zel_layout.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/statbox.h>

namespace zel {

void AddHistogramChoices(wxSizer& column, wxWindow* dialog) {
    auto* const grid = new wxFlexGridSizer(2, zel_layoutGap, zel_layoutGap);
    grid->AddGrowableCol(1);
    AddCaption(*grid, dialog, "Histogram type :");
    const wxString types[] = {"Logarithmic", "Linear"};
    auto* const type = new wxChoice(dialog, zel_histogramTypeId, wxDefaultPosition, wxDefaultSize,
                                    static_cast<int>(std::size(types)), types);
    type->SetToolTip("Choose the type of histogram.");
    grid->Add(type, wxSizerFlags().Expand());
    AddCaption(*grid, dialog, "Channel:");
    grid->Add(new wxChoice(dialog, zel_channelId), wxSizerFlags().Expand());
    column.Add(grid, wxSizerFlags().Expand().Border(wxALL, zel_layoutGap));
    column.Add(new wxCheckBox(dialog, zel_previewId, "Preview"), wxSizerFlags().Border(wxALL, zel_layoutGap));
}

void AddValueBox(wxSizer& column, wxWindow* dialog, const wxString& label, std::initializer_list<int> ids,
                 int proportion) {
    wxStaticBoxSizer* const box = MakeBox(dialog, label);
    int share = proportion;
    for (const int id : ids) {
        wxWindow* const window = dialog->FindWindow(id);
        window->Reparent(box->GetStaticBox()); // so that it comes behind the choices in the order of the Tab key
        box->Add(window, wxSizerFlags(share).Expand().Border(wxALL, zel_layoutGap));
        share = 0;
    }
    column.Add(box, wxSizerFlags(proportion).Expand().Border(wxALL, zel_layoutGap));
}

void AddResetRow(wxSizer& column, wxWindow* dialog, int resetId) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    AddButton(*row, dialog, resetId, "Reset");
    row->AddStretchSpacer();
    AddButton(*row, dialog, wxID_CANCEL, "Cancel");
    AddOkButton(*row, dialog);
    column.Add(row, wxSizerFlags().Expand());
}

} // namespace zel
