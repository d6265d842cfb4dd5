#include "viewer/zel_drwin3d.h"

#include "viewer/zel_navigation.h"
#include "viewer/zel_truncate.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/dcclient.h>
#include <wx/dcmemory.h>

namespace zel {

namespace {

constexpr auto X = &kep::Vector3d<float>::x;
constexpr auto Y = &kep::Vector3d<float>::y;
constexpr auto Z = &kep::Vector3d<float>::z;

constexpr zel_ProjectionType Both(zel_ProjectionType a, zel_ProjectionType b) {
    return static_cast<zel_ProjectionType>(a | b);
}
constexpr zel_ProjectionType withX = Both(zel_PT_XY, zel_PT_XZ);
constexpr zel_ProjectionType withY = Both(zel_PT_XY, zel_PT_YZ);
constexpr zel_ProjectionType withZ = Both(zel_PT_XZ, zel_PT_YZ);

} // namespace

wxBEGIN_EVENT_TABLE(zel_DrWin3d, wxWindow)
    EVT_PAINT(zel_DrWin3d::OnPaint)
    EVT_ERASE_BACKGROUND(zel_DrWin3d::OnEraseBackground) // empty: the paint covers everything, so nothing flickers
    EVT_KEY_DOWN(zel_DrWin3d::OnKeyDown)
    EVT_LEFT_DOWN(zel_DrWin3d::OnMouse)
    EVT_LEFT_UP(zel_DrWin3d::OnMouse)
    EVT_LEFT_DCLICK(zel_DrWin3d::OnMouse)
    EVT_MIDDLE_DOWN(zel_DrWin3d::OnMouse)
    EVT_MIDDLE_UP(zel_DrWin3d::OnMouse)
    EVT_MIDDLE_DCLICK(zel_DrWin3d::OnMouse)
    EVT_RIGHT_DOWN(zel_DrWin3d::OnMouse)
    EVT_RIGHT_UP(zel_DrWin3d::OnMouse)
    EVT_RIGHT_DCLICK(zel_DrWin3d::OnMouse)
    EVT_MOUSE_AUX1_DOWN(zel_DrWin3d::OnMouse)
    EVT_MOUSE_AUX1_UP(zel_DrWin3d::OnMouse)
    EVT_MOUSE_AUX1_DCLICK(zel_DrWin3d::OnMouse)
    EVT_MOUSE_AUX2_DOWN(zel_DrWin3d::OnMouse)
    EVT_MOUSE_AUX2_UP(zel_DrWin3d::OnMouse)
    EVT_MOUSE_AUX2_DCLICK(zel_DrWin3d::OnMouse)
    EVT_MOTION(zel_DrWin3d::OnMouse)
    EVT_LEAVE_WINDOW(zel_DrWin3d::OnMouse)
    EVT_ENTER_WINDOW(zel_DrWin3d::OnMouse)
    EVT_MOUSEWHEEL(zel_DrWin3d::OnMouse)
    EVT_MAGNIFY(zel_DrWin3d::OnMouse)
    EVT_SET_FOCUS(zel_DrWin3d::OnSetFocus)
    EVT_KILL_FOCUS(zel_DrWin3d::OnKillFocus)
wxEND_EVENT_TABLE()

zel_DrWin3d::zel_DrWin3d(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields, Component horizontal,
                         Component vertical, Component third)
    : wxWindow(canvas, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_SUNKEN | wxWANTS_CHARS, wxPanelNameStr),
      m_backing(10, 10),
      m_canvas(canvas),
      m_iterator(fields.iterator),
      m_horizontal(MakeAxis(fields, horizontal)),
      m_vertical(MakeAxis(fields, vertical)),
      m_third(MakeAxis(fields, third)),
      m_reversed(fields.reversed) {}

zel_DrWin3d::Axis zel_DrWin3d::MakeAxis(const zel_ViewFields& fields, Component component) {
    return {&(fields.boundingBox->offset.*component),
            &(fields.boundingBox->size.*component),
            &(fields.visibleBox->offset.*component),
            &(fields.visibleBox->size.*component),
            &(fields.scale->*component),
            &(fields.cut->*component),
            &(fields.scrollStep->*component),
            &(fields.cutStep->*component)};
}

wxSize zel_DrWin3d::GetOptimalSize() const {
    return {PixelsAlong(*m_horizontal.boxSize, *m_horizontal.scale),
            PixelsAlong(*m_vertical.boxSize, *m_vertical.scale)};
}

float zel_DrWin3d::WindowXToMicrons(int x) const {
    const int unmirrored = MirrorWindowCoordinate(x, GetSize().x, m_reversed[0]);
    return static_cast<float>(unmirrored) / *m_horizontal.scale + *m_horizontal.visibleOffset;
}

float zel_DrWin3d::WindowYToMicrons(int y) const {
    const int unmirrored = MirrorWindowCoordinate(y, GetSize().y, m_reversed[1]);
    return static_cast<float>(unmirrored) / *m_vertical.scale + *m_vertical.visibleOffset;
}

void zel_DrWin3d::CenterAt(float horizontal, float vertical) {
    const auto centre = [](const Axis& axis, float at) {
        const float inBox = HoldInBox(at, *axis.boxOffset, *axis.boxSize); // for NaN; else ClampCenter holds it anyway
        *axis.visibleOffset = ClampCenter(inBox, *axis.visibleSize, *axis.boxOffset, *axis.boxSize);
    };
    centre(m_horizontal, horizontal);
    centre(m_vertical, vertical);
}

void zel_DrWin3d::Render() {
    const wxSize size = GetClientSize();
    if (size.x < 1 || size.y < 1)
        return;
    if (m_backing.GetSize() != size)
        m_backing.Create(size);
    wxMemoryDC dc(m_backing);
    dc.SetBackground(*wxBLACK_BRUSH);
    dc.Clear();
    m_canvas->Draw(dc, GetProjectionType());
    DrawCutPointer(dc);
    if (GetProjectionType() == zel_PT_XY)
        DrawTimeBar(dc);
    if (m_canvas->GetInfoFlag()) {
        DrawProjectionAnnotation(dc);
        DrawScaleBar(dc);
    }
}

void zel_DrWin3d::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    const wxSize size = GetClientSize();
    if (size.x < 1 || size.y < 1)
        return;
    Render();
    wxMemoryDC picture;
    picture.SelectObjectAsSource(m_backing);
    dc.Blit(0, 0, size.x, size.y, &picture, 0, 0, wxCOPY);
}

void zel_DrWin3d::OnEraseBackground(wxEraseEvent&) {}

wxImage zel_DrWin3d::GetPointerImage() const {
    return m_backing.ConvertToImage();
}

zel_DrWinXY::zel_DrWinXY(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields)
    : zel_DrWin3d(canvas, fields, X, Y, Z) {}
zel_ProjectionType zel_DrWinXY::GetOtherWindowsMask() const {
    return withZ;
}
zel_ProjectionType zel_DrWinXY::GetVerticalAxisMask() const {
    return withY;
}
zel_ProjectionType zel_DrWinXY::GetHorizontalAxisMask() const {
    return withX;
}
kep::Vector3d<float> zel_DrWinXY::WindowToImage(const kep::Vector3d<float>& point) const {
    return point;
}

zel_DrWinXZ::zel_DrWinXZ(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields)
    : zel_DrWin3d(canvas, fields, X, Z, Y) {}
zel_ProjectionType zel_DrWinXZ::GetOtherWindowsMask() const {
    return withY;
}
zel_ProjectionType zel_DrWinXZ::GetVerticalAxisMask() const {
    return withZ;
}
zel_ProjectionType zel_DrWinXZ::GetHorizontalAxisMask() const {
    return withX;
}
kep::Vector3d<float> zel_DrWinXZ::WindowToImage(const kep::Vector3d<float>& point) const {
    return {point.x, point.z, point.y};
}

zel_DrWinYZ::zel_DrWinYZ(zel_Viewer3dCanvas* canvas, const zel_ViewFields& fields)
    : zel_DrWin3d(canvas, fields, Z, Y, X) {}
zel_ProjectionType zel_DrWinYZ::GetOtherWindowsMask() const {
    return withX;
}
zel_ProjectionType zel_DrWinYZ::GetVerticalAxisMask() const {
    return withY;
}
zel_ProjectionType zel_DrWinYZ::GetHorizontalAxisMask() const {
    return withZ;
}
kep::Vector3d<float> zel_DrWinYZ::WindowToImage(const kep::Vector3d<float>& point) const {
    return {point.z, point.y, point.x};
}

} // namespace zel
