#include "core/kepcore/convert/kep_unit.h"

#include "core/kepcore/convert/kep_text.h"

#include <algorithm>
#include <array>
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

} // namespace

std::optional<double> FindMicrons(std::string_view unit, UnitNames names) {
    const std::string name = ToLowerAscii(unit);
    const KnownTo other = names == UnitNames::Tiff ? KnownTo::Ics : KnownTo::Tiff;
    const auto* const found = std::find_if(
        units.begin(), units.end(), [&](const Unit& known) { return known.name == name && known.knownTo != other; });
    return found == units.end() ? std::nullopt : std::optional<double>(found->microns);
}

} // namespace kep::detail
