#include "model/zel_extremes.h"

#include "core/kepcore/kep_threads.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <functional>
#include <type_traits>

namespace mor {

namespace {

template <typename N, std::size_t Channels>
struct Range {
    std::array<N, Channels> min;
    std::array<N, Channels> max;
};

/// Widens a range by single numbers. The first number that set the range stays if it is NaN, as nothing lies beyond it.
template <typename N>
void WidenBy(N& min, N& max, N value) {
    if (value < min)
        min = value;
    else if (value > max)
        max = value;
}

/// Some numbers side by side that are compared in one step. Unsigned numbers wider than a byte are compared as signed
/// ones with the highest bit turned over, which processors do in fewer steps.
template <typename N, std::size_t Bytes>
struct Lanes {
    typedef N Type __attribute__((vector_size(Bytes)));
    static constexpr N flip = 0;
};
template <std::size_t Bytes>
struct Lanes<unsigned short, Bytes> {
    typedef short Type __attribute__((vector_size(Bytes)));
    static constexpr short flip = std::numeric_limits<short>::min();
};
template <std::size_t Bytes>
struct Lanes<unsigned long long, Bytes> {
    typedef long long Type __attribute__((vector_size(Bytes)));
    static constexpr long long flip = std::numeric_limits<long long>::min();
};

/// Range of a voxel and those of a row of interleaved channels, by the rule of ComputeFrameExtremes apart from the sign
/// of zero. Every lane starts with that voxel, and all are folded at the end: the result of a minimum does not depend
/// on the order, and a NaN lane can only come from a start that is NaN, in all its lanes.
template <std::size_t Channels, std::size_t Bytes, typename N>
[[gnu::always_inline]] inline Range<N, Channels> RangeInLanes(const N* start, const N* first, std::size_t voxels) {
    using Vector = typename Lanes<N, Bytes>::Type;
    constexpr std::size_t laneCount = sizeof(Vector) / sizeof(N);
    constexpr std::size_t vectors = Channels == 3 ? 3 : 4; // so that a step is a whole number of voxels
    constexpr std::size_t step = vectors * laneCount;
    static_assert(step % Channels == 0);
    const auto turn = [](Vector& values) {
        if constexpr (Lanes<N, Bytes>::flip != 0)
            values ^= Lanes<N, Bytes>::flip;
    };

    std::array<N, step> lows;
    for (std::size_t i = 0; i < step; ++i)
        lows[i] = start[i % Channels];
    std::array<N, step> highs = lows;
    Vector low[vectors];
    Vector high[vectors];
    std::memcpy(low, lows.data(), sizeof(low));
    for (std::size_t v = 0; v < vectors; ++v) {
        turn(low[v]);
        high[v] = low[v];
    }

    const N* const end = first + voxels * Channels;
    const N* at = first;
    for (; static_cast<std::size_t>(end - at) >= step; at += step) {
        for (std::size_t v = 0; v < vectors; ++v) {
            Vector values;
            std::memcpy(&values, at + v * laneCount, sizeof(values));
            turn(values);
            low[v] = values < low[v] ? values : low[v];
            high[v] = values > high[v] ? values : high[v];
        }
    }

    for (std::size_t v = 0; v < vectors; ++v) {
        turn(low[v]);
        turn(high[v]);
    }
    std::memcpy(lows.data(), low, sizeof(low));
    std::memcpy(highs.data(), high, sizeof(high));
    Range<N, Channels> range;
    for (std::size_t c = 0; c < Channels; ++c)
        range.min[c] = range.max[c] = start[c];
    for (std::size_t i = 0; i < step; ++i) {
        WidenBy(range.min[i % Channels], range.max[i % Channels], lows[i]);
        WidenBy(range.min[i % Channels], range.max[i % Channels], highs[i]);
    }
    for (std::size_t c = 0; at != end; ++at, c = (c + 1) % Channels)
        WidenBy(range.min[c], range.max[c], *at);
    return range;
}

#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
template <std::size_t Channels, typename N>
[[gnu::target("avx2")]] Range<N, Channels> RangeByAvx2(const N* start, const N* first, std::size_t voxels) {
    return RangeInLanes<Channels, 32>(start, first, voxels);
}
template <std::size_t Channels, typename N>
Range<N, Channels> RangeByProcessor(const N* start, const N* first, std::size_t voxels) {
    static const bool newer = __builtin_cpu_supports("avx2") != 0;
    return newer ? RangeByAvx2<Channels>(start, first, voxels) : RangeInLanes<Channels, 16>(start, first, voxels);
}
#else
template <std::size_t Channels, typename N>
Range<N, Channels> RangeByProcessor(const N* start, const N* first, std::size_t voxels) {
    return RangeInLanes<Channels, 16>(start, first, voxels);
}
#endif

/// Range of each channel. Of several zeros with different signs the first one counts, as zeros do not replace each
/// other.
template <std::size_t Channels, typename N>
Range<N, Channels> RangeOfChannels(const N* start, const N* first, std::size_t voxels) {
    Range<N, Channels> range = RangeByProcessor<Channels>(start, first, voxels);
    if constexpr (std::is_floating_point_v<N>) {
        for (std::size_t c = 0; c < Channels; ++c) {
            if (range.min[c] != 0 && range.max[c] != 0)
                continue;
            N zero = start[c];
            for (std::size_t i = 0; zero != 0; ++i)
                zero = first[i * Channels + c];
            if (range.min[c] == 0)
                range.min[c] = zero;
            if (range.max[c] == 0)
                range.max[c] = zero;
        }
    }
    return range;
}

/// Range of sqrt(re * re + im * im). The root is monotone in its rounded form too, so only two are drawn.
template <typename F>
Range<F, 1> RangeOfAmplitude(const std::complex<F>& start, const std::complex<F>* first, std::size_t voxels) {
    const auto square = [](const std::complex<F>& v) { return v.real() * v.real() + v.imag() * v.imag(); };
    constexpr std::size_t lanes = 8;
    std::array<F, lanes> low;
    std::array<F, lanes> high;
    low.fill(square(start));
    high.fill(square(start));
    const std::complex<F>* const end = first + voxels;
    const std::complex<F>* at = first;
    for (; static_cast<std::size_t>(end - at) >= lanes; at += lanes) {
        for (std::size_t i = 0; i < lanes; ++i) {
            const F value = square(at[i]);
            low[i] = value < low[i] ? value : low[i];
            high[i] = value > high[i] ? value : high[i];
        }
    }
    for (; at != end; ++at)
        WidenBy(low[0], high[0], square(*at));
    return {{std::sqrt(*std::min_element(low.begin(), low.end()))},
            {std::sqrt(*std::max_element(high.begin(), high.end()))}};
}

/// A number from -2 to 2 that grows with the phase, by at most as much. A sum |re| + |im| that is infinite or not a
/// number gives no sense.
template <typename F>
F CheapAngle(F re, F im, F sum) {
    const F slope = sum == 0 ? F(0) : std::fabs(im) / sum;
    const F turn = F(1) - std::copysign(F(1), re); // 0 on the right, 2 on the left: signs are random, so no branch
    return std::copysign(std::fabs(turn - slope), im);
}

/// Range of atan2(im, re), which is dear: it is taken only of voxels that the cheap angle does not put well inside the
/// range so far.
template <typename F>
Range<F, 1> RangeOfPhase(const std::complex<F>& start, const std::complex<F>* first, std::size_t voxels) {
    constexpr F margin = F(1e-5); // far above the roundings of both angles, in single precision too
    F min = std::atan2(start.imag(), start.real());
    F max = min;
    if (std::isnan(min))
        return {{min}, {max}};
    F innerMin = std::numeric_limits<F>::infinity();
    F innerMax = -innerMin;
    for (std::size_t i = 0; i < voxels; ++i) {
        const F re = first[i].real();
        const F im = first[i].imag();
        const F sum = std::fabs(re) + std::fabs(im);
        const bool sensible = sum <= std::numeric_limits<F>::max();
        const F cheap = CheapAngle(re, im, sum);
        if (sensible && cheap > innerMin && cheap < innerMax)
            continue;
        const F phase = std::atan2(im, re);
        WidenBy(min, max, phase);
        if (sensible && phase == min)
            innerMin = std::min(innerMin, cheap + margin);
        if (sensible && phase == max)
            innerMax = std::max(innerMax, cheap - margin);
    }
    return {{min}, {max}};
}

/// The extremes of a voxel and those of a row.
template <typename T>
void SetExtremes(const T& start, const T* first, std::size_t voxels, ExtremaValues<T>& extremes) {
    const auto range = RangeOfChannels<1>(&start, first, voxels);
    extremes.min = range.min[0];
    extremes.max = range.max[0];
}

template <typename C>
void SetExtremes(const kep::RGB_generic<C>& start, const kep::RGB_generic<C>* first, std::size_t voxels,
                 ExtremaValues<kep::RGB_generic<C>>& extremes) {
    const auto range = RangeOfChannels<3>(&start.red, &first->red, voxels);
    extremes.min = {range.min[0], range.min[1], range.min[2]};
    extremes.max = {range.max[0], range.max[1], range.max[2]};
}

template <typename F>
void SetExtremes(const std::complex<F>& start, const std::complex<F>* first, std::size_t voxels,
                 ExtremaValues<std::complex<F>>& extremes) {
    const auto parts =
        RangeOfChannels<2>(reinterpret_cast<const F*>(&start), reinterpret_cast<const F*>(first), voxels);
    const auto amplitude = RangeOfAmplitude(start, first, voxels);
    const auto phase = RangeOfPhase(start, first, voxels);
    extremes.min = {parts.min[0], parts.min[1]};
    extremes.max = {parts.max[0], parts.max[1]};
    extremes.amplitudeMin = amplitude.min[0];
    extremes.amplitudeMax = amplitude.max[0];
    extremes.phaseMin = phase.min[0];
    extremes.phaseMax = phase.max[0];
}

} // namespace

template <typename T>
void RunningExtremes<T>::Add(const T* first, std::size_t number) {
    constexpr std::size_t partBytes = std::size_t{4} << 20; // worth a thread
    constexpr std::size_t mostParts = 64;                   // more threads than memory can feed
    if (number == 0)
        return;
    if (voxels == 0)
        start = *first;
    const std::size_t parts =
        std::clamp<std::size_t>(number * sizeof(T) / partBytes, 1, std::min(mostParts, kep::GetThreadLimit()));
    // Nothing here takes memory, or could fail otherwise: sequences measure frames that they own already.
    std::array<ExtremaValues<T>, mostParts> found;
    const auto measure = [&](std::size_t i) {
        const std::size_t from = number / parts * i;
        const std::size_t until = i + 1 == parts ? number : number / parts * (i + 1);
        SetExtremes(start, first + from, until - from, found[i]);
    };
    kep::ForEachPart(parts, std::cref(measure));
    if (voxels == 0)
        values = found.front();
    for (std::size_t i = 0; i < parts; ++i)
        values.Merge(found[i]);
    voxels += number;
}

template <typename T>
void ComputeFrameExtremes(const kep::Image3d<T>& frame, ExtremaValues<T>& extremes) {
    if (frame.IsEmpty())
        return;
    RunningExtremes<T> running;
    running.Add(frame.GetFirstVoxelAddr(), frame.GetNumVoxels());
    extremes = running.Get();
}

template <typename T>
void MergeFrameExtremes(const kep::Image3d<T>& frame, ExtremaValues<T>& extremes) {
    if (frame.IsEmpty())
        return;
    ExtremaValues<T> own;
    ComputeFrameExtremes(frame, own);
    extremes.Merge(own);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template class RunningExtremes<T>;                                                                                 \
    template ZEL_EXPORT void ComputeFrameExtremes<T>(const kep::Image3d<T>&, ExtremaValues<T>&);                       \
    template ZEL_EXPORT void MergeFrameExtremes<T>(const kep::Image3d<T>&, ExtremaValues<T>&);
KEP_CONTAINER_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace mor
