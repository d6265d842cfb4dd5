#pragma once

#include "model/zel_export.h"

#include <wx/dialog.h>

namespace zel {

/// What the dialog of a gallery asks for.
struct GalleryParams {
    int first = 0;      ///< slice
    int last = 0;       ///< slice, included; may be below the first
    int step = 1;       ///< slices; may be 0
    bool byRows = true; ///< the count is that of rows, otherwise of columns
    int count = 1;      ///< of rows or columns; may be 0
    int spacing = 10;   ///< pixels between two pictures
};

/// The dialog "Gallery parameters": which slices go into a gallery, and how they are arranged. An ExportSequenceDialog
/// is attached to it, for the parameters of the sequence; it ends the dialog without the check that this dialog alone
/// makes, whether the starting slice is above the ending slice.
class ZEL_EXPORT GalleryDialog : public wxDialog {
public:
    /// @param sliceCount  at least 1
    GalleryDialog(wxWindow* parent, int sliceCount);

    /// What the controls hold.
    GalleryParams GetParams() const;

private:
    void OnOk(wxCommandEvent& event);

    wxDECLARE_EVENT_TABLE();
};

} // namespace zel
