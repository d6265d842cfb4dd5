// What the colour module makes of its histograms; dialogs and configuration have sources of their own.

#include "mapping/zel_rgbmapping.h"

#include "mapping/commands/zel_previewparams.h"

#include <wx/log.h>
#include <wx/menu.h>

#include <algorithm>

namespace zel {

namespace {

constexpr int channels[] = {0, 1, 2};
constexpr int allChannels = 3; // as a preview event says it

/// Calls f with the channels that a preview event means: one, all, or none.
template <typename F>
void ForChannels(int channel, const F& f) {
    for (const int c : channels)
        if (channel == c || channel == allChannels)
            f(c);
}

} // namespace

template <typename T>
zel_RGBMappingModule<T>::zel_RGBMappingModule(wxFrame* frame, const HistogramSet<kep::RGB_generic<T>>& histograms)
    : zel_MappingModule<kep::RGB_generic<T>>(frame, histograms, 0.001) {
    // This holds the new thresholds at bin numbers: over a histogram from 50 to 100 they become 50 to 50, and a later
    // thresholding begins there.
    zel_RGBMappingModule::ResetMapping();
}

template <typename T>
wxMenu* zel_RGBMappingModule<T>::CreateMenu(int& id) {
    const bool isFirst = !this->HasMenu();
    wxMenu* const menu = zel_MappingModule<kep::RGB_generic<T>>::CreateMenu(id);
    if (!isFirst)
        return menu;
    this->InsertBitdepth(*menu);
    const auto idOf = [this](int offset) { return this->GetMenuId(offset); };
    menu->AppendSeparator();
    menu->Append(idOf(zel_CE_SHOW_ALL), "&Show RGB\tF5", "Show all three rgb channels");
    menu->AppendSeparator();
    menu->AppendCheckItem(idOf(zel_CE_RED), "&Red channel\tF6", "Show/hide red channel");
    menu->AppendCheckItem(idOf(zel_CE_GREEN), "&Green channel\tF7", "Show/hide green channel");
    menu->AppendCheckItem(idOf(zel_CE_BLUE), "&Blue channel\tF8", "Show/hide blue channel");
    this->Bind(wxEVT_MENU, &zel_RGBMappingModule::OnMapping, this, idOf(zel_ME_BITDEPTH), id);
    this->Bind(wxEVT_UPDATE_UI, &zel_RGBMappingModule::OnUpdateUI, this, idOf(zel_CE_SHOW_ALL), idOf(zel_CE_BLUE));
    this->Bind(zel_EVT_LEVELS_PREVIEW, &zel_RGBMappingModule::OnPreviewLevels, this);
    this->Bind(zel_EVT_THRESHOLDING_PREVIEW, &zel_RGBMappingModule::OnPreviewThresholding, this);
    return menu;
}

template <typename T>
void zel_RGBMappingModule<T>::Map(const kep::RGB_generic<T>* data,
                                  Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const {
    const auto table = [this](int c) -> const Table& { return IsChannelShown(c) ? GetMappingTable(c) : m_blackTable; };
    kep::MapToPixels(table(0), table(1), table(2), data, buffer.GetCount(), buffer.data);
}

template <typename T>
void zel_RGBMappingModule<T>::UpdateChannelLUT(Table& table, const TLevelsParams<T, unsigned char>& params) {
    FillTable(params, table);
}

template <typename T>
void zel_RGBMappingModule<T>::UpdateLUTs() {
    for (const int c : channels)
        UpdateChannelLUT(TableOf(c), GetLevels(c));
}

template <typename T>
void zel_RGBMappingModule<T>::DoChannelThresholding(Table& table, const ThresParams<T>& params, int channel) {
    if (this->GetChannel(channel).IsThresholdedBy(params))
        FillTable(params, table);
    else
        UpdateChannelLUT(table, GetLevels(channel));
}

template <typename T>
void zel_RGBMappingModule<T>::DoThresholding() {
    for (const int c : channels)
        DoChannelThresholding(TableOf(c), GetThresholds(c), c);
}

template <typename T>
void zel_RGBMappingModule<T>::SetIdentity() {
    for (const int c : channels)
        this->GetChannel(c).StretchNone();
    UpdateLUTs();
}

template <typename T>
void zel_RGBMappingModule<T>::SetLinearStretch() {
    for (const int c : channels) {
        if (this->GetHistogram(c).empty())
            continue;
        this->GetChannel(c).StretchLinearOrWhole(this->GetHistogram(c));
        wxLogDebug("linear stretch %d - %u %u", c, unsigned{GetLevels(c).inMin}, unsigned{GetLevels(c).inMax});
    }
    UpdateLUTs();
}

template <typename T>
void zel_RGBMappingModule<T>::SetPercentilStretch() {
    for (const int c : channels) {
        if (this->GetHistogram(c).empty())
            continue;
        this->GetChannel(c).StretchPercentil(this->GetHistogram(c), this->GetPercentilValue());
        wxLogDebug("percentil stretch %d - %u %u", c, unsigned{GetLevels(c).inMin}, unsigned{GetLevels(c).inMax});
    }
    UpdateLUTs();
}

template <typename T>
void zel_RGBMappingModule<T>::SetHistEqualStretch() {
    wxLogError("The function does nothing. It is implemented only for GRAY or float images.");
}

template <typename T>
void zel_RGBMappingModule<T>::ResetMapping() {
    using Limits = std::numeric_limits<T>;
    for (Table* const table : {&m_tables[0], &m_tables[1], &m_tables[2], &m_blackTable})
        table->Init(long{Limits::max()} + 1, Limits::min(), Limits::max());
    m_blackTable.CreateAffine(0.0F, 0.0F, 0, 255);
    for (const int c : channels)
        this->GetChannel(c).HoldAll(this->GetHistogram(c));
    const int stretch = this->GetStretchEntry();
    if (stretch == zel_ME_LEVELS)
        UpdateLUTs();
    else if (stretch == zel_ME_THRESHOLD)
        DoThresholding();
    else
        this->RunStretch(stretch);
}

template <typename T>
void zel_RGBMappingModule<T>::OnHistogramChange(const HistogramSet<kep::RGB_generic<T>>& histograms) {
    this->TakeHistograms(histograms);
    ResetMapping();
}

template <typename T>
bool zel_RGBMappingModule<T>::HasData() {
    return this->HasBins();
}

template <typename T>
void zel_RGBMappingModule<T>::ChooseChannels(int offset, bool isChecked) {
    if (offset == zel_CE_SHOW_ALL)
        m_isShown.fill(true);
    else if (offset >= zel_CE_RED && offset <= zel_CE_BLUE)
        m_isShown[static_cast<std::size_t>(offset - zel_CE_RED)] = isChecked;
}

template <typename T>
void zel_RGBMappingModule<T>::OnMapping(wxCommandEvent& event) {
    this->RunCommand(event, [this, isChecked = event.IsChecked()](int offset) { ChooseChannels(offset, isChecked); });
}

template <typename T>
void zel_RGBMappingModule<T>::OnUpdateUI(wxUpdateUIEvent& event) {
    const int offset = this->OffsetOf(event);
    if (offset < zel_CE_SHOW_ALL || offset > zel_CE_BLUE) {
        event.Skip();
        return;
    }
    event.Enable(HasData());
    if (offset >= zel_CE_RED)
        event.Check(IsChannelShown(offset - zel_CE_RED));
}

template <typename T>
void zel_RGBMappingModule<T>::OnPreviewLevels(zel_LevelsEvent& event) {
    const auto params = detail::LevelsOf<T>(event);
    const auto fill = [&](int c) { UpdateChannelLUT(TableOf(c), params); };
    if (detail::TryToFill([&] { ForChannels(event.GetChannel(), fill); }))
        this->TellMappingChanged(false);
}

template <typename T>
void zel_RGBMappingModule<T>::OnPreviewThresholding(zel_ThresholdingEvent& event) {
    const auto params = detail::ThresholdsOf<T>(event);
    const auto fill = [&](int c) { DoChannelThresholding(TableOf(c), params, c); };
    if (detail::TryToFill([&] { ForChannels(event.GetChannel(), fill); }))
        this->TellMappingChanged(false);
}

// Dialogs and configuration are instantiated in files of their own.
template class zel_RGBMappingModule<unsigned char>;
template class zel_RGBMappingModule<unsigned short>;

} // namespace zel
