// The volume window as the canvas keeps it, without the voxels.

#include "image/zel_modaldialog.h"
#include "viewer/draw/zel_windowicons.h"
#include "viewer/zel_viewer3dcanvas.h"
#include "volume/vol3D_canvas.h"

namespace zel {

void zel_Viewer3dCanvas::ShowVolVis(const wxIconBundle& icons) {
    // To start OpenGL takes some events, in which a host may close the viewer.
    const wxWeakRef<wxWindow> self(this);
    if (!m_volVisFrame) {
        if (!vol3D_VolVisCanvas::CheckDisplay())
            return;
        m_volVisFrame = new vol3D_VolVisFrame(nullptr, wxID_ANY, "Volume visualization", wxDefaultPosition,
                                              wxSize(600, 600), wxDEFAULT_FRAME_STYLE,
                                              m_truePictures.meshes ? MeshDrawing::Whole : MeshDrawing::Halved);
        const bool ready = m_volVisFrame->GetCanvas()->Init();
        if (!self)
            return;
        if (!ready) {
            DeleteVolVisFrame();
            return;
        }
    }
    m_volVisFrame->GetCanvas()->ResetView();
    SetWindowIcons(*m_volVisFrame, icons);
    m_volVisFrame->Show(true);
    m_volVisFrame->Raise();
    m_volVisFrame->GetCanvas()->SetFocus();
    UpdateVolVis();
    UpdateIsosurface();
}

void zel_Viewer3dCanvas::RefreshVolVisIcon(const wxIconBundle& icons) {
    if (m_volVisFrame)
        SetWindowIcons(*m_volVisFrame, icons);
}

void zel_Viewer3dCanvas::DeleteVolVisFrame() {
    delete m_volVisFrame.get();
    m_volVisFrame = nullptr;
}

bool zel_Viewer3dCanvas::IsVolVisShown() const {
    return m_volVisFrame && m_volVisFrame->IsShown();
}

void zel_Viewer3dCanvas::ReportVolumeError(const wxString& text) {
    // After the present event: the box runs an event loop, in which a host may close the viewer, and browsing goes on.
    if (m_volumeErrorIsTold)
        return;
    m_volumeErrorIsTold = true;
    CallAfter([this, text] {
        const wxWeakRef<wxWindow> self(this);
        wxMessageDialog box(this, text, "Error", wxOK);
        RunModal(box);
        if (self)
            m_volumeErrorIsTold = false;
    });
}

} // namespace zel
