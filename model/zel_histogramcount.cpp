#include "model/zel_histogramcount.h"

#include "model/count/zel_complexcount.h"
#include "model/count/zel_counttables.h"
#include "model/count/zel_guesser.h"
#include "model/count/zel_valueblocks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

namespace zel {

namespace {

template <typename T>
void CountOneByOne(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    for (std::size_t i = 0; i < number; ++i)
        ++histogram.GetBin(first[i * stride]);
}

/// The bytes of a word in the order of memory.
constexpr std::array<std::size_t, 2> SplitWord(std::size_t word) {
    const std::size_t low = word & 0xFFU;
    const std::size_t high = word >> 8U;
    return std::endian::native == std::endian::little ? std::array{low, high} : std::array{high, low};
}

/// Bytes are counted two at a time, which halves the work for the processor's stores.
void CountPairs(const unsigned char* first, std::size_t pairs, Histogram<unsigned char>& histogram) {
    detail::CountInTables<2>( // more would not stay in the caches, if bytes of all values follow each other
        65536, pairs,
        [=](auto& counters, std::size_t from, std::size_t part) {
            std::array<std::uint16_t, detail::blockOfValues> words;
            for (std::size_t done = 0; done < part; done += words.size()) {
                const std::size_t some = std::min(part - done, words.size());
                std::memcpy(words.data(), first + 2 * (from + done), 2 * some);
                counters.Count(words.data(), some, 1);
            }
        },
        [&](std::size_t word, std::size_t sum) {
            for (const std::size_t value : SplitWord(word))
                histogram.GetBin(static_cast<unsigned char>(value)) += sum;
        });
}

/// Colours are counted in words of 16 bits: three words are a voxel of words, or two voxels of bytes.
/// @param add  add(which of the three words, its value, count)
template <typename Add>
void CountThreeWords(const void* first, std::size_t threes, const Add& add) {
    constexpr std::size_t tables = 3;
    std::vector<detail::SideBySide<tables>> counters;
    const std::size_t parts = detail::GetCountingParts(3 * threes);
    counters.reserve(parts);
    while (counters.size() < parts)
        counters.emplace_back(65536);
    const auto count = [=](detail::SideBySide<tables>& some, std::size_t from, std::size_t number) {
        std::array<std::uint16_t, 1023> words;
        const auto* const bytes = static_cast<const unsigned char*>(first) + 6 * from;
        for (std::size_t done = 0; done < 3 * number; done += words.size()) {
            const std::size_t now = std::min(3 * number - done, words.size());
            std::memcpy(words.data(), bytes + 2 * done, 2 * now);
            some.CountInTurns(words.data(), now);
        }
    };
    const auto addUp = [&](detail::SideBySide<tables>& some) {
        some.AddUpTables([&](std::size_t table, std::size_t word, std::size_t sum) { add(table, word, sum); });
    };
    detail::CountInParts(counters, threes, count, addUp);
}

/// Numbers of few bits are counted as they are, and each then gives its count to its bin.
template <typename T>
void CountByNumber(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    detail::CountInParts(
        std::size_t{std::numeric_limits<T>::max()} + 1, number,
        [=](auto& counters, std::size_t from, std::size_t part) {
            counters.Count(first + from * stride, part, stride);
        },
        [&](std::size_t i, std::size_t sum) { histogram.GetBin(static_cast<T>(i)) += sum; });
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
    std::array<std::uint32_t, detail::blockOfValues> positions;
    detail::ForBlocks(first, number, stride, [&](const T* values, std::size_t part) {
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
    detail::CountInParts(
        histogram.size(), number,
        [=](auto& counters, std::size_t from, std::size_t part) {
            std::array<int, detail::blockOfValues> places;
            detail::ForBlocks(first + from * stride, part, stride, [&](const int* values, std::size_t some) {
                for (std::size_t i = 0; i < some; ++i)
                    places[i] = std::min(std::max(values[i], low), high) - low;
                const int* const place = places.data();
                counters.CountEach(some, [place](std::size_t i) { return static_cast<std::size_t>(place[i]); });
            });
        },
        [&](std::size_t i, std::size_t sum) { histogram[i] += sum; });
}

void CountByGuess(const float* first, std::size_t number, std::size_t stride, Histogram<float>& histogram) {
    const detail::Guesser guesser(histogram);
    detail::CountInParts(
        histogram.size(), number,
        [=, &guesser](auto& counters, std::size_t from, std::size_t part) {
            detail::ForBlocks(first + from * stride, part, stride,
                              [&](const float* values, std::size_t some) { guesser.Count(values, some, counters); });
        },
        [&](std::size_t i, std::size_t sum) { histogram[i] += sum; });
}

/// So many bytes, or voxels of them, are worth tables of words.
constexpr std::size_t enoughForWords = 1000000;

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
    if constexpr (std::is_same_v<T, unsigned char>) {
        if (stride == 1 && number >= enoughForWords) {
            CountPairs(first, number / 2, histogram);
            return CountOneByOne(first + number / 2 * 2, number % 2, 1, histogram);
        }
    }
    if constexpr (std::is_unsigned_v<T>) {
        if (number > std::numeric_limits<T>::max())
            return CountByNumber(first, number, stride, histogram);
    } else if (HasPlainCenters(histogram)) {
        if constexpr (std::is_same_v<T, int>) {
            if (useTables && IsBinAnInteger(histogram))
                return CountIntegers(first, number, stride, histogram);
        } else {
            if (useTables && detail::Guesser::CanGuess(histogram))
                return CountByGuess(first, number, stride, histogram);
        }
        return CountByDivision(first, number, stride, histogram);
    }
    CountOneByOne(first, number, stride, histogram);
}

template <typename C>
void CountValues(const kep::RGB_generic<C>* first, std::size_t number, const std::array<Histogram<C>*, 3>& histograms) {
    static_assert(sizeof(kep::RGB_generic<C>) == 3 * sizeof(C));
    const auto add = [&](std::size_t channel, std::size_t value, std::size_t sum) {
        histograms[channel]->GetBin(static_cast<C>(value)) += sum;
    };
    std::size_t done = 0;
    if constexpr (sizeof(C) == 1) {
        if (number >= enoughForWords) {
            done = number / 2 * 2;
            CountThreeWords(first, done / 2, [&](std::size_t which, std::size_t word, std::size_t sum) {
                const auto values = SplitWord(word);
                add(2 * which % 3, values[0], sum);
                add((2 * which + 1) % 3, values[1], sum);
            });
        }
    } else if (number > std::numeric_limits<C>::max()) {
        done = number;
        CountThreeWords(first, done, add);
    }
    if (done < number)
        for (std::size_t channel = 0; channel < 3; ++channel)
            CountValues(&first[done].red + channel, number - done, 3, *histograms[channel]);
}

namespace {

/// Counts the parts that can be guessed in one pass.
template <std::size_t tables>
void CountByGuess(const std::complex<float>* first, std::size_t number, const detail::ComplexGuessers& guessers,
                  ComplexHistograms& histograms) {
    using Counters = std::array<detail::SideBySide<tables>, 4>;
    std::vector<Counters> counters;
    const std::size_t parts = detail::GetCountingParts(4 * number);
    counters.reserve(parts);
    const auto make = [&](std::size_t c) { return detail::SideBySide<tables>(guessers[c] ? histograms[c].size() : 0); };
    while (counters.size() < parts)
        counters.push_back({make(0), make(1), make(2), make(3)});
    const auto count = [&](Counters& some, std::size_t from, std::size_t part) {
        detail::CountComplex(first + from, part, guessers, some);
    };
    const auto addUp = [&](Counters& some) {
        for (std::size_t c = 0; c < some.size(); ++c)
            some[c].AddUp([&](std::size_t i, std::size_t sum) { histograms[c][i] += sum; });
    };
    detail::CountInParts(counters, number, count, addUp);
}

/// Counts one part of complex values, which is computed beforehand.
template <typename Compute>
void CountPart(const std::complex<float>* first, std::size_t number, const Compute& compute,
               Histogram<float>& histogram) {
    std::array<float, 4096> values;
    for (std::size_t done = 0; done < number; done += values.size()) {
        const std::size_t part = std::min(number - done, values.size());
        std::transform(first + done, first + done + part, values.begin(), compute);
        CountValues(values.data(), part, 1, histogram);
    }
}

} // namespace

void CountValues(const std::complex<float>* first, std::size_t number, ComplexHistograms& histograms) {
    detail::ComplexGuessers guessers;
    std::size_t longest = 0;
    for (std::size_t c = 0; c < histograms.size(); ++c) {
        const Histogram<float>& histogram = histograms[c];
        if (HasPlainCenters(histogram) && number / 4 >= histogram.size() && detail::Guesser::CanGuess(histogram)) {
            guessers[c].emplace(histogram);
            longest = std::max(longest, histogram.size());
        }
    }
    if (longest > 1024)
        CountByGuess<4>(first, number, guessers, histograms);
    else if (longest > 0)
        CountByGuess<8>(first, number, guessers, histograms);

    using Value = std::complex<float>;
    if (!guessers[0])
        CountPart(
            first, number, [](const Value& v) { return v.real(); }, histograms[0]);
    if (!guessers[1])
        CountPart(
            first, number, [](const Value& v) { return v.imag(); }, histograms[1]);
    if (!guessers[2])
        CountPart(
            first, number, [](const Value& v) { return std::atan2(v.imag(), v.real()); }, histograms[2]);
    if (!guessers[3])
        CountPart(
            first, number, [](const Value& v) { return std::sqrt(v.real() * v.real() + v.imag() * v.imag()); },
            histograms[3]);
}

#define ZEL_INSTANTIATE(C)                                                                                             \
    template ZEL_EXPORT void CountValues<C>(const kep::RGB_generic<C>*, std::size_t,                                   \
                                            const std::array<Histogram<C>*, 3>&);
ZEL_INSTANTIATE(unsigned char)
ZEL_INSTANTIATE(unsigned short)
#undef ZEL_INSTANTIATE

#define ZEL_INSTANTIATE(T) template ZEL_EXPORT void CountValues<T>(const T*, std::size_t, std::size_t, Histogram<T>&);
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
