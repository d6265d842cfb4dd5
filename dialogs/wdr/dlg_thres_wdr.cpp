#include "dialogs/wdr/dlg_thres_wdr.h"

#include "dialogs/wdr/zel_histogramlayout.h"

#include <wx/sizer.h>
#include <wx/window.h>

namespace zel {

void ThresholdFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    AddHistogramChoices(*column, dialog);
    AddValueBox(*column, dialog, "Input Levels", {zel_graphId, zel_inputControlId}, 1);
    AddResetRow(*column, dialog, zel_thresholdResetId);
    dialog->SetSizer(column);
}

} // namespace zel
