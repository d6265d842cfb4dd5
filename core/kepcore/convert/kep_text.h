#pragma once

// Private to the library.

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

/// A word of a file as a message can show it.
inline std::string Quote(std::string_view word) {
    constexpr std::size_t longest = 60;
    std::string quoted = "'";
    for (const char c : word.substr(0, longest))
        quoted += c >= ' ' && c <= '~' ? c : '?';
    return quoted + (word.size() > longest ? "...'" : "'");
}

} // namespace kep::detail
