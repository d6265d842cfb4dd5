#include "model/zel_histogramcount.h"

#include "model/count/zel_counttables.h"
#include "model/count/zel_guesser.h"
#include "model/count/zel_valueblocks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace zel {

namespace {

template <typename T>
void CountOneByOne(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    for (std::size_t i = 0; i < number; ++i)
        ++histogram.GetBin(first[i * stride]);
}

/// Numbers of few bits are counted as they are, and each then gives its count to its bin.
template <typename T>
void CountByNumber(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    detail::CountInTwo(
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
    detail::CountInTwo(
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
    detail::CountInTwo(
        histogram.size(), number,
        [=, &guesser](auto& counters, std::size_t from, std::size_t part) {
            detail::ForBlocks(first + from * stride, part, stride,
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
            if (useTables && detail::Guesser::CanGuess(histogram))
                return CountByGuess(first, number, stride, histogram);
        }
        return CountByDivision(first, number, stride, histogram);
    }
    CountOneByOne(first, number, stride, histogram);
}

void CountValues(const std::complex<float>* first, std::size_t number, ComplexHistograms& histograms) {
    constexpr std::size_t most = 4096;
    std::array<std::array<float, most>, 4> channels;
    for (std::size_t done = 0; done < number; done += most) {
        const std::size_t part = std::min(number - done, most);
        const std::complex<float>* const at = first + done;
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
