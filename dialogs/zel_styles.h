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
    wxColour colour{0, 255, 0};
};

/// A text in each window.
struct ZEL_EXPORT zel_ProjectionAnnotationStyle {
    wxString textXY = "XY";
    wxString textXZ = "XZ";
    wxString textYZ = "YZ";
    int positionXY = 0;
    int positionXZ = 0;
    int positionYZ = 0;
    wxPoint offsetXY{5, 5};
    wxPoint offsetXZ{5, 5};
    wxPoint offsetYZ{5, 5};
    wxColour colour{255, 255, 255}; ///< also of the texts of scale bar and time bar
    wxFont font{10, wxFONTFAMILY_SWISS, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_BOLD};
};

/// An angle in each window that shows a length along both of its axes.
struct zel_ScaleBarStyle {
    float length = 1.0F; ///< microns
    int thickness = 2;   ///< pixels of the pen; below 1 nothing is drawn
    wxColour colour{255, 255, 255};
    int position = 2;
    wxPoint offset{10, 10};

    operator ScaleBarShape() const { return {length, thickness, position, offset}; }
};

/// A bar in the XY window that shows the position of the current frame in the sequence.
struct zel_TimeBarStyle {
    int length = 50;   ///< pixels from the first frame to the last
    int thickness = 2; ///< pixels of the pen; below 1 nothing is drawn
    wxColour colour{255, 255, 255};
    int position = 3;
    wxPoint offset{10, 10};

    operator TimeBarShape() const { return {length, thickness, position, offset}; }
};

/// What is drawn over the pictures.
struct DecorationOptions {
    bool showAnnotation = false; ///< annotation and scale bar are drawn
    zel_CutPointerStyle cutPointer;
    zel_ProjectionAnnotationStyle annotation;
    zel_ScaleBarStyle scaleBar;
    zel_TimeBarStyle timeBar;
};

/// All options of a canvas's view.
struct zel_CanvasSettings : ViewOptions, DecorationOptions {};

/// The typed canvas's name for the same contents.
struct zel_ImageCanvasSettings : zel_CanvasSettings {};

} // namespace zel
