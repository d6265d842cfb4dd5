#include "model/zel_histogram.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zel {

template <typename T>
Histogram<T>::Histogram(const Histogram& src) {
    GetCopy(src);
}

template <typename T>
Histogram<T>& Histogram<T>::operator=(const Histogram& src) {
    if (this != &src)
        GetCopy(src);
    return *this;
}

template <typename T>
Histogram<T>::Histogram(Histogram&& src) noexcept {
    Swap(src);
}

template <typename T>
Histogram<T>& Histogram<T>::operator=(Histogram&& src) noexcept {
    Histogram taken(std::move(src)); // by way of a third, so that what was here goes, and moving to itself is safe
    Swap(taken);
    return *this;
}

template <typename T>
void Histogram<T>::Dispose() {
    count = 0;
    bins.reset();
    centers.reset();
}

template <typename T>
void Histogram<T>::Allocate(std::size_t n) {
    if (n == 0) {
        Dispose();
        return;
    }
    auto newBins = std::make_unique_for_overwrite<std::size_t[]>(n);
    auto newCenters = std::make_unique_for_overwrite<T[]>(n);
    bins = std::move(newBins);
    centers = std::move(newCenters);
    count = n;
}

template <typename T>
void Histogram<T>::GetCopy(const Histogram& src) {
    Allocate(src.count);
    std::copy_n(src.bins.get(), count, bins.get());
    std::copy_n(src.centers.get(), count, centers.get());
}

template <typename T>
void Histogram<T>::Init(const T& min, const T& max, std::size_t n) {
    Allocate(n);
    Clear();
    const double low = static_cast<double>(min);
    const double high = static_cast<double>(max);
    if (n == 1)
        centers[0] = static_cast<T>((low + high) * 0.5);
    if (n < 2)
        return;
    const double step = (high - low) / static_cast<double>(n - 1);
    for (std::size_t i = 0; i < n - 1; ++i)
        centers[i] = static_cast<T>(step * static_cast<double>(i) + low);
    centers[n - 1] = max; // the sum may miss it, and then truncation takes an integer one lower
}

template <typename T>
void Histogram<T>::Clear() {
    std::fill_n(bins.get(), count, std::size_t{0});
}

template <typename T>
void Histogram<T>::Swap(Histogram& other) noexcept {
    std::swap(count, other.count);
    bins.swap(other.bins);
    centers.swap(other.centers);
}

template <typename T>
std::size_t HistogramPart<T>::GetSum() const {
    return std::accumulate(begin(), end(), std::size_t{0});
}

template <typename T>
std::size_t HistogramPart<T>::FindFirstNonZero() const {
    for (std::size_t i = 0; i < count; ++i) {
        if (counters[i] != 0)
            return i;
    }
    return count - 1;
}

template <typename T>
std::size_t HistogramPart<T>::FindLastNonZero() const {
    for (std::size_t i = count; i-- > 0;) {
        if (counters[i] != 0)
            return i;
    }
    return 0;
}

template <typename T>
std::size_t HistogramPart<T>::FindLeftPercentil(double p) const {
    const double sum = static_cast<double>(GetSum());
    std::size_t i = 0;
    double reached = static_cast<double>(counters[0]) / sum; // NaN if all are zero: nothing is above it
    while (p > reached && i < count - 1)
        reached += static_cast<double>(counters[++i]) / sum;
    return i;
}

template <typename T>
std::size_t HistogramPart<T>::FindRightPercentil(double p) const {
    const double sum = static_cast<double>(GetSum());
    std::size_t i = count - 1;
    double reached = static_cast<double>(counters[i]) / sum;
    while (p > reached && i > 0)
        reached += static_cast<double>(counters[--i]) / sum;
    return i;
}

template <typename T>
std::size_t Histogram<T>::GetSum() const {
    return HistogramPart<T>(*this).GetSum();
}

template <typename T>
std::size_t Histogram<T>::FindFirstNonZero() const {
    return HistogramPart<T>(*this).FindFirstNonZero();
}

template <typename T>
std::size_t Histogram<T>::FindLastNonZero() const {
    return HistogramPart<T>(*this).FindLastNonZero();
}

template <typename T>
std::size_t Histogram<T>::FindLeftPercentil(double p) const {
    return HistogramPart<T>(*this).FindLeftPercentil(p);
}

template <typename T>
std::size_t Histogram<T>::FindRightPercentil(double p) const {
    return HistogramPart<T>(*this).FindRightPercentil(p);
}

template <typename T>
HistogramPart<T> Histogram<T>::GetPart(T from, T to) const& {
    const auto [low, high] = std::minmax({GetBinPos(from), GetBinPos(to)});
    return {*this, low, high - low + 1};
}

template <typename T>
void Histogram<T>::CreateSubHist(const Histogram& src, T from, T to) {
    const HistogramPart<T> part = src.GetPart(from, to);
    Histogram copy;
    copy.Allocate(part.size());
    std::copy(part.begin(), part.end(), copy.begin());
    std::copy_n(part.centers, part.size(), copy.centers.get());
    Swap(copy);
}

template <typename T>
Histogram<T>& Histogram<T>::operator+=(const Histogram& other) {
    const std::size_t common = std::min(count, other.count);
    for (std::size_t i = 0; i < common; ++i)
        bins[i] += other.bins[i];
    return *this;
}

template <typename T>
bool Histogram<T>::operator==(const Histogram& other) const {
    if (count != other.count)
        return false;
    return empty() || (GetLeftCenter() == other.GetLeftCenter() && GetRightCenter() == other.GetRightCenter());
}

template <>
std::size_t Histogram<std::complex<float>>::GetBinPos(std::complex<float>) const {
    throw "Not Implemented"; // a C string, which hosts catch as such
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template class Histogram<T>;                                                                                       \
    template class HistogramPart<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

template void Histogram<double>::Init(const double&, const double&, std::size_t);
template std::size_t Histogram<double>::GetBinPos(double) const;
template std::size_t& Histogram<double>::GetBin(const double&);
template double Histogram<double>::GetLeftCenter() const;
template double Histogram<double>::GetRightCenter() const;
template std::size_t Histogram<double>::size() const;

} // namespace zel
