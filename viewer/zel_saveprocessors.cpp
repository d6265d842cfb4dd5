#include "viewer/zel_saveprocessors.h"

#include "viewer/zel_viewer3dcanvas.h"

namespace zel {

ExportSave3dData_CanvasProcessor::ExportSave3dData_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas)
    : ExportData_CanvasProcessor(savedCanvas) {}

void ExportSave3dData_CanvasProcessor::operator()(const wxString& fileName) {
    canvas->Save3dData(fileName);
}

ExportSaveActualView_CanvasProcessor::ExportSaveActualView_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas,
                                                                           int windowSpacing,
                                                                           zel_ProjectionType savedProjections)
    : ExportData_CanvasProcessor(savedCanvas), spacing(windowSpacing), projections(savedProjections) {}

void ExportSaveActualView_CanvasProcessor::operator()(const wxString& fileName) {
    canvas->SaveActualView(fileName.mb_str(*wxConvFileName), spacing, projections);
}

ExportSaveGalleryView_CanvasProcessor::ExportSaveGalleryView_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas,
                                                                             const GalleryOptions& gallery)
    : ExportData_CanvasProcessor(savedCanvas), options(gallery) {}

void ExportSaveGalleryView_CanvasProcessor::operator()(const wxString& fileName) {
    canvas->SaveGalleryView(fileName.mb_str(*wxConvFileName), options.first, options.last, options.step, options.byRows,
                            options.count, options.spacing);
}

} // namespace zel
