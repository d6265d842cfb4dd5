#pragma once

#include "model/zel_export.h"

namespace zel {

class zel_Viewer3dFrame;

/// What EquipFrame leaves out if it is asked to.
struct FrameEquipment {
    bool trueProportions = true; ///< false: one pixel a voxel, as a canvas opens
    bool fillsDisplay = true;    ///< the picture is scaled to fill two thirds of the display
};

/// Makes a viewer of a frame in which a canvas stands: what a canvas leaves to its host, in one call. Each part can be
/// had alone as well.
/// - The mouse moves the cut, steps, zooms and pans (UseMouse).
/// - The image has its true proportions (ShowInTrueProportions) and a size to look at (FillRoom).
/// - Scale bar, cut pointer and saved galleries are those of the picture, and the volume window draws meshes whole
///   (zel_Viewer3dCanvas::SetTruePictures).
/// - The title is short and follows the zoom (AddTitle).
/// - The frame is as large as its picture, and appears so (PrepareFirstShow).
///
/// To be called once, before the frame is first shown.
/// @return false if the image is shown with one pixel a voxel because its proportions differ more than a hundredfold
ZEL_EXPORT bool EquipFrame(zel_Viewer3dFrame& frame, const FrameEquipment& equipment = {});

} // namespace zel
