#pragma once

#include "image/zel_export.h"
#include "viewer/zel_layout.h"
#include "viewer/zel_projection.h"

#include <wx/bitmap.h>
#include <wx/image.h>
#include <wx/window.h>

#include <optional>

class WXDLLIMPEXP_FWD_CORE wxDC;

namespace mor {
class ImageIterator;
}

namespace zel {

class zel_Viewer3dCanvas;

/// The canvas's fields that its drawing windows look at and change. All are the canvas's and live as long.
struct zel_ViewFields {
    mor::ImageIterator* iterator;
    MicronBox* boundingBox;
    MicronBox* visibleBox;
    kep::Vector3d<float>* scale;
    bool* reversed; ///< three: X, Y, Z
    kep::Vector3d<float>* cut;
    kep::Vector3d<float>* scrollStep;
    kep::Vector3d<float>* cutStep;
};

/// One of the three windows that show a cut. It keeps no state of the view: it is handed pointers into the canvas's
/// fields, permuted so that this class speaks only of a horizontal, a vertical and a third axis, and one body serves
/// all three cuts. The canvas makes and owns them.
class ZEL_EXPORT zel_DrWin3d : public wxWindow {
public:
    /// Full size of the window's picture in pixels: the box along both axes at the present scale.
    virtual wxSize GetOptimalSize() const;
    virtual zel_ProjectionType GetProjectionType() const = 0;
    /// The two other windows, in which the cut shows as a line.
    virtual zel_ProjectionType GetOtherWindowsMask() const = 0;
    /// The windows in which this one's vertical axis runs.
    virtual zel_ProjectionType GetVerticalAxisMask() const = 0;
    /// The windows in which this one's horizontal axis runs.
    virtual zel_ProjectionType GetHorizontalAxisMask() const = 0;
    /// From (horizontal, vertical, third) to (x, y, z).
    virtual kep::Vector3d<float> WindowToImage(const kep::Vector3d<float>& point) const = 0;

    /// Position in microns of a window coordinate in pixels. The mirrored forms follow X's flag horizontally and Y's
    /// flag vertically in every window, and mirror by the window's size with its border; hosts rely on both.
    float WindowXToMicrons(int x) const;
    float WindowYToMicrons(int y) const;

    /// Moves the visible box so that the point, in microns along this window's axes, is in its middle.
    void CenterAt(float horizontal, float vertical);
    /// Moves the cut to a point in microns along this window's axes, held in the box. Tells nobody.
    void SetCutFromPoint(float horizontal, float vertical);
    /// The pointer is in this window's client area. @param at  its place there, if so
    bool IsPointerInside(wxPoint& at);

    /// Draws the finished picture with its decorations into the backing bitmap. A window without area keeps it.
    void Render();
    /// The backing bitmap, as an image.
    wxImage GetPointerImage() const;

protected:
    /// What the canvas keeps for one axis of a window.
    struct Axis {
        float* boxOffset;
        float* boxSize;
        float* visibleOffset;
        float* visibleSize;
        float* scale;
        float* cut;
        float* scrollStep;
        float* cutStep;
    };
    using Component = float kep::Vector3d<float>::*;

    zel_DrWin3d(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields, Component horizontal, Component vertical,
                Component third);

private:
    static Axis MakeAxis(const zel_ViewFields& fields, Component component);

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

    void ScrollTo(const Axis& axis, std::optional<float> visibleOffset, zel_ProjectionType mask);
    void MoveCutTo(std::optional<float> cut);
    void SetCutAtPointer();
    void Centre(bool onCut);
    void Browse(int (mor::ImageIterator::*move)());

    wxBitmap m_backing;
    zel_Viewer3dCanvas* m_canvas;
    mor::ImageIterator* m_iterator;
    Axis m_horizontal;
    Axis m_vertical;
    Axis m_third;
    const bool* m_reversed; // of X, Y and Z in every window

    wxDECLARE_EVENT_TABLE();
};

class ZEL_EXPORT zel_DrWinXY : public zel_DrWin3d {
public:
    zel_DrWinXY(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields);
    zel_ProjectionType GetProjectionType() const override { return zel_PT_XY; }
    zel_ProjectionType GetOtherWindowsMask() const override;
    zel_ProjectionType GetVerticalAxisMask() const override;
    zel_ProjectionType GetHorizontalAxisMask() const override;
    kep::Vector3d<float> WindowToImage(const kep::Vector3d<float>& point) const override;
};

class ZEL_EXPORT zel_DrWinXZ : public zel_DrWin3d {
public:
    zel_DrWinXZ(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields);
    zel_ProjectionType GetProjectionType() const override { return zel_PT_XZ; }
    zel_ProjectionType GetOtherWindowsMask() const override;
    zel_ProjectionType GetVerticalAxisMask() const override;
    zel_ProjectionType GetHorizontalAxisMask() const override;
    kep::Vector3d<float> WindowToImage(const kep::Vector3d<float>& point) const override;
};

class ZEL_EXPORT zel_DrWinYZ : public zel_DrWin3d {
public:
    zel_DrWinYZ(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields);
    zel_ProjectionType GetProjectionType() const override { return zel_PT_YZ; }
    zel_ProjectionType GetOtherWindowsMask() const override;
    zel_ProjectionType GetVerticalAxisMask() const override;
    zel_ProjectionType GetHorizontalAxisMask() const override;
    kep::Vector3d<float> WindowToImage(const kep::Vector3d<float>& point) const override;
};

} // namespace zel
