#include "viewer/zel_drwin3d.h"

#include "model/zel_view.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/dcclient.h>
#include <wx/dcmemory.h>

namespace zel {

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

zel_DrWin3d::zel_DrWin3d(zel_Viewer3dCanvas* canvas, View& view, mor::ImageIterator& iterator, zel_ProjectionType type)
    : wxWindow(canvas, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_SUNKEN | wxWANTS_CHARS, wxPanelNameStr),
      m_backing(10, 10),
      m_canvas(canvas),
      m_view(view),
      m_iterator(iterator),
      m_plane(*FindPlane(type)) {}

wxSize zel_DrWin3d::GetOptimalSize() const {
    return m_view.GetFullSize(m_plane);
}

zel_ProjectionType zel_DrWin3d::GetProjectionType() const {
    return m_plane.type;
}

zel_ProjectionType zel_DrWin3d::GetOtherWindowsMask() const {
    return PlanesBeside(m_plane);
}

zel_ProjectionType zel_DrWin3d::GetVerticalAxisMask() const {
    return PlanesAlong(m_plane.vertical);
}

zel_ProjectionType zel_DrWin3d::GetHorizontalAxisMask() const {
    return PlanesAlong(m_plane.horizontal);
}

kep::Vector3d<float> zel_DrWin3d::WindowToImage(const kep::Vector3d<float>& point) const {
    return ToImage(m_plane, point);
}

float zel_DrWin3d::WindowXToMicrons(int x) const {
    return m_view.HorizontalMicrons(m_plane, x, GetSize().x);
}

float zel_DrWin3d::WindowYToMicrons(int y) const {
    return m_view.VerticalMicrons(m_plane, y, GetSize().y);
}

void zel_DrWin3d::CenterAt(float horizontal, float vertical) {
    m_view.CentreOn(m_plane, horizontal, vertical);
}

void zel_DrWin3d::SetCutFromPoint(float horizontal, float vertical) {
    m_view.MoveCutIn(m_plane, horizontal, vertical);
}

void zel_DrWin3d::Render() {
    const wxSize size = GetClientSize();
    if (size.x < 1 || size.y < 1)
        return;
    const bool isDetached = m_canvas->IsMapperDetached(); // then the image may be gone, too
    if (isDetached && m_backing.GetSize() == size)
        return; // the last picture stays
    if (m_backing.GetSize() != size)
        m_backing.Create(size);
    wxMemoryDC dc(m_backing);
    dc.SetBackground(*wxBLACK_BRUSH);
    dc.Clear();
    if (isDetached)
        return;
    m_canvas->Draw(dc, m_plane.type);
    DrawCutPointer(dc);
    if (m_plane.type == zel_PT_XY)
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

} // namespace zel
