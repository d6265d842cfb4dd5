#include "dialogs/zel_gradstripe.h"

#include "dialogs/controls/zel_paintbuffered.h"

namespace zel {

wxBEGIN_EVENT_TABLE(GradStripe, wxPanel)
    EVT_PAINT(GradStripe::OnPaint)
wxEND_EVENT_TABLE()

GradStripe::GradStripe(wxWindow* parent, bool shaded, const wxColour& leftColour, const wxColour& rightColour,
                       const wxColour& rampColour, int count, double gamma, wxWindowID id, const wxPoint& pos,
                       const wxSize& size, long style)
    : wxPanel(parent, id, pos, size, style), m_state{shaded, leftColour, rightColour, rampColour,
                                                     gamma,  count,      0,           count - 1} {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
}

void GradStripe::OnPaint(wxPaintEvent&) {
    PaintBuffered(*this, [this](wxDC& dc, const wxSize& size) {
        dc.SetPen(*wxTRANSPARENT_PEN);
        for (const StripeFill& part : LayOutStripe(m_state, size)) {
            dc.SetBrush(wxBrush(part.colour));
            dc.DrawRectangle(part.area);
        }
    });
}

} // namespace zel
