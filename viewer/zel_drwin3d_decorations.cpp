#include "model/zel_decorations.h"
#include "model/zel_truedecorations.h"
#include "model/zel_view.h"
#include "viewer/zel_drwin3d.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/dc.h>

#include <array>

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
    const auto place = [this](Axis axis, int pixels) {
        const float cut = At(m_view.options.cut, axis);
        if (m_canvas->GetTruePictures().cutPointer)
            return TrueCutPointerPlace(LookAlong(m_view, m_canvas->GetImageGeometry(), axis, pixels), cut);
        return CutPointerPlace(cut, At(m_view.visibleBox.offset, axis), At(m_view.scale, axis));
    };
    const Point at(place(m_plane.horizontal, m_backing.GetWidth()), place(m_plane.vertical, m_backing.GetHeight()));
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
    const std::size_t i = IndexOf(m_plane.type);
    const wxString& text = *std::array{&style.textXY, &style.textXZ, &style.textYZ}[i];
    if (text.empty())
        return;
    const int position = std::array{style.positionXY, style.positionXZ, style.positionYZ}[i];
    const wxPoint offset = std::array{style.offsetXY, style.offsetXZ, style.offsetYZ}[i];
    UseAnnotationText(dc, style);
    dc.DrawText(text, PlaceBlock(position, offset, dc.GetTextExtent(text), GetClientSize()));
}

void zel_DrWin3d::DrawScaleBar(wxDC& dc) {
    const zel_ScaleBarStyle& style = m_canvas->GetScaleBarStyle();
    const kep::Resolution resolution = m_canvas->GetResolution();
    std::string text;
    Size legs;
    if (m_canvas->GetTruePictures().scaleBar) {
        const TrueScaleBar bar = MakeTrueScaleBar(At(m_view.scale, m_plane.horizontal),
                                                  At(m_view.scale, m_plane.vertical), GetClientSize().x, style.length);
        text = TrueScaleBarText(bar.length, resolution.IsDefined());
        legs = bar.legs;
    } else {
        const auto pixels = [&](Axis axis) {
            return ScaleBarPixels(style.length, m_view.options.zoom, At(resolution.GetRes(), axis));
        };
        text = ScaleBarText(style.length);
        legs = {pixels(m_plane.horizontal), pixels(m_plane.vertical)};
    }
    const wxString shownText = wxString::FromUTF8(text);
    ScaleBarGeometry bar;
    dc.SetTextForeground(m_canvas->GetProjectionAnnotationStyle().colour);
    if (!LayOutScaleBar(style, dc.GetTextExtent(shownText), legs, GetClientSize(), bar))
        return;
    dc.SetPen(wxPen(style.colour, style.thickness));
    dc.DrawText(shownText, bar.text);
    Draw(dc, bar.horizontal);
    Draw(dc, bar.vertical);
}

} // namespace zel
