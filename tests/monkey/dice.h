#pragma once

#include <iterator>
#include <random>

namespace zel::test {

/// All that is left to chance. The same seed gives the same throws.
class Dice {
public:
    explicit Dice(unsigned seed) : m_engine(seed) {}

    /// 0 to count - 1.
    int Any(int count) { return static_cast<int>(m_engine() % static_cast<unsigned>(count)); }
    bool OneIn(int count) { return Any(count) == 0; }
    float Between(float low, float high) {
        return low + (high - low) * static_cast<float>(m_engine() % 1'000'000) * 1e-6F;
    }
    template <typename Choices>
    auto Of(const Choices& choices) {
        return *(std::begin(choices) + Any(static_cast<int>(std::size(choices))));
    }

private:
    std::mt19937 m_engine;
};

} // namespace zel::test
