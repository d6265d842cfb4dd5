#pragma once

// Private to the model: the bins of many floats at once.

#include "model/zel_histogram.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zel::detail {

/// Bins of floats without a division: a guess in single precision, at most one bin too low, and where that may be, the
/// least value of the next bin, which decides.
class Guesser {
public:
    /// Whether the roundings of single precision stay small enough.
    static bool CanGuess(const Histogram<float>& histogram);

    /// @param histogram  CanGuess, with finite centers
    explicit Guesser(const Histogram<float>& histogram);

    /// Counts the bins of values.
    template <typename Counters>
    void Count(const float* values, std::size_t number, Counters& counters) const {
        constexpr std::size_t atOnce = 128; // few enough that most have no value in doubt
        std::array<std::int32_t, atOnce> guesses;
        const std::int32_t* const guessed = guesses.data();
        const float* const next = least.data() + 1;
        for (std::size_t done = 0; done < number; done += atOnce, values += atOnce) {
            const std::size_t part = std::min(number - done, atOnce);
            if (!Guess(values, part, guesses.data())) {
                counters.CountEach(part, [guessed](std::size_t i) { return static_cast<std::size_t>(guessed[i]); });
                continue;
            }
            counters.CountEach(part, [=](std::size_t i) {
                const auto guess = static_cast<std::size_t>(guessed[i]);
                return guess + (values[i] >= next[guess] ? 1U : 0U);
            });
        }
    }

    /// Counts the bins of values that are known with an error only. Few of them depend on the error, and of these the
    /// value itself is asked for.
    /// @param values  not-a-number counts as one of those
    /// @param exact   the value itself = exact(i)
    template <typename Exact, typename Counters>
    void CountNear(const float* values, float error, std::size_t number, Exact exact, Counters& counters) const {
        constexpr std::size_t atOnce = 128;
        std::array<std::int32_t, atOnce> guesses;
        const std::int32_t* const guessed = guesses.data();
        for (std::size_t done = 0; done < number; done += atOnce) {
            const std::size_t part = std::min(number - done, atOnce);
            if (GuessNear(values + done, error, part, guesses.data()))
                for (std::size_t i = 0; i < part; ++i)
                    if (guesses[i] < 0)
                        guesses[i] = Find(exact(done + i));
            counters.CountEach(part, [guessed](std::size_t i) { return static_cast<std::size_t>(guessed[i]); });
        }
    }

private:
    std::int32_t Find(float value) const {
        float held = value > first ? value : first;
        held = held < last ? held : last;
        const auto guess = static_cast<std::int32_t>((held - first) * scale);
        return guess + (value >= least[static_cast<std::size_t>(guess) + 1] ? 1 : 0);
    }

    /// Guesses below 0 are in doubt. @return whether there are any
    bool GuessNear(const float* values, float error, std::size_t number, std::int32_t* guesses) const {
        std::int32_t all = 0;
        for (std::size_t i = 0; i < number; ++i) {
            float low = values[i] - error;
            float high = values[i] + error;
            low = low > first ? low : first;
            low = low < last ? low : last;
            high = high > first ? high : first;
            high = high < last ? high : last;
            const auto lower = static_cast<std::int32_t>((low - first) * scale);
            const auto upper = static_cast<std::int32_t>((high - first) * upperScale);
            const std::int32_t isClear = (lower == upper ? 1 : 0) & (values[i] == values[i] ? 1 : 0);
            guesses[i] = lower | (isClear - 1);
            all |= guesses[i];
        }
        return all < 0;
    }

    /// @return whether a value may lie a bin above its guess
    bool Guess(const float* values, std::size_t number, std::int32_t* guesses) const {
        std::int32_t doubt = 0;
        for (std::size_t i = 0; i < number; ++i) {
            float value = values[i];
            value = value > first ? value : first;
            value = value < last ? value : last;
            guesses[i] = static_cast<std::int32_t>((value - first) * scale);
            doubt |= guesses[i] ^ static_cast<std::int32_t>((value - first) * upperScale);
        }
        return doubt != 0;
    }

    float first, last, scale, upperScale;
    std::vector<float> least; ///< value of each bin but the first
};

} // namespace zel::detail
