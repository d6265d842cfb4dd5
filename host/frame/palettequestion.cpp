#include "host/frame/palettequestion.h"

#include "image/zel_modaldialog.h"
#include "mapping/zel_palette.h"

#include <wx/filedlg.h>

namespace zelviewer {

bool AskForPalette(wxWindow* parent, zel::Palette& palette) {
    const wxWeakRef<wxWindow> alive(parent);
    wxFileDialog dialog(parent, "Load palette", "", "",
                        "Palettes (*.pal)|*.pal|Text files (*.txt)|*.txt|All files (*.*)|*.*",
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (zel::RunModal(dialog) != wxID_OK)
        return false;
    wxString fault = zel::ReadPalette(palette, dialog.GetPath());
    if (fault.empty() && palette.empty())
        fault = "The file is empty.";
    if (fault.empty())
        return true;
    zel::ShowMessage(dialog.GetPath() + ": " + fault + " The colours stay as they were.", "Palette",
                     wxOK | wxCENTRE | wxICON_ERROR, alive.get());
    return false;
}

} // namespace zelviewer
