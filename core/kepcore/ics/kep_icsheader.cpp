#include "core/kepcore/ics/kep_icsheader.h"

#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/file/kep_file.h"

#include <algorithm>
#include <limits>

namespace kep::detail {

namespace {

struct Separators {
    char field = '\t';
    char line = '\n';
    bool carriageReturns = false; ///< each line ends with CR and LF
    std::size_t bytes = 0;        ///< of the line that names them
};

/// The first line holds the two separators and nothing else. A line separator other than the line feed may be
/// followed by one, so that the file looks well in an editor.
std::optional<Separators> ReadSeparators(std::string_view text) {
    if (text.size() < 3)
        return std::nullopt;
    Separators found{text[0], text[1], false, 2};
    if (text[1] == '\r' && text[2] == '\n') {
        found.line = '\n';
        found.carriageReturns = true;
    }
    if (text[1] != '\n' && text[2] == '\n')
        found.bytes = 3;
    if (found.field == found.line)
        return std::nullopt;
    return found;
}

/// ICS takes no line ends off: lines may end with another character.
constexpr std::string_view blanks = " \t\r";

/// Words between the separators, without blanks around them and without empty ones at the end. A line that says
/// anything of the voxels has few; a longer one is cut, which its reader notices by the number of words.
std::vector<std::string> SplitWords(std::string_view line, char separator) {
    constexpr std::size_t mostWords = 32;
    std::vector<std::string> words;
    while (words.size() < mostWords) {
        const std::size_t end = line.find(separator);
        words.emplace_back(Trim(line.substr(0, end), blanks));
        if (end == std::string_view::npos)
            break;
        line.remove_prefix(end + 1);
    }
    while (!words.empty() && words.back().empty())
        words.pop_back();
    return words;
}

/// Reads one header; the fields hold what the lines so far have said.
class HeaderReader {
public:
    HeaderReader(std::string_view wholeText, bool isWholeFile, const std::string& name)
        : text(wholeText), wholeFile(isWholeFile), fileName(name) {}

    IcsHeader Read() {
        const auto found = ReadSeparators(text);
        if (!found || !StartsLikeIcsHeader(text))
            ThrowDamaged(fileName, "its header does not begin with an ics_version");
        separators = *found;
        ReadLines();
        CheckLayout();
        CheckRepresentation();
        return std::move(header);
    }

private:
    [[noreturn]] void Fail(const std::string& what) const {
        ThrowDamaged(fileName, "line " + std::to_string(lineNumber) + " of its header: " + what);
    }

    void ReadLines() {
        std::size_t at = separators.bytes;
        lineNumber = 1;
        bool ended = false;
        while (!ended && at < text.size()) {
            ++lineNumber;
            const std::size_t end = text.find(separators.line, at);
            if (end == std::string_view::npos && !wholeFile)
                break;
            const bool whole = end != std::string_view::npos;
            std::string_view line = text.substr(at, whole ? end - at : std::string_view::npos);
            if (whole && separators.carriageReturns && line.ends_with('\r'))
                line.remove_suffix(1);
            at = whole ? end + 1 : text.size();
            ended = ReadLine(line, whole);
        }
        header.bytes = at;
        if (ended)
            return;
        if (!wholeFile)
            ThrowDamaged(fileName, "its header is longer than " + std::to_string(largestIcsHeader) + " bytes");
        // A header that sends the reader to another file needs no mark where it ends itself.
        if (header.version == 2 && !header.sourceFile)
            ThrowDamaged(fileName, "its header has no end");
    }

    /// @param whole  the line ended with its separator, not with the file
    /// @return whether it was the header's last one
    bool ReadLine(std::string_view line, bool whole) {
        const std::string category = ToLowerAscii(Trim(line.substr(0, line.find(separators.field)), blanks));
        if (category == "end")
            return true;
        if (category == "history") {
            TakeHistory(line);
            return false;
        }
        const bool counts = category == "ics_version" || category == "layout" || category == "representation" ||
                            category == "parameter" || category == "source";
        if (!counts)
            return false;
        if (!whole) // a number could lack digits that nobody misses
            Fail("it breaks off");
        const std::vector<std::string> words = SplitWords(line, separators.field);
        if (words.size() < 2)
            Fail(Quote(category) + " says nothing");
        if (category == "ics_version") {
            TakeVersion(words[1]);
            return false;
        }
        const std::string key = category + " " + ToLowerAscii(words[1]);
        Take(key, {words.begin() + 2, words.end()});
        return false;
    }

    void TakeVersion(const std::string& word) {
        if (word == "1.0" || word == "1")
            header.version = 1;
        else if (word == "2.0" || word == "2")
            header.version = 2;
        else
            Fail("version " + Quote(word) + " of the format is not known");
    }

    void Take(const std::string& key, const std::vector<std::string>& values) {
        if (key == "layout parameters")
            parameters = ToNumber(Only(values), 2, 11);
        else if (key == "layout order")
            order = values;
        else if (key == "layout sizes")
            sizes = ToNumbers(values, std::numeric_limits<std::int32_t>::max());
        else if (key == "representation format")
            format = OneOf(Only(values), {"integer", "real", "complex"});
        else if (key == "representation sign")
            sign = OneOf(Only(values), {"unsigned", "signed"});
        else if (key == "representation compression")
            header.compression = static_cast<IcsCompression>(OneOf(Only(values), {"uncompressed", "gzip", "compress"}));
        else if (key == "representation byte_order")
            byteOrder = ToNumbers(values, 16);
        else if (key == "parameter origin")
            origins = values;
        else if (key == "parameter scale")
            scales = values;
        else if (key == "parameter units")
            units = values;
        else if (key == "source file")
            header.sourceFile = Only(values);
        else if (key == "source offset")
            header.sourceOffset = ToNumber(Only(values), 0, std::numeric_limits<std::int64_t>::max());
    }

    void TakeHistory(std::string_view line) {
        const std::size_t start = line.find(separators.field);
        const std::string_view rest = start == std::string_view::npos ? "" : line.substr(start + 1);
        const std::size_t middle = rest.find(separators.field);
        if (middle == std::string_view::npos)
            header.history.emplace_back("history", rest);
        else
            header.history.emplace_back(rest.substr(0, middle), rest.substr(middle + 1));
    }

    const std::string& Only(const std::vector<std::string>& values) const {
        if (values.size() != 1)
            Fail("one value was expected, not " + std::to_string(values.size()));
        return values.front();
    }

    std::uint64_t ToNumber(const std::string& word, std::uint64_t least, std::uint64_t most) const {
        const auto number = ParseWhole<std::uint64_t>(word);
        if (!number || *number < least || *number > most)
            Fail(Quote(word) + " is not a number from " + std::to_string(least) + " to " + std::to_string(most));
        return *number;
    }

    std::vector<std::uint64_t> ToNumbers(const std::vector<std::string>& words, std::uint64_t most) const {
        std::vector<std::uint64_t> numbers;
        numbers.reserve(words.size());
        for (const std::string& word : words)
            numbers.push_back(ToNumber(word, 1, most));
        return numbers;
    }

    int OneOf(const std::string& word, std::initializer_list<std::string_view> known) const {
        const auto found = std::find(known.begin(), known.end(), ToLowerAscii(word));
        if (found == known.end())
            Fail(Quote(word) + " is not known");
        return static_cast<int>(found - known.begin());
    }

    void CheckLayout() {
        if (header.version == 0)
            ThrowDamaged(fileName, "its header names no version");
        if (parameters == 0 || order.size() != parameters || sizes.size() != parameters)
            ThrowDamaged(fileName, "its header promises " + std::to_string(parameters) + " parameters, but orders " +
                                       std::to_string(order.size()) + " and gives the sizes of " +
                                       std::to_string(sizes.size()));
        const auto word = [](const std::vector<std::string>& list, std::size_t i) {
            return i < list.size() ? list[i] : std::string();
        };
        for (std::size_t i = 0; i < order.size(); ++i) {
            const std::string name = ToLowerAscii(order[i]);
            if (name != "bits")
                header.axes.push_back({name, sizes[i], word(origins, i), word(scales, i), word(units, i)});
            else if (header.bits == 0)
                header.bits = static_cast<int>(std::min<std::uint64_t>(sizes[i], 1000));
            else
                ThrowDamaged(fileName, "its header names the bits twice");
        }
        for (const char* name : {"x", "y", "z", "t"})
            if (std::count_if(header.axes.begin(), header.axes.end(), [&](auto& axis) { return axis.name == name; }) >
                1)
                ThrowDamaged(fileName, std::string("its header names the axis ") + name + " twice");
    }

    void CheckRepresentation() {
        for (const int known : {8, 16, 32, 64, 128})
            if (header.bits == known)
                bytes = known / 8;
        if (bytes == 0)
            ThrowDamaged(fileName, "its header gives a sample " + std::to_string(header.bits) + " bits");
        if (!format)
            ThrowDamaged(fileName, "its header names no format of the samples");
        header.format = static_cast<IcsFormat>(*format);
        if (header.format == IcsFormat::Integer && !sign)
            ThrowDamaged(fileName, "its header does not say whether the samples have a sign");
        header.isSigned = sign.value_or(1) == 1;

        header.byteOrder.assign(byteOrder.begin(), byteOrder.end());
        std::vector<int> sorted = header.byteOrder;
        std::sort(sorted.begin(), sorted.end());
        for (std::size_t i = 0; i < sorted.size(); ++i)
            if (sorted.size() != static_cast<std::size_t>(bytes) || sorted[i] != static_cast<int>(i) + 1)
                ThrowDamaged(fileName, "the byte order in its header does not name each of " + std::to_string(bytes) +
                                           " bytes once");
    }

    std::string_view text;
    bool wholeFile;
    const std::string& fileName;
    Separators separators;
    std::size_t lineNumber = 0;
    IcsHeader header;
    std::uint64_t parameters = 0;
    std::vector<std::string> order, origins, scales, units;
    std::vector<std::uint64_t> sizes, byteOrder;
    std::optional<int> format, sign;
    int bytes = 0; // of a sample
};

} // namespace

bool StartsLikeIcsHeader(std::string_view text) {
    constexpr std::string_view word = "ics_version";
    const auto separators = ReadSeparators(text);
    return separators && ToLowerAscii(text.substr(separators->bytes, word.size())) == word &&
           text.substr(separators->bytes + word.size()).starts_with(separators->field);
}

IcsHeader ParseIcsHeader(std::string_view text, bool wholeFile, const std::string& fileName) {
    return HeaderReader(text, wholeFile, fileName).Read();
}

} // namespace kep::detail
