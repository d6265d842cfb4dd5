#include "viewer/wdr/info_wdr.h"

#include "viewer/zel_infoframe.h"

#include <wx/frame.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <vector>

namespace zel {

namespace {

constexpr int gap = 3;    // pixels between rows, and around them: the window may be 200 pixels high
constexpr int column = 8; // pixels between labels and values
const wxSize colourSize(30, 20);
constexpr int pageWidth = 355; // pixels: room for the three tabs, and for values to change while the window stays

struct Row {
    const char* label;
    zel_InfoId id;
    const char* start; ///< what is shown before the first update
};

void AddRow(wxSizer& grid, wxWindow* page, const Row& row) {
    grid.Add(new wxStaticText(page, zel_INFO_LABEL, row.label));
    grid.Add(new wxStaticText(page, row.id, row.start), wxSizerFlags().Expand());
}

/// The colour stands beside its numbers, on the left, where it does not move with them.
void AddColourRow(wxSizer& grid, wxWindow* page) {
    grid.Add(new wxStaticText(page, zel_INFO_LABEL, "Mapped colour:"), wxSizerFlags().CentreVertical());
    auto* const numbers = new wxStaticText(page, zel_INFO_COLOUR, "[0, 0, 0]");
    auto* const shown = new wxWindow(page, zel_INFO_COLOUR_SHOWN, wxDefaultPosition, colourSize);
    shown->SetMinSize(colourSize);
    auto* const cell = new wxBoxSizer(wxHORIZONTAL);
    cell->Add(shown);
    cell->Add(numbers, wxSizerFlags().CentreVertical().Border(wxLEFT, column));
    grid.Add(cell);
}

wxFlexGridSizer* MakeGrid(wxWindow* page, const std::vector<Row>& rows) {
    auto* const grid = new wxFlexGridSizer(2, gap, column);
    grid->AddGrowableCol(1);
    for (const Row& row : rows)
        AddRow(*grid, page, row);
    return grid;
}

void SetPage(wxWindow* page, wxSizer* grid) {
    auto* const margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(grid, wxSizerFlags(1).Expand().Border(wxALL, 2 * gap));
    margin->SetMinSize(pageWidth, -1);
    page->SetSizer(margin);
}

void LayOutMouseInfo(wxWindow* page, const std::vector<Row>& overlay) {
    std::vector<Row> rows{{"Position (um):", zel_INFO_POSITION, "[0, 0, 0]"},
                          {"Position (pix):", zel_INFO_VOXEL, "[0, 0, 0]"},
                          {"Original value:", zel_INFO_VALUE, "[0, 0, 0]"}};
    rows.insert(rows.end(), overlay.begin(), overlay.end());
    wxFlexGridSizer* const grid = MakeGrid(page, rows);
    AddColourRow(*grid, page);
    SetPage(page, grid);
}

void AddPage(wxNotebook& notebook, const wxString& title, InfoPageFunc layOut) {
    auto* const page =
        new wxPanel(&notebook, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxNO_BORDER);
    layOut(page);
    notebook.AddPage(page, title);
}

} // namespace

void MouseInfoFunc(wxWindow* page) {
    LayOutMouseInfo(page, {});
}

void MouseOverlayInfoFunc(wxWindow* page) {
    LayOutMouseInfo(page, {{"Overlay value:", zel_INFO_OVERLAY, "[0, 0, 0]"}});
}

void ImageInfoFunc(wxWindow* page) {
    SetPage(page, MakeGrid(page, {{"Type:", zel_INFO_TYPE, "RGB"},
                                  {"Image size (pix):", zel_INFO_SIZE, " 100 x  100 x   80"},
                                  {"Pixel size (nm):", zel_INFO_VOXEL_SIZE, " 123 x  123 x 100"},
                                  {"Image size (um):", zel_INFO_EXTENT, "12.3 x 12.3 x  8.0"}}));
}

void ViewInfoFunc(wxWindow* page) {
    SetPage(page, MakeGrid(page, {{"Bbox (offset):", zel_INFO_BOX_OFFSET, "[0, 0, 0]"},
                                  {"Bbox (size):", zel_INFO_BOX_SIZE, "100 x 100 x 80"},
                                  {"Visible (offset):", zel_INFO_VISIBLE_OFFSET, "[0, 0, 0]"},
                                  {"Visible (size):", zel_INFO_VISIBLE_SIZE, " 50 x  50 x  30"},
                                  {"Cut position:", zel_INFO_CUT, "[0, 0, 0]"}}));
}

void InfoNotebookFunc(wxFrame* window, InfoPageFunc mouseInfo) {
    auto* const notebook = new wxNotebook(window, zel_INFO_NOTEBOOK);
    AddPage(*notebook, "Pixel info", mouseInfo);
    AddPage(*notebook, "Image info", ImageInfoFunc);
    AddPage(*notebook, "View info", ViewInfoFunc);
    auto* const sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(notebook, wxSizerFlags(1).Expand());
    window->SetSizer(sizer);
    sizer->Fit(window); // never SetSizeHints, which asserts where the content is wider than the largest size
}

} // namespace zel
