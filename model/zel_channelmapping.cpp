#include "model/zel_channelmapping.h"

#include <algorithm>

namespace zel {

template <typename T>
ChannelMapping<T> ChannelMapping<T>::Of(const Histogram<T>& histogram) {
    ChannelMapping mapping;
    const TLevelsParams<T, unsigned char> whole;
    mapping.rangeMin = histogram.empty() ? whole.inMin : histogram.GetLeftCenter();
    mapping.rangeMax = histogram.empty() ? whole.inMax : histogram.GetRightCenter();
    mapping.levels = {mapping.rangeMin, mapping.rangeMax};
    mapping.thresholds = {mapping.rangeMin, mapping.rangeMax};
    return mapping;
}

template <typename T>
void ChannelMapping<T>::NarrowRange(const Histogram<T>& histogram) {
    if (histogram.empty())
        return;
    const T first = histogram.GetLeftCenter();
    const T last = histogram.GetRightCenter();
    const auto [low, high] = std::minmax(rangeMin, rangeMax);
    const bool isOutside = high < first || low > last;
    rangeMin = isOutside ? first : std::max(first, rangeMin); // in this order, as it takes the histogram's end for NaN
    rangeMax = isOutside ? last : std::min(last, rangeMax);
}

template <typename T>
HistogramPart<T> ChannelMapping<T>::GetPart(const Histogram<T>& histogram) const {
    return histogram.GetPart(rangeMin, rangeMax);
}

template <typename T>
Histogram<T> ChannelMapping<T>::CopyPart(const Histogram<T>& histogram) const {
    Histogram<T> part;
    part.CreateSubHist(histogram, rangeMin, rangeMax);
    return part;
}

template <typename T>
void ChannelMapping<T>::StretchLinear(const Histogram<T>& histogram) {
    if (!histogram.empty())
        levels = LinearLevels(GetPart(histogram));
}

template <typename T>
void ChannelMapping<T>::StretchLinearOrWhole(const Histogram<T>& histogram) {
    if (!histogram.empty())
        levels = LinearLevelsOrWhole(GetPart(histogram));
}

template <typename T>
void ChannelMapping<T>::StretchPercentil(const Histogram<T>& histogram, double fraction) {
    if (!histogram.empty())
        levels = PercentilLevels(GetPart(histogram), fraction);
}

template <typename T>
bool ChannelMapping<T>::Equalize(const Histogram<T>& histogram, GrayTable<T>& table) {
    if (histogram.empty())
        return true;
    const auto [low, high] = std::minmax(rangeMin, rangeMax);
    if (!EqualizeTable(GetPart(histogram), low, high, table))
        return false;
    levels = {rangeMin, rangeMax};
    return true;
}

template <typename T>
std::pair<T, T> ChannelMapping<T>::GetRangeInBins(const Histogram<T>& histogram) const {
    return {static_cast<T>(histogram.GetBinPos(rangeMin)), static_cast<T>(histogram.GetBinPos(rangeMax))};
}

template <typename T>
void ChannelMapping<T>::HoldLevels(const Histogram<T>& histogram) {
    if (histogram.empty())
        return;
    const auto [low, high] = GetRangeInBins(histogram);
    levels.inMin = std::max(levels.inMin, low);
    levels.inMax = std::min(levels.inMax, high);
}

template <typename T>
void ChannelMapping<T>::HoldThresholds(const Histogram<T>& histogram) {
    if (histogram.empty())
        return;
    const auto [low, high] = GetRangeInBins(histogram);
    for (T* const value : {&thresholds.lower, &thresholds.upper})
        *value = std::min(std::max(*value, low), high);
}

template <typename T>
void ChannelMapping<T>::HoldAll(const Histogram<T>& histogram) {
    if (histogram.empty())
        return;
    const auto [low, high] = GetRangeInBins(histogram);
    for (T* const value : {&levels.inMin, &levels.inMax, &thresholds.lower, &thresholds.upper})
        *value = std::min(std::max(*value, low), high);
}

#define ZEL_INSTANTIATE(T) template struct ChannelMapping<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
