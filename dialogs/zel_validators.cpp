#include "dialogs/zel_validators.h"

#include "dialogs/controls/zel_formatnumber.h"
#include "dialogs/zel_variabletextctrl.h"
#include "image/zel_modaldialog.h"

#include <wx/spinctrl.h>
#include <wx/textentry.h>

#include <limits>
#include <type_traits>
#include <utility>

namespace zel {

namespace {

void ShowConflict(const wxString& message, wxWindow* parent, wxWindow& control) {
    const wxWeakRef<wxWindow> validated(&control);
    ShowMessage(message, "Validation conflict", wxOK | wxICON_EXCLAMATION, parent);
    if (validated)
        control.SetFocus();
}

template <typename T>
long AsLong(T limit) {
    constexpr long greatest = std::numeric_limits<long>::max();
    return std::cmp_greater(limit, greatest) ? greatest : static_cast<long>(limit);
}

/// @param print  prints a number or a limit with the validator's format
/// @param number  as it was typed
template <typename Print, typename Number, typename Limit>
wxString DescribeOutOfRange(const Print& print, Number number, Limit min, Limit max) {
    return "The value " + print(number) + " is out of range [" + print(min) + "," + print(max) + "]";
}

} // namespace

template <typename T>
IntValidator<T>::IntValidator(T& variable, T least, T greatest, bool unsignedOnly, bool limitedBelow, bool limitedAbove,
                              const wxString& printFormat)
    : wxTextValidator(wxFILTER_INCLUDE_CHAR_LIST, &text),
      hasMin(limitedBelow),
      hasMax(limitedAbove),
      min(least),
      max(greatest),
      value(&variable),
      format(printFormat) {
    SetCharIncludes(unsignedOnly ? "0123456789" : "-0123456789");
}

template <typename T>
IntValidator<T>::IntValidator(T& variable, const wxString& printFormat)
    : wxTextValidator(wxFILTER_NUMERIC, &text),
      hasMin(false),
      hasMax(false),
      min(std::numeric_limits<T>::min()),
      max(std::numeric_limits<T>::max()),
      value(&variable),
      format(printFormat) {}

template <typename T>
IntValidator<T>::IntValidator(const IntValidator& other)
    : wxTextValidator(other),
      hasMin(other.hasMin),
      hasMax(other.hasMax),
      min(other.min),
      max(other.max),
      value(other.value),
      format(other.format),
      text(other.text) {
    m_stringValue = &text; // the base has copied the pointer to the other's
}

template <typename T>
void IntValidator<T>::SetWindow(wxWindow* window) {
    wxTextValidator::SetWindow(window);
    // The base's filter of keys is made for texts; a spin control has its own.
    SetEvtHandlerEnabled(dynamic_cast<wxSpinCtrl*>(window) == nullptr);
}

template <typename T>
bool IntValidator<T>::ReadNumber(long& number, wxString& textOfControl) {
    if (auto* const spin = dynamic_cast<wxSpinCtrl*>(m_validatorWindow)) {
        number = spin->GetValue();
        return true;
    }
    wxTextEntry* const entry = GetTextEntry();
    if (entry == nullptr)
        return false;
    textOfControl = entry->GetValue();
    return textOfControl.ToLong(&number);
}

template <typename T>
wxString IntValidator<T>::DescribeConflict(long number) const {
    const auto print = [this](auto printed) { return FormatInteger(format, printed); };
    const bool below = hasMin && number < AsLong(min);
    const bool above = hasMax && number > AsLong(max);
    if (!below && !above)
        return {};
    if (hasMin && hasMax)
        return DescribeOutOfRange(print, number, min, max);
    return below ? "The value cannot be less than " + print(min) : "The value cannot be greater than " + print(max);
}

template <typename T>
bool IntValidator<T>::Validate(wxWindow* parent) {
    const bool isSpin = dynamic_cast<wxSpinCtrl*>(m_validatorWindow) != nullptr;
    if (!isSpin && !wxTextValidator::Validate(parent))
        return false;
    if (!hasMin && !hasMax)
        return true;
    long number = 0;
    wxString textOfControl;
    const wxString conflict = ReadNumber(number, textOfControl)
                                  ? DescribeConflict(number)
                                  : "The value '" + textOfControl + "' cannot be converted to a long";
    if (conflict.empty())
        return true;
    ShowConflict(conflict, parent, *m_validatorWindow);
    return false;
}

template <typename T>
bool IntValidator<T>::TransferToWindow() {
    if (auto* const spin = dynamic_cast<wxSpinCtrl*>(m_validatorWindow)) {
        constexpr int lowest = std::numeric_limits<int>::min();
        constexpr int highest = std::numeric_limits<int>::max();
        spin->SetValue(std::cmp_less(*value, lowest)       ? lowest
                       : std::cmp_greater(*value, highest) ? highest
                                                           : static_cast<int>(*value));
        return true;
    }
    wxTextEntry* const entry = GetTextEntry();
    if (entry == nullptr)
        return false;
    entry->ChangeValue(FormatInteger(format, *value));
    return true;
}

template <typename T>
bool IntValidator<T>::TransferFromWindow() {
    if constexpr (std::is_same_v<T, unsigned long> || std::is_same_v<T, unsigned long long>) {
        ShowMessage("IntValidator::GetIntValue: Only long, int, unsigned int, Gray8 and Gray16 types are supported.");
        return false;
    } else {
        long number = 0;
        wxString textOfControl;
        if (!ReadNumber(number, textOfControl))
            return false;
        *value = static_cast<T>(number);
        return true;
    }
}

namespace {

template <typename T>
wxString OrDefaultFormat(const wxString& format) {
    return !format.empty() ? format : std::is_same_v<T, float> ? wxString("%f") : wxString("%g");
}

} // namespace

template <typename T>
RealValidator<T>::RealValidator(T& variable, T least, T greatest, bool limitedBelow, bool limitedAbove,
                                const wxString& printFormat)
    : wxTextValidator(wxFILTER_NUMERIC, &text),
      hasMin(limitedBelow),
      hasMax(limitedAbove),
      min(least),
      max(greatest),
      value(&variable),
      format(OrDefaultFormat<T>(printFormat)) {}

template <typename T>
RealValidator<T>::RealValidator(T& variable, const wxString& printFormat)
    : RealValidator(variable, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), false, false,
                    printFormat) {}

template <typename T>
RealValidator<T>::RealValidator(const RealValidator& other)
    : wxTextValidator(other),
      hasMin(other.hasMin),
      hasMax(other.hasMax),
      min(other.min),
      max(other.max),
      value(other.value),
      format(other.format),
      text(other.text) {
    m_stringValue = &text; // the base has copied the pointer to the other's
}

template <typename T>
wxString RealValidator<T>::Print(double number) const {
    return FormatReal(format, number);
}

template <typename T>
bool RealValidator<T>::ShowsValue(const wxString& textOfControl) const {
    return textOfControl == Print(static_cast<double>(*value)) ||
           (dynamic_cast<VariableTextCtrl<T>*>(m_validatorWindow) != nullptr && ShowsNumber(textOfControl, *value));
}

template <typename T>
bool RealValidator<T>::Parse(const wxString& textOfControl, double& number) const {
    if (ShowsValue(textOfControl)) {
        number = static_cast<double>(*value);
        return true;
    }
    if (!textOfControl.ToDouble(&number))
        return false;
    const auto narrowed = static_cast<T>(number);
    if (hasMin && narrowed < min && Print(number) == Print(static_cast<double>(min)))
        number = static_cast<double>(min);
    else if (hasMax && narrowed > max && Print(number) == Print(static_cast<double>(max)))
        number = static_cast<double>(max);
    return true;
}

template <typename T>
wxString RealValidator<T>::DescribeConflict(double number) const {
    const auto print = [this](auto printed) { return Print(static_cast<double>(printed)); };
    const auto narrowed = static_cast<T>(number);
    const bool below = hasMin && narrowed < min;
    const bool above = hasMax && narrowed > max;
    if (!below && !above)
        return {};
    if (hasMin && hasMax)
        return DescribeOutOfRange(print, number, min, max);
    return below ? "The value cannot be less than " + print(min) : "The value cannot be greater than " + print(max);
}

template <typename T>
bool RealValidator<T>::Validate(wxWindow* parent) {
    if (!wxTextValidator::Validate(parent))
        return false;
    if (!hasMin && !hasMax)
        return true;
    const wxString textOfControl = GetTextEntry()->GetValue();
    double number = 0.0;
    const wxString conflict = Parse(textOfControl, number)
                                  ? DescribeConflict(number)
                                  : "The value '" + textOfControl + "' cannot be converted to a double";
    if (conflict.empty())
        return true;
    ShowConflict(conflict, parent, *m_validatorWindow);
    return false;
}

template <typename T>
bool RealValidator<T>::TransferToWindow() {
    wxTextEntry* const entry = GetTextEntry();
    if (entry == nullptr)
        return false;
    entry->ChangeValue(Print(static_cast<double>(*value)));
    return true;
}

template <typename T>
bool RealValidator<T>::ReadNumber(T& number) {
    wxTextEntry* const entry = GetTextEntry();
    double parsed = 0.0;
    if (entry == nullptr || !Parse(entry->GetValue(), parsed))
        return false;
    number = static_cast<T>(parsed);
    return true;
}

template <typename T>
bool RealValidator<T>::TransferFromWindow() {
    return ReadNumber(*value);
}

#define ZEL_INSTANTIATE(T) template class IntValidator<T>;
ZEL_INT_VALIDATOR_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE
#define ZEL_INSTANTIATE(T) template class RealValidator<T>;
ZEL_REAL_VALIDATOR_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
