#pragma once

#include "image/kep.h"
#include "model/zel_projection.h"

#include <wx/colour.h>
#include <wx/gdicmn.h>
#include <wx/string.h>

#include <cstddef>

namespace zel {

/// Controls of the info window.
enum zel_InfoId : int {
    zel_INFO_LABEL = 10000, ///< all texts that do not change
    // Page "Pixel info"
    zel_INFO_POSITION = 10001,
    zel_INFO_VOXEL = 10002,
    zel_INFO_VALUE = 10003,
    zel_INFO_COLOUR = 10004,
    zel_INFO_COLOUR_SHOWN = 10005, ///< a window with the colour as its background
    zel_INFO_OVERLAY = 10016,      ///< in the info window of a labelled canvas only
    // Page "Image info"
    zel_INFO_TYPE = 10006,
    zel_INFO_SIZE = 10007,
    zel_INFO_VOXEL_SIZE = 10008,
    zel_INFO_EXTENT = 10009,
    zel_INFO_NOTEBOOK = 10010,
    // Page "View info"
    zel_INFO_BOX_OFFSET = 10011,
    zel_INFO_BOX_SIZE = 10012,
    zel_INFO_VISIBLE_OFFSET = 10013,
    zel_INFO_VISIBLE_SIZE = 10014,
    zel_INFO_CUT = 10015
};

/// One value of the info window.
struct zel_InfoText {
    zel_InfoId id; ///< which of them
    wxString text; ///< as it is shown
};

/// What lies under a pixel of a drawing window.
struct zel_PixelInfo {
    zel_ProjectionType window; ///< zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    wxPoint pixel;             ///< of the window's client area
    /// Microns. Of mirrored axes it is what zel_DrWin3d::WindowXToMicrons and its kin say.
    kep::Vector3d<float> position;
    kep::Vector3d<std::size_t> voxel; ///< that the picture shows there; along the line of sight that of the cut
    int time = 0;                     ///< number of the frame
    wxString value;                   ///< of the voxel that the picture shows; "---" while there is no picture
    wxColour colour;                  ///< that the picture has there; white with alpha 0 while there is none
};

} // namespace zel
