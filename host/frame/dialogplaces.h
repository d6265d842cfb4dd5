#pragma once

#include <wx/modalhook.h>

namespace zelviewer {

/// While one lives, the library's dialogs stand beside the picture that they change, and Return is their OK. Those that
/// the system brings stay as they are.
class DialogPlaces : public wxModalDialogHook {
public:
    DialogPlaces() { Register(); }
    ~DialogPlaces() override { Unregister(); }
    DialogPlaces(const DialogPlaces&) = delete;
    DialogPlaces& operator=(const DialogPlaces&) = delete;

protected:
    int Enter(wxDialog* dialog) override;
};

} // namespace zelviewer
