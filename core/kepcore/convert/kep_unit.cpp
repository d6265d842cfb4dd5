#include "core/kepcore/convert/kep_unit.h"

#include "core/kepcore/convert/kep_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace kep::detail {

namespace {

enum class KnownTo { Both, Tiff, Ics };

struct Unit {
    std::string_view name;
    double microns;
    KnownTo knownTo = KnownTo::Both;
};

// The micro sign comes in four ways: as ImageJ escapes it, in UTF-8 as that of Latin-1 and as the Greek letter, and in
// Latin-1 itself.
constexpr std::array<Unit, 34> units = {{
    {"um", 1.0},
    {"\\u00b5m", 1.0, KnownTo::Tiff},
    {"\xC2\xB5m", 1.0},
    {"\xCE\xBCm", 1.0},
    {"\xB5m", 1.0},
    {"micron", 1.0},
    {"microns", 1.0},
    {"micrometer", 1.0},
    {"micrometers", 1.0},
    {"micrometre", 1.0, KnownTo::Ics},
    {"micrometres", 1.0, KnownTo::Ics},
    {"nm", 1e-3},
    {"nanometer", 1e-3},
    {"nanometers", 1e-3},
    {"nanometre", 1e-3, KnownTo::Ics},
    {"nanometres", 1e-3, KnownTo::Ics},
    {"mm", 1e3},
    {"millimeter", 1e3},
    {"millimeters", 1e3},
    {"millimetre", 1e3, KnownTo::Ics},
    {"millimetres", 1e3, KnownTo::Ics},
    {"cm", 1e4},
    {"centimeter", 1e4},
    {"centimeters", 1e4},
    {"centimetre", 1e4, KnownTo::Ics},
    {"centimetres", 1e4, KnownTo::Ics},
    {"m", 1e6},
    {"meter", 1e6},
    {"meters", 1e6},
    {"metre", 1e6, KnownTo::Ics},
    {"metres", 1e6, KnownTo::Ics},
    {"inch", 25400.0},
    {"inches", 25400.0},
    {"in", 25400.0, KnownTo::Tiff},
}};

struct TimeUnit {
    std::string_view name;
    double seconds;
};
constexpr std::array<TimeUnit, 27> timeUnits = {{
    {"s", 1.0},          {"sec", 1.0},        {"secs", 1.0},         {"second", 1.0},        {"seconds", 1.0},
    {"ms", 1e-3},        {"msec", 1e-3},      {"millisecond", 1e-3}, {"milliseconds", 1e-3}, {"us", 1e-6},
    {"\xC2\xB5s", 1e-6}, {"\xCE\xBCs", 1e-6}, {"\xB5s", 1e-6},       {"microsecond", 1e-6},  {"microseconds", 1e-6},
    {"ns", 1e-9},        {"min", 60.0},       {"mins", 60.0},        {"minute", 60.0},       {"minutes", 60.0},
    {"h", 3600.0},       {"hr", 3600.0},      {"hour", 3600.0},      {"hours", 3600.0},      {"d", 86400.0},
    {"day", 86400.0},    {"days", 86400.0},
}};

} // namespace

std::optional<double> FindMicrons(std::string_view unit, UnitNames names) {
    const std::string name = ToLowerAscii(unit);
    const KnownTo other = names == UnitNames::Tiff ? KnownTo::Ics : KnownTo::Tiff;
    const auto* const found = std::find_if(
        units.begin(), units.end(), [&](const Unit& known) { return known.name == name && known.knownTo != other; });
    return found == units.end() ? std::nullopt : std::optional<double>(found->microns);
}

std::optional<double> FindInterval(std::optional<double> number, std::string_view unit) {
    const std::string name = ToLowerAscii(unit);
    const auto* const found =
        std::find_if(timeUnits.begin(), timeUnits.end(), [&](const TimeUnit& known) { return known.name == name; });
    if (!number || found == timeUnits.end() || !std::isfinite(*number) || *number <= 0.0)
        return std::nullopt;
    return *number * found->seconds;
}

} // namespace kep::detail
