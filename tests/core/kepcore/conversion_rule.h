#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

/// How a number of a file becomes a number of a voxel, in the plainest form: the slow twin of the conversion.
namespace conversion_rule {

using Exact = long double; // 64 bits of mantissa: every stored number, exactly
static_assert(std::numeric_limits<Exact>::digits >= 64);

enum class Verdict { Taken, DoesNotFit, NotWhole };

template <typename Channel>
Verdict Judge(Exact v, Channel& to) {
    if constexpr (std::is_same_v<Channel, bool>) {
        to = v != 0.0L;
        return Verdict::Taken;
    } else if constexpr (std::is_floating_point_v<Channel>) {
        to = static_cast<Channel>(v);
        return std::isfinite(v) && std::isinf(to) ? Verdict::DoesNotFit : Verdict::Taken;
    } else {
        if (std::isfinite(v) && std::floor(v) != v)
            return Verdict::NotWhole;
        if (!std::isfinite(v) || v < static_cast<Exact>(std::numeric_limits<Channel>::min()) ||
            v > static_cast<Exact>(std::numeric_limits<Channel>::max()))
            return Verdict::DoesNotFit;
        to = static_cast<Channel>(v);
        return Verdict::Taken;
    }
}

} // namespace conversion_rule
