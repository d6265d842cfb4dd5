#pragma once

// Private to the model: complex values counted by both parts, phase and amplitude at once.

#include "model/count/zel_counttables.h"
#include "model/count/zel_guesser.h"

#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <optional>

namespace zel::detail {

/// More than FindNearPhases is off.
constexpr float nearPhaseError = 2e-6F;

/// The phases atan2(im, re), nearly; not-a-number where a part is none, or both are zero or infinite.
void FindNearPhases(const float* re, const float* im, std::size_t number, float* phases);

/// The amplitudes sqrt(re * re + im * im) in float.
void FindAmplitudes(const float* re, const float* im, std::size_t number, float* amplitudes);

/// Bins of the real part, the imaginary part, the phase and the amplitude; of some only, if the others can't be
/// guessed.
using ComplexGuessers = std::array<std::optional<Guesser>, 4>;

/// Counts the bins of complex values.
/// @param counters  one for each guesser
template <typename Counters>
void CountComplex(const std::complex<float>* values, std::size_t number, const ComplexGuessers& guessers,
                  std::array<Counters, 4>& counters) {
    constexpr std::size_t block = 1024;
    std::array<float, block> re;
    std::array<float, block> im;
    std::array<float, block> made;
    for (std::size_t done = 0; done < number; done += block) {
        const std::size_t part = std::min(number - done, block);
        for (std::size_t i = 0; i < part; ++i) {
            re[i] = values[done + i].real();
            im[i] = values[done + i].imag();
        }
        if (guessers[0])
            guessers[0]->Count(re.data(), part, counters[0]);
        if (guessers[1])
            guessers[1]->Count(im.data(), part, counters[1]);
        if (guessers[2]) {
            FindNearPhases(re.data(), im.data(), part, made.data());
            guessers[2]->CountNear(
                made.data(), nearPhaseError, part, [&](std::size_t i) { return std::atan2(im[i], re[i]); },
                counters[2]);
        }
        if (guessers[3]) {
            FindAmplitudes(re.data(), im.data(), part, made.data());
            guessers[3]->Count(made.data(), part, counters[3]);
        }
    }
}

} // namespace zel::detail
