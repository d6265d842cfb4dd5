#pragma once

#include "image/zel_image4d.h"
#include "image/zel_labeledimage4d.h"
#include "viewer/zel_frame.h"

namespace zel {

/// Opens a viewer of an image with labels: a frame with its menus, "&Mapping" and "&Overlaying" among them, the mapping
/// that suits the voxels, and the labelled canvas. It is not shown, and overlaying is off at first.
///
/// The mapping is made from the image itself: call UpdateMinMaxValues after writing voxels of an int or float image.
/// @param image       not null
/// @param labels      one frame for each frame of the image, matched with it by place; a frame beyond the last is shown
///                    without labels. Null for none at all
/// @param ownsImage   the canvas deletes the image when it goes; else the host keeps it alive as long as the frame
/// @param ownsLabels  likewise the overlaying module the labels
/// @param parent, id, title, pos, size, style  as for wxFrame. While "Auto adjust frame size" is checked, as it is at
///                    the start, the image decides on the size.
/// @throws kep::InternalException for an image that has no voxels, or is int or float and constant; std::bad_alloc.
///         Image and labels are then still the caller's, and the half-made frame stays with its parent.
template <typename T, typename L, typename V>
zel_Viewer3dFrame* zel_CreateLabeledImage3dFrame(mor::Image4d<T>* image, mor::LabeledImage4d<L, V>* labels,
                                                 bool ownsImage, bool ownsLabels, wxWindow* parent, int id,
                                                 const wxString& title, const wxPoint& pos, const wxSize& size,
                                                 long style);

} // namespace zel
