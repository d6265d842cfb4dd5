#include "histogram/zel_histogramcount.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

namespace zel {

namespace {

/// Positions that are worked out at a time, so that they stay in the cache nearest to the processor.
constexpr std::size_t block = 1024;

/// 32-bit counters, four side by side for each number: adding to the one that was just added to waits for it, and
/// images have long runs of background.
class SideBySide {
public:
    static constexpr std::size_t tables = 4;
    /// As many values may be added before AddTo: then not even a single counter can overflow.
    static constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();

    explicit SideBySide(std::size_t n) : length(n), counters(n * tables) {}

    /// Every number must lie below the length.
    template <typename N>
    void Count(const N* first, std::size_t number, std::size_t stride) {
        std::uint32_t* const a = counters.data();
        std::uint32_t* const b = a + length;
        std::uint32_t* const c = b + length;
        std::uint32_t* const d = c + length;
        std::size_t i = 0;
        for (; i + tables <= number; i += tables) {
            const N* const at = first + i * stride;
            ++a[at[0]];
            ++b[at[stride]];
            ++c[at[2 * stride]];
            ++d[at[3 * stride]];
        }
        for (; i < number; ++i)
            ++a[first[i * stride]];
    }

    /// Calls add(number, count) for each number that came up, and starts anew.
    template <typename Add>
    void AddUp(Add&& add) {
        for (std::size_t i = 0; i < length; ++i) {
            std::size_t sum = 0;
            for (std::size_t t = 0; t < tables; ++t)
                sum += counters[t * length + i];
            if (sum != 0)
                add(i, sum);
        }
        std::fill(counters.begin(), counters.end(), 0U);
    }

private:
    std::size_t length;
    std::vector<std::uint32_t> counters;
};

template <typename T>
void CountOneByOne(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    for (std::size_t i = 0; i < number; ++i)
        ++histogram.GetBin(first[i * stride]);
}

/// Numbers of few bits are counted as they are, and each then gives its count to its bin.
template <typename T>
void CountByNumber(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    SideBySide counters(std::size_t{std::numeric_limits<T>::max()} + 1);
    for (std::size_t done = 0; done < number; done += SideBySide::most) {
        counters.Count(first + done * stride, std::min(number - done, SideBySide::most), stride);
        counters.AddUp([&](std::size_t i, std::size_t sum) { histogram.GetBin(static_cast<T>(i)) += sum; });
    }
}

/// Histogram::GetBinPos of many values, for finite centers and at most 2^31 bins.
template <typename T>
void FindPositions(const T* values, std::size_t number, const Histogram<T>& histogram, std::uint32_t* positions) {
    const double first = static_cast<double>(histogram.GetLeftCenter());
    const double last = static_cast<double>(histogram.GetRightCenter());
    const double range = last - first;
    const double top = static_cast<double>(histogram.size() - 1);
    for (std::size_t i = 0; i < number; ++i) {
        const double value = static_cast<double>(values[i]);
        double position = (value - first) * top / range;
        position = position < top ? position : top;
        position = value >= last ? top : position;
        position = value > first ? position : 0.0;
        positions[i] = static_cast<std::uint32_t>(static_cast<std::int32_t>(position));
    }
}

/// Takes the values block by block: count(positions, number of them).
template <typename T, typename Count>
void CountBlocks(const T* first, std::size_t number, std::size_t stride, const Histogram<T>& histogram, Count&& count) {
    std::array<T, block> values;
    std::array<std::uint32_t, block> positions;
    for (std::size_t done = 0; done < number; done += block) {
        const std::size_t part = std::min(number - done, block);
        const T* source = first + done * stride;
        if (stride != 1) {
            for (std::size_t i = 0; i < part; ++i)
                values[i] = source[i * stride];
            source = values.data();
        }
        FindPositions(source, part, histogram, positions.data());
        count(positions.data(), part);
    }
}

template <typename T>
void CountByPosition(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    constexpr std::size_t smallTable = 65536; // four of them fit the second cache
    if (histogram.size() > smallTable || number < histogram.size()) {
        CountBlocks(first, number, stride, histogram, [&](const std::uint32_t* positions, std::size_t part) {
            for (std::size_t i = 0; i < part; ++i)
                ++histogram[positions[i]];
        });
        return;
    }
    SideBySide counters(histogram.size());
    for (std::size_t done = 0; done < number; done += SideBySide::most) {
        CountBlocks(first + done * stride, std::min(number - done, SideBySide::most), stride, histogram,
                    [&](const std::uint32_t* positions, std::size_t part) { counters.Count(positions, part, 1); });
        counters.AddUp([&](std::size_t i, std::size_t sum) { histogram[i] += sum; });
    }
}

template <typename T>
bool HasPlainCenters(const Histogram<T>& histogram) {
    return std::isfinite(static_cast<double>(histogram.GetLeftCenter())) &&
           std::isfinite(static_cast<double>(histogram.GetRightCenter())) && histogram.size() <= std::size_t{1} << 31;
}

} // namespace

template <typename T>
void CountValues(const T* first, std::size_t number, std::size_t stride, Histogram<T>& histogram) {
    if constexpr (std::is_unsigned_v<T>) {
        if (number > std::numeric_limits<T>::max()) // fewer are counted before the tables are even cleared
            return CountByNumber(first, number, stride, histogram);
    } else if (HasPlainCenters(histogram)) {
        return CountByPosition(first, number, stride, histogram);
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
