#include "mapping/zel_mapperfactory.h"

#include "model/zel_histogramcount.h"

#include <wx/busyinfo.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

namespace zel {

namespace {

constexpr std::size_t floatBins = 256;

template <typename T>
struct Bounds {
    T min;
    T max;
};

void CheckNotEmpty(bool isEmpty) {
    if (isEmpty)
        throw kep::InternalException("Consistency check failed. Empty images are not supported!");
}

template <typename T>
bool IsFinite(T value) {
    if constexpr (std::is_floating_point_v<T>)
        return std::isfinite(value);
    else
        return true;
}

/// The range of the finite voxels; the first value above the second if there is none.
template <typename T>
Bounds<T> ScanVoxels(const mor::Image4d<T>& image) {
    Bounds<T> bounds{std::numeric_limits<T>::max(), std::numeric_limits<T>::lowest()};
    for (std::size_t t = 0; t < image.GetNumFrames(); ++t) {
        for (const T voxel : *image[t]) {
            if (!IsFinite(voxel))
                continue;
            bounds.min = std::min(bounds.min, voxel);
            bounds.max = std::max(bounds.max, voxel);
        }
    }
    return bounds;
}

std::string ConstantImageText(int value) {
    return wxString::Format("Consistency check failed. Constant images are not supported! (Value=%d)", value)
        .utf8_string();
}
std::string ConstantImageText(float value) {
    return wxString::Format("Consistency check failed. Constant images are not supported! (Value=%f)",
                            static_cast<double>(value))
        .utf8_string();
}

/// The image's cached range. Where no frame was ever measured, or an end is not a number or infinite, which no bins and
/// no grays can be spread up to, it is found here.
template <typename T>
Bounds<T> FindBounds(const mor::Image4d<T>& image) {
    Bounds<T> bounds{image.GetCachedMinValue(), image.GetCachedMaxValue()};
    if (!(bounds.min <= bounds.max) || !IsFinite(bounds.min) || !IsFinite(bounds.max))
        bounds = ScanVoxels(image);
    if (bounds.min < bounds.max)
        return bounds;
    const bool isOneValue = bounds.min == bounds.max;
    throw kep::InternalException(ConstantImageText(isOneValue ? bounds.min : image.GetVoxel(0, 0)));
}

template <typename T>
Histogram<T> MakeHistogram(const mor::Image4d<T>& image) {
    Histogram<T> histogram;
    if constexpr (std::is_unsigned_v<T>) {
        histogram.Init(0, std::numeric_limits<T>::max(), std::size_t{std::numeric_limits<T>::max()} + 1);
    } else {
        const Bounds<T> bounds = FindBounds(image);
        if constexpr (std::is_same_v<T, int>)
            histogram.Init(bounds.min, bounds.max,
                           static_cast<std::size_t>(static_cast<long long>(bounds.max) - bounds.min) + 1);
        else
            histogram.Init(bounds.min, bounds.max, floatBins);
    }
    return histogram;
}

} // namespace

template <typename T>
zel_MappingModule<T>* zel_CreateMapperForType(wxFrame* frame, const mor::Image4d<T>& image) {
    const wxBusyInfo notice("Creating histogram...");
    CheckNotEmpty(image.GetNumFrames() == 0 || image.GetFrameSize() == 0);
    Histogram<T> histogram = MakeHistogram(image);
    for (std::size_t t = image.GetNumFrames(); t-- > 0;)
        CountFrame(*image[t], histogram);
    HistogramSet<T> histograms;
    histograms.Get().Swap(histogram);
    return new zel_GrayMappingModule<T>(frame, histograms);
}

template <typename T>
zel_GrayMappingModule<T>* zel_CreateGrayMapperForType(wxFrame* frame, const HistogramSet<T>& histograms) {
    return new zel_GrayMappingModule<T>(frame, histograms);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT zel_MappingModule<T>* zel_CreateMapperForType<T>(wxFrame*, const mor::Image4d<T>&);
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE
template ZEL_EXPORT zel_GrayMappingModule<int>* zel_CreateGrayMapperForType<int>(wxFrame*, const HistogramSet<int>&);
template ZEL_EXPORT zel_GrayMappingModule<float>* zel_CreateGrayMapperForType<float>(wxFrame*,
                                                                                     const HistogramSet<float>&);

} // namespace zel
