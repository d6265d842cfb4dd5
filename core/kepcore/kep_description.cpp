#include "core/kepcore/kep_description.h"

#include <array>
#include <charconv>
#include <system_error>
#include <utility>

namespace kep::detail {

namespace {

constexpr std::string_view resolutionKey = "kep resolution=";
constexpr std::string_view offsetKey = "kep offset=";
constexpr std::string_view entryKey = "kep entry=";

struct Escape {
    char plain;
    char letter;
};
constexpr std::array<Escape, 5> escapes{{{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}, {'=', 'e'}, {'\0', '0'}}};

void AppendEscaped(std::string& to, std::string_view text, bool isKey) {
    for (const char c : text) {
        char letter = 0;
        for (const Escape& escape : escapes) {
            if (escape.plain == c && (c != '=' || isKey))
                letter = escape.letter;
        }
        if (letter != 0)
            to += {'\\', letter};
        else
            to += c;
    }
}

std::optional<std::string> Unescape(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            plain += text[i];
            continue;
        }
        ++i;
        bool known = false;
        for (const Escape& escape : escapes) {
            if (i < text.size() && text[i] == escape.letter) {
                plain += escape.plain;
                known = true;
            }
        }
        if (!known)
            return std::nullopt;
    }
    return plain;
}

std::string FormatTriple(const Vector3d<float>& v) {
    return FormatNineDigits(v.x) + " " + FormatNineDigits(v.y) + " " + FormatNineDigits(v.z);
}

std::optional<Vector3d<float>> ParseTriple(std::string_view text) {
    std::array<float, 3> numbers{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) {
            if (at == end || *at != ' ')
                return std::nullopt;
            ++at;
        }
        const auto [next, error] = std::from_chars(at, end, numbers[i]);
        if (error != std::errc{})
            return std::nullopt;
        at = next;
    }
    if (at != end)
        return std::nullopt;
    return Vector3d<float>(numbers[0], numbers[1], numbers[2]);
}

void ParseEntry(std::string_view line, std::map<std::string, std::string>& entries) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return;
    std::optional<std::string> key = Unescape(line.substr(0, equals));
    std::optional<std::string> value = Unescape(line.substr(equals + 1));
    if (key && value)
        entries.insert_or_assign(std::move(*key), std::move(*value));
}

} // namespace

std::string FormatNineDigits(double value) {
    std::array<char, 64> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 9);
    return {text.data(), written.ptr};
}

std::string FormatOwnLines(const Vector3d<float>& resolution, const Vector3d<float>& offset,
                           const std::map<std::string, std::string>& entries) {
    std::string lines;
    lines.append(resolutionKey).append(FormatTriple(resolution)).append("\n");
    lines.append(offsetKey).append(FormatTriple(offset)).append("\n");
    for (const auto& [key, value] : entries) {
        lines.append(entryKey);
        AppendEscaped(lines, key, true);
        lines.append("=");
        AppendEscaped(lines, value, false);
        lines.append("\n");
    }
    return lines;
}

OwnLines ParseOwnLines(std::string_view text) {
    OwnLines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with(resolutionKey))
            lines.resolution = ParseTriple(line.substr(resolutionKey.size()));
        else if (line.starts_with(offsetKey))
            lines.offset = ParseTriple(line.substr(offsetKey.size()));
        else if (line.starts_with(entryKey))
            ParseEntry(line.substr(entryKey.size()), lines.entries);
    }
    return lines;
}

} // namespace kep::detail
