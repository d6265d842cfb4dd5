#pragma once

#include "dialogs/zel_stripelayout.h"
#include "model/zel_export.h"

#include <wx/panel.h>

namespace zel {

/// A stripe that shows what becomes of the values of a range: dark and bright ends, and a ramp or a band between them.
/// The setters do not refresh.
class ZEL_EXPORT GradStripe : public wxPanel {
public:
    /// The positions are 0 and count - 1 at first.
    GradStripe(wxWindow* parent, bool shaded, const wxColour& leftColour, const wxColour& rightColour,
               const wxColour& rampColour, int count, double gamma, wxWindowID id = wxID_ANY,
               const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
               long style = wxTAB_TRAVERSAL);

    /// False: there is nothing to do in it.
    bool AcceptsFocusFromKeyboard() const override { return false; }

    /// @{
    /// What the stripe shows from the next paint on: positions, the two ends, and the gamma of the ramp.
    void SetCount(int count) { m_state.count = count; }
    void SetLeft(int position) { m_state.left = position; }
    void SetRight(int position) { m_state.right = position; }
    void SetGamma(double gamma) { m_state.gamma = gamma; }
    /// @}
    /// @{
    /// As the setters have left it.
    int GetCount() const { return m_state.count; }
    int GetLeft() const { return m_state.left; }
    int GetRight() const { return m_state.right; }
    double GetGamma() const { return m_state.gamma; }
    /// @}

private:
    void OnPaint(wxPaintEvent& event);

    StripeState m_state;

    wxDECLARE_EVENT_TABLE();
};

} // namespace zel
