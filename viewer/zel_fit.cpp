#include "viewer/zel_fit.h"

#include "model/zel_proportions.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <algorithm>

namespace zel {

bool ShowInTrueProportions(zel_Viewer3dCanvas& canvas) {
    const OpeningScale opening = ChooseScale(canvas.GetResolution());
    zel_CanvasSettings settings;
    canvas.GetSettings(settings);
    settings.baseScale = opening.scale;
    canvas.SetSettings(settings);
    return opening.proportional;
}

void FillRoom(zel_Viewer3dCanvas& canvas, const wxSize& room) {
    if (canvas.GetImageCount() == 0)
        return;
    zel_CanvasSettings settings;
    canvas.GetSettings(settings);
    // From the scale at which the axis of the smallest voxels has one pixel a voxel.
    const kep::Vector3d<float> resolution = canvas.GetResolution().GetUsable().GetRes();
    kep::Vector3d<float>& scale = settings.baseScale;
    const float voxel = std::min({scale.x / resolution.x, scale.y / resolution.y, scale.z / resolution.z});
    scale = {scale.x / voxel, scale.y / voxel, scale.z / voxel};
    const kep::Vector3d<float>& extent = canvas.GetBoundingBox().size;
    const float factor = FactorToFill({extent.x * scale.x, extent.y * scale.y, extent.z * scale.z}, room.x, room.y);
    scale = {scale.x * factor, scale.y * factor, scale.z * factor};
    settings.zoom = 0;
    canvas.SetSettings(settings);
}

} // namespace zel
