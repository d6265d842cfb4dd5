#pragma once

#include "dialogs/zel_fieldnumber.h"
#include "model/zel_export.h"

#include <wx/event.h>
#include <wx/textctrl.h>

#include <optional>

namespace zel {

/// A number was entered in a field. The id is the field's.
class ZEL_EXPORT zel_VariableTextCtrlEvent : public wxEvent {
public:
    /// A number that was entered in the field with this id.
    explicit zel_VariableTextCtrlEvent(int id = 0, double value = 0.0);

    wxEvent* Clone() const override { return new zel_VariableTextCtrlEvent(*this); } ///< for pending events

    /// What the field holds now.
    double GetValue() const { return m_value; }

private:
    double m_value;
};

/// Sent by a VariableTextCtrl to its parent.
ZEL_EXPORT extern const wxEventTypeTag<zel_VariableTextCtrlEvent> zel_EVT_VARIABLE_TEXTCTRL;

/// A text field that holds a number. A text that was typed is committed by Enter, and when the field loses the focus
/// while it is on the screen; the arrow keys up and down step it. Either sends a zel_VariableTextCtrlEvent to the
/// parent, which is expected to change the variable and the text; the field changes neither.
template <typename T>
class ZEL_EXPORT VariableTextCtrl : public wxTextCtrl {
public:
    /// @param parent, id, pos      as for wxTextCtrl
    /// @param variable             the last good value, for a text that is no number; null for none. Not owned
    /// @param lowBound, highBound  of what the arrow keys reach
    /// @param defaultValue         is used if there is no variable
    /// @param positions            into how many steps the arrow keys divide the range
    VariableTextCtrl(wxWindow* parent, int id, T* variable, T lowBound, T highBound, T defaultValue, int positions,
                     const wxPoint& pos = wxDefaultPosition);

    void SetVariable(T* newVariable) { variable = newVariable; } ///< null for none; not owned
    T* GetVariable() const { return variable; }                  ///< null if there is none
    /// Recomputes the step and leaves the text.
    void SetBounds(T low, T high, T newDefault, int newPositions);
    T GetLowBound() const { return lowBound; }         ///< the lowest number that the arrow keys reach
    T GetHighBound() const { return highBound; }       ///< the highest one
    T GetDefaultValue() const { return defaultValue; } ///< shown where there is no variable
    T GetStep() const { return step; }                 ///< of an arrow key
    /// Whether it has a variable.
    bool IsBound() const { return variable != nullptr; }

    /// The number in the field: the variable itself if the field still shows it, otherwise the text as a number.
    /// @return false, with `number` untouched, if it is no number of type T
    bool GetNumber(T& number) const;
    /// Shows a number; sends nothing.
    void SetNumber(T number);
    /// What was typed since it was last committed, held within the bounds, and the variable in place of a text that is
    /// no number: what a commit would send. It counts as committed then. Nothing if nothing was typed.
    std::optional<T> TakeTyped();

protected:
    /// Every text set by program comes through here: it may be longer than what can be typed, and is none to commit.
    void DoSetValue(const wxString& newText, int flags) override;

private:
    void OnKillFocus(wxFocusEvent& event);
    void OnTextEnter(wxCommandEvent& event);
    void OnChar(wxKeyEvent& event);
    void Commit();
    void Send(T number);

    T* variable;
    T lowBound;
    T highBound;
    T defaultValue;
    int positions;
    T step;
};

#define ZEL_DECLARE(T) extern template class VariableTextCtrl<T>;
ZEL_FIELD_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
