#include "model/count/zel_complexcount.h"

#include <numbers>

namespace zel::detail {

void FindNearPhases(const float* re, const float* im, std::size_t number, float* phases) {
    constexpr auto pi = std::numbers::pi_v<float>;
    for (std::size_t i = 0; i < number; ++i) {
        const float x = std::abs(re[i]);
        const float y = std::abs(im[i]);
        const bool isSteep = y > x;
        const float t = (isSteep ? x : y) / (isSteep ? y : x);
        const float s = t * t;
        // The arc tangent from 0 to 1 within 2e-8, by a polynomial of odd powers.
        float sum = 0.0028662257F;
        sum = sum * s - 0.0161657367F;
        sum = sum * s + 0.0429096138F;
        sum = sum * s - 0.0752896400F;
        sum = sum * s + 0.1065626393F;
        sum = sum * s - 0.1420889944F;
        sum = sum * s + 0.1999355085F;
        sum = sum * s - 0.3333314528F;
        sum = sum * s * t + t;
        sum = isSteep ? pi / 2 - sum : sum;
        sum = re[i] < 0.0F ? pi - sum : sum;
        phases[i] = std::copysign(sum, im[i]);
    }
}

void FindAmplitudes(const float* re, const float* im, std::size_t number, float* amplitudes) {
    for (std::size_t i = 0; i < number; ++i)
        amplitudes[i] = std::sqrt(re[i] * re[i] + im[i] * im[i]);
}

} // namespace zel::detail
