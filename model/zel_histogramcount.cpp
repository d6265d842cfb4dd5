#include "model/zel_histogramcount.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <future>
#include <limits>
#include <memory>
#include <new>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace zel {

namespace {

/// 32-bit counters, several side by side for each number: adding to the one that was just added to waits for it, and
/// images have much background. Eight are needed where values share few bins; with many bins four stay in the caches.
template <std::size_t tables>
class SideBySide {
public:
    /// As many values may be counted before AddUp: then not even a single counter can overflow.
    static constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();

    /// For numbers below n.
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
        for (; i < number; ++i) {
            const N value = first[i * stride];
            ++counters[i % tables][value];
            used |= value;
        }
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

/// Counts numbers below `length`, many of them in two threads: processors store one counter at a time, which takes much
/// longer than reading the voxels.
/// @param count  called with counters and a part of the values, from its first on; throws nothing
/// @param add    gets the counts of each number that came up
template <std::size_t tables, typename Count, typename Add>
void CountInTables(std::size_t length, std::size_t number, Count&& count, Add&& add) {
    constexpr std::size_t worthwhile = 500000; // a thread takes as long to start as some ten thousand values to count
    const bool two = number >= worthwhile && std::thread::hardware_concurrency() > 1;
    SideBySide<tables> counters(length);
    SideBySide<tables> others(two ? length : 0);
    for (std::size_t done = 0; done < number; done += counters.most) {
        const std::size_t part = std::min(number - done, counters.most);
        const std::size_t half = two ? part / 2 : 0;
        // Where there is no thread to be had, it runs in the call of get().
        auto other = std::async(two ? std::launch::async | std::launch::deferred : std::launch::deferred,
                                [&] { count(others, done + part - half, half); });
        count(counters, done, part - half);
        other.get();
        counters.AddUp(add);
        others.AddUp(add);
    }
}

template <typename Count, typename Add>
void CountInTwo(std::size_t length, std::size_t number, Count&& count, Add&& add) {
    if (length <= 1024)
        CountInTables<8>(length, number, count, add);
    else
        CountInTables<4>(length, number, count, add);
}

template <typename T>
void CountOneByOne(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    for (std::size_t i = 0; i < number; ++i)
        ++histogram.GetBin(first[i * stride]);
}

/// Numbers of few bits are counted as they are, and each then gives its count to its bin.
template <typename T>
void CountByNumber(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    CountInTwo(
        std::size_t{std::numeric_limits<T>::max()} + 1, number,
        [=](auto& counters, std::size_t from, std::size_t part) {
            counters.Count(first + from * stride, part, stride);
        },
        [&](std::size_t i, std::size_t sum) { histogram.GetBin(static_cast<T>(i)) += sum; });
}

/// Values that are worked on at a time, so that they stay in the cache nearest to the processor.
constexpr std::size_t block = 1024;

/// Calls work(values, number of them) with the values block by block, side by side.
template <typename T, typename Work>
void ForBlocks(const T* first, std::size_t number, std::size_t stride, Work&& work) {
    std::array<T, block> gathered;
    for (std::size_t done = 0; done < number; done += block) {
        const std::size_t part = std::min(number - done, block);
        const T* const source = first + done * stride;
        if (stride == 1) {
            work(source, part);
            continue;
        }
        for (std::size_t i = 0; i < part; ++i)
            gathered[i] = source[i * stride];
        work(gathered.data(), part);
    }
}

/// Histogram::GetBinPos of many values, for finite centers and at most 2^31 bins.
template <typename T>
class Divider {
public:
    explicit Divider(const Histogram<T>& histogram)
        : first(static_cast<double>(histogram.GetLeftCenter())),
          last(static_cast<double>(histogram.GetRightCenter())),
          top(static_cast<double>(histogram.size() - 1)) {}

    void Find(const T* values, std::size_t number, std::uint32_t* positions) const {
        const double range = last - first;
        for (std::size_t i = 0; i < number; ++i) {
            const double value = static_cast<double>(values[i]);
            double position = (value - first) * top / range;
            position = position < top ? position : top;
            position = value >= last ? top : position;
            position = value > first ? position : 0.0;
            positions[i] = static_cast<std::uint32_t>(static_cast<std::int32_t>(position));
        }
    }

private:
    double first, last, top;
};

template <typename T>
void CountByDivision(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    const Divider<T> divider(histogram);
    std::array<std::uint32_t, block> positions;
    ForBlocks(first, number, stride, [&](const T* values, std::size_t part) {
        divider.Find(values, part, positions.data());
        for (std::size_t i = 0; i < part; ++i)
            ++histogram[positions[i]];
    });
}

/// One bin for each integer, as the viewer has them: the place is the distance from the first.
bool IsBinAnInteger(const Histogram<int>& histogram) {
    return static_cast<long long>(histogram.size()) - 1 ==
           static_cast<long long>(histogram.GetRightCenter()) - histogram.GetLeftCenter();
}

void CountIntegers(const int* first, std::size_t number, std::size_t stride, Histogram<int>& histogram) {
    const int low = histogram.GetLeftCenter();
    const int high = histogram.GetRightCenter();
    CountInTwo(
        histogram.size(), number,
        [=](auto& counters, std::size_t from, std::size_t part) {
            std::array<int, block> places;
            ForBlocks(first + from * stride, part, stride, [&](const int* values, std::size_t some) {
                for (std::size_t i = 0; i < some; ++i)
                    places[i] = std::min(std::max(values[i], low), high) - low;
                const int* const place = places.data();
                counters.CountEach(some, [place](std::size_t i) { return static_cast<std::size_t>(place[i]); });
            });
        },
        [&](std::size_t i, std::size_t sum) { histogram[i] += sum; });
}

/// Bins of floats without a division: a guess in single precision, at most one bin too low, and where that may be, the
/// least value of the next bin, which decides.
class Guesser {
public:
    /// Whether the roundings of single precision stay small enough.
    static bool CanGuess(const Histogram<float>& histogram) {
        const double range = GetRange(histogram);
        return histogram.size() >= 2 && histogram.size() <= 65536 && range > 0 &&
               range <= std::numeric_limits<float>::max() &&
               GetScale(histogram) >= 2 * std::numeric_limits<float>::min() &&
               GetScale(histogram) <= std::numeric_limits<float>::max() / 2;
    }

    explicit Guesser(const Histogram<float>& histogram)
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

private:
    /// More than the three roundings of a guess add up to: the last center's own stays below the last bin.
    static constexpr double rounding = 0x1p-21;

    static double GetRange(const Histogram<float>& histogram) {
        return static_cast<double>(histogram.GetRightCenter()) - static_cast<double>(histogram.GetLeftCenter());
    }
    /// The least value in a bin or above it. Floats are searched by their rank among all floats, away from a value that
    /// is close by and in wider and wider steps: near 0 they lie so dense that many share what a double makes of them.
    static float FindLeast(const Histogram<float>& histogram, std::size_t bin, float near) {
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
    static std::int64_t ToRank(float value) {
        const auto bits = std::bit_cast<std::int32_t>(value);
        return bits < 0 ? std::int64_t{std::numeric_limits<std::int32_t>::min()} - bits : bits;
    }
    static float FromRank(std::int64_t rank) {
        return std::copysign(std::bit_cast<float>(static_cast<std::int32_t>(std::abs(rank))), rank < 0 ? -1.0F : 1.0F);
    }

    /// Bins for each unit.
    static double GetScale(const Histogram<float>& histogram) {
        return static_cast<double>(histogram.size() - 1) / GetRange(histogram);
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

void CountByGuess(const float* first, std::size_t number, std::size_t stride, Histogram<float>& histogram) {
    const Guesser guesser(histogram);
    CountInTwo(
        histogram.size(), number,
        [=, &guesser](auto& counters, std::size_t from, std::size_t part) {
            ForBlocks(first + from * stride, part, stride,
                      [&](const float* values, std::size_t some) { guesser.Count(values, some, counters); });
        },
        [&](std::size_t i, std::size_t sum) { histogram[i] += sum; });
}

template <typename T>
bool HasPlainCenters(const Histogram<T>& histogram) {
    return std::isfinite(static_cast<double>(histogram.GetLeftCenter())) &&
           std::isfinite(static_cast<double>(histogram.GetRightCenter())) && histogram.size() <= std::size_t{1} << 31;
}

} // namespace

template <typename T>
void CountValues(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    // Tables are worth while from a few values a bin on, and as long as they stay in the caches.
    [[maybe_unused]] const bool useTables = histogram.size() <= 65536 && number / 4 >= histogram.size();
    if constexpr (std::is_unsigned_v<T>) {
        if (number > std::numeric_limits<T>::max())
            return CountByNumber(first, number, stride, histogram);
    } else if (HasPlainCenters(histogram)) {
        if constexpr (std::is_same_v<T, int>) {
            if (useTables && IsBinAnInteger(histogram))
                return CountIntegers(first, number, stride, histogram);
        } else {
            if (useTables && Guesser::CanGuess(histogram))
                return CountByGuess(first, number, stride, histogram);
        }
        return CountByDivision(first, number, stride, histogram);
    }
    CountOneByOne(first, number, stride, histogram);
}

void CountFrame(const kep::Image3d<std::complex<float>>& frame, ComplexHistograms& histograms) {
    constexpr std::size_t most = 4096;
    std::array<std::array<float, most>, 4> channels;
    const std::size_t number = frame.GetNumVoxels();
    for (std::size_t done = 0; done < number; done += most) {
        const std::size_t part = std::min(number - done, most);
        const std::complex<float>* const at = frame.begin() + done;
        for (std::size_t i = 0; i < part; ++i) {
            const float re = at[i].real();
            const float im = at[i].imag();
            channels[0][i] = re;
            channels[1][i] = im;
            channels[2][i] = std::atan2(im, re);
            channels[3][i] = std::sqrt(re * re + im * im);
        }
        for (std::size_t c = 0; c < channels.size(); ++c)
            CountValues(channels[c].data(), part, 1, histograms[c]);
    }
}

#define ZEL_INSTANTIATE(T) template ZEL_EXPORT void CountValues<T>(const T*, std::size_t, std::size_t, Histogram<T>&);
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
