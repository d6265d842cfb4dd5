#pragma once

// Private to the library: numbers in the words of files, read and written alike in every locale.

#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace kep::detail {

/// The number that a text is and nothing else, without a plus sign.
template <typename T>
std::optional<T> ParseWhole(std::string_view text) {
    T number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

/// The same, and a plus sign may stand in front.
template <typename T>
std::optional<T> ParseNumber(std::string_view text) {
    if (text.starts_with('+'))
        text.remove_prefix(1);
    return ParseWhole<T>(text);
}

/// Nine significant digits at most, without a trailing zero: every float comes back from them bit for bit.
std::string FormatNineDigits(double value);

/// The nearest float. The language leaves open what becomes of numbers beyond the largest, which nine digits make of
/// the largest itself.
float ToNearestFloat(double number);

/// One number for each of x, y and z.
using Triple = std::array<float, 3>;

/// In nine digits each, with single blanks between them.
std::string FormatTriple(const Triple& numbers);

/// Three numbers with single blanks between them.
/// @param parse  gives the float of a word, or nothing
template <typename Parse>
std::optional<Triple> ParseTriple(std::string_view text, const Parse& parse) {
    Triple numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const bool isLast = i + 1 == numbers.size();
        const std::size_t end = isLast ? text.size() : text.find(' ');
        if (end == std::string_view::npos)
            return std::nullopt;
        const std::optional<float> number = parse(text.substr(0, end));
        if (!number)
            return std::nullopt;
        numbers[i] = *number;
        if (!isLast)
            text.remove_prefix(end + 1);
    }
    return numbers;
}

} // namespace kep::detail
