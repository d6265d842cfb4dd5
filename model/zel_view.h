#pragma once

#include "core/kepcore/kep_resolution.h"
#include "model/zel_export.h"
#include "model/zel_layout.h"
#include "model/zel_planes.h"
#include "model/zel_viewoptions.h"

#include <cstddef>
#include <optional>

/// The viewer: its state and rules as plain values and functions, and the windows over them.
namespace zel {

/// Where an image lies in space.
struct ImageGeometry {
    kep::Vector3d<float> offset;       ///< microns, where the first voxel begins
    kep::Vector3d<std::size_t> voxels; ///< at least one on each axis
    kep::Resolution resolution;        ///< pixels per micron; its usable form counts
};

/// What must be done again after an operation on a view: in which planes, and of which kind.
struct ViewChange {
    /// What is to be done.
    enum class Kind {
        Nothing,
        Cut,      ///< the cut has moved: the planes show another layer, or its pointer stands elsewhere
        Visible,  ///< the planes show another part of the image
        Content,  ///< the planes show the cut instead of the maximum intensity projection, or the other way round
        Layout,   ///< scale or windows have changed: the windows are arranged anew, and all planes show another part
        Mirrored, ///< the axis is seen from its other end
    };
    Kind kind = Kind::Nothing;   ///< none by default
    zel_ProjectionType planes{}; ///< in which it shows, as a mask
    Axis axis = Axis::X;         ///< that was mirrored

    friend bool operator==(const ViewChange&, const ViewChange&) = default; ///< of all fields
};

/// The state of a view: which part of an image is seen in the three planes, at which scale, and where it is cut. A
/// value without windows. Positions and sizes are in microns, scales in pixels per micron. Wrong input is ignored:
/// the operation then changes nothing, and says so.
struct ZEL_EXPORT View {
    MicronBox boundingBox{{0, 0, 0}, {20, 20, 7}};  ///< the whole image
    MicronBox visibleBox;                           ///< what the windows show
    kep::Vector3d<float> scale{10, 10, 10};         ///< now; Arrange computes it
    kep::Vector3d<float> scrollStep{1, 1, 1};       ///< a fifth of the visible size
    kep::Vector3d<float> cutStep{0.1F, 0.1F, 0.2F}; ///< one voxel
    /// What the user has chosen: at first zoom 0, and the cut in all three windows.
    ViewOptions options = [] {
        ViewOptions initial;
        initial.baseScale = {10, 10, 10};
        return initial;
    }();

    /// Takes an image: one pixel a voxel, cut in the middle of its middle voxel.
    void Open(const ImageGeometry& image);
    /// Takes the box and the steps of an image whose data have changed, and X's resolution as the scale of all axes:
    /// unlike when it was opened, the view is isotropic from here on.
    void TakeChangedImage(const ImageGeometry& image);
    /// Takes all options. A cut that is not strictly inside the box becomes the box's centre.
    void SetOptions(const ViewOptions& newOptions);

    /// Computes the scale and, unless no window is shown or the area is 0 by 0, the places of the windows and what is
    /// visible in them.
    /// @param client  the area for the windows, pixels
    /// @param border  both frame lines of a window together, pixels
    std::optional<PerPlane<Rect>> Arrange(const Size& client, int border);
    /// Full size of a plane's picture at the present scale, pixels.
    Size GetFullSize(const Plane& plane) const;

    ViewChange ZoomIn();     ///< one level up; there is no highest
    ViewChange ZoomOut();    ///< one level down; there is no lowest
    ViewChange NormalZoom(); ///< level 0
    /// Shows or hides the windows of a mask.
    ViewChange Show(zel_ProjectionType mask, bool show);
    /// Lets the windows of a mask show the cut or the maximum intensity projection.
    ViewChange SetContent(zel_ProjectionContent content, zel_ProjectionType mask);
    ViewChange ToggleReversed(Axis axis); ///< mirrors an axis, or shows it as it is again

    /// Moves the cut, if the point lies strictly inside the box.
    ViewChange MoveCut(const kep::Vector3d<float>& point);
    /// Moves the cut to a point in microns along a plane's two axes, held in the box.
    ViewChange MoveCutIn(const Plane& plane, float horizontal, float vertical);
    /// Moves the cut through a plane, to a position in microns along its third axis, held in the box.
    ViewChange MoveCutThrough(const Plane& plane, float third);
    /// Moves the cut through a plane, by a voxel; it stays half a voxel inside the box.
    ViewChange StepCutBack(const Plane& plane);
    ViewChange StepCutForward(const Plane& plane); ///< likewise, towards the upper end of the box

    /// Moves the visible part towards the lower or the upper end of the box by a scroll step.
    ViewChange ScrollBack(Axis axis);
    ViewChange ScrollForward(Axis axis); ///< towards the upper end
    /// Brings a point, in microns along a plane's two axes, to the middle of what is visible.
    ViewChange CentreOn(const Plane& plane, float horizontal, float vertical);
    ViewChange CentreOnCut(); ///< brings the cut to the middle of what is visible
    /// The same, if the cut is not visible.
    ViewChange CentreOnCutIfOut();

    /// Where the layer of voxels begins that a plane shows: the visible box, and the cut along the plane's third axis;
    /// 0 there under autofocus, whose images have no thickness.
    kep::Vector3d<float> GetSliceOffset(const Plane& plane) const;

    /// All windows of the mask are shown; so true for an empty mask.
    bool IsShown(zel_ProjectionType mask) const;
    bool IsAnyShown() const; ///< at least one window
    /// What a plane shows; for any other mask autofocus if all three show it, else the cut.
    zel_ProjectionContent GetContent(zel_ProjectionType type) const;

    /// Position in microns of a pixel of a window. The mirrored forms follow X's flag horizontally and Y's flag
    /// vertically in every plane, and mirror by the window's size with its border; hosts rely on both.
    float HorizontalMicrons(const Plane& plane, int x, int windowWidth) const;
    float VerticalMicrons(const Plane& plane, int y, int windowHeight) const; ///< as HorizontalMicrons, downwards

private:
    bool IsStrictlyInside(const kep::Vector3d<float>& point) const;
    void TakeBox(const ImageGeometry& image);
    void MoveCutAlong(Axis axis, float at);
    void CentreAxisOn(Axis axis, float at);
    ViewChange SetZoom(int zoom);
};

} // namespace zel
