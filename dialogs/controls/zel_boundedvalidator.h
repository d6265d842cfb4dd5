#pragma once

#include "dialogs/zel_validators.h"

#include <type_traits>

namespace zel {

/// A validator for a number from min to max, both included; "-" can be typed.
template <typename T>
auto MakeBoundedValidator(T& value, T min, T max) {
    constexpr bool unsignedOnly = false, hasMin = true, hasMax = true;
    if constexpr (std::is_floating_point_v<T>)
        return RealValidator<T>(value, min, max, hasMin, hasMax, wxEmptyString);
    else
        return IntValidator<T>(value, min, max, unsignedOnly, hasMin, hasMax, std::is_same_v<T, long> ? "%ld" : "%d");
}

} // namespace zel
