#include "dialogs/zel_variabletextctrl.h"

#include <algorithm>

namespace zel {

namespace {
constexpr unsigned long typedLength = 10; ///< characters that can be typed
}

const wxEventTypeTag<zel_VariableTextCtrlEvent> zel_EVT_VARIABLE_TEXTCTRL(wxNewEventType());

zel_VariableTextCtrlEvent::zel_VariableTextCtrlEvent(int id, double value)
    : wxEvent(id, zel_EVT_VARIABLE_TEXTCTRL), m_value(value) {}

template <typename T>
VariableTextCtrl<T>::VariableTextCtrl(wxWindow* parent, int id, T* boundVariable, T low, T high, T defaultNumber,
                                      int positionCount, const wxPoint& pos)
    : wxTextCtrl(parent, id, wxEmptyString, pos, wxSize(40, wxDefaultCoord), wxTE_RIGHT | wxTE_PROCESS_ENTER),
      variable(boundVariable) {
    SetBounds(low, high, defaultNumber, positionCount);
    SetMaxLength(typedLength);
    this->Bind(wxEVT_KILL_FOCUS, &VariableTextCtrl::OnKillFocus, this);
    this->Bind(wxEVT_TEXT_ENTER, &VariableTextCtrl::OnTextEnter, this);
    this->Bind(wxEVT_CHAR, &VariableTextCtrl::OnChar, this);
}

template <typename T>
void VariableTextCtrl<T>::SetBounds(T low, T high, T newDefault, int newPositions) {
    lowBound = low;
    highBound = high;
    defaultValue = newDefault;
    positions = newPositions;
    step = StepBetweenPositions(low, high, newPositions);
}

template <typename T>
bool VariableTextCtrl<T>::GetNumber(T& number) const {
    const wxString text = GetValue();
    if (variable != nullptr && ShowsNumber(text, *variable)) {
        number = *variable; // with the digits that the text leaves out
        return true;
    }
    const std::optional<T> parsed = ParseNumber<T>(text);
    if (parsed)
        number = *parsed;
    return parsed.has_value();
}

template <typename T>
void VariableTextCtrl<T>::SetNumber(T number) {
    ChangeValue(NumberToText(number));
}

template <typename T>
std::optional<T> VariableTextCtrl<T>::TakeTyped() {
    if (!IsModified())
        return std::nullopt;
    T number = variable != nullptr ? *variable : defaultValue;
    if (GetNumber(number))
        number = std::max(lowBound, std::min(highBound, number));
    DiscardEdits(); // Enter and the loss of focus after it are one commit
    return number;
}

template <typename T>
void VariableTextCtrl<T>::DoSetValue(const wxString& newText, int flags) {
    const unsigned long length = newText.length();
    if (length > typedLength)
        SetMaxLength(length); // before, or nothing of the text would arrive
    wxTextCtrl::DoSetValue(newText, flags);
    SetMaxLength(std::max(length, typedLength));
    DiscardEdits();
}

template <typename T>
void VariableTextCtrl<T>::OnKillFocus(wxFocusEvent& event) {
    event.Skip(); // the toolkit needs it
    // The focus of a dialog that ends leaves late, when its owner has already dropped what was being tried out.
    if (IsShownOnScreen() && !IsBeingDeleted())
        Commit();
}

template <typename T>
void VariableTextCtrl<T>::OnTextEnter(wxCommandEvent&) {
    Commit();
}

template <typename T>
void VariableTextCtrl<T>::OnChar(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    T number{};
    if ((key != WXK_UP && key != WXK_DOWN) || !GetNumber(number)) {
        event.Skip(); // typing
        return;
    }
    if (const auto stepped = StepNumber(number, step, key == WXK_UP, lowBound, highBound))
        Send(*stepped);
}

template <typename T>
void VariableTextCtrl<T>::Commit() {
    if (const auto number = TakeTyped())
        Send(*number);
}

template <typename T>
void VariableTextCtrl<T>::Send(T number) {
    zel_VariableTextCtrlEvent event(GetId(), static_cast<double>(number));
    event.SetEventObject(this);
    GetParent()->ProcessWindowEvent(event);
}

#define ZEL_INSTANTIATE(T) template class VariableTextCtrl<T>;
ZEL_FIELD_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
