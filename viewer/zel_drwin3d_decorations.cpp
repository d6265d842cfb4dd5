#include "viewer/zel_decorations.h"
#include "viewer/zel_drwin3d.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/dc.h>

namespace zel {

namespace {

wxPenStyle PenStyleOf(int pointerStyle) {
    return pointerStyle == 3 ? wxPENSTYLE_DOT : pointerStyle == 4 ? wxPENSTYLE_SHORT_DASH : wxPENSTYLE_SOLID;
}

void Draw(wxDC& dc, const Stroke& stroke) {
    dc.DrawLine(stroke.from, stroke.to);
}

void UseAnnotationText(wxDC& dc, const zel_ProjectionAnnotationStyle& style) {
    dc.SetFont(style.font);
    dc.SetTextForeground(style.colour);
}

} // namespace

void zel_DrWin3d::DrawCutPointer(wxDC& dc) {
    const zel_CutPointerStyle& style = m_canvas->GetPointerStyle();
    const wxPoint at(CutPointerPlace(*m_horizontal.cut, *m_horizontal.visibleOffset, *m_horizontal.scale),
                     CutPointerPlace(*m_vertical.cut, *m_vertical.visibleOffset, *m_vertical.scale));
    dc.SetPen(wxPen(style.colour, 1, PenStyleOf(style.style)));
    if (style.style == 2) {
        constexpr int radius = 10;
        dc.SetBrush(*wxTRANSPARENT_BRUSH);
        dc.DrawCircle(at.x + 1, at.y + 1, radius);
    }
    for (const Stroke& stroke : CutPointerStrokes(style.style, at, m_backing.GetSize()))
        Draw(dc, stroke);
}

void zel_DrWin3d::DrawTimeBar(wxDC& dc) {
    const zel_TimeBarStyle& style = m_canvas->GetTimeBarStyle();
    const int count = m_canvas->GetImageCount();
    if (!HasTimeBar(style, count))
        return; // the font stays as it is, for the scale bar
    UseAnnotationText(dc, m_canvas->GetProjectionAnnotationStyle());
    dc.SetPen(wxPen(style.colour, style.thickness));
    const wxString text = "Time: ";
    const TimeBarGeometry bar =
        LayOutTimeBar(style, dc.GetTextExtent(text), GetClientSize(), m_canvas->GetTime(), count);
    dc.DrawText(text, bar.text);
    Draw(dc, bar.bar);
    Draw(dc, bar.marker);
}

void zel_DrWin3d::DrawProjectionAnnotation(wxDC& dc) {
    const zel_ProjectionAnnotationStyle& style = m_canvas->GetProjectionAnnotationStyle();
    const zel_ProjectionType type = GetProjectionType();
    const bool xy = type == zel_PT_XY;
    const bool xz = type == zel_PT_XZ;
    const wxString& text = xy ? style.textXY : xz ? style.textXZ : style.textYZ;
    if (text.empty())
        return;
    const int position = xy ? style.positionXY : xz ? style.positionXZ : style.positionYZ;
    const wxPoint& offset = xy ? style.offsetXY : xz ? style.offsetXZ : style.offsetYZ;
    UseAnnotationText(dc, style);
    dc.DrawText(text, PlaceBlock(position, offset, dc.GetTextExtent(text), GetClientSize()));
}

void zel_DrWin3d::DrawScaleBar(wxDC& dc) {
    const zel_ScaleBarStyle& style = m_canvas->GetScaleBarStyle();
    const kep::Vector3d<float> resolution = m_canvas->GetResolution().GetRes();
    const auto pixels = [&](float along) { return ScaleBarPixels(style.length, m_canvas->GetZoom(), along); };
    // The window's axes by their place in space, which WindowToImage tells.
    const kep::Vector3d<float> horizontal = WindowToImage({1, 0, 0});
    const kep::Vector3d<float> vertical = WindowToImage({0, 1, 0});
    const auto along = [&](const kep::Vector3d<float>& axis) {
        return axis.x != 0.0F ? resolution.x : axis.y != 0.0F ? resolution.y : resolution.z;
    };
    const wxString text = ScaleBarText(style.length);
    ScaleBarGeometry bar;
    dc.SetTextForeground(m_canvas->GetProjectionAnnotationStyle().colour);
    if (!LayOutScaleBar(style, dc.GetTextExtent(text), {pixels(along(horizontal)), pixels(along(vertical))},
                        GetClientSize(), bar))
        return;
    dc.SetPen(wxPen(style.colour, style.thickness));
    dc.DrawText(text, bar.text);
    Draw(dc, bar.horizontal);
    Draw(dc, bar.vertical);
}

} // namespace zel
