#include "host/frame/dialogplaces.h"

#include "host/frame/places.h"
#include "viewer/zel_firstshow.h"
#include "viewer/zel_frame.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/display.h>

namespace zelviewer {

namespace {

void PutBeside(wxDialog& dialog, const wxWindow& frame) {
    const wxSize surroundings(8, 32); // of a dialog, about: the window manager tells only when it is on the screen
    dialog.Move(PlaceBeside(frame.GetRect(), dialog.GetSize() + surroundings, wxDisplay(&frame).GetClientArea()));
    zel::PrepareFirstShow(dialog);
}

/// Wherever the keyboard is but on another button. A closed list would open itself otherwise.
void MakeReturnOk(wxDialog& dialog) {
    auto* const ok = dynamic_cast<wxButton*>(dialog.FindWindow(wxID_OK));
    if (ok == nullptr)
        return;
    ok->SetDefault();
    dialog.Bind(wxEVT_CHAR_HOOK, [ok](wxKeyEvent& event) {
        const bool isReturn = event.GetKeyCode() == WXK_RETURN || event.GetKeyCode() == WXK_NUMPAD_ENTER;
        if (!isReturn || !ok->IsEnabled() || dynamic_cast<wxButton*>(wxWindow::FindFocus()) != nullptr) {
            event.Skip();
            return;
        }
        wxCommandEvent press(wxEVT_BUTTON, ok->GetId());
        press.SetEventObject(ok);
        ok->ProcessWindowEvent(press);
    });
}

} // namespace

int DialogPlaces::Enter(wxDialog* dialog) {
    const auto* const frame = dynamic_cast<const zel::zel_Viewer3dFrame*>(dialog->GetParent());
    if (frame != nullptr && !dialog->GetChildren().empty()) { // the system's own have no controls of the toolkit
        PutBeside(*dialog, *frame);
        MakeReturnOk(*dialog);
    }
    return wxID_NONE;
}

} // namespace zelviewer
