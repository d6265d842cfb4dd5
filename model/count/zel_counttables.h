#pragma once

// Private to the model: counters that are quick to add to, and the sharing of values between threads.

#include "core/kepcore/kep_threads.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace zel::detail {

/// 32-bit counters, several side by side for each number: adding to the one that was just added to waits for it, and
/// images have much background. Eight are needed where values share few bins; with many bins four stay in the caches.
template <std::size_t tables>
class SideBySide {
public:
    /// For numbers below n. Up to 2^32 values may be counted before they are added up.
    explicit SideBySide(std::size_t n)
        : length(n),
          // Cleared by the system, page by page where it is touched: most images use a small part of 65536 numbers.
          memory(static_cast<std::uint32_t*>(std::calloc((n + gap) * tables, sizeof(std::uint32_t)))) {
        if (!memory)
            throw std::bad_alloc();
    }

    /// Reads first[0], first[stride], ...
    template <typename N>
    void Count(const N* first, std::size_t number, std::size_t stride) {
        const Tables counters = GetTables();
        std::size_t i = 0;
        if (stride == 1) {
            std::uint64_t seen = 0;
            for (; i + step <= number; i += step)
                seen |= CountStep(first + i, counters);
            for (std::size_t k = 0; k < perWord<N>; ++k)
                used |= Get<N>(seen, k);
        }
        std::uint32_t bits = 0; // a member would be stored for each value, in a line that the other thread may share
        const auto count = [&](std::size_t at, std::size_t table) {
            const N value = first[at * stride];
            ++counters[table][value];
            bits |= value;
        };
        for (; i + tables <= number; i += tables)
            for (std::size_t k = 0; k < tables; ++k)
                count(i + k, k);
        for (; i < number; ++i)
            count(i, 0);
        used |= bits;
    }

    /// Counts the numbers at(0), at(1), ... up to `number`.
    template <typename At>
    [[gnu::always_inline]] void CountEach(std::size_t number, At at) {
        const Tables counters = GetTables();
        std::size_t i = 0;
        for (; i + tables <= number; i += tables) {
            ++counters[0][at(i)];
            ++counters[1][at(i + 1)];
            ++counters[2][at(i + 2)];
            ++counters[3][at(i + 3)];
            if constexpr (tables == 8) {
                ++counters[4][at(i + 4)];
                ++counters[5][at(i + 5)];
                ++counters[6][at(i + 6)];
                ++counters[7][at(i + 7)];
            }
        }
        for (; i < number; ++i)
            ++counters[0][at(i)];
        used = std::numeric_limits<std::uint32_t>::max();
    }

    /// Counts numbers in turns: the first one in the first table, the next in the second, and so on.
    /// @param number  a multiple of the tables
    void CountInTurns(const std::uint16_t* first, std::size_t number) {
        const Tables counters = GetTables();
        for (std::size_t i = 0; i < number; i += tables)
            for (std::size_t k = 0; k < tables; ++k)
                ++counters[k][first[i + k]];
        used = std::numeric_limits<std::uint32_t>::max();
    }

    /// Calls add(table, number, count) for what CountInTurns has counted, and starts anew.
    template <typename Add>
    void AddUpTables(const Add& add) {
        const std::size_t end = std::min(length, std::size_t{used} + 1);
        const Tables counters = GetTables();
        for (std::size_t k = 0; k < tables; ++k)
            for (std::size_t i = 0; i < end; ++i)
                if (const std::size_t sum = std::exchange(counters[k][i], 0U); sum != 0)
                    add(k, i, sum);
        used = 0;
    }

    /// Calls add(number, count) for each number that came up, and starts anew.
    template <typename Add>
    void AddUp(Add&& add) {
        // No number was greater than all their bits together.
        const std::size_t end = std::min(length, std::size_t{used} + 1);
        const Tables counters = GetTables();
        for (std::size_t i = 0; i < end; ++i) {
            std::size_t sum = 0;
            for (std::uint32_t* const table : counters)
                sum += std::exchange(table[i], 0U);
            if (sum != 0)
                add(i, sum);
        }
        used = 0;
    }

private:
    using Tables = std::array<std::uint32_t*, tables>;
    static constexpr std::size_t gap = 16; // processors take addresses that are whole pages apart for the same one
    static constexpr std::size_t step = 8; // numbers, one 64-bit word for each byte of the type

    template <typename N>
    static constexpr std::size_t perWord = sizeof(std::uint64_t) / sizeof(N);
    template <typename N>
    static N Get(std::uint64_t word, std::size_t i) {
        return static_cast<N>(word >> (i * 8 * sizeof(N)));
    }

    /// @return all bits of all words
    template <typename N>
    [[gnu::always_inline]] static std::uint64_t CountStep(const N* first, const Tables& counters) {
        std::array<std::uint64_t, sizeof(N)> words;
        std::memcpy(words.data(), first, sizeof words);
        bool uniform = words[0] == std::rotl(words[0], 8 * sizeof(N));
        for (std::size_t w = 1; uniform && w < words.size(); ++w)
            uniform = words[w] == words[0];
        if (uniform) {
            counters[0][Get<N>(words[0], 0)] += step;
            return words[0];
        }
        std::uint64_t seen = 0;
        for (std::size_t w = 0; w < words.size(); ++w) {
            for (std::size_t i = 0; i < perWord<N>; ++i)
                ++counters[(w * perWord<N> + i) % tables][Get<N>(words[w], i)];
            seen |= words[w];
        }
        return seen;
    }

    Tables GetTables() {
        Tables found;
        for (std::size_t i = 0; i < tables; ++i)
            found[i] = memory.get() + i * (length + gap);
        return found;
    }

    struct Free {
        void operator()(std::uint32_t* block) const { std::free(block); }
    };
    std::size_t length;
    std::unique_ptr<std::uint32_t[], Free> memory;
    std::uint32_t used = 0; ///< all bits of all numbers counted
};

/// How many threads share the counting of so many values: a thread takes as long to start as some ten thousand.
inline std::size_t GetCountingParts(std::size_t number) {
    constexpr std::size_t worthwhile = 250000;
    constexpr std::size_t most = 16; // more would take longer to add up than they gain
    return std::clamp<std::size_t>(number / worthwhile, 1, std::min(kep::GetThreadLimit(), most));
}

/// Shares values out to threads, each with counters of its own: processors store one counter at a time, which takes
/// much longer than reading the voxels.
/// @param counters  one for each part
/// @param count     called with counters, the first value and the number of values of a part; throws nothing
/// @param addUp     called with counters, which start anew then
template <typename Counters, typename Count, typename AddUp>
void CountInParts(std::vector<Counters>& counters, std::size_t number, const Count& count, const AddUp& addUp) {
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max() / 2; // then no counter can overflow
    const std::size_t parts = counters.size();
    for (std::size_t done = 0; done < number; done += most) {
        const std::size_t now = std::min(number - done, most);
        kep::ForEachPart(parts, [&](std::size_t i) {
            const std::size_t from = now * i / parts;
            count(counters[i], done + from, now * (i + 1) / parts - from);
        });
        for (Counters& some : counters)
            addUp(some);
    }
}

/// Counts numbers below `length`.
/// @param count  as CountInParts has it
/// @param add    gets the counts of each number that came up
template <std::size_t tables, typename Count, typename Add>
void CountInTables(std::size_t length, std::size_t number, const Count& count, const Add& add) {
    std::vector<SideBySide<tables>> counters;
    const std::size_t parts = GetCountingParts(number);
    counters.reserve(parts);
    while (counters.size() < parts)
        counters.emplace_back(length);
    CountInParts(counters, number, count, [&](SideBySide<tables>& some) { some.AddUp(add); });
}

/// The same, with as many counters for each number as suit the length.
template <typename Count, typename Add>
void CountInParts(std::size_t length, std::size_t number, const Count& count, const Add& add) {
    if (length <= 1024)
        CountInTables<8>(length, number, count, add);
    else
        CountInTables<4>(length, number, count, add);
}

} // namespace zel::detail
