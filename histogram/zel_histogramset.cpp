#include "histogram/zel_histogramset.h"

#include "model/zel_extremes.h"
#include "model/zel_histogramcount.h"

#include <wx/busyinfo.h>

#include <algorithm>
#include <limits>

namespace zel {

namespace {

/// Bins of a histogram over the whole of a type: one for each integer.
template <typename T>
constexpr std::size_t binsOfType = static_cast<std::size_t>(std::numeric_limits<T>::max()) + 1;
/// The largest float as a 64-bit integer, which it overflows to 2^63, plus 1: more than any memory holds.
template <>
constexpr std::size_t binsOfType<float> = (std::size_t{1} << 63) + 1;

template <typename T>
void InitForType(Histogram<T>& histogram) {
    histogram.Init(std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), binsOfType<T>);
}

template <typename T>
void Create(const kep::Image3d<T>& image, std::array<Histogram<T>, 1>& channels) {
    const wxBusyInfo notice("Creating histogram...");
    InitForType(channels[0]);
    CountFrame(image, channels[0]);
}

template <typename C>
void Create(const kep::Image3d<kep::RGB_generic<C>>& image, std::array<Histogram<C>, 3>& channels) {
    const auto create = [&](int channel) {
        auto& histogram = channels[static_cast<std::size_t>(channel)];
        InitForType(histogram);
        CountFrame(image, channel, histogram);
    };
    const wxBusyInfo red("Creating histogram (red)..."); // all three stay up, one over the other
    create(0);
    const wxBusyInfo green("Creating histogram (green)...");
    create(1);
    const wxBusyInfo blue("Creating histogram (blue)...");
    create(2);
}

void Create(const kep::Image3d<std::complex<float>>& image, const float* mins, const float* maxs,
            ComplexHistograms& channels) {
    for (std::size_t c = 0; c < channels.size(); ++c)
        channels[c].Init(mins[c], maxs[c], 256);
    CountFrame(image, channels);
}

void Create(const kep::Image3d<std::complex<float>>& image, ComplexHistograms& channels) {
    const wxBusyInfo notice("Creating histogram...");
    if (image.IsEmpty())
        return;
    mor::ExtremaValues<std::complex<float>> found;
    mor::ComputeFrameExtremes(image, found);
    const std::array mins{found.min.real(), found.min.imag(), found.phaseMin, found.amplitudeMin};
    const std::array maxs{found.max.real(), found.max.imag(), found.phaseMax, found.amplitudeMax};
    Create(image, mins.data(), maxs.data(), channels);
}

} // namespace

template <typename T>
void HistogramSet<T>::CreateFromImage(const kep::Image3d<T>& image) {
    HistogramSet made;
    Create(image, made.channels);
    Swap(made);
}

template <typename T>
void HistogramSet<T>::CreateFromImage(const kep::Image3d<T>& image, const float* const mins,
                                      const float* const maxs) requires(detail::HistogramChannels<T>::count == 4) {
    if constexpr (channelCount == 4) { // clang 14 instantiates members whose requirement does not hold
        const wxBusyInfo notice("Creating histogram...");
        HistogramSet made;
        Create(image, mins, maxs, made.channels);
        Swap(made);
    }
}

template <typename T>
void HistogramSet<T>::Swap(HistogramSet& other) noexcept {
    for (std::size_t c = 0; c < channels.size(); ++c)
        channels[c].Swap(other.channels[c]);
}

template <typename T>
bool HistogramSet<T>::IsEmpty() const {
    return std::all_of(channels.begin(), channels.end(), [](const Channel& channel) { return channel.empty(); });
}

#define ZEL_INSTANTIATE(T) template class HistogramSet<T>;
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
