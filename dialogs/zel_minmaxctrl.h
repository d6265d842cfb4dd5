#pragma once

#include "dialogs/zel_gradstripe.h"
#include "dialogs/zel_triangles.h"
#include "dialogs/zel_variabletextctrl.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"

#include <wx/event.h>
#include <wx/panel.h>

#include <optional>

namespace zel {

/// The user has changed a range; the variables bound to it have the new values. The id is 0.
class ZEL_EXPORT zel_MinMaxCtrlEvent : public wxNotifyEvent {
public:
    zel_MinMaxCtrlEvent();

    wxEvent* Clone() const override { return new zel_MinMaxCtrlEvent(*this); } ///< for pending events
};

/// Sent by a VariableMinMaxCtrl to its parent; it propagates.
ZEL_EXPORT extern const wxEventTypeTag<zel_MinMaxCtrlEvent> zel_EVT_MINMAXCTRL;

/// Sets a range, a low and a high value, and with it a gamma if wanted: by typing, by the arrow keys or by dragging
/// triangles. From top to bottom a stripe that follows, a stripe with the plain ramp, the triangles and the fields.
///
/// A change by the user changes the bound variables and is reported to the parent by a zel_MinMaxCtrlEvent, which
/// propagates; changes by the program are not reported. A variable that was changed takes the value that its field
/// shows, so floats have two decimals where the bounds and the other value leave room for that; one that was not
/// changed keeps all its digits. Triangles and stripe stand where their field says, but for gamma, which has all the
/// digits there that were typed or that the pointer's place gives.
template <typename T>
class ZEL_EXPORT VariableMinMaxCtrl : public wxPanel {
public:
    static constexpr int highTextId = 20000;  ///< id of the field of the high value
    static constexpr int lowTextId = 20001;   ///< id of the field of the low value
    static constexpr int gammaTextId = 20002; ///< id of the field of the gamma

    /// @param parent, id, pos, size, style         as for wxPanel
    /// @param showGamma                            with a field and a triangle for the gamma
    /// @param allowCrossing                        low may pass high
    /// @param shaded                               a ramp in the stripe, otherwise a plain band
    /// @param leftColour, rightColour, rampColour  of the stripe; the triangles have the first and the third one
    VariableMinMaxCtrl(wxWindow* parent, int id, bool showGamma, bool allowCrossing, bool shaded,
                       const wxColour& leftColour, const wxColour& rightColour, const wxColour& rampColour,
                       const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                       long style = wxTAB_TRAVERSAL);

    /// Shows three variables of the caller's and writes to them what the user changes. Before that, the contents of the
    /// fields are written to the variables that were bound until now, which must still exist. The control grows if the
    /// texts of the bounds need it; a parent that is shown already is laid out again.
    /// @param low, high            the values of the range, within the bounds
    /// @param gamma                not used without the gamma field, and may then be null
    /// @param lowBound, highBound  limits of both values
    /// @param positions            of the triangles
    void BindVariables(T* low, T* high, double* gamma, T lowBound, T highBound, int positions);

    /// Puts both values to their bounds and gamma to 1, in the variables too. Sends nothing.
    void Reset();
    /// Show a value and move what belongs to it; the variables stay as they are.
    void SetLow(T value);
    void SetHigh(T value); ///< likewise
    /// Nothing without the gamma field.
    void SetGamma(double value);

    /// @{
    /// The parts of the control, which are its children.
    VariableTextCtrl<T>* GetLowText() const { return lowText; }
    VariableTextCtrl<T>* GetHighText() const { return highText; }
    VariableTextCtrl<double>* GetGammaText() const { return gammaText; } ///< null without the gamma field
    GradStripe* GetStripe() const { return stripe; }
    GradStripe* GetRampStripe() const { return rampStripe; }
    Triangles* GetTriangles() const { return triangles; }
    /// @}

private:
    void LayOut();
    /// Position of the number that a field shows, none if it has none.
    std::optional<int> PositionShown(const VariableTextCtrl<T>& field) const;
    /// Where a high value may begin, and a low one end: at the other one, unless they may cross.
    T GetLowEnd() const;
    T GetHighEnd() const;
    // Store and show what the user has chosen.
    void EnterLow(T value);
    void EnterHigh(T value);
    void EnterGamma(double value);
    // The same for what was typed, which stops at the other value unless they may cross.
    void EnterTypedLow(T value);
    void EnterTypedHigh(T value);
    void OnText(zel_VariableTextCtrlEvent& event);
    void OnTriangle(zel_TriangleEvent& event);
    bool AreFieldsBound() const { return lowText->IsBound() && highText->IsBound(); }
    /// Enters what was typed and waits for Enter, as nothing may be stored that a field would refuse, and writes the
    /// fields to the variables that they don't show; a field without a number shows its variable again.
    void StoreFields();
    void Notify();

    bool showGamma;
    bool allowCrossing;
    VariableTextCtrl<T>* lowText;
    VariableTextCtrl<T>* highText;
    VariableTextCtrl<double>* gammaText = nullptr; ///< null without gamma
    GradStripe* stripe;
    GradStripe* rampStripe; ///< stays a plain ramp, for comparison
    Triangles* triangles;
};

#define ZEL_DECLARE(T) extern template class VariableMinMaxCtrl<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
