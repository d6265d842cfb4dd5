// The info window, as far as it needs no voxels.

#include "viewer/wdr/info_wdr.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/app.h>
#include <wx/minifram.h>
#include <wx/notebook.h>
#include <wx/stattext.h>

#include <algorithm>

namespace zel {

namespace {

const wxSize largestInfoWindow(380, 200);

/// Writes a value. @return whether it has changed
bool Write(const wxWindow& window, const zel_InfoText& value) {
    auto* const text = dynamic_cast<wxStaticText*>(window.FindWindow(value.id));
    if (text == nullptr || text->GetLabelText() == value.text)
        return false;
    text->SetLabelText(value.text);
    return true;
}

/// The drawing window at whose corner the info window stands.
zel_ProjectionType CornerWindow(const zel_Viewer3dCanvas& canvas) {
    if (canvas.IsDrWinShown(zel_PT_XY) || canvas.IsDrWinShown(zel_PT_XZ) == canvas.IsDrWinShown(zel_PT_YZ))
        return zel_PT_XY;
    return canvas.IsDrWinShown(zel_PT_XZ) ? zel_PT_XZ : zel_PT_YZ;
}

/// The toolkit tells a window its first size some time after it was shown, which undoes what was fitted before.
void KeepFitted(wxTopLevelWindow& window) {
    constexpr int patience = 3; // window managers that insist on a size of their own get it
    window.Bind(wxEVT_SIZE, [&window, left = patience](wxSizeEvent& event) mutable {
        event.Skip();
        if (left == 0 || event.GetSize() == window.GetBestSize())
            return;
        --left;
        window.CallAfter([&window] { window.Fit(); });
    });
}

} // namespace

void zel_Viewer3dCanvas::InfoFrame_Create() {
    InfoFrame_Make(false);
}

void zel_Viewer3dCanvas::InfoFrame_Make(bool withOverlay) {
    wxWindow* const keyboard = FindFocus();
    auto* const window = new wxMiniFrame(this, wxID_ANY, "Info frame", wxDefaultPosition, wxDefaultSize, 0);
    window->SetMaxSize(largestInfoWindow);
    InfoNotebookFunc(window, withOverlay ? MouseOverlayInfoFunc : MouseInfoFunc);
    m_infoFrame = window;
    KeepFitted(*window);
    if (keyboard != nullptr)
        keyboard->SetFocus(); // a notebook's first page counts as having the keyboard, which it never got
}

void zel_Viewer3dCanvas::InfoFrame_Show(bool show) {
    if (m_infoFrame && wxTheApp->IsScheduledForDestruction(m_infoFrame))
        m_infoFrame = nullptr; // the user has just closed it
    if (!show) {
        if (m_infoFrame)
            m_infoFrame->Show(false);
        return;
    }
    if (!m_infoFrame)
        InfoFrame_Create();
    if (!m_infoFrame)
        return;                           // a derived canvas may want none
    m_infoFrame->ShowWithoutActivating(); // the keyboard stays in the drawing window
    InfoFrame_Move();
    InfoFrame_UpdatePixelInfo();
    InfoFrame_UpdateImageInfo();
    InfoFrame_UpdateCutAndVisBoxInfo();
}

bool zel_Viewer3dCanvas::InfoFrame_IsShown() const {
    return m_infoFrame && m_infoFrame->IsShown();
}

void zel_Viewer3dCanvas::InfoFrame_Move() {
    if (!InfoFrame_IsShown())
        return;
    const wxWindow& window = *GetDrWin(CornerWindow(*this));
    const wxSize size = window.GetSize();
    m_infoFrame->Move(ClientToScreen(window.GetPosition() + wxPoint(size.x, size.y)));
}

bool zel_Viewer3dCanvas::InfoFrame_IsPixelPageShown() const {
    if (!InfoFrame_IsShown())
        return false;
    const auto* const notebook = dynamic_cast<const wxNotebook*>(m_infoFrame->FindWindow(zel_INFO_NOTEBOOK));
    return notebook != nullptr && notebook->GetSelection() == 0;
}

void zel_Viewer3dCanvas::InfoFrame_Write(const std::vector<zel_InfoText>& values) {
    bool changed = false;
    for (const zel_InfoText& value : values)
        changed |= Write(*m_infoFrame, value);
    if (!changed)
        return; // nothing to lay out anew
    m_infoFrame->Fit();
}

void zel_Viewer3dCanvas::InfoFrame_WriteColour(const wxColour& colour) {
    wxWindow* const shown = m_infoFrame->FindWindow(zel_INFO_COLOUR_SHOWN);
    if (shown == nullptr || shown->GetBackgroundColour() == colour)
        return;
    shown->SetBackgroundColour(colour);
    shown->ClearBackground();
}

} // namespace zel
