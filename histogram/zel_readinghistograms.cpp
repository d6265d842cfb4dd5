#include "histogram/zel_readinghistograms.h"

#include "model/zel_histogramcount.h"

#include <array>
#include <limits>

namespace zel {

namespace {

template <typename T>
auto& ChannelOf(HistogramSet<T>& histograms, [[maybe_unused]] int channel) {
    if constexpr (HistogramSet<T>::channelCount == 1)
        return histograms.Get();
    else
        return histograms[channel];
}

void Count(const unsigned char* first, std::size_t number, HistogramSet<unsigned char>& histograms) {
    CountValues(first, number, 1, histograms.Get());
}
void Count(const unsigned short* first, std::size_t number, HistogramSet<unsigned short>& histograms) {
    CountValues(first, number, 1, histograms.Get());
}
template <typename C>
void Count(const kep::RGB_generic<C>* first, std::size_t number, HistogramSet<kep::RGB_generic<C>>& histograms) {
    CountValues(first, number, std::array{&histograms[0], &histograms[1], &histograms[2]});
}

} // namespace

template <typename T>
void ReadingHistograms<T>::Start() {
    if constexpr (counts) {
        constexpr auto last = std::numeric_limits<typename HistogramSet<T>::Element>::max();
        for (int channel = 0; channel < HistogramSet<T>::channelCount; ++channel)
            ChannelOf(histograms, channel).Init(0, last, std::size_t{last} + 1);
        visitor = std::make_unique<kep::VoxelVisitor<T>>([this](const T* first, std::size_t number) {
            Count(first, number, histograms);
            counted += number;
        });
    }
}

#define ZEL_INSTANTIATE(T) template ZEL_EXPORT void ReadingHistograms<T>::Start();
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
