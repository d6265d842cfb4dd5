#pragma once

#include "dialogs/zel_trianglelayout.h"
#include "model/zel_export.h"

#include <wx/event.h>
#include <wx/panel.h>

namespace zel {

/// The mouse wants a triangle at another position. The id is the triangle's: 0 right, 1 left, 2 the middle one.
class ZEL_EXPORT zel_TriangleEvent : public wxEvent {
public:
    /// A wish for a position; the row has sent it when its triangle was dragged.
    explicit zel_TriangleEvent(int id = zel_triangleNone, int position = 0);

    wxEvent* Clone() const override { return new zel_TriangleEvent(*this); } ///< for pending events

    int GetPosition() const { return m_position; } ///< from 0 to the row's count - 1

private:
    int m_position;
};

/// Sent by a row of Triangles to its owner.
ZEL_EXPORT extern const wxEventTypeTag<zel_TriangleEvent> zel_EVT_TRIANGLE;

/// A row of triangles that the mouse drags: a left and a right one, and one for gamma between them. The row does not
/// move them itself; it sends its owner a zel_TriangleEvent, and the owner sets the positions. The setters do not
/// refresh.
class ZEL_EXPORT Triangles : public wxPanel {
public:
    /// The positions are 0 and count - 1 at first. The middle triangle has half the difference of the two colours.
    /// @param parent, id, pos, size, style  as for wxPanel
    /// @param owner                         gets the events; not owned
    /// @param showGamma                     with a middle triangle
    /// @param allowCrossing                 the outer triangles may pass each other
    /// @param leftColour, rightColour       of the outer triangles
    /// @param count                         positions, from 0 to count - 1
    /// @param gamma                         moves the middle triangle
    Triangles(wxWindow* parent, wxWindow* owner, bool showGamma, bool allowCrossing, const wxColour& leftColour,
              const wxColour& rightColour, int count, double gamma, wxWindowID id = wxID_ANY,
              const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize, long style = wxTAB_TRAVERSAL);
    ~Triangles() override;

    /// False: Tab goes from field to field.
    bool AcceptsFocusFromKeyboard() const override { return false; }

    void SetCount(int count) { m_row.count = count; } ///< the positions stay
    /// The middle triangle follows each of these.
    void SetLeft(int position);
    /// @{
    /// Likewise.
    void SetRight(int position);
    void SetGamma(double gamma);
    /// @}
    /// @{
    /// As the setters have left it.
    int GetCount() const { return m_row.count; }
    int GetLeft() const { return m_row.left; }
    int GetRight() const { return m_row.right; }
    int GetMiddle() const { return m_row.middle; }
    double GetGamma() const { return m_row.gamma; }
    /// @}
    const TriangleRow& GetRow() const { return m_row; } ///< all of it

private:
    void OnPaint(wxPaintEvent& event);
    void OnMouse(wxMouseEvent& event);
    void OnCaptureLost(wxMouseCaptureLostEvent& event);

    TriangleRow m_row;
    TriangleId m_dragged = zel_triangleNone;
    wxWindow* m_owner;
    wxColour m_leftColour;
    wxColour m_rightColour;
    wxColour m_middleColour;

    wxDECLARE_EVENT_TABLE();
};

} // namespace zel
