#include "dialogs/wdr/dlg_preferences_wdr.h"

#include "dialogs/wdr/zel_layout.h"

#include <wx/button.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/radiobox.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <iterator>

namespace zel {

namespace {

constexpr const PreferencesIds& ids = zel_preferencesIds;
constexpr SpinRange offsetRange{-500, 500, 0};
constexpr SpinRange widthRange{0, 99, 2};

const wxSizerFlags boxFlags = wxSizerFlags().Expand().Border(wxALL, zel_layoutGap);

template <std::size_t count>
wxRadioBox* MakeRadioBox(wxWindow* parent, int id, const wxString& label, const wxString (&choices)[count],
                         int columns) {
    return new wxRadioBox(parent, id, label, wxDefaultPosition, wxDefaultSize, static_cast<int>(count), choices,
                          columns, wxRA_SPECIFY_COLS);
}

wxPanel* AddPage(wxNotebook& book, const wxString& title) {
    auto* const page = new wxPanel(&book);
    page->SetSizer(new wxBoxSizer(wxVERTICAL));
    book.AddPage(page, title);
    return page;
}

void AddTextFieldRow(wxSizer& grid, wxWindow* box, const wxString& caption, int captionId, int id) {
    AddCaption(grid, box, caption, captionId);
    grid.Add(new wxTextCtrl(box, id), wxSizerFlags().Expand());
}

wxSizer* MakeAxesBox(wxWindow* page, const wxString& label, const int (&fields)[3]) {
    wxStaticBoxSizer* const sizer = MakeBox(page, label);
    wxSizer* const grid = MakeGrid();
    const char* const captions[] = {"X axis:", "Y axis:", "Z axis:"};
    for (std::size_t axis = 0; axis < std::size(fields); ++axis)
        AddTextFieldRow(*grid, sizer->GetStaticBox(), captions[axis], ids.axisCaption, fields[axis]);
    sizer->Add(grid, boxFlags);
    return sizer;
}

void AddScreenPage(wxNotebook& book) {
    wxWindow* const page = AddPage(book, "Screen");
    page->GetSizer()->Add(MakeAxesBox(page, "Resolution  (pixels / micron)", ids.resolutionFields), boxFlags);
    page->GetSizer()->Add(MakeAxesBox(page, "Aspect ratio", ids.aspectFields), boxFlags);
}

void AddPointerPage(wxNotebook& book) {
    wxWindow* const page = AddPage(book, "Cut pointer");
    const wxString types[] = {"None",         "On sides",     "On sides with circle ",
                              "Dotted cross", "Dashed cross", "Solid cross"};
    page->GetSizer()->Add(MakeRadioBox(page, ids.pointerBox, "Pointer type", types, 1), boxFlags);

    wxStaticBoxSizer* const colour = MakeBox(page, "Pointer colour");
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    auto* const sample = new wxStaticText(colour->GetStaticBox(), ids.pointerSample, "No image", wxDefaultPosition,
                                          wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL | wxST_NO_AUTORESIZE);
    row->Add(sample, wxSizerFlags(1).Expand().Border(wxALL, zel_layoutGap));
    AddButton(*row, colour->GetStaticBox(), ids.pointerButton, "Change...");
    colour->Add(row, wxSizerFlags().Expand());
    page->GetSizer()->Add(colour, boxFlags);
}

/// Where something stands: a corner, and the offset from it.
void AddPlacement(wxSizer& sizer, wxWindow* box, const PlacementIds& placement) {
    const wxString corners[] = {"TL", "TR", "BL", "BR"};
    sizer.Add(MakeRadioBox(box, placement.cornerBox, "Corner:", corners, 2),
              wxSizerFlags().CentreVertical().Border(wxALL, zel_layoutGap));
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    AddCaption(*row, box, "Offset by (pixels):  x:", wxID_ANY);
    row->AddSpacer(zel_layoutGap);
    AddSpin(*row, box, placement.offsetXSpin, offsetRange);
    AddCaption(*row, box, "  y:", wxID_ANY);
    row->AddSpacer(zel_layoutGap);
    AddSpin(*row, box, placement.offsetYSpin, offsetRange);
    sizer.Add(row, wxSizerFlags().CentreVertical().Border(wxALL, zel_layoutGap));
}

void AddTextBox(wxWindow* page) {
    wxStaticBoxSizer* const sizer = MakeBox(page, "Text parameters");
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    AddButton(*row, sizer->GetStaticBox(), ids.textColourButton, "Colour");
    AddButton(*row, sizer->GetStaticBox(), ids.textFontButton, "Font");
    sizer->Add(row);
    page->GetSizer()->Add(sizer, boxFlags);
}

void AddAnnotationPage(wxNotebook& book) {
    wxWindow* const page = AddPage(book, "Annotation");
    const char* const labels[] = {"XY projection", "XZ projection", "YZ projection"};
    for (std::size_t plane = 0; plane < std::size(labels); ++plane) {
        const AnnotationIds& annotation = ids.annotations[plane];
        wxStaticBoxSizer* const sizer = MakeBox(page, labels[plane]);
        wxWindow* const box = sizer->GetStaticBox();
        wxSizer* const grid = MakeGrid();
        AddTextFieldRow(*grid, box, "Annotation text:", annotation.textCaption, annotation.textField);
        box->FindWindow(annotation.textField)->SetToolTip("Empty text disables this annotation.");
        sizer->Add(grid, boxFlags);
        auto* const row = new wxBoxSizer(wxHORIZONTAL);
        AddPlacement(*row, box, annotation.placement);
        sizer->Add(row);
        page->GetSizer()->Add(sizer, boxFlags);
    }
    AddTextBox(page);
}

/// The part that both bars have below their length.
void AddBarRows(wxStaticBoxSizer& sizer, wxSizer& grid, int widthCaption, int widthSpin, const wxString& toolTip,
                int colourButton, const PlacementIds& placement) {
    wxWindow* const box = sizer.GetStaticBox();
    AddSpinRow(grid, box, "Width (pixels):", widthCaption, widthSpin, widthRange)->SetToolTip(toolTip);
    sizer.Add(&grid, boxFlags);
    AddButton(sizer, box, colourButton, "Bar colour");
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    AddPlacement(*row, box, placement);
    sizer.Add(row);
}

void AddScaleBarPage(wxNotebook& book) {
    wxWindow* const page = AddPage(book, "Scale bar");
    wxStaticBoxSizer* const sizer = MakeBox(page, "Scale bar parameters");
    wxSizer* const grid = MakeGrid();
    AddTextFieldRow(*grid, sizer->GetStaticBox(), "Length (microns):", ids.scaleBarLengthCaption,
                    ids.scaleBarLengthField);
    AddBarRows(*sizer, *grid, ids.scaleBarWidthCaption, ids.scaleBarWidthSpin, "Width 0px disables the scale bar.",
               ids.scaleBarColourButton, ids.scaleBar);
    page->GetSizer()->Add(sizer, boxFlags);
    AddTextBox(page);
}

void AddTimeBarPage(wxNotebook& book) {
    wxWindow* const page = AddPage(book, "Time bar");
    wxStaticBoxSizer* const sizer = MakeBox(page, "Time bar parameters");
    wxSizer* const grid = MakeGrid();
    AddSpinRow(*grid, sizer->GetStaticBox(), "Length (pixels):", ids.timeBarLengthCaption, ids.timeBarLengthSpin,
               {1, 500, 50});
    AddBarRows(*sizer, *grid, ids.timeBarWidthCaption, ids.timeBarWidthSpin, "Width 0px disables the time bar.",
               ids.timeBarColourButton, ids.timeBar);
    page->GetSizer()->Add(sizer, boxFlags);
    AddTextBox(page);
}

} // namespace

void PreferencesFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    auto* const book = new wxNotebook(dialog, ids.notebook);
    AddScreenPage(*book);
    AddPointerPage(*book);
    AddAnnotationPage(*book);
    AddScaleBarPage(*book);
    AddTimeBarPage(*book);
    column->Add(book, wxSizerFlags(1).Expand().Border(wxALL, zel_layoutGap));
    column->Add(MakeClosingButtons(dialog), wxSizerFlags().Expand());
    dialog->SetSizer(column);
}

} // namespace zel
