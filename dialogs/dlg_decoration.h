#pragma once

#include "model/zel_export.h"
#include "model/zel_projection.h"

#include <wx/dialog.h>

class WXDLLIMPEXP_FWD_CORE wxRadioBox;
class WXDLLIMPEXP_FWD_CORE wxSpinCtrl;

namespace zel {

/// The dialog "Save view": which windows go into a saved view, and how wide a border stands between them. An
/// ExportSequenceDialog is attached to it, for the parameters of the sequence.
class ZEL_EXPORT DecorationDialog : public wxDialog {
public:
    /// @param parent  the dialog goes with it
    /// @param border  pixels, shown at the start; TransferDataFromWindow brings the number chosen there. It must live
    ///                as long as the dialog
    DecorationDialog(wxWindow* parent, long* border);

    /// zel_PT_XY, zel_PT_XZ, zel_PT_YZ or zel_PT_ALL.
    zel_ProjectionType GetProjections() const;

private:
    wxSpinCtrl* borderSpin;
    wxRadioBox* projectionBox;
};

} // namespace zel
