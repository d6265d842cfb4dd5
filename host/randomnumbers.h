#pragma once

#include <cstdint>

namespace zelviewer {

/// Random numbers that are the same on every machine, which the standard library's distributions don't promise.
/// A counter run through a mixing function: quick, and good enough for a picture's noise.
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t Next() {
        m_state += step;
        return Mix(m_state);
    }
    /// Leaves out the next numbers.
    void Skip(std::uint64_t count) { m_state += count * step; }
    /// Even over [low, high).
    double Uniform(double low, double high) {
        return low + (high - low) * static_cast<double>(Next() >> 11U) * 0x1p-53;
    }
    /// Nearly normal, with mean 0 and standard deviation 1: the sum of four even ones. Never beyond 3.47.
    float Normal() {
        const std::uint64_t bits = Next();
        const auto sum = static_cast<std::int32_t>((bits & 0xFFFFU) + ((bits >> 16U) & 0xFFFFU) +
                                                   ((bits >> 32U) & 0xFFFFU) + (bits >> 48U));
        // Four numbers of 0 to 65535: mean 4 * 32767.5, variance 4 * (65536^2 - 1) / 12.
        return static_cast<float>(sum - 131070) * (1.0F / 37837.23F);
    }

    static constexpr std::uint64_t Mix(std::uint64_t x) {
        x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
        x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
        return x ^ (x >> 31U);
    }

private:
    static constexpr std::uint64_t step = 0x9E3779B97F4A7C15U;

    std::uint64_t m_state;
};

} // namespace zelviewer
