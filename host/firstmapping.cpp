#include "host/firstmapping.h"

#include "mapping/zel_complexmapping.h"
#include "mapping/zel_mapperfactory.h"
#include "model/zel_histogramcount.h"

#include <algorithm>
#include <complex>
#include <cstdint>
#include <string>
#include <type_traits>

namespace zelviewer {

namespace {

/// How messages name the images of a type.
template <typename T>
std::string ImagesOf() {
    constexpr bool isInt = std::is_same_v<T, int>;
    constexpr bool isFloat = std::is_same_v<T, float>;
    return "Images of type " + NameOf(isInt ? DisplayType::Int : isFloat ? DisplayType::Float : DisplayType::Complex);
}

wxString TextOf(int value) {
    return wxString() << value;
}
wxString TextOf(float value) {
    return wxString::Format("%g", static_cast<double>(value));
}
wxString TextOf(const std::complex<float>& value) {
    return TextOf(value.real()) + " + " + TextOf(value.imag()) + "i";
}

template <typename T>
std::unique_ptr<zel::zel_MappingModule<T>> MakeModule(const mor::Image4d<T>& image) {
    return std::unique_ptr<zel::zel_MappingModule<T>>(zel::zel_CreateMapperForType<T>(nullptr, image));
}

template <>
std::unique_ptr<zel::zel_MappingModule<int>> MakeModule(const mor::Image4d<int>& image) {
    return std::unique_ptr<zel::zel_MappingModule<int>>(
        zel::zel_CreateGrayMapperForType<int>(nullptr, CountInts(image)));
}

/// Runs an entry of a module's menu, which need not have been made for it.
template <typename Module>
void RunEntry(Module& module, int entry) {
    wxCommandEvent event(wxEVT_MENU, module.GetMenuId(entry));
    event.SetInt(1);
    module.OnMapping(event);
}

} // namespace

template <typename T>
void RefuseConstant(const mor::Image4d<T>& image) {
    if constexpr (!std::is_unsigned_v<T> && zel::HistogramSet<T>::channelCount != 3) {
        const auto& extremes = image.GetExtremes();
        if (extremes.min != extremes.max)
            return;
        throw kep::InternalException("All voxels have the value " + TextOf(extremes.min).utf8_string() + ". " +
                                     ImagesOf<T>() +
                                     " are shown between their smallest and their largest value, which must differ.");
    }
}

zel::HistogramSet<int> CountInts(const mor::Image4d<int>& image) {
    constexpr std::int64_t mostBins = std::int64_t{1} << 20;
    const int low = image.GetCachedMinValue(), high = image.GetCachedMaxValue();
    const std::int64_t values = std::int64_t{high} - low + 1;
    zel::HistogramSet<int> histograms;
    histograms.Get().Init(low, high, static_cast<std::size_t>(std::min(values, mostBins)));
    for (std::size_t t = 0; t < image.GetNumFrames(); ++t)
        zel::CountFrame(*image[t], histograms.Get());
    return histograms;
}

void CheckPart(bool isEnabled) {
    if (!isEnabled)
        throw kep::InternalException("The part that --part names has the same value everywhere.");
}

template <typename T>
std::unique_ptr<zel::zel_MappingModule<T>> MakeMapping(const mor::Image4d<T>& image, Stretch stretch,
                                                       std::optional<zel::ComplexMode> part) {
    RefuseConstant(image);
    auto module = MakeModule(image);
    if constexpr (std::is_same_v<T, std::complex<float>>) {
        auto& parts = dynamic_cast<zel::zel_ComplexMappingModule<float>&>(*module);
        if (part) {
            CheckPart(parts.IsPartEnabled(*part));
            RunEntry(parts, zel::zel_firstPartEntry + *part);
        }
    }
    if (stretch != Stretch::None)
        RunEntry(*module, zel::zel_ME_NO_STRETCH + static_cast<int>(stretch));
    return module;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template void RefuseConstant<T>(const mor::Image4d<T>&);                                                           \
    template std::unique_ptr<zel::zel_MappingModule<T>> MakeMapping<T>(const mor::Image4d<T>&, Stretch,                \
                                                                       std::optional<zel::ComplexMode>);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zelviewer
