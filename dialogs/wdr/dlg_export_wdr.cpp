#include "dialogs/wdr/dlg_export_wdr.h"

#include "dialogs/wdr/zel_layout.h"

#include <wx/checkbox.h>
#include <wx/radiobox.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/textctrl.h>

#include <iterator>

namespace zel {

namespace {

constexpr SpinRange frameRange{0, 100, 0};
constexpr SpinRange stepRange{1, 100, 1};

const wxSizerFlags boxFlags = wxSizerFlags().Expand().Border(wxALL, zel_layoutGap);

void AddFormats(wxSizer& sizer, wxWindow* box) {
    const SequenceIds& ids = zel_sequenceIds;
    AddCaption(sizer, box, "Output format:", ids.formatCaption);
    auto* const buttons = new wxBoxSizer(wxHORIZONTAL);
    const char* const labels[] = {"Image sequence", "AVI video", "Animated GIF"};
    for (std::size_t i = 0; i < std::size(labels); ++i)
        buttons->Add(new wxRadioButton(box, ids.formatButtons[i], labels[i], wxDefaultPosition, wxDefaultSize,
                                       i == 0 ? wxRB_GROUP : 0),
                     wxSizerFlags().CentreVertical().Border(wxRIGHT, zel_columnGap));
    sizer.Add(buttons, wxSizerFlags().CentreVertical());
}

void AddSequenceBox(wxSizer& column, wxWindow* dialog) {
    const SequenceIds& ids = zel_sequenceIds;
    wxStaticBoxSizer* const sizer = MakeBox(dialog, "Sequence parameters");
    wxWindow* const box = sizer->GetStaticBox();
    auto* const single = new wxCheckBox(box, ids.singleImageBox, "Save only a single image?");
    single->SetToolTip("Should only a single frame/time-point be exported?");
    sizer->Add(single, boxFlags);

    wxSizer* const grid = MakeGrid();
    AddSpinRow(*grid, box, "First frame:", ids.firstCaption, ids.firstSpin, frameRange);
    AddSpinRow(*grid, box, "Last frame:", ids.lastCaption, ids.lastSpin, frameRange);
    AddSpinRow(*grid, box, "Step:", ids.stepCaption, ids.stepSpin, stepRange);
    AddFormats(*grid, box);
    AddCaption(*grid, box, "Name template:", ids.templateCaption);
    grid->Add(new wxTextCtrl(box, ids.templateField), wxSizerFlags().Expand());
    sizer->Add(grid, boxFlags);
    column.Add(sizer, boxFlags);
}

/// Adds what all dialogs of saving have, and gives the dialog its layout.
void Finish(wxSizer* column, wxWindow* dialog) {
    AddSequenceBox(*column, dialog);
    column->Add(MakeClosingButtons(dialog), wxSizerFlags().Expand());
    dialog->SetSizer(column);
}

wxSizer* MakeCutBox(wxWindow* dialog) {
    const GalleryIds& ids = zel_galleryIds;
    wxStaticBoxSizer* const sizer = MakeBox(dialog, "Cut parameters");
    wxWindow* const box = sizer->GetStaticBox();
    auto* const count = new wxBoxSizer(wxHORIZONTAL);
    AddCaption(*count, box, "Slice count:", ids.sliceCountText);
    sizer->Add(count, boxFlags);
    wxSizer* const grid = MakeGrid();
    AddSpinRow(*grid, box, "Starting slice:", ids.caption, ids.firstSpin, frameRange);
    AddSpinRow(*grid, box, "Ending slice:", ids.caption, ids.lastSpin, frameRange);
    AddSpinRow(*grid, box, "Step:", ids.caption, ids.stepSpin, {0, 100, 1});
    sizer->Add(grid, boxFlags);
    return sizer;
}

wxSizer* MakeGalleryBox(wxWindow* dialog) {
    const GalleryIds& ids = zel_galleryIds;
    wxStaticBoxSizer* const sizer = MakeBox(dialog, "Gallery parameters");
    wxWindow* const box = sizer->GetStaticBox();
    auto* const counted = new wxBoxSizer(wxHORIZONTAL);
    const wxSizerFlags apart = wxSizerFlags().CentreVertical().Border(wxLEFT, zel_columnGap);
    AddCaption(*counted, box, "Fixed number of:", ids.caption);
    counted->Add(new wxRadioButton(box, ids.rowsButton, "Rows", wxDefaultPosition, wxDefaultSize, wxRB_GROUP), apart);
    counted->Add(new wxRadioButton(box, ids.columnsButton, "Colums"), apart);
    sizer->Add(counted, boxFlags);
    wxSizer* const grid = MakeGrid();
    AddSpinRow(*grid, box, "Row/Column count:", ids.caption, ids.countSpin, {0, 100, 1});
    AddSpinRow(*grid, box, "Spacing between images:", ids.caption, ids.spacingSpin, {0, 100, 10});
    sizer->Add(grid, boxFlags);
    return sizer;
}

} // namespace

void ExportSequenceFunc(wxWindow* dialog) {
    Finish(new wxBoxSizer(wxVERTICAL), dialog);
}

void DecorationFunc(wxWindow* dialog) {
    const DecorationIds& ids = zel_decorationIds;
    auto* const column = new wxBoxSizer(wxVERTICAL);
    const wxString projections[] = {"XY           ", "XZ", "YZ     ", "All"};
    column->Add(new wxRadioBox(dialog, ids.projectionBox, "Choose projection", wxDefaultPosition, wxDefaultSize,
                               static_cast<int>(std::size(projections)), projections, 2, wxRA_SPECIFY_COLS),
                boxFlags);
    wxStaticBoxSizer* const view = MakeBox(dialog, "View parameters");
    wxSizer* const grid = MakeGrid();
    AddSpinRow(*grid, view->GetStaticBox(), "Border width (px):  ", ids.borderCaption, ids.borderSpin, {0, 99, 10});
    view->Add(grid, boxFlags);
    column->Add(view, boxFlags);
    Finish(column, dialog);
}

void GalleryFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    auto* const top = new wxBoxSizer(wxHORIZONTAL);
    const wxSizerFlags sideBySide = wxSizerFlags(1).Expand().Border(wxALL, zel_layoutGap);
    top->Add(MakeCutBox(dialog), sideBySide);
    top->Add(MakeGalleryBox(dialog), sideBySide);
    column->Add(top, wxSizerFlags().Expand());
    Finish(column, dialog);
}

} // namespace zel
