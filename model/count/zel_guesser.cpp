#include "model/count/zel_guesser.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace zel::detail {

namespace {

/// More than the three roundings of a guess add up to: the last center's own stays below the last bin.
constexpr double rounding = 0x1p-21;

double GetRange(const Histogram<float>& histogram) {
    return static_cast<double>(histogram.GetRightCenter()) - static_cast<double>(histogram.GetLeftCenter());
}

/// Bins for each unit.
double GetScale(const Histogram<float>& histogram) {
    return static_cast<double>(histogram.size() - 1) / GetRange(histogram);
}

std::int64_t ToRank(float value) {
    const auto bits = std::bit_cast<std::int32_t>(value);
    return bits < 0 ? std::int64_t{std::numeric_limits<std::int32_t>::min()} - bits : bits;
}

float FromRank(std::int64_t rank) {
    return std::copysign(std::bit_cast<float>(static_cast<std::int32_t>(std::abs(rank))), rank < 0 ? -1.0F : 1.0F);
}

/// The least value in a bin or above it. Floats are searched by their rank among all floats, away from a value that
/// is close by and in wider and wider steps: near 0 they lie so dense that many share what a double makes of them.
float FindLeast(const Histogram<float>& histogram, std::size_t bin, float near) {
    const auto reaches = [&](std::int64_t rank) { return histogram.GetBinPos(FromRank(rank)) >= bin; };
    std::int64_t below = ToRank(near);
    std::int64_t reached = below;
    for (std::int64_t step = 1; reaches(below); step *= 2) {
        reached = below;
        below = std::max(below - step, ToRank(histogram.GetLeftCenter())); // which is in bin 0
    }
    for (std::int64_t step = 1; !reaches(reached); step *= 2) {
        below = reached;
        reached = std::min(reached + step, ToRank(histogram.GetRightCenter())); // which is in the last bin
    }
    while (reached - below > 1) {
        const std::int64_t middle = below + (reached - below) / 2;
        (reaches(middle) ? reached : below) = middle;
    }
    return FromRank(reached);
}

} // namespace

bool Guesser::CanGuess(const Histogram<float>& histogram) {
    const double range = GetRange(histogram);
    return histogram.size() >= 2 && histogram.size() <= 65536 && range > 0 &&
           range <= std::numeric_limits<float>::max() && GetScale(histogram) >= 2 * std::numeric_limits<float>::min() &&
           GetScale(histogram) <= std::numeric_limits<float>::max() / 2;
}

Guesser::Guesser(const Histogram<float>& histogram)
    : first(histogram.GetLeftCenter()),
      last(histogram.GetRightCenter()),
      scale(static_cast<float>(GetScale(histogram) * (1 - rounding))),
      upperScale(static_cast<float>(GetScale(histogram) * (1 + rounding))),
      least(histogram.size()) {
    for (std::size_t i = 1; i < least.size(); ++i) {
        const double steps = static_cast<double>(i) / static_cast<double>(least.size() - 1);
        least[i] = FindLeast(histogram, i, static_cast<float>(first + steps * GetRange(histogram)));
    }
}

} // namespace zel::detail
