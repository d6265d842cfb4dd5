#include "dialogs/zel_fieldnumber.h"

#include "dialogs/controls/zel_formatnumber.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace zel {

namespace {

/// A whole number held within T.
template <typename T>
T HoldWhole(long long number) {
    const auto lowest = static_cast<long long>(std::numeric_limits<T>::lowest());
    const auto highest = static_cast<long long>(std::numeric_limits<T>::max());
    return static_cast<T>(std::clamp(number, lowest, highest));
}

} // namespace

template <typename T>
T HoldNumber(double number) {
    constexpr T lowest = std::numeric_limits<T>::lowest();
    constexpr T highest = std::numeric_limits<T>::max();
    if (!(number > static_cast<double>(lowest))) // and not "<=", for NaN
        return lowest;
    return number >= static_cast<double>(highest) ? highest : static_cast<T>(number);
}

template <typename T>
std::optional<T> ParseNumber(const wxString& text) {
    if constexpr (std::is_floating_point_v<T>) {
        double number = 0.0;
        if (!text.ToDouble(&number) || !std::isfinite(static_cast<T>(number)))
            return std::nullopt;
        return static_cast<T>(number);
    } else {
        long number = 0;
        if (!text.ToLong(&number) || number != static_cast<long>(HoldWhole<T>(number)))
            return std::nullopt;
        return static_cast<T>(number);
    }
}

template <typename T>
wxString NumberToText(T number) {
    if constexpr (std::is_same_v<T, double>)
        return FormatReal("%2.2g", number).Trim(false); // a validator would refuse the blank
    else if constexpr (std::is_same_v<T, float>)
        return FormatReal("%2.2f", static_cast<double>(number));
    else
        return FormatInteger("%d", number);
}

template <typename T>
wxString NumberToFullText(T number) {
    if constexpr (std::is_same_v<T, double>)
        return FormatReal("%g", number);
    else if constexpr (std::is_same_v<T, float>)
        return FormatReal("%f", static_cast<double>(number));
    else
        return NumberToText(number);
}

template <typename T>
bool ShowsNumber(const wxString& text, T number) {
    return text == NumberToText(number) || text == NumberToFullText(number);
}

template <typename T>
T NumberEntered(T number, T low, T high) {
    const std::optional<T> shown = ParseNumber<T>(NumberToText(number));
    const bool counts = shown && *shown >= low && *shown <= high && NumberToText(low) != NumberToText(high);
    return counts ? *shown : number;
}

int PositionCount(std::size_t bins) {
    return static_cast<int>(std::min(bins, static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

template <typename T>
T StepBetweenPositions(T low, T high, int positions) {
    positions = std::max(positions, 1);
    if constexpr (std::is_floating_point_v<T>) {
        const double step = (static_cast<double>(high) - static_cast<double>(low)) / positions;
        return HoldNumber<T>(std::max(step, 0.0));
    } else {
        const long long width = static_cast<long long>(high) - static_cast<long long>(low) + 1;
        return HoldWhole<T>(std::max(width / positions, 0LL));
    }
}

template <typename T>
std::optional<T> StepNumber(T number, T step, bool up, T low, T high) {
    if (up ? number >= high : number <= low)
        return std::nullopt;
    T sum{};
    if constexpr (std::is_floating_point_v<T>) {
        sum = up ? number + step : number - step;
    } else {
        using U = std::make_unsigned_t<T>;
        const auto from = static_cast<U>(number);
        const auto by = static_cast<U>(step);
        sum = static_cast<T>(static_cast<U>(up ? from + by : from - by));
    }
    return std::max(low, std::min(high, sum));
}

template <typename T>
T NumberAtPosition(int position, T low, T step) {
    if constexpr (std::is_floating_point_v<T>)
        return HoldNumber<T>(static_cast<double>(low) + static_cast<double>(step) * position);
    else
        return HoldWhole<T>(static_cast<long long>(low) + static_cast<long long>(step) * position);
}

template <typename T>
std::optional<int> PositionOfNumber(T number, T low, T high, T step, int count) {
    if (!(number >= low && number <= high))
        return std::nullopt;
    if (step == T{})
        return 0;
    long long position = 0;
    if constexpr (std::is_floating_point_v<T>) {
        const double steps = (static_cast<double>(number) - static_cast<double>(low)) / static_cast<double>(step);
        position = std::llround(std::min(steps, static_cast<double>(count) + 1.0));
    } else {
        position = (static_cast<long long>(number) - static_cast<long long>(low)) / static_cast<long long>(step);
    }
    if (position > count)
        return std::nullopt;
    return static_cast<int>(std::min<long long>(position, count - 1));
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template std::optional<T> ParseNumber(const wxString& text);                                                       \
    template wxString NumberToText(T number);                                                                          \
    template wxString NumberToFullText(T number);                                                                      \
    template bool ShowsNumber(const wxString& text, T number);                                                         \
    template T NumberEntered(T number, T low, T high);                                                                 \
    template T StepBetweenPositions(T low, T high, int positions);                                                     \
    template std::optional<T> StepNumber(T number, T step, bool up, T low, T high);                                    \
    template T NumberAtPosition(int position, T low, T step);                                                          \
    template std::optional<int> PositionOfNumber(T number, T low, T high, T step, int count);                          \
    template T HoldNumber(double number);
ZEL_FIELD_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
