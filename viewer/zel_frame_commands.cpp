// Commands that open windows of their own.

#include "viewer/zel_frame.h"
#include "viewer/zel_viewer3dcanvas.h"

namespace zel {

void zel_Viewer3dFrame::SayUnavailable() {
    if (m_canvas != nullptr)
        SetInfoStatusText("Not available yet.", 5);
}

void zel_Viewer3dFrame::OnShowInfo(wxCommandEvent&) {
    SayUnavailable();
}

void zel_Viewer3dFrame::OnVisualizeVolume(wxCommandEvent&) {
    if (m_canvas != nullptr)
        m_canvas->ShowVolVis(GetIcons());
}

} // namespace zel
