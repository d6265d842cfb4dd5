#include "dialogs/dlg_volume_help.h"

#include "dialogs/wdr/dlg_volume_help_wdr.h"

namespace zel {

VolumeHelpDialog::VolumeHelpDialog(wxWindow* parent) : wxDialog(parent, wxID_ANY, "Volume Visualization Help") {
    VolVisHelpFunc(this);
}

} // namespace zel
