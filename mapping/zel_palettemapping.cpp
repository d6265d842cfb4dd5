// What a module that shows one channel makes of its histogram; its menu and dialogs have sources of their own.

#include "mapping/zel_palettemapping.h"

#include "dialogs/zel_modaldialog.h"
#include "mapping/commands/zel_previewparams.h"
#include "mapping/text/zel_qualifiedname.h"

#include <wx/log.h>

#include <exception>

namespace zel {

namespace {

/// The table of a histogram without a range: its size, and its keys go over the whole range of T.
template <typename T>
constexpr long wholeTypeSize = long{std::numeric_limits<T>::max()} + 1;
template <>
constexpr long wholeTypeSize<int> = 0;
template <>
constexpr long wholeTypeSize<float> = 0x80000000L;

/// A number in a debug trace: whole, and a negative one as its two's complement.
template <typename T>
unsigned long TraceNumber(T value) {
    return static_cast<unsigned long>(SaturateTo<long>(static_cast<double>(value)));
}

} // namespace

template <typename Voxel>
zel_PaletteMappingModule<Voxel>::zel_PaletteMappingModule(wxFrame* frame, const HistogramSet<Voxel>& histograms,
                                                          int shown)
    : zel_MappingModule<Voxel>(frame, histograms, 0.001), m_shown(shown) {
    zel_PaletteMappingModule::InitMappingTable();
    zel_PaletteMappingModule::SetIdentity();
    m_paletteTable.Init(256, 0, 255);
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::InitMappingTable() {
    using Limits = std::numeric_limits<Element>;
    const Histogram<Element>& histogram = GetShownHistogram();
    if (histogram.size() > 1)
        m_mappingTable.Init(static_cast<long>(histogram.size()), histogram.GetLeftCenter(), histogram.GetRightCenter());
    else
        m_mappingTable.Init(wholeTypeSize<Element>, Limits::min(), Limits::max());
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::UpdateLUT() {
    try {
        FillTable(Shown().levels, m_mappingTable);
    } catch (const std::exception& failure) {
        ShowMessage(failure.what());
    }
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::DoThresholding() {
    FillTable(Shown().thresholds, m_mappingTable);
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetIdentity() {
    Shown().StretchNone();
    UpdateLUT();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetLinearStretch() {
    if (GetShownHistogram().empty())
        return;
    Shown().StretchLinear(GetShownHistogram());
    wxLogDebug("linear stretch %lu %lu", TraceNumber(Shown().levels.inMin), TraceNumber(Shown().levels.inMax));
    UpdateLUT();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetPercentilStretch() {
    if (GetShownHistogram().empty())
        return;
    Shown().StretchPercentil(GetShownHistogram(), this->GetPercentilValue());
    wxLogDebug("percentil stretch %lu %lu", TraceNumber(Shown().levels.inMin), TraceNumber(Shown().levels.inMax));
    UpdateLUT();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetHistEqualStretch() {
    if (!Shown().Equalize(GetShownHistogram(), m_mappingTable))
        wxLogError("The function does nothing because sub-histogram is longer than the current lut.");
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::ResetMapping() {
    InitMappingTable();
    const int stretch = this->GetStretchEntry();
    if (stretch == zel_ME_LEVELS) {
        Shown().HoldLevels(GetShownHistogram());
        UpdateLUT();
    } else if (stretch == zel_ME_THRESHOLD) {
        Shown().HoldThresholds(GetShownHistogram());
        DoThresholding();
    } else {
        this->RunStretch(stretch);
    }
}

template <typename Voxel>
bool zel_PaletteMappingModule<Voxel>::HasData() {
    return this->HasBins();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::OnHistogramChange(const HistogramSet<Voxel>& histograms) {
    this->TakeHistograms(histograms);
    ResetMapping();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetPal(const Palette& palette) {
    try {
        SpreadPalette(palette, m_paletteTable);
    } catch (const kep::LibException& failure) {
        ShowMessage(failure.GetText());
    }
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::OnPreviewLevels(zel_LevelsEvent& event) {
    if (detail::TryToFill([&] { FillTable(detail::LevelsOf<Element>(event), m_mappingTable); }))
        this->TellMappingChanged(false);
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::OnPreviewThresholding(zel_ThresholdingEvent& event) {
    FillTable(detail::ThresholdsOf<Element>(event), m_mappingTable);
    this->TellMappingChanged(false);
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::LogNotKept(const char* function) const {
    constexpr const char* name = std::is_same_v<Voxel, Element> ? "zel_GrayMappingModule" : "zel_ComplexMappingModule";
    wxLogError("%s: Not implemented", QualifiedName<Element>(name, function));
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::ReadFromConfig(wxFileConfig&) {
    LogNotKept("ReadFromConfig");
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::WriteToConfig(wxFileConfig&) {
    LogNotKept("WriteToConfig");
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::ReadLevelsFromConfig(wxFileConfig&) {
    LogNotKept("ReadLevelsFromConfig");
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::WriteLevelsToConfig(wxFileConfig&) {
    LogNotKept("WriteLevelsToConfig");
}

// The menu and the dialogs are instantiated in files of their own.
#define ZEL_INSTANTIATE(T) template class zel_PaletteMappingModule<T>;
ZEL_PALETTE_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
