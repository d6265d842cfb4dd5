#include "mapping/zel_mapperfactory.h"

#include "image/zel_framereading.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_rgbmapping.h"
#include "model/zel_histogramcount.h"

#include <wx/app.h>
#include <wx/busyinfo.h>
#include <wx/log.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

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

/// A range for grays of one value: from 0, so that the value has a gray of its own.
template <typename T>
Bounds<T> SpreadFromZero(T value) {
    if (value == T() || !IsFinite(value))
        return {T(), T(1)};
    return {std::min(value, T()), std::max(value, T())};
}

/// The image's cached range. Where no frame was ever measured, or an end is not a number or infinite, which no bins and
/// no grays can be spread up to, it is found here.
template <typename T>
Bounds<T> FindBounds(const mor::Image4d<T>& image, const zel_MapperOptions& options) {
    Bounds<T> bounds{image.GetCachedMinValue(), image.GetCachedMaxValue()};
    if (!(bounds.min <= bounds.max) || !IsFinite(bounds.min) || !IsFinite(bounds.max))
        bounds = ScanVoxels(image);
    if (bounds.min < bounds.max)
        return bounds;
    const T value = bounds.min == bounds.max ? bounds.min : image.GetVoxel(0, 0);
    if (options.acceptsConstant)
        return SpreadFromZero(value);
    throw kep::InternalException(ConstantImageText(value));
}

template <typename T>
Histogram<T> MakeHistogram(const mor::Image4d<T>& image, const zel_MapperOptions& options) {
    Histogram<T> histogram;
    if constexpr (std::is_unsigned_v<T>) {
        histogram.Init(0, std::numeric_limits<T>::max(), std::size_t{std::numeric_limits<T>::max()} + 1);
    } else {
        const Bounds<T> bounds = FindBounds(image, options);
        if constexpr (std::is_same_v<T, int>) {
            const auto values = static_cast<std::size_t>(static_cast<long long>(bounds.max) - bounds.min) + 1;
            histogram.Init(bounds.min, bounds.max, std::min(values, options.mostBins));
        } else {
            histogram.Init(bounds.min, bounds.max, floatBins);
        }
    }
    return histogram;
}

/// Calls count(voxels, number) for all frames, from the last to the first: for each as a whole, or in blocks of some
/// milliseconds where progress is told.
template <typename T, typename Count>
void CountInBlocks(const mor::Image4d<T>& image, const zel_MapperOptions& options, const Count& count) {
    constexpr std::size_t few = std::size_t{1} << 21;
    const std::size_t block = options.progress ? few : image.GetFrameSize();
    const double all = static_cast<double>(image.GetFrameSize()) * static_cast<double>(image.GetNumFrames());
    double counted = 0;
    for (std::size_t t = image.GetNumFrames(); t-- > 0;) {
        const kep::Image3d<T>& frame = *image[t];
        for (std::size_t at = 0; at < frame.GetNumVoxels(); at += block) {
            const std::size_t number = std::min(block, frame.GetNumVoxels() - at);
            count(frame.begin() + at, number);
            counted += static_cast<double>(number);
            if (options.progress && !options.progress(counted / all))
                throw kep::ReadingStopped();
        }
    }
}

template <typename T>
HistogramSet<T> CountImage(const mor::Image4d<T>& image, const zel_MapperOptions& options) {
    HistogramSet<T> histograms;
    histograms.Set(MakeHistogram(image, options));
    CountInBlocks(image, options, [&histograms](const T* voxels, std::size_t number) {
        CountValues(voxels, number, 1, histograms.Get());
    });
    return histograms;
}

template <typename C>
HistogramSet<kep::RGB_generic<C>> CountImage(const mor::Image4d<kep::RGB_generic<C>>& image,
                                             const zel_MapperOptions& options) {
    HistogramSet<kep::RGB_generic<C>> histograms;
    for (int channel = 0; channel < 3; ++channel)
        histograms[channel].Init(0, std::numeric_limits<C>::max(), std::size_t{std::numeric_limits<C>::max()} + 1);
    CountInBlocks(image, options, [&histograms](const kep::RGB_generic<C>* voxels, std::size_t number) {
        CountValues<C>(voxels, number, {&histograms[0], &histograms[1], &histograms[2]});
    });
    return histograms;
}

/// The ranges of the parts of a complex image.
using PartBounds = std::array<Bounds<float>, complexModeCount>;

PartBounds CachedBounds(const mor::Image4d<std::complex<float>>& image) {
    const auto extremes = image.GetExtremes();
    return {{{extremes.min.real(), extremes.max.real()},
             {extremes.min.imag(), extremes.max.imag()},
             {extremes.phaseMin, extremes.phaseMax},
             {extremes.amplitudeMin, extremes.amplitudeMax}}};
}

/// The range of a part over the voxels whose value of it is finite; 0 to 0 without any.
Bounds<float> ScanPart(const mor::Image4d<std::complex<float>>& image, ComplexMode mode) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const ComplexPart part = PartOf(mode);
    std::vector<float> values(image.GetSize().x);
    Bounds<float> bounds{infinite, -infinite};
    for (std::size_t t = 0; t < image.GetNumFrames(); ++t) {
        for (const std::complex<float>* row = image[t]->begin(); row != image[t]->end(); row += values.size()) {
            part(row, values.size(), values.data());
            for (const float value : values) {
                if (!std::isfinite(value))
                    continue;
                bounds.min = std::min(bounds.min, value);
                bounds.max = std::max(bounds.max, value);
            }
        }
    }
    return bounds.min <= bounds.max ? bounds : Bounds<float>{0.0F, 0.0F};
}

PartBounds FindPartBounds(const mor::Image4d<std::complex<float>>& image) {
    PartBounds bounds = CachedBounds(image);
    const bool isSound = std::all_of(bounds.begin(), bounds.end(), [](const Bounds<float>& part) {
        return part.min <= part.max && std::isfinite(part.min) && std::isfinite(part.max);
    });
    if (!isSound)
        for (int mode = 0; mode < complexModeCount; ++mode)
            bounds[static_cast<std::size_t>(mode)] = ScanPart(image, static_cast<ComplexMode>(mode));
    return bounds;
}

bool IsConstant(const Bounds<float>& part) {
    return part.min == part.max;
}

/// Says which parts are constant.
/// @throws kep::InternalException if all are
void CheckParts(const PartBounds& bounds) {
    const char* const names[] = {"real part", "imaginary part", "phase", "amplitude"};
    const auto valueOf = [&bounds](std::size_t part) { return static_cast<double>(bounds[part].min); };
    int constant = 0;
    for (std::size_t part = 0; part < bounds.size(); ++part) {
        if (!IsConstant(bounds[part]))
            continue;
        ++constant;
        wxLogMessage("Disabling constant %s. (value=%f)", names[part], valueOf(part));
    }
    if (constant == complexModeCount)
        throw kep::InternalException(
            wxString::Format("Consistency check failed. Complex images with both parts, phase and amplitude constant "
                             "are not supported! (real value=%f, imaginary value=%f, phase value=%f, amplitude "
                             "value=%f)",
                             valueOf(Real), valueOf(Imaginary), valueOf(Phase), valueOf(Amplitude))
                .utf8_string());
}

HistogramSet<std::complex<float>> CountImage(const mor::Image4d<std::complex<float>>& image, const PartBounds& bounds,
                                             const zel_MapperOptions& options) {
    ComplexHistograms counts;
    for (std::size_t part = 0; part < counts.size(); ++part)
        counts[part].Init(bounds[part].min, bounds[part].max, floatBins);
    CountInBlocks(image, options, [&counts](const std::complex<float>* voxels, std::size_t number) {
        CountValues(voxels, number, counts);
    });
    HistogramSet<std::complex<float>> histograms;
    for (std::size_t part = 0; part < counts.size(); ++part)
        histograms.Set(static_cast<int>(part), std::move(counts[part]));
    return histograms;
}

/// That histograms are being counted; nothing in a program that has no windows, and perhaps no display.
std::unique_ptr<wxBusyInfo> ShowNotice() {
    const wxAppConsole* const app = wxAppConsole::GetInstance(); // wxTheApp would be taken for one with windows
    const bool hasWindows = app != nullptr && app->IsGUI();
    return hasWindows ? std::make_unique<wxBusyInfo>("Creating histogram...") : nullptr;
}

template <typename T>
zel_MappingModule<T>* MakeModule(wxFrame* frame, const mor::Image4d<T>& image, const zel_MapperOptions& options) {
    return new zel_GrayMappingModule<T>(frame, CountImage(image, options));
}

template <typename C>
zel_MappingModule<kep::RGB_generic<C>>* MakeModule(wxFrame* frame, const mor::Image4d<kep::RGB_generic<C>>& image,
                                                   const zel_MapperOptions& options) {
    return new zel_RGBMappingModule<C>(frame, CountImage(image, options));
}

zel_MappingModule<std::complex<float>>* MakeModule(wxFrame* frame, const mor::Image4d<std::complex<float>>& image,
                                                   const zel_MapperOptions& options) {
    PartBounds bounds = FindPartBounds(image);
    if (options.acceptsConstant && std::all_of(bounds.begin(), bounds.end(), &IsConstant))
        for (Bounds<float>& part : bounds)
            part = SpreadFromZero(part.min);
    CheckParts(bounds);
    const auto varies = [&bounds](std::size_t part) { return bounds[part].max > bounds[part].min; };
    return new zel_ComplexMappingModule<float>(frame, CountImage(image, bounds, options), varies(Real),
                                               varies(Imaginary), varies(Phase), varies(Amplitude));
}

} // namespace

template <typename T>
zel_MappingModule<T>* zel_CreateMapperForType(wxFrame* frame, const mor::Image4d<T>& image,
                                              const zel_MapperOptions& options) {
    const auto notice = options.progress ? nullptr : ShowNotice();
    CheckNotEmpty(image.GetNumFrames() == 0 || image.GetFrameSize() == 0);
    return MakeModule(frame, image, options);
}

template <typename T>
zel_MappingModule<T>* zel_CreateMapperForType(wxFrame* frame, const mor::Image4d<T>& image) {
    return zel_CreateMapperForType<T>(frame, image, zel_MapperOptions());
}

template <typename T, typename>
zel_MappingModule<std::complex<T>>* zel_CreateMapperForType(wxFrame* frame,
                                                            const mor::Image4d<std::complex<T>>& image) {
    return zel_CreateMapperForType<std::complex<T>>(frame, image);
}

template <typename T>
zel_GrayMappingModule<T>* zel_CreateGrayMapperForType(wxFrame* frame, const HistogramSet<T>& histograms) {
    return new zel_GrayMappingModule<T>(frame, histograms);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT zel_MappingModule<T>* zel_CreateMapperForType<T>(wxFrame*, const mor::Image4d<T>&);            \
    template ZEL_EXPORT zel_MappingModule<T>* zel_CreateMapperForType<T>(wxFrame*, const mor::Image4d<T>&,             \
                                                                         const zel_MapperOptions&);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE
template ZEL_EXPORT zel_MappingModule<std::complex<float>>* zel_CreateMapperForType<float>(
    wxFrame*, const mor::Image4d<std::complex<float>>&);
template ZEL_EXPORT zel_GrayMappingModule<int>* zel_CreateGrayMapperForType<int>(wxFrame*, const HistogramSet<int>&);
template ZEL_EXPORT zel_GrayMappingModule<float>* zel_CreateGrayMapperForType<float>(wxFrame*,
                                                                                     const HistogramSet<float>&);

} // namespace zel
