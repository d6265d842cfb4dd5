#pragma once

#include "image/zel_image4d.h"
#include "viewer/zel_frame.h"

namespace zel {

/// The one call that opens a viewer: a frame with its menus, the mapping that suits the voxels, and the canvas. It is
/// not shown. Exists for unsigned char, unsigned short, float, kep::RGB_generic of unsigned char and unsigned short,
/// and std::complex<float>.
///
/// The mapping is made from a temporary copy of the image, so opening takes about twice the image's memory for a
/// moment.
/// @param image      not null
/// @param ownsImage  the canvas deletes the image in its destructor; otherwise the host keeps it alive as long as the
///                   frame
/// @param parent, id, title, pos, size, style  as for wxFrame. While "Auto adjust frame size" is checked, as it is at
///                   the start, the image decides on the size.
/// @throws kep::InternalException for an image that is not consistent, has no voxels, or of whose voxels nothing varies
///         if they are float or complex; std::bad_alloc. The half-made frame stays with its parent.
template <typename T>
zel_Viewer3dFrame* zel_CreateImage3dFrame(mor::Image4d<T>* image, bool ownsImage, wxWindow* parent, int id,
                                          const wxString& title, const wxPoint& pos, const wxSize& size, long style);

} // namespace zel
