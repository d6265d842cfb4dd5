#include "dialogs/dlg_decoration.h"

#include "dialogs/controls/zel_focuslost.h"
#include "dialogs/wdr/dlg_export_wdr.h"
#include "dialogs/wdr/zel_layout.h"
#include "dialogs/zel_validators.h"
#include "image/zel_assert.h"

#include <wx/radiobox.h>
#include <wx/spinctrl.h>

namespace zel {

namespace {

constexpr zel_ProjectionType projections[] = {zel_PT_XY, zel_PT_XZ, zel_PT_YZ, zel_PT_ALL};
constexpr int allProjections = 3;

} // namespace

DecorationDialog::DecorationDialog(wxWindow* parent, long* border)
    : wxDialog(parent, wxID_ANY, "Save view", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE) {
    DecorationFunc(this);
    borderSpin = dynamic_cast<wxSpinCtrl*>(FindWindow(zel_decorationIds.borderSpin));
    projectionBox = dynamic_cast<wxRadioBox*>(FindWindow(zel_decorationIds.projectionBox));
    zel_ASSERT(borderSpin && projectionBox, "dlg_decoration", "zel::DecorationDialog::DecorationDialog");

    borderSpin->SetValidator(IntValidator<long>(*border, "%d"));
    OnFocusLost(*borderSpin, [this] { Validate(); });
    projectionBox->SetSelection(allProjections);
    FitLayout(this, wxDefaultSize);
}

zel_ProjectionType DecorationDialog::GetProjections() const {
    return projections[projectionBox->GetSelection()];
}

} // namespace zel
