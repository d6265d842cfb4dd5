#pragma once

#include "model/zel_export.h"

#include <wx/string.h>

#include <concepts>
#include <type_traits>

namespace zel {

/// Prints one number with a printf format whatever the number's length, which the toolkit's own Format asserts on: a
/// length modifier of the format is replaced by the one that fits. Text around the conversion stays, "%%" is a percent
/// sign; conversions after the first, and what is no conversion for numbers, stay as they are written. Flags, width
/// and precision count, but not "*". Decimal points are those of the current locale.
/// @param format  such as "%d", "%lu" or "at %5.2f"; a conversion of reals prints the integer as a real
ZEL_EXPORT wxString FormatInteger(const wxString& format, long long value);
ZEL_EXPORT wxString FormatInteger(const wxString& format, unsigned long long value);
template <std::integral T>
wxString FormatInteger(const wxString& format, T value) {
    if constexpr (std::is_signed_v<T>)
        return FormatInteger(format, static_cast<long long>(value));
    else
        return FormatInteger(format, static_cast<unsigned long long>(value));
}

/// The same for a real number.
/// @param format  such as "%f" or "%2.2g"; a conversion of integers prints the number truncated, held within long long
ZEL_EXPORT wxString FormatReal(const wxString& format, double value);

} // namespace zel
