#pragma once

#include "model/zel_export.h"
#include "model/zel_planes.h"

#include <wx/bitmap.h>
#include <wx/image.h>
#include <wx/window.h>

class WXDLLIMPEXP_FWD_CORE wxDC;

namespace mor {
class ImageIterator;
}

namespace zel {

class zel_Viewer3dCanvas;

struct View;

/// One of the three windows that show a cut. It keeps no state of the view: it looks at the canvas's, and its plane
/// says which axes are its horizontal, vertical and third one, so one body serves all three cuts. The canvas makes and
/// owns them.
class ZEL_EXPORT zel_DrWin3d : public wxWindow {
public:
    /// Full size of the window's picture in pixels: the box along both axes at the present scale.
    virtual wxSize GetOptimalSize() const;
    virtual zel_ProjectionType GetProjectionType() const; ///< zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    /// The two other windows, in which the cut shows as a line.
    virtual zel_ProjectionType GetOtherWindowsMask() const;
    /// The windows in which this one's vertical axis runs.
    virtual zel_ProjectionType GetVerticalAxisMask() const;
    /// The windows in which this one's horizontal axis runs.
    virtual zel_ProjectionType GetHorizontalAxisMask() const;
    /// From (horizontal, vertical, third) to (x, y, z).
    virtual kep::Vector3d<float> WindowToImage(const kep::Vector3d<float>& point) const;

    const Plane& GetPlane() const { return m_plane; } ///< which axes of the image run where

    /// Position in microns of a window coordinate in pixels. The mirrored forms follow X's flag horizontally and Y's
    /// flag vertically in every window, and mirror by the window's size with its border; hosts rely on both.
    float WindowXToMicrons(int x) const;
    float WindowYToMicrons(int y) const; ///< as WindowXToMicrons, downwards

    /// Moves the visible box so that the point, in microns along this window's axes, is in its middle.
    void CenterAt(float horizontal, float vertical);
    /// Moves the cut to a point in microns along this window's axes, clamped to the box. Notifies nobody.
    void SetCutFromPoint(float horizontal, float vertical);
    /// The pointer is in this window's client area. @param at  its place there, if so
    bool IsPointerInside(wxPoint& at);

    /// Draws the finished picture with its decorations into the backing bitmap. A window without area keeps it.
    void Render();
    /// The backing bitmap, as an image.
    wxImage GetPointerImage() const;

protected:
    /// @param canvas          the parent
    /// @param view, iterator  the canvas's
    /// @param type            zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    zel_DrWin3d(zel_Viewer3dCanvas* canvas, View& view, mor::ImageIterator& iterator, zel_ProjectionType type);

private:
    void DrawCutPointer(wxDC& dc);
    void DrawTimeBar(wxDC& dc);
    void DrawProjectionAnnotation(wxDC& dc);
    void DrawScaleBar(wxDC& dc);

    void OnPaint(wxPaintEvent& event);
    void OnEraseBackground(wxEraseEvent& event);
    void OnKeyDown(wxKeyEvent& event);
    void OnMouse(wxMouseEvent& event);
    void OnSetFocus(wxFocusEvent& event);
    void OnKillFocus(wxFocusEvent& event);

    void SetCutAtPointer();
    void Centre(bool onCut);
    void Browse(int (mor::ImageIterator::*move)());

    wxBitmap m_backing;
    zel_Viewer3dCanvas* m_canvas;
    View& m_view;
    mor::ImageIterator& m_iterator;
    const Plane& m_plane;

    wxDECLARE_EVENT_TABLE();
};

/// The window with X to the right and Y downwards.
class ZEL_EXPORT zel_DrWinXY : public zel_DrWin3d {
public:
    /// Made by the canvas.
    zel_DrWinXY(zel_Viewer3dCanvas* canvas, View& view, mor::ImageIterator& iterator)
        : zel_DrWin3d(canvas, view, iterator, zel_PT_XY) {}
};

/// The window with X to the right and Z downwards.
class ZEL_EXPORT zel_DrWinXZ : public zel_DrWin3d {
public:
    /// Made by the canvas.
    zel_DrWinXZ(zel_Viewer3dCanvas* canvas, View& view, mor::ImageIterator& iterator)
        : zel_DrWin3d(canvas, view, iterator, zel_PT_XZ) {}
};

/// The window with Z to the right and Y downwards.
class ZEL_EXPORT zel_DrWinYZ : public zel_DrWin3d {
public:
    /// Made by the canvas.
    zel_DrWinYZ(zel_Viewer3dCanvas* canvas, View& view, mor::ImageIterator& iterator)
        : zel_DrWin3d(canvas, view, iterator, zel_PT_YZ) {}
};

} // namespace zel
