#pragma once

#include "model/zel_export.h"

#include <wx/dialog.h>

namespace zel {

/// What mouse and keys do in the volume window. Shown beside it, not modally; "OK" hides it.
class ZEL_EXPORT VolumeHelpDialog : public wxDialog {
public:
    explicit VolumeHelpDialog(wxWindow* parent); ///< made hidden
};

} // namespace zel
