#include "dialogs/wdr/dlg_set_range_wdr.h"

#include "dialogs/wdr/zel_layout.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace zel {

namespace {

constexpr int lineId = 10003;

void AddField(wxSizer& grid, wxWindow* parent, const wxString& caption, int id) {
    AddCaption(grid, parent, caption);
    auto* const field = new wxTextCtrl(parent, id, wxEmptyString);
    field->SetInitialSize(field->GetSizeFromText("-2147483648.000000")); // longer ones scroll
    grid.Add(field, wxSizerFlags().Expand());
}

wxStaticBoxSizer* MakeRangeBox(wxWindow* dialog, const wxString& label, const RangeBoxIds& ids) {
    wxStaticBoxSizer* const sizer = MakeBox(dialog, label);
    wxWindow* const box = sizer->GetStaticBox();

    auto* const limits = new wxBoxSizer(wxHORIZONTAL);
    AddCaption(*limits, box, "Please, set range within the interval:");
    limits->AddSpacer(zel_layoutGap);
    AddCaption(*limits, box, "[");
    limits->Add(new wxStaticText(box, ids.minLimitText, "minlimit"));
    AddCaption(*limits, box, ",");
    limits->Add(new wxStaticText(box, ids.maxLimitText, "maxlimit"));
    AddCaption(*limits, box, "]");
    sizer->Add(limits, wxSizerFlags().Border(wxALL, zel_layoutGap));

    sizer->Add(new wxStaticLine(box, lineId), wxSizerFlags().Expand().Border(wxALL, zel_layoutGap));

    auto* const fields = new wxFlexGridSizer(2, zel_layoutGap, zel_layoutGap);
    fields->AddGrowableCol(1);
    AddField(*fields, box, "Min:", ids.minField);
    AddField(*fields, box, "Max:", ids.maxField);
    sizer->Add(fields, wxSizerFlags().Expand().Border(wxALL, zel_layoutGap));
    return sizer;
}

void AddBox(wxSizer& column, wxSizer* box) {
    column.Add(box, wxSizerFlags(1).Expand().Border(wxALL, zel_layoutGap));
}

} // namespace

void SetRangeFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    AddBox(*column, MakeRangeBox(dialog, "Range", zel_rangeIds));
    column->Add(MakeClosingButtons(dialog), wxSizerFlags().Expand());
    dialog->SetSizer(column);
}

void SetRGBRangeFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    for (const ChannelRangeIds& channel : zel_channelRangeIds) {
        wxStaticBoxSizer* const sizer = MakeRangeBox(dialog, channel.label, channel.range);
        AddButton(*sizer, sizer->GetStaticBox(), channel.applyButton, "Apply to the other channels");
        AddBox(*column, sizer);
    }
    column->Add(MakeClosingButtons(dialog), wxSizerFlags().Expand());
    dialog->SetSizer(column);
}

} // namespace zel
