#include "model/zel_stretch.h"

#include <algorithm>
#include <cstdint>

namespace zel {

template <typename T>
GrayLevels<T> LinearLevels(const HistogramPart<T>& bins) {
    return {bins.GetBinCenter(bins.FindFirstNonZero()), bins.GetBinCenter(bins.FindLastNonZero())};
}

template <typename T>
GrayLevels<T> PercentilLevels(const HistogramPart<T>& bins, double fraction) {
    return {bins.GetBinCenter(bins.FindLeftPercentil(fraction)), bins.GetBinCenter(bins.FindRightPercentil(fraction))};
}

template <typename T>
bool EqualizeTable(const HistogramPart<T>& bins, T low, T high, GrayTable<T>& table) {
    const std::size_t first = bins.GetBinPos(low);
    const std::size_t last = std::max(first, std::min(bins.GetBinPos(high), bins.size() - 1));
    if (table.GetSize() < last - first + 1)
        return false;
    std::uint64_t total = 0;
    for (std::size_t i = first; i <= last; ++i)
        total += bins[i];

    table.Init(static_cast<long>(table.GetSize()), table.GetFirst(), table.GetLast());
    if (total == 0)
        return true; // every voxel lies outside the range
    constexpr std::uint64_t white = 255;
    std::uint64_t sum = 0;
    for (std::size_t i = first; i <= last; ++i) {
        sum += bins[i];
        table.Set(bins.GetBinCenter(i), static_cast<unsigned char>(sum * white / total));
    }
    return true;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT GrayLevels<T> LinearLevels<T>(const HistogramPart<T>&);                                        \
    template ZEL_EXPORT GrayLevels<T> PercentilLevels<T>(const HistogramPart<T>&, double);                             \
    template ZEL_EXPORT bool EqualizeTable<T>(const HistogramPart<T>&, T, T, GrayTable<T>&);
ZEL_INSTANTIATE(unsigned char)
ZEL_INSTANTIATE(unsigned short)
ZEL_INSTANTIATE(int)
ZEL_INSTANTIATE(float)
#undef ZEL_INSTANTIATE

} // namespace zel
