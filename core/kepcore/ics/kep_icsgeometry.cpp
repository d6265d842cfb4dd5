#include "core/kepcore/ics/kep_icsgeometry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>

namespace kep::detail {

namespace {

/// Keys of our own lines, which never show in a description.
constexpr const char* resolutionKey = "kep resolution";
constexpr const char* offsetKey = "kep offset";

constexpr std::array<const char*, 3> axisNames = {"x", "y", "z"};

using Triple = std::array<float, 3>;

std::string FormatNumber(double number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, 9);
    return {text.data(), end.ptr};
}

/// The number that a word is, if it is one and nothing else.
std::optional<double> ParseNumber(std::string_view word) {
    if (word.starts_with('+'))
        word.remove_prefix(1);
    double number = 0.0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size())
        return std::nullopt;
    return number;
}

/// The nearest float. The language leaves open what becomes of numbers beyond the largest, which nine digits make of
/// the largest itself.
float ToFloat(double number) {
    constexpr float most = std::numeric_limits<float>::max();
    constexpr double halfStep = 0x1p103; // half the distance of the two largest floats
    const double size = std::fabs(number);
    if (!(size > static_cast<double>(most)))
        return static_cast<float>(number);
    const float rounded = size < static_cast<double>(most) + halfStep ? most : std::numeric_limits<float>::infinity();
    return number < 0.0 ? -rounded : rounded;
}

/// Three numbers with single blanks between them.
std::optional<Triple> ParseTriple(std::string_view text) {
    Triple numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::size_t end = i + 1 < numbers.size() ? text.find(' ') : text.size();
        if (end == std::string_view::npos)
            return std::nullopt;
        const auto number = ParseNumber(text.substr(0, end));
        if (!number)
            return std::nullopt;
        numbers[i] = ToFloat(*number);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return numbers;
}

std::string FormatTriple(const Triple& numbers) {
    return FormatNumber(numbers[0]) + " " + FormatNumber(numbers[1]) + " " + FormatNumber(numbers[2]);
}

/// Microns in a unit, or 0 for one that says nothing of a length.
double MicronsPerUnit(std::string_view unit) {
    struct Unit {
        std::string_view name;
        double microns;
    };
    // The micro sign comes in three ways: of UTF-8 that of Latin-1 and the Greek letter, and that of Latin-1 alone.
    static constexpr std::array<Unit, 32> units = {{
        {"micrometers", 1.0}, {"micrometer", 1.0},  {"micrometres", 1.0}, {"micrometre", 1.0},  {"microns", 1.0},
        {"micron", 1.0},      {"um", 1.0},          {"\xC2\xB5m", 1.0},   {"\xCE\xBCm", 1.0},   {"\xB5m", 1.0},
        {"nm", 1e-3},         {"nanometers", 1e-3}, {"nanometer", 1e-3},  {"nanometres", 1e-3}, {"nanometre", 1e-3},
        {"mm", 1e3},          {"millimeters", 1e3}, {"millimeter", 1e3},  {"millimetres", 1e3}, {"millimetre", 1e3},
        {"cm", 1e4},          {"centimeters", 1e4}, {"centimeter", 1e4},  {"centimetres", 1e4}, {"centimetre", 1e4},
        {"m", 1e6},           {"meters", 1e6},      {"meter", 1e6},       {"metres", 1e6},      {"metre", 1e6},
        {"inches", 25400.0},  {"inch", 25400.0},
    }};
    const std::string lower = ToLowerAscii(unit);
    for (const Unit& known : units)
        if (known.name == lower)
            return known.microns;
    return 0.0;
}

bool IsGood(float resolution) {
    return std::isfinite(resolution) && resolution > 0.0F;
}

/// Pixels per micron, or 0 where the file does not tell.
float ResolutionOf(const std::string& scale, const std::string& unit) {
    const double microns = ParseNumber(scale).value_or(0.0) * MicronsPerUnit(unit);
    if (!(microns > 0.0))
        return 0.0F;
    const float resolution = ToFloat(1.0 / microns);
    return IsGood(resolution) ? resolution : 0.0F;
}

/// Microns; 0 where the unit says nothing or the number is none that a place can have.
float OffsetOf(const std::string& origin, const std::string& unit) {
    const float offset = ToFloat(ParseNumber(origin).value_or(0.0) * MicronsPerUnit(unit));
    return std::isfinite(offset) ? offset : 0.0F;
}

bool AgreesWithin(double a, double b, double relative) {
    return a == b || std::fabs(a - b) <= relative * std::max(std::fabs(a), std::fabs(b)) ||
           (std::isnan(a) && std::isnan(b));
}

/// Another program may have changed the standard fields and left our lines as they were. Then the edit counts.
constexpr double agreement = 1e-6;

bool ResolutionAgrees(const Triple& line, const Triple& fields) {
    for (std::size_t i = 0; i < line.size(); ++i)
        if (IsGood(line[i]) != IsGood(fields[i]) || (IsGood(line[i]) && !AgreesWithin(line[i], fields[i], agreement)))
            return false;
    return true;
}

void TakeDescription(const IcsHeader& from, FrameHeader& to, std::optional<Triple>& resolution,
                     std::optional<Triple>& offset) {
    for (const auto& [key, value] : from.history) {
        if (key == resolutionKey) {
            resolution = ParseTriple(value);
        } else if (key == offsetKey) {
            offset = ParseTriple(value);
        } else if (const auto [place, isNew] = to.description.try_emplace(key, value); !isNew) {
            place->second += '\n';
            place->second += value;
        }
    }
}

/// What the reader will make of the texts of an axis.
void ReadBack(const Triple& resolution, const Triple& offset, Triple& resolutionRead, Triple& offsetRead) {
    for (std::size_t i = 0; i < resolution.size(); ++i) {
        const IcsAxisTexts texts = MakeIcsAxisTexts(resolution[i], offset[i]);
        resolutionRead[i] = ResolutionOf(texts.scale, texts.unit);
        offsetRead[i] = OffsetOf(texts.origin, texts.unit);
    }
}

} // namespace

void TakeIcsGeometry(const IcsHeader& from, FrameHeader& to) {
    Triple resolution{};
    Triple offset{};
    Triple origin{}; // also where the unit is not known, or the number not finite
    for (const IcsAxis& axis : from.axes) {
        for (std::size_t i = 0; i < axisNames.size(); ++i) {
            if (axis.name != axisNames[i])
                continue;
            resolution[i] = ResolutionOf(axis.scale, axis.unit);
            offset[i] = OffsetOf(axis.origin, axis.unit);
            const double microns = MicronsPerUnit(axis.unit);
            origin[i] = ToFloat(ParseNumber(axis.origin).value_or(0.0) * (microns > 0.0 ? microns : 1.0));
        }
    }
    std::optional<Triple> resolutionLine;
    std::optional<Triple> offsetLine;
    TakeDescription(from, to, resolutionLine, offsetLine);

    if (resolutionLine && ResolutionAgrees(*resolutionLine, resolution))
        resolution = *resolutionLine;
    else if (to.size.z == 1 && !IsGood(resolution[2]))
        resolution[2] = resolution[0]; // so that a plain picture with a pixel size counts as having one
    if (offsetLine && AgreesWithin((*offsetLine)[0], origin[0], agreement) &&
        AgreesWithin((*offsetLine)[1], origin[1], agreement) && AgreesWithin((*offsetLine)[2], origin[2], agreement))
        offset = *offsetLine;
    to.resolution = Resolution(resolution[0], resolution[1], resolution[2]);
    to.offset = {offset[0], offset[1], offset[2]};
}

IcsAxisTexts MakeIcsAxisTexts(float resolution, float offset) {
    if (!IsGood(resolution))
        return {FormatNumber(offset), "1", "undefined"};
    return {FormatNumber(offset), FormatNumber(1.0 / static_cast<double>(resolution)), "micrometers"};
}

IcsHistory MakeIcsEntry(std::string_view name, std::string_view value) {
    std::string key(name); // which must stay on one line and end before the value
    std::replace_if(
        key.begin(), key.end(), [](char c) { return c == '\t' || c == '\n'; }, ' ');
    if (key == resolutionKey || key == offsetKey)
        return {};
    IcsHistory lines;
    for (;;) {
        const std::size_t end = value.find('\n');
        lines.emplace_back(key, value.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        value.remove_prefix(end + 1);
    }
}

IcsHistory MakeIcsHistory(const FrameHeader& frame) {
    IcsHistory history;
    const Vector3d<float> res = frame.resolution.GetRes();
    const Triple resolution = {res.x, res.y, res.z};
    const Triple offset = {frame.offset.x, frame.offset.y, frame.offset.z};
    Triple resolutionRead{};
    Triple offsetRead{};
    ReadBack(resolution, offset, resolutionRead, offsetRead);
    if (frame.size.z == 1 && !IsGood(resolutionRead[2]))
        resolutionRead[2] = resolutionRead[0];
    if (resolutionRead != resolution)
        history.emplace_back(resolutionKey, FormatTriple(resolution));
    if (offsetRead != offset)
        history.emplace_back(offsetKey, FormatTriple(offset));

    for (const auto& [key, value] : frame.description)
        std::ranges::move(MakeIcsEntry(key, value), std::back_inserter(history));
    return history;
}

} // namespace kep::detail
