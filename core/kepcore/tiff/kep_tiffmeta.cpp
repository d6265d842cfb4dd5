#include "core/kepcore/tiff/kep_tiffmeta.h"

#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/tiff/kep_tiffome.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kep::detail {

namespace {

constexpr std::string_view imageJMark = "ImageJ=";

/// Calls `take` with each line, without its end.
template <typename Take>
void ForEachLine(std::string_view text, const Take& take) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        take(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

void TakeCount(std::string_view value, std::size_t& count) {
    const auto number = ParseNumber<std::size_t>(value);
    if (number && *number > 0)
        count = *number;
}

void ParseImageJ(const std::string& text, TiffDescription& description) {
    description.style = DescriptionStyle::ImageJ;
    std::size_t images = 0;
    std::optional<double> interval;
    std::string intervalUnit = "s";
    ForEachLine(text, [&](std::string_view line) {
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            return;
        const std::string_view key = TrimBlanks(line.substr(0, equals));
        const std::string_view value = TrimBlanks(line.substr(equals + 1));
        if (key == "images")
            TakeCount(value, images);
        else if (key == "slices")
            TakeCount(value, description.slices);
        else if (key == "channels")
            TakeCount(value, description.channels);
        else if (key == "frames")
            TakeCount(value, description.times);
        else if (key == "unit")
            description.unit = std::string(value);
        else if (key == "spacing")
            description.spacing = ParseNumber<double>(value);
        else if (key == "finterval")
            interval = ParseNumber<double>(value);
        else if (key == "tunit")
            intervalUnit = std::string(value);
        else if (key == "xorigin")
            description.origin[0] = ParseNumber<double>(value);
        else if (key == "yorigin")
            description.origin[1] = ParseNumber<double>(value);
        else if (key == "zorigin")
            description.origin[2] = ParseNumber<double>(value);
    });
    description.frameInterval = FindInterval(interval, intervalUnit);
    // A plain stack names its images only. Where more is named, the product may be wrong by an edit; slices count.
    if (description.slices == 0 && description.times == 1 && images % description.channels == 0)
        description.slices = images / description.channels;
}

std::string WithoutOwnLines(const std::string& text) {
    std::string kept;
    ForEachLine(text, [&](std::string_view line) {
        const OwnLines own = ParseOwnLines(line);
        if (!own.resolution && !own.offset && own.entries.empty())
            kept.append(line).append("\n");
    });
    if (!text.ends_with('\n') && !kept.empty())
        kept.pop_back();
    return kept;
}

bool IsPositive(const std::optional<double>& number) {
    return number && std::isfinite(*number) && *number > 0.0;
}

bool IsWhole(double number) {
    // Settings in pixels per cm went through a conversion, e.g. 118.11 for 300 per inch.
    return std::fabs(number - std::round(number)) <= 1e-5 * number;
}

/// Pixels per inch as people set them for printers, scanners and screens.
bool IsPrintSetting(double xPerMicron, double yPerMicron) {
    constexpr double micronsPerInch = 25400.0;
    constexpr double finest = 1200.5;
    const double x = xPerMicron * micronsPerInch;
    const double y = yPerMicron * micronsPerInch;
    return x > 0.0 && y > 0.0 && x <= finest && y <= finest && IsWhole(x) && IsWhole(y);
}

/// The exact copy if it agrees with what the standard fields say.
float Prefer(float standard, float exact) {
    constexpr float tolerance = 1e-5F;
    const float larger = std::max(std::fabs(standard), std::fabs(exact));
    return std::fabs(standard - exact) <= tolerance * larger ? exact : standard;
}

/// The same for a resolution. An exact copy that is none agrees with standard fields that tell none.
float PreferResolution(float standard, float exact) {
    if (!IsGoodResolution(exact))
        return IsGoodResolution(standard) ? standard : exact;
    return Prefer(standard, exact);
}

bool IsAnyGood(const Vector3d<float>& res) {
    return IsGoodResolution(res.x) || IsGoodResolution(res.y) || IsGoodResolution(res.z);
}

/// Microns of the unit of the tags, or nothing if they have none.
std::optional<double> FindUnit(const TiffScaleTags& tags, const TiffDescription& description) {
    if (description.unit)
        return GetMicronsOfUnit(*description.unit);
    if (tags.unit == 2)
        return GetMicronsOfUnit("inch");
    if (tags.unit == 3)
        return GetMicronsOfUnit("cm");
    return std::nullopt;
}

/// A number of a file as a float; 0 for what float can't hold, as a resolution of infinity means nothing.
float ToFloat(double number) {
    const float rounded = ToNearestFloat(number);
    return std::isfinite(rounded) ? rounded : 0.0F;
}

} // namespace

std::optional<double> GetMicronsOfUnit(std::string_view unit) {
    return FindMicrons(TrimBlanks(unit), UnitNames::Tiff);
}

TiffDescription ParseTiffDescription(const std::string& text, const std::string& fileName) {
    TiffDescription description;
    if (LooksLikeOme(text))
        ParseOme(text, fileName, description);
    else if (text.starts_with(imageJMark))
        ParseImageJ(text, description);

    const OwnLines own = ParseOwnLines(text);
    description.ownResolution = own.resolution;
    description.ownOffset = own.offset;
    for (const auto& [key, value] : own.entries)
        description.entries.insert_or_assign(ToUtf8(key), ToUtf8(value));
    if (!own.IsOwn()) {
        std::string rest = ToUtf8(WithoutOwnLines(text));
        if (!rest.empty())
            description.entries.insert_or_assign("ImageDescription", std::move(rest));
    }
    return description;
}

TiffPlace FindTiffPlace(const TiffScaleTags& tags, const TiffDescription& description, std::size_t slices) {
    // Pixels per micron; 0 is undefined.
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    const std::optional<double> unit = FindUnit(tags, description);
    if (unit) {
        x = IsPositive(tags.xResolution) ? *tags.xResolution / *unit : 0.0;
        y = IsPositive(tags.yResolution) ? *tags.yResolution / *unit : 0.0;
        if (description.style == DescriptionStyle::Free && IsPrintSetting(x, y))
            x = y = 0.0;
        if (description.unit && IsPositive(description.spacing))
            z = 1.0 / (*description.spacing * *unit);
    }
    const auto prefer = [](double& resolution, const std::optional<double>& pixelSize) {
        if (IsPositive(pixelSize))
            resolution = 1.0 / *pixelSize;
    };
    prefer(x, description.pixelSize[0]);
    prefer(y, description.pixelSize[1]);
    prefer(z, description.pixelSize[2]);

    Vector3d<float> res(ToFloat(x), ToFloat(y), ToFloat(z));
    const auto& own = description.ownResolution;
    const bool isZMeant =
        res.z > 0.0F || (own && !IsGoodResolution(own->z)); // an exact copy may say that there is none
    if (!isZMeant && slices == 1)
        res.z = res.x;
    if (own)
        res = {PreferResolution(res.x, own->x), PreferResolution(res.y, own->y), PreferResolution(res.z, own->z)};
    const bool isOwnWithout = own && !IsAnyGood(*own); // it was saved so, and its origin counts in microns
    if (!IsAnyGood(res) && !isOwnWithout)
        return {}; // positions have no unit then

    Vector3d<float> offset;
    const auto& origin = description.origin;
    if (origin[0] || origin[1] || origin[2]) {
        const Vector3d<float> usable = Resolution(res).GetUsable().GetRes();
        const auto along = [](const std::optional<double>& pixels, float perMicron) {
            // The sum makes +0 of -0.
            return pixels ? ToFloat(-*pixels / static_cast<double>(perMicron) + 0.0) : 0.0F;
        };
        offset = {along(origin[0], usable.x), along(origin[1], usable.y), along(origin[2], usable.z)};
    } else if (unit) {
        offset = {ToFloat(tags.xPosition.value_or(0.0) * *unit), ToFloat(tags.yPosition.value_or(0.0) * *unit), 0.0F};
    }
    if (const auto& exact = description.ownOffset)
        offset = {Prefer(offset.x, exact->x), Prefer(offset.y, exact->y), Prefer(offset.z, exact->z)};
    return {Resolution(res), offset};
}

} // namespace kep::detail
