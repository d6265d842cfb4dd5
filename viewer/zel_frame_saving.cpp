// The commands that save: each asks in a dialog, and then writes one file or one for each frame.

#include "dialogs/dlg_decoration.h"
#include "dialogs/dlg_export_sequence.h"
#include "dialogs/dlg_gallery.h"
#include "image/zel_modaldialog.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_saveprocessors.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/log.h>

#include <new>

namespace zel {

namespace {

bool HasImage(zel_Viewer3dCanvas* canvas) {
    if (canvas == nullptr || canvas->GetImageCount() < 1)
        return false;
    const kep::Vector3d<std::size_t> size = canvas->GetImageSize();
    return size.x > 0 && size.y > 0 && size.z > 0;
}

/// Exports, and tells in the log of pictures that are too large. What cannot be written is told by the canvas, so that
/// the other files of a sequence are tried all the same.
void Export(ExportSequenceDialog& exporter, ExportData_CanvasProcessor&& processor) {
    try {
        exporter.ProcessExport(processor);
    } catch (const kep::InternalException&) {
        throw; // a template that names no files: for the application
    } catch (const kep::LibException& failure) {
        wxLogError("%s", wxString::FromUTF8(failure.GetText()));
    } catch (const std::bad_alloc&) {
        wxLogError("There is not enough memory for the picture.");
    }
}

} // namespace

void zel_Viewer3dFrame::OnSave3dData(wxCommandEvent&) {
    if (!HasImage(m_canvas))
        return;
    const wxWeakRef<wxWindow> self(this);
    Save3dDataDialog dialog(this);
    ExportSequenceDialog exporter(&dialog, m_canvas);
    if (RunModal(dialog) != wxID_OK || !self)
        return;
    Export(exporter, ExportSave3dData_CanvasProcessor(m_canvas));
}

void zel_Viewer3dFrame::OnSaveView(wxCommandEvent&) {
    if (!HasImage(m_canvas))
        return;
    const wxWeakRef<wxWindow> self(this);
    long border = 10;
    DecorationDialog dialog(this, &border);
    ExportSequenceDialog exporter(&dialog, m_canvas);
    if (RunModal(dialog) != wxID_OK || !self)
        return;
    dialog.TransferDataFromWindow();
    Export(exporter, ExportSaveActualView_CanvasProcessor(m_canvas, static_cast<int>(border), dialog.GetProjections()));
}

void zel_Viewer3dFrame::OnSaveGalleryView(wxCommandEvent&) {
    if (!HasImage(m_canvas))
        return;
    const wxWeakRef<wxWindow> self(this);
    GalleryDialog dialog(this, static_cast<int>(m_canvas->GetImageSize().z));
    ExportSequenceDialog exporter(&dialog, m_canvas);
    if (RunModal(dialog) != wxID_OK || !self)
        return;
    Export(exporter, ExportSaveGalleryView_CanvasProcessor(m_canvas, dialog.GetParams()));
}

} // namespace zel
