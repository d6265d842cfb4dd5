#pragma once

#include "host/options.h"
#include "image/zel_image4d.h"
#include "viewer/zel_frame.h"

#include <memory>

namespace zelviewer {

/// Makes the window of an image, ready to be shown: titled, in true proportions unless `inVoxels` asks for one pixel a
/// voxel, with a use for the mouse, and as large as the image needs and the display has. Exists for the types of
/// KEP_DISPLAY_TYPES.
///
/// Gray images have the viewer's own mapping with its menu. For a moment that takes the image's memory once more, or,
/// for int, up to some tens of megabytes. Colours are shown as they are and complex voxels by their amplitude, without
/// a menu.
/// @param image    the window takes it
/// @param stretch  of gray images; without meaning for others
/// @throws kep::InternalException for an int or float image whose voxels are all equal, in words for the user;
///         std::bad_alloc. No window is left then.
template <typename T>
zel::zel_Viewer3dFrame* MakeFrame(std::unique_ptr<mor::Image4d<T>> image, Stretch stretch, bool inVoxels);

/// The part of it that does not ask what the voxels are: takes any frame of the viewer that has its canvas.
void PrepareFrame(zel::zel_Viewer3dFrame& frame, bool inVoxels);

} // namespace zelviewer
