#include "dialogs/wdr/dlg_volume_help_wdr.h"

#include "dialogs/wdr/zel_layout.h"

#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include <vector>

namespace zel {

namespace {

struct Row {
    const char* label;
    const char* text;
};

void AddTable(wxSizer& column, wxWindow* dialog, const char* title, const std::vector<Row>& rows) {
    wxStaticBoxSizer* const box = MakeBox(dialog, title);
    auto* const grid = new wxFlexGridSizer(2, zel_layoutGap, 3 * zel_layoutGap);
    for (const auto& [label, text] : rows)
        for (const char* const cell : {label, text})
            grid->Add(new wxStaticText(box->GetStaticBox(), zel_captionId, cell));
    box->Add(grid, wxSizerFlags().Border(wxALL, zel_layoutGap));
    column.Add(box, wxSizerFlags().Expand().Border(wxALL, zel_layoutGap));
}

} // namespace

void VolVisHelpFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    AddTable(
        *column, dialog, "Mouse",
        {{"Left button:", "model / clipping plane rotation"}, {"Right button:", "model / clipping plane translation"}});
    AddTable(*column, dialog, "Keyboard",
             {{"ESC:", "close the window"},
              {"'+':", "increase the number of slices"},
              {"'-':", "decrease the number of slices"},
              {"SPACE:", "switch between controlling the model\nand controlling the plane"},
              {"Up arrow:", "increase the intensity of voxels"},
              {"Down arrow:", "decrease the intensity of voxels"},
              {"Left arrow:", "decrease the intensity treshold"},
              {"Right arrow:", "increase the intensity treshold"}});
    auto* const buttons = new wxBoxSizer(wxHORIZONTAL);
    AddOkButton(*buttons, dialog);
    column->Add(buttons, wxSizerFlags().CentreHorizontal());
    dialog->SetSizer(column);
    FitLayout(dialog, wxDefaultSize);
}

} // namespace zel
