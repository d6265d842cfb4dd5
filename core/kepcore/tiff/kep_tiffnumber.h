#pragma once

// Private to the library: numbers in the words of a TIFF file, read alike in every locale.

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace kep::detail {

inline std::string_view TrimBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The number that a text consists of, blanks around it aside.
template <typename T>
std::optional<T> ParseNumber(std::string_view text) {
    text = TrimBlanks(text);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    T number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

} // namespace kep::detail
