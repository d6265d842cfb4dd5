#include "host/firstmapping.h"

#include "histogram/zel_readinghistograms.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_mapperfactory.h"
#include "model/zel_saturate.h"

#include <algorithm>
#include <complex>
#include <type_traits>

namespace zelviewer {

namespace {

wxString TextOf(int value) {
    return wxString() << value;
}
wxString TextOf(float value) {
    return wxString::Format("%g", static_cast<double>(value));
}
wxString TextOf(const std::complex<float>& value) {
    return TextOf(value.real()) + " + " + TextOf(value.imag()) + "i";
}
template <typename C>
wxString TextOf(const kep::RGB_generic<C>& value) {
    return "(" + TextOf(int{value.red}) + ", " + TextOf(int{value.green}) + ", " + TextOf(int{value.blue}) + ")";
}

/// Runs an entry of a module's menu, which need not have been made for it.
template <typename Module>
void RunEntry(Module& module, int entry) {
    wxCommandEvent event(wxEVT_MENU, module.GetMenuId(entry));
    event.SetInt(1);
    module.OnMapping(event);
}

/// The concrete module of a voxel type.
template <typename T>
struct ModuleOf {
    using Type = zel::zel_GrayMappingModule<T>;
};
template <typename C>
struct ModuleOf<kep::RGB_generic<C>> {
    using Type = zel::zel_RGBMappingModule<C>;
};
template <>
struct ModuleOf<std::complex<float>> {
    using Type = zel::zel_ComplexMappingModule<float>;
};

template <typename Level>
bool SpansNothing(const Level& levels) {
    return !(levels.inMin < levels.inMax);
}

/// Whether a stretch has left no levels between black and white.
template <typename T>
bool IsFlat(const zel::zel_GrayMappingModule<T>& module) {
    return SpansNothing(module.GetLevels());
}
template <typename C>
bool IsFlat(const zel::zel_RGBMappingModule<C>& module) {
    return SpansNothing(module.GetLevels(0)) && SpansNothing(module.GetLevels(1)) && SpansNothing(module.GetLevels(2));
}
bool IsFlat(const zel::zel_ComplexMappingModule<float>& module) {
    return SpansNothing(module.GetLevels(module.GetShowMode()));
}

int BitsOf(const zel::Histogram<unsigned short>& histogram) {
    return zel::CountBits(histogram.GetBinCenter(histogram.FindLastNonZero()));
}

template <typename Module>
void RunStretch(Module& module, Stretch stretch) {
    RunEntry(module, zel::zel_ME_NO_STRETCH + static_cast<int>(stretch));
}

/// Stretches as suits the image.
template <typename Module>
void RunFirstStretch(Module& module, Stretch first) {
    for (const Stretch stretch : {first, Stretch::Linear, Stretch::None}) {
        RunStretch(module, stretch);
        if (!IsFlat(module))
            return;
    }
}

/// The module as it comes from the library.
template <typename T>
std::unique_ptr<zel::zel_MappingModule<T>> MakeModule(const mor::Image4d<T>& image, const FirstMapping& first,
                                                      const zel::HistogramSet<T>* counted) {
    if constexpr (zel::ReadingHistograms<T>::counts)
        if (counted != nullptr)
            return std::make_unique<typename ModuleOf<T>::Type>(nullptr, *counted);
    zel::zel_MapperOptions options;
    options.acceptsConstant = true;
    options.mostBins = std::size_t{1} << 20; // more than any picture can tell, where whole numbers lie far apart
    options.progress = first.progress;
    return std::unique_ptr<zel::zel_MappingModule<T>>(zel::zel_CreateMapperForType<T>(nullptr, image, options));
}

template <typename T>
DisplayType TypeOf() {
    for (const auto& [name, type] : DisplayTypeNames())
        if (WithVoxelType(type, [](auto each) { return std::is_same_v<typename decltype(each)::type, T>; }))
            return type;
    return DisplayType::Gray8; // all types have names
}

} // namespace

Stretch FirstStretch(DisplayType type) {
    switch (type) {
    case DisplayType::Gray8:
    case DisplayType::RGB8:
    case DisplayType::Complex:
        return Stretch::None;
    case DisplayType::Gray16:
    case DisplayType::Int:
    case DisplayType::Float:
    case DisplayType::RGB16:
        break;
    }
    return Stretch::Percentil;
}

void FitRange(zel::zel_GrayMappingModule<unsigned short>& module) {
    module.ApplyBitdepth(BitsOf(module.GetHistograms().Get()));
}
void FitRange(zel::zel_RGBMappingModule<unsigned short>& module) {
    const auto& histograms = module.GetHistograms();
    module.ApplyBitdepth(std::max({BitsOf(histograms[0]), BitsOf(histograms[1]), BitsOf(histograms[2])}));
}
template <typename T>
std::optional<std::string> DescribeConstant(const mor::Image4d<T>& image) {
    const auto& extremes = image.GetExtremes();
    if (extremes.min != extremes.max)
        return std::nullopt;
    return "All voxels have the value " + TextOf(extremes.min).utf8_string() + ".";
}

template <typename T>
std::unique_ptr<zel::zel_MappingModule<T>> MakeMapping(const mor::Image4d<T>& image, const FirstMapping& first,
                                                       const zel::HistogramSet<T>* counted) {
    std::unique_ptr<zel::zel_MappingModule<T>> mapping = MakeModule(image, first, counted);
    auto& module = dynamic_cast<typename ModuleOf<T>::Type&>(*mapping);
    if constexpr (std::is_same_v<T, std::complex<float>>) {
        if (first.part && !module.IsPartEnabled(*first.part))
            throw kep::InternalException("The part that --part names has the same value everywhere.");
        if (first.part)
            RunEntry(module, zel::zel_firstPartEntry + *first.part);
    }
    if (first.stretch != Stretch::None)
        FitRange(module);
    if (first.stretch)
        RunStretch(module, *first.stretch);
    else
        RunFirstStretch(module, FirstStretch(TypeOf<T>()));
    return mapping;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template std::optional<std::string> DescribeConstant<T>(const mor::Image4d<T>&);                                   \
    template std::unique_ptr<zel::zel_MappingModule<T>> MakeMapping<T>(const mor::Image4d<T>&, const FirstMapping&,    \
                                                                       const zel::HistogramSet<T>*);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zelviewer
