#pragma once

#include "model/zel_export.h"

#include <wx/string.h>

#include <cstddef>
#include <optional>

namespace zel {

// Numbers of the fields and controls with which a range is set, for T of unsigned char, unsigned short, int, float and
// double. A range from low to high is divided into positions, one step apart.

/// A text as a number that T can represent: an integer within the limits of T, a real that is finite after narrowing.
template <typename T>
std::optional<T> ParseNumber(const wxString& text);

/// How a field shows a number: "%d" for integers, "%2.2f" for float, "%2.2g" without leading blanks for double.
template <typename T>
wxString NumberToText(T number);

/// The same in more digits, as the validator of a field shows it at first: "%f" for float, "%g" for double.
template <typename T>
wxString NumberToFullText(T number);

/// Whether a text is how a field shows this number. The number itself may have more digits.
template <typename T>
bool ShowsNumber(const wxString& text, T number);

/// What counts of a number that was typed or dragged: what a field shows of it, so two decimals for float. The number
/// itself where that is outside low and high, or where these two look the same, since no text would distinguish them.
template <typename T>
T NumberEntered(T number, T low, T high);

/// Positions for the bins of a histogram: one each, as far as int counts.
ZEL_EXPORT int PositionCount(std::size_t bins);

/// Distance between two positions: (high - low + 1) / positions for integers, (high - low) / positions for reals.
/// Clamped to 0 and the largest T; fewer than one position count as one.
template <typename T>
T StepBetweenPositions(T low, T high, int positions);

/// A step up or down, clamped to low and high. Integers are added modulo the width of T first, so that 250 + 10 is 4
/// in unsigned char. A step of 0 gives the number itself.
/// @return none at the bound or beyond it
template <typename T>
std::optional<T> StepNumber(T number, T step, bool up, T low, T high);

/// low + step * position, clamped to T.
template <typename T>
T NumberAtPosition(int position, T low, T step);

/// Position of a number: whole steps from low for integers, the nearest position for reals; 0 if the step is 0. The
/// end of the range, `count` steps away, is the last position.
/// @return none for a number outside low and high, or more than `count` steps away
template <typename T>
std::optional<int> PositionOfNumber(T number, T low, T high, T step, int count);

/// A double as T: truncated for integers, clamped to T; not a number becomes the lowest T.
template <typename T>
T HoldNumber(double number);

#define ZEL_FIELD_TYPES(X) X(unsigned char) X(unsigned short) X(int) X(float) X(double)

#define ZEL_DECLARE(T)                                                                                                 \
    extern template ZEL_EXPORT std::optional<T> ParseNumber(const wxString& text);                                     \
    extern template ZEL_EXPORT wxString NumberToText(T number);                                                        \
    extern template ZEL_EXPORT wxString NumberToFullText(T number);                                                    \
    extern template ZEL_EXPORT bool ShowsNumber(const wxString& text, T number);                                       \
    extern template ZEL_EXPORT T NumberEntered(T number, T low, T high);                                               \
    extern template ZEL_EXPORT T StepBetweenPositions(T low, T high, int positions);                                   \
    extern template ZEL_EXPORT std::optional<T> StepNumber(T number, T step, bool up, T low, T high);                  \
    extern template ZEL_EXPORT T NumberAtPosition(int position, T low, T step);                                        \
    extern template ZEL_EXPORT std::optional<int> PositionOfNumber(T number, T low, T high, T step, int count);        \
    extern template ZEL_EXPORT T HoldNumber(double number);
ZEL_FIELD_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
