#pragma once

#include "core/kepcore/kep_image3d.h"

#include <bit>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <ostream>
#include <random>
#include <type_traits>

namespace kep {

template <typename C>
std::ostream& operator<<(std::ostream& out, const RGB_generic<C>& v) {
    return out << '(' << int{v.red} << ' ' << int{v.green} << ' ' << int{v.blue} << ')';
}

} // namespace kep

/// A number of any kind, from few enough that ties are common. Floats are often those that rules are made for.
template <typename C>
C MakeNumber(std::mt19937& random) {
    if constexpr (std::is_floating_point_v<C>) {
        constexpr C special[] = {C{0}, -C{0}, std::numeric_limits<C>::infinity(), -std::numeric_limits<C>::infinity(),
                                 std::numeric_limits<C>::quiet_NaN()};
        const auto pick = random() % 12;
        if (pick < std::size(special))
            return special[pick];
        return static_cast<C>(static_cast<int>(random() % 200) - 150) / C{8};
    } else if constexpr (std::is_signed_v<C>) {
        return static_cast<C>(static_cast<int>(random() % 600) - 500) * 1000003;
    } else {
        return static_cast<C>(random());
    }
}

template <typename T>
struct RandomVoxel {
    static T Make(std::mt19937& random) { return MakeNumber<T>(random); }
};
template <typename C>
struct RandomVoxel<kep::RGB_generic<C>> {
    static kep::RGB_generic<C> Make(std::mt19937& random) {
        const C red = MakeNumber<C>(random);
        const C green = MakeNumber<C>(random);
        return {red, green, MakeNumber<C>(random)};
    }
};
template <>
struct RandomVoxel<std::complex<float>> {
    static std::complex<float> Make(std::mt19937& random) {
        const float real = MakeNumber<float>(random);
        return {real, MakeNumber<float>(random)};
    }
};

template <typename T>
void FillAtRandom(kep::Image3d<T>& image, std::mt19937& random) {
    for (T& voxel : image)
        voxel = RandomVoxel<T>::Make(random);
}

/// The same voxel: 0 is not -0, and one NaN is as good as another.
template <typename T>
bool IsSame(const T& a, const T& b) {
    if constexpr (std::is_same_v<T, float>)
        return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
    else if constexpr (std::is_same_v<T, std::complex<float>>)
        return IsSame(a.real(), b.real()) && IsSame(a.imag(), b.imag());
    else
        return a == b;
}
