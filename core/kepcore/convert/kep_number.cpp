#include "core/kepcore/convert/kep_number.h"

#include <cmath>
#include <limits>

namespace kep::detail {

std::string FormatNineDigits(double value) {
    std::array<char, 64> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 9);
    return {text.data(), written.ptr};
}

float ToNearestFloat(double number) {
    constexpr float most = std::numeric_limits<float>::max();
    constexpr double halfStep = 0x1p103; // half the distance of the two largest floats
    const double size = std::fabs(number);
    if (!(size > static_cast<double>(most)))
        return static_cast<float>(number);
    const float rounded = size < static_cast<double>(most) + halfStep ? most : std::numeric_limits<float>::infinity();
    return number < 0.0 ? -rounded : rounded;
}

std::string FormatTriple(const Triple& numbers) {
    return FormatNineDigits(numbers[0]) + " " + FormatNineDigits(numbers[1]) + " " + FormatNineDigits(numbers[2]);
}

} // namespace kep::detail
