#pragma once

#include "dialogs/zel_canvasprocessor.h"
#include "model/zel_composition.h"
#include "model/zel_export.h"
#include "model/zel_projection.h"

namespace zel {

// What an ExportSequenceDialog calls for each file: one class for each of the canvas's ways to save.

/// Saves the voxels of the frame that the canvas shows.
class ZEL_EXPORT ExportSave3dData_CanvasProcessor : public ExportData_CanvasProcessor {
public:
    explicit ExportSave3dData_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas); ///< not owned
    void operator()(const wxString& fileName) override;
};

/// Saves the windows as the user sees them.
class ZEL_EXPORT ExportSaveActualView_CanvasProcessor : public ExportData_CanvasProcessor {
public:
    /// @param savedCanvas       not owned
    /// @param windowSpacing     pixels
    /// @param savedProjections  zel_PT_XY, zel_PT_XZ, zel_PT_YZ or zel_PT_ALL
    ExportSaveActualView_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas, int windowSpacing,
                                         zel_ProjectionType savedProjections);
    void operator()(const wxString& fileName) override;

private:
    int spacing;
    zel_ProjectionType projections;
};

/// Saves a sheet of slices.
class ZEL_EXPORT ExportSaveGalleryView_CanvasProcessor : public ExportData_CanvasProcessor {
public:
    /// @param savedCanvas  not owned
    /// @param gallery      which slices, and how they are arranged
    ExportSaveGalleryView_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas, const GalleryOptions& gallery);
    void operator()(const wxString& fileName) override;

private:
    GalleryOptions options;
};

} // namespace zel
