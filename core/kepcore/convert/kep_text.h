#pragma once

// Private to the library: what all formats do with their words.

#include <cstddef>
#include <string>
#include <string_view>

namespace kep::detail {

/// Where a text of UTF-8 is cut so that at most `longest` bytes are left: between two characters. Other text is cut
/// near there.
inline std::size_t FindUtf8Cut(std::string_view text, std::size_t longest) {
    if (text.size() <= longest)
        return text.size();
    constexpr std::size_t longestCharacter = 4;
    std::size_t cut = longest;
    while (cut > 0 && longest - cut < longestCharacter && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80U)
        --cut;
    return longest - cut < longestCharacter ? cut : longest;
}

/// The text without these characters at either end.
inline std::string_view Trim(std::string_view text, std::string_view blanks) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The text without blanks, tabs and line ends around it.
inline std::string_view TrimBlanks(std::string_view text) {
    return Trim(text, " \t\r\n");
}

/// The text in small letters, as far as it is ASCII.
inline std::string ToLowerAscii(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

/// @param suffix  in small letters
inline bool EndsWithIgnoringCase(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && ToLowerAscii(text.substr(text.size() - suffix.size())) == suffix;
}

/// A word of a file as a message can show it.
inline std::string Quote(std::string_view word) {
    constexpr std::size_t longest = 60;
    std::string quoted = "'";
    for (const char c : word.substr(0, longest))
        quoted += c >= ' ' && c <= '~' ? c : '?';
    return quoted + (word.size() > longest ? "...'" : "'");
}

} // namespace kep::detail
