// Commands that open windows of their own.

#include "viewer/zel_frame.h"
#include "viewer/zel_viewer3dcanvas.h"

namespace zel {

void zel_Viewer3dFrame::OnShowInfo(wxCommandEvent&) {
    if (m_canvas != nullptr)
        m_canvas->InfoFrame_Show(!m_canvas->InfoFrame_IsShown());
}

void zel_Viewer3dFrame::OnVisualizeVolume(wxCommandEvent&) {
    if (m_canvas != nullptr)
        m_canvas->ShowVolVis(GetIcons());
}

} // namespace zel
