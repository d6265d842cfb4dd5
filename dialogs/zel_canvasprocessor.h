#pragma once

#include "model/zel_export.h"

#include <wx/string.h>

namespace zel {

class zel_Viewer3dCanvas;

/// Writes what a canvas shows into one file. An export calls it once for each file name, while the canvas shows the
/// frame that belongs to it. It lives no longer than the command that exports.
class ZEL_EXPORT ExportData_CanvasProcessor {
public:
    /// @param savedCanvas  not owned
    explicit ExportData_CanvasProcessor(zel_Viewer3dCanvas* savedCanvas) : canvas(savedCanvas) {}
    /// @{
    /// Copies write the same canvas.
    ExportData_CanvasProcessor(const ExportData_CanvasProcessor&) = default;
    ExportData_CanvasProcessor& operator=(const ExportData_CanvasProcessor&) = default;
    /// @}
    virtual ~ExportData_CanvasProcessor() = default;

    /// What it throws ends the export and reaches the export's caller.
    virtual void operator()(const wxString& fileName) = 0;

protected:
    zel_Viewer3dCanvas* canvas; ///< not null, not owned
};

} // namespace zel
