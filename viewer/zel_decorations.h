#pragma once

#include "image/zel_export.h"
#include "viewer/zel_styles.h"

#include <wx/gdicmn.h>
#include <wx/string.h>

#include <vector>

namespace zel {

// Where the decorations of a drawing window stand, in pixels of the window. Lengths, offsets and places beyond a
// million pixels are held there: nothing of the picture changes by it.

/// A straight line between two points.
struct Stroke {
    wxPoint from;
    wxPoint to;
    friend bool operator==(const Stroke&, const Stroke&) = default;
};

/// Top left corner of a block that stands at a corner of the window (0 top left, 1 top right, 2 bottom left, 3 bottom
/// right), the offset inwards; (0, 0) for any other position.
ZEL_EXPORT wxPoint PlaceBlock(int position, const wxPoint& offset, const wxSize& block, const wxSize& window);

/// Where the cut lies along an axis of a window. Mirrored axes play no part: the pointer stays at the unmirrored place.
/// @param cut, visibleOffset  microns
ZEL_EXPORT int CutPointerPlace(float cut, float visibleOffset, float scale);

/// The lines of the cut pointer: marks on the four sides, or a cross; none for style 0 and unknown ones.
/// @param at      the place of the cut
/// @param window  size of the picture
ZEL_EXPORT std::vector<Stroke> CutPointerStrokes(int style, const wxPoint& at, const wxSize& window);

/// There is a time bar: its pen has a width, and there is more than one frame.
inline bool HasTimeBar(const zel_TimeBarStyle& style, int count) {
    return style.thickness >= 1 && count >= 2;
}

struct TimeBarGeometry {
    wxPoint text;  ///< top left corner of "Time: "
    Stroke bar;    ///< left to right
    Stroke marker; ///< the current frame, upwards from the bar
};

/// @param text   extent of "Time: ", pixels
/// @param frame  index of the current frame, 0 <= frame < count; HasTimeBar(style, count) holds
ZEL_EXPORT TimeBarGeometry LayOutTimeBar(const zel_TimeBarStyle& style, const wxSize& text, const wxSize& window,
                                         int frame, int count);

/// The length with as many decimals as it needs, at most six, and the unit: "2.5 µm: ".
ZEL_EXPORT wxString ScaleBarText(float length);

/// The bar's length in pixels on an axis. It follows zoom + 1 for every zoom and one pixel a voxel at zoom 0,
/// whatever the view's base scale; so it has no length at zoom -1.
/// @param resolution  the image's, pixels per micron
ZEL_EXPORT int ScaleBarPixels(float length, int zoom, float resolution);

struct ScaleBarGeometry {
    wxPoint text;
    Stroke horizontal; ///< both legs begin at the corner of the angle
    Stroke vertical;
};

/// @param text  extent of the text, pixels
/// @param legs  lengths along the window's horizontal and vertical axis, pixels
/// @return whether there is a bar: its pen has a width and its position is known; else nothing is drawn
ZEL_EXPORT bool LayOutScaleBar(const zel_ScaleBarStyle& style, const wxSize& text, const wxSize& legs,
                               const wxSize& window, ScaleBarGeometry& geometry);

} // namespace zel
