#include "host/frame/palettequestion.h"

#include "image/zel_modaldialog.h"
#include "mapping/zel_palette.h"

#include <wx/filedlg.h>

namespace zelviewer {

namespace {

/// Empty if none is chosen. The dialog has gone when this returns: a viewer that goes while a message follows would
/// take its dialogs with it.
wxString AskForFile(wxWindow* parent) {
    wxFileDialog dialog(parent, "Load palette", "", "",
                        "Palettes (*.pal)|*.pal|Text files (*.txt)|*.txt|All files (*.*)|*.*",
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    return zel::RunModal(dialog) == wxID_OK ? dialog.GetPath() : wxString();
}

} // namespace

bool AskForPalette(wxWindow* parent, zel::Palette& palette) {
    const wxWeakRef<wxWindow> alive(parent);
    const wxString name = AskForFile(parent);
    if (name.empty())
        return false;
    wxString fault = zel::ReadPalette(palette, name);
    if (fault.empty() && palette.empty())
        fault = "The file is empty.";
    if (fault.empty())
        return true;
    zel::ShowMessage(name + ": " + fault + " The colours stay as they were.", "Palette", wxOK | wxCENTRE | wxICON_ERROR,
                     alive.get());
    return false;
}

} // namespace zelviewer
