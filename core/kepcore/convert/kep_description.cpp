#include "core/kepcore/convert/kep_description.h"

#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

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

Triple ToTriple(const Vector3d<float>& v) {
    return {v.x, v.y, v.z};
}

std::optional<Vector3d<float>> ParseVector(std::string_view text) {
    const auto numbers = ParseTriple(text, &ParseWhole<float>);
    if (!numbers)
        return std::nullopt;
    return Vector3d<float>((*numbers)[0], (*numbers)[1], (*numbers)[2]);
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

void AppendOwnLine(std::string& to, std::string_view key, std::string_view value) {
    to.append(entryKey);
    AppendEscaped(to, key, true);
    to.append("=");
    AppendEscaped(to, value, false);
    to.append("\n");
}

/// The most bytes of a value with which its entry has room; nothing if the key alone takes too much.
std::optional<std::size_t> FindCut(const std::string& key, std::string_view value, std::size_t bytes,
                                   const DescriptionRoom& room) {
    if (room.getBytes(key, "") > bytes)
        return std::nullopt;
    std::size_t fits = 0;
    std::size_t tooLong = std::min(value.size(), bytes) + 1;
    while (tooLong - fits > 1) {
        const std::size_t middle = fits + (tooLong - fits) / 2;
        (room.getBytes(key, value.substr(0, middle)) <= bytes ? fits : tooLong) = middle;
    }
    return FindUtf8Cut(value, fits);
}

/// "a, b, c and 4 more".
std::string ListSome(const std::vector<std::string>& items) {
    constexpr std::size_t most = 3;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, items.size()); ++i)
        text += (i == 0 ? "" : i + 1 == items.size() ? " and " : ", ") + items[i];
    return items.size() > most ? text + " and " + std::to_string(items.size() - most) + " more" : text;
}

/// The second byte of a character of UTF-8 may stand behind the first: else the character would be longer than it need
/// be, half of a pair of UTF-16, or beyond the last one.
bool MayFollow(unsigned char lead, unsigned char second) {
    switch (lead) {
    case 0xE0:
        return second >= 0xA0;
    case 0xED:
        return second < 0xA0;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second < 0x90;
    default:
        return true;
    }
}

/// What the user is told of a description that did not fit.
class Losses {
public:
    void NoteCut(const std::string& key, std::size_t kept, std::size_t whole) {
        cut.push_back(Quote(key) + " (" + std::to_string(kept) + " of " + std::to_string(whole) + " bytes)");
    }
    void NoteLeftOut(const std::string& key) { leftOut.push_back(Quote(key)); }

    std::string Describe(const std::string& file) const {
        if (cut.empty() && leftOut.empty())
            return {};
        std::string text = "The description does not fit into " + file + ":";
        if (!cut.empty())
            text += " cut off: " + ListSome(cut);
        if (!leftOut.empty())
            text += (cut.empty() ? " left out: " : "; left out: ") + ListSome(leftOut);
        return text + ".";
    }

private:
    std::vector<std::string> cut;
    std::vector<std::string> leftOut;
};

} // namespace

std::string FormatOwnLines(const Vector3d<float>& resolution, const Vector3d<float>& offset,
                           const std::map<std::string, std::string>& entries) {
    std::string lines;
    lines.append(resolutionKey).append(FormatTriple(ToTriple(resolution))).append("\n");
    lines.append(offsetKey).append(FormatTriple(ToTriple(offset))).append("\n");
    for (const auto& [key, value] : entries)
        AppendOwnLine(lines, key, value);
    return lines;
}

std::size_t GetOwnLineBytes(std::string_view key, std::string_view value) {
    std::string line;
    AppendOwnLine(line, key, value);
    return line.size();
}

FittedDescription FitDescription(const std::map<std::string, std::string>& entries, const DescriptionRoom& room) {
    struct Candidate {
        const std::string* key;
        std::string_view value; ///< as far as a file holds it
        std::size_t whole;      ///< bytes of the value
        std::size_t bytes;      ///< that it takes
    };
    std::vector<Candidate> candidates;
    for (const auto& [key, value] : entries) {
        const std::string_view held = std::string_view(value).substr(0, FindUtf8Cut(value, room.longestValue));
        candidates.push_back({&key, held, value.size(), room.getBytes(key, held)});
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.bytes < b.bytes; });

    FittedDescription fitted;
    Losses losses;
    std::size_t left = room.bytes;
    for (const Candidate& candidate : candidates) {
        const bool hasRoom = candidate.bytes <= left;
        const std::optional<std::size_t> cut =
            hasRoom ? candidate.value.size() : FindCut(*candidate.key, candidate.value, left, room);
        if (!hasRoom && cut.value_or(0) == 0) {
            losses.NoteLeftOut(*candidate.key);
            continue;
        }
        left = hasRoom ? left - candidate.bytes : 0;
        if (*cut < candidate.whole)
            losses.NoteCut(*candidate.key, *cut, candidate.whole);
        fitted.entries.emplace(*candidate.key, candidate.value.substr(0, *cut));
    }
    fitted.notice = losses.Describe(room.file);
    return fitted;
}

OwnLines ParseOwnLines(std::string_view text) {
    OwnLines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with(resolutionKey))
            lines.resolution = ParseVector(line.substr(resolutionKey.size()));
        else if (line.starts_with(offsetKey))
            lines.offset = ParseVector(line.substr(offsetKey.size()));
        else if (line.starts_with(entryKey))
            ParseEntry(line.substr(entryKey.size()), lines.entries);
    }
    return lines;
}

std::string ToUtf8(const std::string& text) {
    const auto isUtf8 = [&] {
        for (std::size_t i = 0; i < text.size();) {
            const auto lead = static_cast<unsigned char>(text[i]);
            const std::size_t length = lead < 0x80                   ? 1
                                       : lead >= 0xC2 && lead < 0xE0 ? 2
                                       : lead >= 0xE0 && lead < 0xF0 ? 3
                                       : lead >= 0xF0 && lead < 0xF5 ? 4
                                                                     : 0;
            if (length == 0 || text.size() - i < length)
                return false;
            if (length > 1 && !MayFollow(lead, static_cast<unsigned char>(text[i + 1])))
                return false;
            for (std::size_t k = 1; k < length; ++k) {
                if ((static_cast<unsigned char>(text[i + k]) & 0xC0U) != 0x80U)
                    return false;
            }
            i += length;
        }
        return true;
    };
    if (isUtf8())
        return text;
    std::string utf8;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0U | code >> 6U);
            utf8 += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return utf8;
}

} // namespace kep::detail
