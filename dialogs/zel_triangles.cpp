#include "dialogs/zel_triangles.h"

#include "dialogs/controls/zel_paintbuffered.h"

namespace zel {

const wxEventTypeTag<zel_TriangleEvent> zel_EVT_TRIANGLE(wxNewEventType());

zel_TriangleEvent::zel_TriangleEvent(int id, int position) : wxEvent(id, zel_EVT_TRIANGLE), m_position(position) {}

wxBEGIN_EVENT_TABLE(Triangles, wxPanel)
    EVT_PAINT(Triangles::OnPaint)
    EVT_MOUSE_EVENTS(Triangles::OnMouse)
    EVT_MOUSE_CAPTURE_LOST(Triangles::OnCaptureLost)
wxEND_EVENT_TABLE()

Triangles::Triangles(wxWindow* parent, wxWindow* owner, bool showGamma, bool allowCrossing, const wxColour& leftColour,
                     const wxColour& rightColour, int count, double gamma, wxWindowID id, const wxPoint& pos,
                     const wxSize& size, long style)
    : wxPanel(parent, id, pos, size, style),
      m_row{count, 0, count - 1, gamma, 0, showGamma, allowCrossing},
      m_owner(owner),
      m_leftColour(leftColour),
      m_rightColour(rightColour),
      m_middleColour(MiddleColour(leftColour, rightColour)) {
    m_row.middle = MiddlePosition(m_row);
    SetBackgroundStyle(wxBG_STYLE_PAINT);
}

Triangles::~Triangles() {
    if (HasCapture())
        ReleaseMouse();
}

void Triangles::SetLeft(int position) {
    m_row.left = position;
    m_row.middle = MiddlePosition(m_row);
}

void Triangles::SetRight(int position) {
    m_row.right = position;
    m_row.middle = MiddlePosition(m_row);
}

void Triangles::SetGamma(double gamma) {
    m_row.gamma = gamma;
    m_row.middle = MiddlePosition(m_row);
}

void Triangles::OnPaint(wxPaintEvent&) {
    PaintBuffered(*this, [this](wxDC& dc, const wxSize& size) {
        dc.SetBackground(wxBrush(GetBackgroundColour()));
        dc.Clear();
        const auto draw = [&](int position, const wxColour& colour) {
            for (const TriangleLine& line : LayOutTriangle(TipOfTriangle(position, m_row.count, size.x), colour)) {
                dc.SetPen(wxPen(line.colour));
                dc.DrawLine(line.from, line.to);
            }
        };
        draw(m_row.left, m_leftColour);
        if (m_row.showGamma)
            draw(m_row.middle, m_middleColour);
        draw(m_row.right, m_rightColour);
    });
}

void Triangles::OnMouse(wxMouseEvent& event) {
    const bool press = event.ButtonDown() || event.ButtonDClick();
    if (!press && !event.ButtonIsDown(wxMOUSE_BTN_ANY)) {
        m_dragged = zel_triangleNone;
        if (HasCapture())
            ReleaseMouse();
        return;
    }
    const int position = PositionUnderMouse(event.GetX(), m_row.count, GetClientSize().x);
    if (press) {
        if (!HasCapture())
            CaptureMouse();
        m_dragged = ChooseTriangle(m_row, position);
    }
    if (const auto target = DragTriangle(m_row, m_dragged, position)) {
        zel_TriangleEvent moved(m_dragged, *target);
        moved.SetEventObject(this);
        m_owner->ProcessWindowEvent(moved);
    }
}

void Triangles::OnCaptureLost(wxMouseCaptureLostEvent&) {
    m_dragged = zel_triangleNone;
}

} // namespace zel
