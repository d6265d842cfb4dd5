#include "mapping/text/zel_firstlines.h"

#include "image/kep.h"

#include <wx/convauto.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace zel {

namespace {

/// How the characters of a file lie in it: as bytes, or as words of two or four.
struct Words {
    std::size_t bytes = 1;
    bool bigFirst = false;

    std::uint32_t Get(const char* at) const {
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            word |= std::uint32_t{static_cast<unsigned char>(at[i])} << 8 * (bigFirst ? bytes - 1 - i : i);
        return word;
    }
};

Words FindWords(std::string_view head) {
    using namespace std::string_view_literals;
    if (head.starts_with("\xFF\xFE\0\0"sv)) // before the mark of UTF-16, which is its beginning
        return {4, false};
    if (head.starts_with("\0\0\xFE\xFF"sv))
        return {4, true};
    if (head.starts_with("\xFF\xFE"sv))
        return {2, false};
    if (head.starts_with("\xFE\xFF"sv))
        return {2, true};
    return {};
}

/// Collects the first lines of a file, not decoded yet. Each whole one ends with LF.
class LineCollector {
public:
    LineCollector(Words encoding, std::size_t count, std::size_t longest)
        : words(encoding), mostLines(count), longestLine(longest) {}

    bool IsFull() const { return lines == mostLines; }
    const std::string& GetText() const { return text; }

    /// Takes the file's next bytes; part of a word at the end of the file too.
    void Take(std::string_view bytes) {
        for (; bytes.size() >= words.bytes && !IsFull(); bytes.remove_prefix(words.bytes))
            TakeWord(bytes.substr(0, words.bytes));
        if (!IsFull())
            text += bytes;
    }

private:
    void TakeWord(std::string_view bytes) {
        const std::uint32_t word = words.Get(bytes.data());
        const bool wasReturn = std::exchange(isReturn, word == '\r');
        if (word == '\n' && wasReturn)
            return; // the line has ended
        if (word == '\n' || word == '\r') {
            for (std::size_t i = 0; i < words.bytes; ++i)
                text += i == (words.bigFirst ? words.bytes - 1 : 0) ? '\n' : '\0';
            ++lines;
            length = 0;
        } else if (length < longestLine) {
            text += bytes;
            ++length;
        } else if (length == longestLine) {
            DropBrokenCharacter(word);
            ++length;
        }
    }

    /// The line is cut in front of a word. What it belongs to goes as well, or the text could not be decoded.
    void DropBrokenCharacter(std::uint32_t word) {
        const auto last = [this] { return static_cast<unsigned char>(text.back()); };
        if (words.bytes == 2 && word >= 0xDC00 && word < 0xE000) {
            text.resize(text.size() - words.bytes);
        } else if (words.bytes == 1 && (word & 0xC0U) == 0x80U) {
            while (!text.empty() && (last() & 0xC0U) == 0x80U)
                text.pop_back();
            if (!text.empty() && last() >= 0xC0U)
                text.pop_back();
        }
    }

    Words words;
    std::size_t mostLines;
    std::size_t longestLine;
    std::string text;
    std::size_t lines = 0;  // that have ended
    std::size_t length = 0; // of the line so far, at most one more than the longest
    bool isReturn = false;  // the last word was
};

std::optional<std::string> CollectLines(const kep::PlainFile& file, std::size_t count, std::size_t longest) {
    std::array<char, 65536> block; // whole words
    std::optional<LineCollector> lines;
    std::uint64_t at = 0;
    std::ptrdiff_t got = 0;
    do {
        got = file.ReadAt(at, block.data(), block.size());
        if (got < 0)
            return std::nullopt;
        const std::string_view bytes(block.data(), static_cast<std::size_t>(got));
        if (!lines)
            lines.emplace(FindWords(bytes), count, longest);
        lines->Take(bytes);
        at += bytes.size();
    } while (got > 0 && !lines->IsFull());
    return lines->GetText();
}

} // namespace

std::optional<std::vector<wxString>> ReadFirstLines(const wxString& fileName, std::size_t count, std::size_t longest) {
    const kep::PlainFile file(fileName.fn_str());
    if (!file.IsOpen())
        return std::nullopt;
    const std::optional<std::string> bytes = CollectLines(file, count, longest);
    if (!bytes)
        return std::nullopt;
    const wxString text(bytes->data(), wxConvAuto(), bytes->size());
    std::vector<wxString> lines;
    for (auto start = text.begin(); start != text.end();) {
        const auto end = std::find(start, text.end(), '\n');
        lines.emplace_back(start, end);
        start = end == text.end() ? end : end + 1;
    }
    return lines;
}

} // namespace zel
