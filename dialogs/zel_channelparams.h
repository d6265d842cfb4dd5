#pragma once

#include "dialogs/zel_previewevents.h"
#include "model/zel_histogram.h"
#include "model/zel_mappingparams.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace zel {

// What the levels and the thresholding dialog do with the parameters of channels, once for each kind of parameters.

/// Whether the histograms have the same layout, so that their counts can be added.
template <typename T>
bool HaveSameLayout(const std::vector<Histogram<T>*>& histograms) {
    return std::adjacent_find(histograms.begin(), histograms.end(),
                              [](const auto* one, const auto* next) { return !(*one == *next); }) == histograms.end();
}

/// The histogram of all channels together. There is at least one, and they have the same layout.
template <typename T>
Histogram<T> AddHistograms(const std::vector<Histogram<T>*>& histograms) {
    Histogram<T> sum = *histograms.front();
    for (std::size_t i = 1; i < histograms.size(); ++i)
        sum += *histograms[i];
    return sum;
}

/// Levels for all channels together: those from which no channel loses anything, without gamma.
template <typename T, typename U>
TLevelsParams<T, U> MergeParams(const std::vector<TLevelsParams<T, U>>& params, const Histogram<T>&) {
    TLevelsParams<T, U> all{params.front().inMin, params.front().inMax};
    for (const auto& channel : params) {
        all.inMin = std::min(all.inMin, channel.inMin);
        all.inMax = std::max(all.inMax, channel.inMax);
    }
    return all;
}

/// Thresholds for all channels together: those of each channel if they are equal, otherwise the whole range, so that
/// none is preferred.
template <typename T>
ThresParams<T> MergeParams(const std::vector<ThresParams<T>>& params, const Histogram<T>& histogram) {
    for (const auto& channel : params)
        if (channel != params.front())
            return {histogram.GetLeftCenter(), histogram.GetRightCenter()};
    return params.front();
}

/// @{
/// Parameters clamped to the values of a histogram: the fields of a dialog refuse all others.
template <typename T, typename U>
TLevelsParams<T, U> HoldWithin(const Histogram<T>& histogram, TLevelsParams<T, U> params) {
    params.inMin = std::clamp(params.inMin, histogram.GetLeftCenter(), histogram.GetRightCenter());
    params.inMax = std::clamp(params.inMax, histogram.GetLeftCenter(), histogram.GetRightCenter());
    return params;
}
template <typename T>
ThresParams<T> HoldWithin(const Histogram<T>& histogram, ThresParams<T> params) {
    params.lower = std::clamp(params.lower, histogram.GetLeftCenter(), histogram.GetRightCenter());
    params.upper = std::clamp(params.upper, histogram.GetLeftCenter(), histogram.GetRightCenter());
    return params;
}
/// @}

/// @{
/// The event that lets the mapping module try parameters.
template <typename T, typename U>
zel_LevelsEvent MakePreviewEvent(const TLevelsParams<T, U>& params, int channel) {
    return zel_LevelsEvent(static_cast<float>(params.inMin), static_cast<float>(params.inMax), params.gamma,
                           static_cast<float>(params.outMin), static_cast<float>(params.outMax), channel);
}
template <typename T>
zel_ThresholdingEvent MakePreviewEvent(const ThresParams<T>& params, int channel) {
    return zel_ThresholdingEvent(static_cast<float>(params.lower), static_cast<float>(params.upper), channel);
}
/// @}

} // namespace zel
