#pragma once

#include "model/zel_composition.h"
#include "model/zel_export.h"

#include <wx/dialog.h>

namespace zel {

/// What the dialog of a gallery asks for. The first slice may be above the last, step and count may be 0.
using GalleryParams = GalleryOptions;

/// The dialog "Gallery parameters": which slices go into a gallery, and how they are arranged. An ExportSequenceDialog
/// is attached to it, for the parameters of the sequence; it ends the dialog without the check that this dialog alone
/// makes, whether the starting slice is above the ending slice.
class ZEL_EXPORT GalleryDialog : public wxDialog {
public:
    /// @param parent      the dialog goes with it
    /// @param sliceCount  at least 1
    GalleryDialog(wxWindow* parent, int sliceCount);

    /// What the controls hold.
    GalleryParams GetParams() const;

private:
    void OnOk(wxCommandEvent& event);

    wxDECLARE_EVENT_TABLE();
};

} // namespace zel
