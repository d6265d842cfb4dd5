#pragma once

#include "model/zel_export.h"

#include <wx/valtext.h>

namespace zel {

/// Binds a text control, or a wxSpinCtrl, to an integer within limits. The variable is the caller's and
/// must live as long as the control.
///
/// Validate shows what is wrong in a message box "Validation conflict" over its parent and gives the focus back to the
/// control. Numbers are read in base 10 as a long; limits above the greatest long count as that long.
template <typename T>
class ZEL_EXPORT IntValidator : public wxTextValidator {
public:
    /// Digits alone can be typed, and "-" too unless unsignedOnly.
    /// @param value           the caller's; lives as long as the control
    /// @param min, max        the limits, included
    /// @param unsignedOnly    "-" can't be typed
    /// @param hasMin, hasMax  whether min and max are limits
    /// @param format          printf format of one T, any length modifier fits
    IntValidator(T& value, T min, T max, bool unsignedOnly, bool hasMin, bool hasMax, const wxString& format);
    /// Without limits; what belongs to a number can be typed.
    IntValidator(T& value, const wxString& format);
    IntValidator(const IntValidator& other); ///< binds to the same variable
    IntValidator& operator=(const IntValidator&) = delete;

    /// For the toolkit, which keeps a copy for the control.
    wxObject* Clone() const override { return new IntValidator(*this); }
    bool Validate(wxWindow* parent) override; ///< shows what is wrong
    /// @return false without a control for text or a number
    bool TransferToWindow() override;
    /// Stores the number, narrowed to T. For unsigned long and unsigned long long it shows a message and stores
    /// nothing.
    /// @return whether the text was a number
    bool TransferFromWindow() override;
    void SetWindow(wxWindow* window) override; ///< called by the toolkit when the control gets the validator

private:
    /// The number in the control. @return false, with the text, when it is none
    bool ReadNumber(long& number, wxString& textOfControl);
    wxString DescribeConflict(long number) const;

    bool hasMin;
    bool hasMax;
    T min;
    T max;
    T* value;
    wxString format;
    wxString text; ///< what the base works on
};

/// The same for a real number, whose text may leave out digits: a control that still shows the variable is not stored,
/// so the variable keeps its digits. A number outside a limit that has the limit's text counts as that limit, since a
/// limit shown with a few digits may lie outside itself. NaN passes the limits.
///
/// A VariableTextCtrl shows its variable in its own way as well.
template <typename T>
class ZEL_EXPORT RealValidator : public wxTextValidator {
public:
    /// @param value           the caller's; lives as long as the control
    /// @param min, max        the limits, included
    /// @param hasMin, hasMax  whether min and max are limits
    /// @param format          printf format of one T; an empty one becomes "%f" for float and "%g" for double
    RealValidator(T& value, T min, T max, bool hasMin, bool hasMax, const wxString& format);
    /// Without limits.
    RealValidator(T& value, const wxString& format);
    RealValidator(const RealValidator& other); ///< binds to the same variable
    RealValidator& operator=(const RealValidator&) = delete;

    /// For the toolkit, which keeps a copy for the control.
    wxObject* Clone() const override { return new RealValidator(*this); }
    bool Validate(wxWindow* parent) override; ///< shows what is wrong
    /// Shows the variable by the format.
    /// @return false without a control for text
    bool TransferToWindow() override;
    /// Stores the number, unless the control still shows the variable.
    /// @return whether the text was a number
    bool TransferFromWindow() override;

    /// The number in the control, within the limits or not. @return false if its text is no number
    bool ReadNumber(T& number);

    /// @{
    /// The limits, included.
    T GetMin() const { return min; }
    T GetMax() const { return max; }
    void SetMin(T newMin) { min = newMin; }
    void SetMax(T newMax) { max = newMax; }
    /// @}

private:
    wxString Print(double number) const;
    bool ShowsValue(const wxString& textOfControl) const;
    /// A text as a number, with all digits that were typed. @return false if it is no number
    bool Parse(const wxString& textOfControl, double& number) const;
    wxString DescribeConflict(double number) const;

    bool hasMin;
    bool hasMax;
    T min;
    T max;
    T* value;
    wxString format;
    wxString text; ///< what the base works on
};

#define ZEL_INT_VALIDATOR_TYPES(X)                                                                                     \
    X(unsigned char)                                                                                                   \
    X(unsigned short) X(int) X(unsigned int) X(long) X(unsigned long) X(unsigned long long)
#define ZEL_REAL_VALIDATOR_TYPES(X) X(float) X(double)

#define ZEL_DECLARE(T) extern template class IntValidator<T>;
ZEL_INT_VALIDATOR_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE
#define ZEL_DECLARE(T) extern template class RealValidator<T>;
ZEL_REAL_VALIDATOR_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
