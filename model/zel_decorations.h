#pragma once

#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_planes.h"

#include <string>
#include <vector>

namespace zel {

// Where the decorations of a drawing window stand, in pixels of the window. Lengths, offsets and places beyond a
// million pixels are held there: nothing of the picture changes by it.

/// A time bar without its colour. A position is a corner of the window, 0 top left, 1 top right,
/// 2 bottom left, 3 bottom right; an offset is the distance from that corner inwards, in pixels.
struct TimeBarShape {
    int length = 50;      ///< pixels from the first frame to the last
    int thickness = 2;    ///< pixels of the pen; below 1 nothing is drawn
    int position = 3;     ///< corner of the window
    Point offset{10, 10}; ///< from that corner, pixels
};

/// A scale bar without its colour.
struct ScaleBarShape {
    float length = 1.0F;  ///< microns
    int thickness = 2;    ///< pixels of the pen; below 1 nothing is drawn
    int position = 2;     ///< corner of the window
    Point offset{10, 10}; ///< from that corner, pixels
};

/// A straight line between two points.
struct Stroke {
    /// @{
    /// Pixels of the window.
    Point from;
    Point to;
    /// @}
    friend bool operator==(const Stroke&, const Stroke&) = default; ///< of both ends
};

/// Top left corner of a block that stands at a corner of the window (0 top left, 1 top right, 2 bottom left, 3 bottom
/// right), the offset inwards; (0, 0) for any other position.
ZEL_EXPORT Point PlaceBlock(int position, const Point& offset, const Size& block, const Size& window);

/// Where the cut lies along an axis of a window. Mirrored axes play no part: the pointer stays at the unmirrored place.
/// @param cut, visibleOffset  microns
/// @param scale               pixels per micron along the axis
ZEL_EXPORT int CutPointerPlace(float cut, float visibleOffset, float scale);

/// The lines of the cut pointer: marks on the four sides, or a cross; none for style 0 and unknown ones.
/// @param style   as in zel_CutPointerStyle
/// @param at      the place of the cut
/// @param window  size of the picture
ZEL_EXPORT std::vector<Stroke> CutPointerStrokes(int style, const Point& at, const Size& window);

/// There is a time bar: its pen has a width, and there is more than one frame.
inline bool HasTimeBar(const TimeBarShape& style, int count) {
    return style.thickness >= 1 && count >= 2;
}

/// Where the parts of a time bar stand, pixels of the window.
struct TimeBarGeometry {
    Point text;    ///< top left corner of "Time: "
    Stroke bar;    ///< left to right
    Stroke marker; ///< the current frame, upwards from the bar
};

/// @param style   of the bar
/// @param text    extent of "Time: ", pixels
/// @param window  size of the picture
/// @param frame   index of the current frame, 0 <= frame < count; HasTimeBar(style, count) holds
/// @param count   of the frames
ZEL_EXPORT TimeBarGeometry LayOutTimeBar(const TimeBarShape& style, const Size& text, const Size& window, int frame,
                                         int count);

/// The length with as many decimals as it needs, at most six, and the unit: "2.5 µm: ", in UTF-8.
ZEL_EXPORT std::string ScaleBarText(float length);

/// The bar's length in pixels on an axis. It follows zoom + 1 for every zoom and one pixel a voxel at zoom 0,
/// whatever the view's base scale; so it has no length at zoom -1.
/// @param length      microns
/// @param zoom        level of the view
/// @param resolution  the image's, pixels per micron
ZEL_EXPORT int ScaleBarPixels(float length, int zoom, float resolution);

/// Where the parts of a scale bar stand, pixels of the window.
struct ScaleBarGeometry {
    Point text;        ///< top left corner of the text
    Stroke horizontal; ///< both legs begin at the corner of the angle
    Stroke vertical;   ///< away from the nearer of the window's edges
};

/// @param style     of the bar
/// @param text      extent of the text, pixels
/// @param legs      lengths along the window's horizontal and vertical axis, pixels
/// @param window    size of the picture
/// @param geometry  gets the places, if there is a bar
/// @return whether there is a bar: its pen has a width and its position is known; else nothing is drawn
ZEL_EXPORT bool LayOutScaleBar(const ScaleBarShape& style, const Size& text, const Size& legs, const Size& window,
                               ScaleBarGeometry& geometry);

} // namespace zel
