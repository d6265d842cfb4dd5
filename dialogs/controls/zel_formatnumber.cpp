#include "dialogs/controls/zel_formatnumber.h"

#include <cstdio>
#include <limits>
#include <string>

namespace zel {

namespace {

/// A format around its first conversion for numbers.
struct FormatParts {
    wxString before;
    std::string options; ///< percent sign, flags, width and precision
    char conversion = 0; ///< 0 if there is none
    wxString after;

    bool IsInteger() const { return std::string("diouxX").find(conversion) != std::string::npos; }
};

FormatParts TakeApart(const wxString& format) {
    const std::wstring text = format.ToStdWstring();
    FormatParts parts;
    std::size_t i = 0;
    while (i < text.size()) {
        wxString& literal = parts.conversion == 0 ? parts.before : parts.after;
        if (text.compare(i, 2, L"%%") == 0) {
            literal += '%';
            i += 2;
            continue;
        }
        if (text[i] == L'%' && parts.conversion == 0) {
            const std::size_t length = text.find_first_not_of(L"-+ #'0123456789.", i + 1);
            const std::size_t type = text.find_first_not_of(L"hlLqjzt", length);
            if (type != std::wstring::npos && std::wstring(L"diouxXeEfFgGaA").find(text[type]) != std::wstring::npos) {
                for (; i < length; ++i)
                    parts.options += static_cast<char>(text[i]);
                parts.conversion = static_cast<char>(text[type]);
                i = type + 1;
                continue;
            }
        }
        literal += text[i++];
    }
    return parts;
}

template <typename Number>
wxString Print(const FormatParts& parts, const std::string& length, char conversion, Number number) {
    const std::string format = parts.options + length + conversion;
    const int size = std::snprintf(nullptr, 0, format.c_str(), number);
    std::string text(size < 0 ? 0 : static_cast<std::size_t>(size), ' ');
    if (size > 0)
        std::snprintf(text.data(), text.size() + 1, format.c_str(), number);
    return parts.before + wxString(text.c_str()) + parts.after;
}

} // namespace

wxString FormatInteger(const wxString& format, long long value) {
    const FormatParts parts = TakeApart(format);
    if (parts.conversion == 0)
        return parts.before;
    if (!parts.IsInteger())
        return Print(parts, "", parts.conversion, static_cast<double>(value));
    return Print(parts, "ll", parts.conversion, value);
}

wxString FormatInteger(const wxString& format, unsigned long long value) {
    if (value <= static_cast<unsigned long long>(std::numeric_limits<long long>::max()))
        return FormatInteger(format, static_cast<long long>(value));
    const FormatParts parts = TakeApart(format);
    if (parts.conversion == 0)
        return parts.before;
    if (!parts.IsInteger())
        return Print(parts, "", parts.conversion, static_cast<double>(value));
    const bool isSigned = parts.conversion == 'd' || parts.conversion == 'i';
    return Print(parts, "ll", isSigned ? 'u' : parts.conversion, value);
}

wxString FormatReal(const wxString& format, double value) {
    const FormatParts parts = TakeApart(format);
    if (parts.conversion == 0)
        return parts.before;
    if (!parts.IsInteger())
        return Print(parts, "", parts.conversion, value);
    constexpr double end = 9223372036854775808.0; // 2^63, one above the greatest
    long long whole = std::numeric_limits<long long>::min();
    if (value >= end)
        whole = std::numeric_limits<long long>::max();
    else if (value > -end)
        whole = static_cast<long long>(value);
    return Print(parts, "ll", parts.conversion, whole);
}

} // namespace zel
