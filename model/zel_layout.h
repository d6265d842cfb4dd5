#pragma once

#include "core/kepcore/kep_vector.h"
#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_planes.h"

namespace zel {

/// A box in microns.
using MicronBox = kep::VOI<kep::T_pair<float, float>>;

/// What the arrangement of the three drawing windows depends on.
struct ViewLayoutInput {
    Size client;                              ///< the canvas's client size, pixels
    int border = 0;                           ///< both frame lines of a drawing window together, pixels
    PerPlane<bool> shown{{true, true, true}}; ///< which of the windows are on view
    MicronBox boundingBox;                    ///< the whole image
    MicronBox visibleBox;                     ///< what was visible until now; its centre is kept
    kep::Vector3d<float> scale;               ///< pixels per micron; an axis whose scale is not above 0 wants no pixels
};

/// Where the windows stand, borders included, and what they show.
struct ViewLayout {
    PerPlane<Rect> windows;          ///< pixels of the canvas; hidden windows have one too
    MicronBox visibleBox;            ///< microns
    kep::Vector3d<float> scrollStep; ///< a fifth of the visible size
};

/// Pixels per micron at a zoom level: times (zoom + 1) above 0, divided by (1 - zoom) below.
ZEL_EXPORT kep::Vector3d<float> ScaleAtZoom(const kep::Vector3d<float>& baseScale, int zoom);

/// Arranges the windows: XY top left, XZ under it, YZ to its right; XZ and YZ show the same extent along Z. Width is
/// shared between XY and YZ, height between XY and XZ: each gets what it needs if that fits, half at most if not.
/// @return false, with the layout untouched, when no window is shown or the client area is 0 by 0
ZEL_EXPORT bool ComputeViewLayout(const ViewLayoutInput& input, ViewLayout& layout);

/// Full pixel size of the drawing windows, with the canvas's margins, for the windows that are shown.
ZEL_EXPORT Size ComputeOptimalSize(const PerPlane<Size>& windows, const PerPlane<bool>& shown);

/// Offset of the visible range that puts its middle at `centre`, kept inside the box; where the visible range is
/// larger than the box, the upper end wins.
ZEL_EXPORT float ClampCenter(float centre, float visibleSize, float boxOffset, float boxSize);

/// A window coordinate as seen in a mirrored window: extent - x - 1 if reversed. The extent is the window's own size,
/// border included; hosts rely on it.
ZEL_EXPORT int MirrorWindowCoordinate(int x, int extent, bool reversed);

} // namespace zel
