#include "dialogs/wdr/dlg_levels_wdr.h"

#include "dialogs/wdr/zel_histogramlayout.h"

#include <wx/sizer.h>
#include <wx/window.h>

namespace zel {

void LevelsFunc(wxWindow* dialog) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    AddHistogramChoices(*column, dialog);
    AddValueBox(*column, dialog, "Input Levels", {zel_graphId, zel_inputControlId}, 1);
    AddValueBox(*column, dialog, "Output Levels", {zel_outputControlId}, 0);
    AddResetRow(*column, dialog, zel_levelsResetId);
    dialog->SetSizer(column);
}

} // namespace zel
