#include "dialogs/dlg_gallery.h"

#include "dialogs/controls/zel_enddialog.h"
#include "dialogs/wdr/dlg_export_wdr.h"
#include "dialogs/wdr/zel_layout.h"
#include "image/zel_modaldialog.h"

#include <wx/radiobut.h>
#include <wx/spinctrl.h>

namespace zel {

namespace {

wxSpinCtrl& SpinOf(const wxWindow& dialog, int id) {
    return dynamic_cast<wxSpinCtrl&>(*dialog.FindWindow(id));
}

} // namespace

wxBEGIN_EVENT_TABLE(GalleryDialog, wxDialog)
    EVT_BUTTON(wxID_OK, GalleryDialog::OnOk) // handlers that are bound come first: that of an attached panel
wxEND_EVENT_TABLE()

GalleryDialog::GalleryDialog(wxWindow* parent, int sliceCount)
    : wxDialog(parent, wxID_ANY, "Gallery parameters", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE) {
    GalleryFunc(this);
    const GalleryIds& ids = zel_galleryIds;
    FindWindow(ids.sliceCountText)->SetLabel(wxString::Format("Slice count: %d", sliceCount));
    for (const int id : {ids.firstSpin, ids.lastSpin, ids.stepSpin}) {
        wxSpinCtrl& spin = SpinOf(*this, id);
        spin.SetRange(spin.GetMin(), sliceCount - 1);
    }
    FitLayout(this, wxDefaultSize);
}

GalleryParams GalleryDialog::GetParams() const {
    const GalleryIds& ids = zel_galleryIds;
    const auto valueOf = [this](int id) { return SpinOf(*this, id).GetValue(); };
    return {.first = valueOf(ids.firstSpin),
            .last = valueOf(ids.lastSpin),
            .step = valueOf(ids.stepSpin),
            .byRows = dynamic_cast<wxRadioButton&>(*FindWindow(ids.rowsButton)).GetValue(),
            .count = valueOf(ids.countSpin),
            .spacing = valueOf(ids.spacingSpin)};
}

void GalleryDialog::OnOk(wxCommandEvent&) {
    const GalleryParams params = GetParams();
    if (params.first > params.last)
        ShowMessage("'Starting slice' must be less or equal to 'Ending slice'", "Bad input", wxICON_EXCLAMATION, this);
    else
        EndWithOk(this);
}

} // namespace zel
