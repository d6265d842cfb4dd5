#include "dialogs/controls/zel_enddialog.h"

#include <wx/dialog.h>

namespace zel {

void EndWithOk(wxDialog* dialog) {
    if (dialog->IsModal()) {
        dialog->EndModal(wxID_OK);
    } else {
        dialog->SetReturnCode(wxID_OK);
        dialog->Hide();
    }
}

} // namespace zel
