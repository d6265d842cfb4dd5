#pragma once

// The tables of the gray mapping. Included by the sources that instantiate it.

#include "dialogs/zel_modaldialog.h"
#include "mapping/text/zel_qualifiedname.h"
#include "mapping/zel_graymapping.h"
#include "model/zel_saturate.h"
#include "model/zel_stretch.h"

#include <wx/log.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace zel {

namespace detail {

/// A table for a histogram without a range: size, first and last key.
template <typename T>
struct TableFallback {
    static constexpr long size = long{std::numeric_limits<T>::max()} + 1;
    static constexpr T low = std::numeric_limits<T>::min();
    static constexpr T high = std::numeric_limits<T>::max();
};
template <>
struct TableFallback<int> {
    static constexpr long size = 0;
    static constexpr int low = std::numeric_limits<int>::min();
    static constexpr int high = std::numeric_limits<int>::max();
};
template <>
struct TableFallback<float> {
    static constexpr long size = 0x80000000L;
    static constexpr float low = std::numeric_limits<float>::min();
    static constexpr float high = std::numeric_limits<float>::max();
};

/// A number in a debug trace: whole, and a negative one as its two's complement.
template <typename T>
unsigned long TraceNumber(T value) {
    return static_cast<unsigned long>(SaturateTo<long>(static_cast<double>(value)));
}

} // namespace detail

template <typename T>
zel_GrayMappingModule<T>::zel_GrayMappingModule(wxFrame* frame, const HistogramSet<T>& histograms)
    : zel_MappingModule<T>(frame, histograms, 0.001) {
    TakeWholeRange();
    ResetMapping();
    m_paletteTable.Init(256, 0, 255);
    m_thresholds = {m_rangeMin, m_rangeMax};
}

template <typename T>
void zel_GrayMappingModule<T>::TakeWholeRange() {
    m_rangeMin = HasData() ? GetHistogram().GetLeftCenter() : detail::TableFallback<T>::low;
    m_rangeMax = HasData() ? GetHistogram().GetRightCenter() : detail::TableFallback<T>::high;
}

template <typename T>
void zel_GrayMappingModule<T>::InitMappingTable() {
    using Fallback = detail::TableFallback<T>;
    const Histogram<T>& histogram = GetHistogram();
    if (histogram.size() > 1)
        m_mappingTable.Init(static_cast<long>(histogram.size()), histogram.GetLeftCenter(), histogram.GetRightCenter());
    else
        m_mappingTable.Init(Fallback::size, Fallback::low, Fallback::high);
}

template <typename T>
void zel_GrayMappingModule<T>::Map(const T* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const {
    const auto count = static_cast<std::size_t>(buffer.width) * static_cast<std::size_t>(buffer.height);
    if (count > 0)
        kep::MapToPixels(m_mappingTable, m_paletteMode == zel_PE_GRAY ? nullptr : &m_paletteTable, data, count,
                         &buffer.data[0]);
}

template <typename T>
void zel_GrayMappingModule<T>::UseLevels(const TLevelsParams<T, unsigned char>& levels) {
    m_levels = levels;
    UpdateLUT();
}

template <typename T>
void zel_GrayMappingModule<T>::UpdateLUT() {
    try {
        m_mappingTable.CreateGamma(m_levels.inMin, m_levels.inMax, static_cast<float>(m_levels.gamma), m_levels.outMin,
                                   m_levels.outMax);
    } catch (const std::exception& failure) {
        ShowMessage(failure.what());
    }
}

template <typename T>
void zel_GrayMappingModule<T>::DoThresholding() {
    m_mappingTable.CreateThresholding(m_thresholds.lower, m_thresholds.upper, 0, 255);
}

template <typename T>
void zel_GrayMappingModule<T>::CreateRangeHist(Histogram<T>& histogram) const {
    const auto [low, high] = std::minmax(m_rangeMin, m_rangeMax);
    histogram.CreateSubHist(GetHistogram(), low, high);
}

template <typename T>
void zel_GrayMappingModule<T>::SetIdentity() {
    UseLevels({m_rangeMin, m_rangeMax});
}

template <typename T>
void zel_GrayMappingModule<T>::SetLinearStretch() {
    if (!HasData())
        return;
    Histogram<T> range;
    CreateRangeHist(range);
    const auto levels = LinearLevels(range);
    wxLogDebug("linear stretch %lu %lu", detail::TraceNumber(levels.inMin), detail::TraceNumber(levels.inMax));
    UseLevels(levels);
}

template <typename T>
void zel_GrayMappingModule<T>::SetPercentilStretch() {
    if (!HasData())
        return;
    Histogram<T> range;
    CreateRangeHist(range);
    const auto levels = PercentilLevels(range, this->GetPercentilValue());
    wxLogDebug("percentil stretch %lu %lu", detail::TraceNumber(levels.inMin), detail::TraceNumber(levels.inMax));
    UseLevels(levels);
}

template <typename T>
void zel_GrayMappingModule<T>::SetHistEqualStretch() {
    if (!HasData())
        return;
    Histogram<T> range;
    CreateRangeHist(range);
    const auto [low, high] = std::minmax(m_rangeMin, m_rangeMax);
    if (!EqualizeTable(range, low, high, m_mappingTable)) {
        wxLogError("The function does nothing because sub-histogram is longer than the current lut.");
        return;
    }
    m_levels = {m_rangeMin, m_rangeMax}; // where the levels dialog begins; the table stays equalised
}

template <typename T>
void zel_GrayMappingModule<T>::ResetMapping() {
    InitMappingTable();
    // Here values are compared with bin numbers. For 8 and 16 bits the two are the same.
    const auto positionOf = [this](T value) {
        return HasData() ? static_cast<T>(GetHistogram().GetBinPos(value)) : value;
    };
    switch (this->GetStretchEntry()) {
    case zel_ME_NO_STRETCH:
        SetIdentity();
        break;
    case zel_ME_LINEAR_STRETCH:
        SetLinearStretch();
        break;
    case zel_ME_PERCENTIL_STRETCH:
        SetPercentilStretch();
        break;
    case zel_ME_EQUALIZATION:
        SetHistEqualStretch();
        break;
    case zel_ME_LEVELS:
        m_levels.inMin = std::max(m_levels.inMin, positionOf(m_rangeMin));
        m_levels.inMax = std::min(m_levels.inMax, positionOf(m_rangeMax));
        UpdateLUT();
        break;
    case zel_ME_THRESHOLD: {
        const T low = positionOf(m_rangeMin);
        const T high = positionOf(m_rangeMax);
        for (T* const threshold : {&m_thresholds.lower, &m_thresholds.upper})
            *threshold = std::min(std::max(*threshold, low), high);
        DoThresholding();
        break;
    }
    }
}

template <typename T>
bool zel_GrayMappingModule<T>::HasData() {
    return !GetHistogram().empty();
}

template <typename T>
void zel_GrayMappingModule<T>::OnHistogramChange(const HistogramSet<T>& histograms) {
    this->m_histograms = histograms;
    if (HasData()) {
        const T low = std::max(m_rangeMin, GetHistogram().GetLeftCenter());
        const T high = std::min(m_rangeMax, GetHistogram().GetRightCenter());
        m_rangeMin = low;
        m_rangeMax = high;
        if (low > high)
            TakeWholeRange(); // nothing is left of the old one
    }
    ResetMapping();
}

template <typename T>
void zel_GrayMappingModule<T>::SetPal(const Palette& palette) {
    try {
        SpreadPalette(palette, m_paletteTable);
    } catch (const kep::LibException& failure) {
        ShowMessage(failure.GetText());
    }
}

template <typename T>
void zel_GrayMappingModule<T>::LogNotKept(const char* function) const {
    wxLogError("%s: Not implemented", QualifiedName<T>("zel_GrayMappingModule", function));
}

template <typename T>
void zel_GrayMappingModule<T>::ReadFromConfig(wxFileConfig&) {
    LogNotKept("ReadFromConfig");
}

template <typename T>
void zel_GrayMappingModule<T>::WriteToConfig(wxFileConfig&) {
    LogNotKept("WriteToConfig");
}

template <typename T>
void zel_GrayMappingModule<T>::ReadLevelsFromConfig(wxFileConfig&) {
    LogNotKept("ReadLevelsFromConfig");
}

template <typename T>
void zel_GrayMappingModule<T>::WriteLevelsToConfig(wxFileConfig&) {
    LogNotKept("WriteLevelsToConfig");
}

} // namespace zel
