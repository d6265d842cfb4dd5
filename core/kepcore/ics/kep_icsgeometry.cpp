#include "core/kepcore/ics/kep_icsgeometry.h"

#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_unit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>

namespace kep::detail {

namespace {

/// Keys of our own lines, which never show in a description.
constexpr const char* resolutionKey = "kep resolution";
constexpr const char* offsetKey = "kep offset";

constexpr std::array<const char*, 3> axisNames = {"x", "y", "z"};

/// The nearest float of a word.
std::optional<float> ParseFloat(std::string_view word) {
    const auto number = ParseNumber<double>(word);
    return number ? std::optional<float>(ToNearestFloat(*number)) : std::nullopt;
}

/// Microns in a unit, or 0 for one that says nothing of a length.
double MicronsPerUnit(std::string_view unit) {
    return FindMicrons(unit, UnitNames::Ics).value_or(0.0);
}

/// Pixels per micron, or 0 where the file does not tell.
float ResolutionOf(const std::string& scale, const std::string& unit) {
    const double microns = ParseNumber<double>(scale).value_or(0.0) * MicronsPerUnit(unit);
    if (!(microns > 0.0))
        return 0.0F;
    const float resolution = ToNearestFloat(1.0 / microns);
    return IsGoodResolution(resolution) ? resolution : 0.0F;
}

/// Microns; 0 where the unit says nothing or the number is none that a place can have.
float OffsetOf(const std::string& origin, const std::string& unit) {
    const float offset = ToNearestFloat(ParseNumber<double>(origin).value_or(0.0) * MicronsPerUnit(unit));
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
        if (IsGoodResolution(line[i]) != IsGoodResolution(fields[i]) ||
            (IsGoodResolution(line[i]) && !AgreesWithin(line[i], fields[i], agreement)))
            return false;
    return true;
}

void TakeDescription(const IcsHeader& from, FrameHeader& to, std::optional<Triple>& resolution,
                     std::optional<Triple>& offset) {
    for (const auto& [key, value] : from.history) {
        if (key == resolutionKey) {
            resolution = ParseTriple(value, &ParseFloat);
        } else if (key == offsetKey) {
            offset = ParseTriple(value, &ParseFloat);
        } else {
            const std::string text = ToUtf8(value);
            const auto [place, isNew] = to.description.try_emplace(ToUtf8(key), text);
            if (!isNew)
                place->second.append("\n").append(text);
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
            origin[i] =
                ToNearestFloat(ParseNumber<double>(axis.origin).value_or(0.0) * (microns > 0.0 ? microns : 1.0));
        }
    }
    std::optional<Triple> resolutionLine;
    std::optional<Triple> offsetLine;
    TakeDescription(from, to, resolutionLine, offsetLine);

    if (resolutionLine && ResolutionAgrees(*resolutionLine, resolution))
        resolution = *resolutionLine;
    else if (to.size.z == 1 && !IsGoodResolution(resolution[2]))
        resolution[2] = resolution[0]; // so that a plain picture with a pixel size counts as having one
    if (offsetLine && AgreesWithin((*offsetLine)[0], origin[0], agreement) &&
        AgreesWithin((*offsetLine)[1], origin[1], agreement) && AgreesWithin((*offsetLine)[2], origin[2], agreement))
        offset = *offsetLine;
    to.resolution = Resolution(resolution[0], resolution[1], resolution[2]);
    to.offset = {offset[0], offset[1], offset[2]};
}

IcsAxisTexts MakeIcsAxisTexts(float resolution, float offset) {
    if (!IsGoodResolution(resolution))
        return {FormatNineDigits(offset), "1", "undefined"};
    return {FormatNineDigits(offset), FormatNineDigits(1.0 / static_cast<double>(resolution)), "micrometers"};
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
    if (frame.size.z == 1 && !IsGoodResolution(resolutionRead[2]))
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
