#pragma once

#include "model/zel_decorations.h"
#include "model/zel_export.h"
#include "model/zel_viewoptions.h"

#include <wx/colour.h>
#include <wx/font.h>
#include <wx/gdicmn.h>
#include <wx/string.h>

namespace zel {

// The options of a view: plain records. A position is a corner of the window, 0 top left, 1 top right, 2 bottom left,
// 3 bottom right; an offset is the distance from that corner inwards, in pixels. Records with fonts can't be made
// before the toolkit runs.

/// How the position of the cut is marked in the windows.
struct zel_CutPointerStyle {
    int style = 1; ///< 0 none, 1 on the sides, 2 on the sides with a circle, 3 dotted, 4 dashed, 5 solid cross
    wxColour colour{0, 255, 0}; ///< of the marks or lines
};

/// A text in each window.
struct ZEL_EXPORT zel_ProjectionAnnotationStyle {
    wxString textXY = "XY";         ///< of the XY window
    wxString textXZ = "XZ";         ///< of the XZ window
    wxString textYZ = "YZ";         ///< of the YZ window
    int positionXY = 0;             ///< corner in the XY window
    int positionXZ = 0;             ///< corner in the XZ window
    int positionYZ = 0;             ///< corner in the YZ window
    wxPoint offsetXY{5, 5};         ///< in the XY window
    wxPoint offsetXZ{5, 5};         ///< in the XZ window
    wxPoint offsetYZ{5, 5};         ///< in the YZ window
    wxColour colour{255, 255, 255}; ///< also of the texts of scale bar and time bar
    /// Also of the texts of scale bar and time bar.
    wxFont font{10, wxFONTFAMILY_SWISS, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_BOLD};
};

/// An angle in each window that shows a length along both of its axes.
struct zel_ScaleBarStyle {
    float length = 1.0F;            ///< microns
    int thickness = 2;              ///< pixels of the pen; below 1 nothing is drawn
    wxColour colour{255, 255, 255}; ///< of the two legs
    int position = 2;               ///< corner of the window
    wxPoint offset{10, 10};         ///< from that corner

    /// Without the colour, for the model.
    operator ScaleBarShape() const { return {length, thickness, position, offset}; }
};

/// A bar in the XY window that shows the position of the current frame in the sequence.
struct zel_TimeBarStyle {
    int length = 50;                ///< pixels from the first frame to the last
    int thickness = 2;              ///< pixels of the pen; below 1 nothing is drawn
    wxColour colour{255, 255, 255}; ///< of bar and marker
    int position = 3;               ///< corner of the window
    wxPoint offset{10, 10};         ///< from that corner

    /// Without the colour, for the model.
    operator TimeBarShape() const { return {length, thickness, position, offset}; }
};

/// What is drawn over the pictures.
struct DecorationOptions {
    bool showAnnotation = false;              ///< annotation and scale bar are drawn
    zel_CutPointerStyle cutPointer;           ///< marks where the cut lies
    zel_ProjectionAnnotationStyle annotation; ///< texts of the three windows
    zel_ScaleBarStyle scaleBar;               ///< drawn where `showAnnotation` is true
    zel_TimeBarStyle timeBar;                 ///< drawn for more than one frame
};

/// All options of a canvas's view.
struct zel_CanvasSettings : ViewOptions, DecorationOptions {};

/// The typed canvas's name for the same contents.
struct zel_ImageCanvasSettings : zel_CanvasSettings {};

} // namespace zel
