#include "dialogs/dlg_preferences.h"
#include "image/zel_modaldialog.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/colourdata.h>
#include <wx/weakref.h>

namespace zel {

namespace {

/// The custom colours of the colour dialogs, those of all frames.
wxColourData& RememberedColours() {
    static wxColourData colours;
    return colours;
}

} // namespace

void zel_Viewer3dFrame::OnPreferences(wxCommandEvent&) {
    if (m_canvas == nullptr)
        return;
    const wxWeakRef<zel_Viewer3dCanvas> canvas(m_canvas);
    zel_CanvasSettings settings;
    canvas->GetSettings(settings);
    wxColourData colours = RememberedColours();
    PreferencesDialog dialog(this, &settings, &colours);
    if (RunModal(dialog) != wxID_OK || !canvas)
        return;
    canvas->SetSettings(settings);
    RememberedColours() = colours;
}

} // namespace zel
