// The commands of the colour module that ask the user.

#include "dialogs/dlg_set_range.h"
#include "mapping/commands/zel_mappingquestions.h"
#include "mapping/zel_rgbmapping.h"

#include <wx/frame.h>

#include <algorithm>

namespace zel {

namespace {

wxArrayString ChannelNames() {
    wxArrayString names;
    names.Add("Red");
    names.Add("Green");
    names.Add("Blue");
    return names;
}

template <typename T>
T LeastOf(const kep::RGB_generic<T>& colour) {
    return std::min({colour.red, colour.green, colour.blue});
}

/// A colour of what `valueOf` gives for each channel.
template <typename T, typename F>
kep::RGB_generic<T> ColourOf(const F& valueOf) {
    return {valueOf(0), valueOf(1), valueOf(2)};
}
/// What `valueOf` gives for each channel.
template <typename F>
auto ListOf(const F& valueOf) {
    return std::vector{valueOf(0), valueOf(1), valueOf(2)};
}

} // namespace

template <typename T>
bool zel_RGBMappingModule<T>::HaveAllBins() const {
    return !this->GetHistogram(0).empty() && !this->GetHistogram(1).empty() && !this->GetHistogram(2).empty();
}

template <typename T>
void zel_RGBMappingModule<T>::SetRange() {
    if (!HaveAllBins())
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto lowest = ColourOf<T>([this](int c) { return this->GetHistogram(c).GetLeftCenter(); });
    const auto highest = ColourOf<T>([this](int c) { return this->GetHistogram(c).GetRightCenter(); });
    auto min = ColourOf<T>([this](int c) { return GetRangeMin(c); });
    auto max = ColourOf<T>([this](int c) { return GetRangeMax(c); });
    SetRGBRangeDlg<T> dialog(this->GetFrame(), lowest, highest, min, max);
    if (RunModal(dialog) != wxID_OK || !self)
        return;
    for (int c = 0; c < 3; ++c) {
        this->GetChannel(c).rangeMin = min.GetComponent(c);
        this->GetChannel(c).rangeMax = max.GetComponent(c);
    }
    ResetMapping();
}

template <typename T>
void zel_RGBMappingModule<T>::SetBitdepth() {
    if (!HaveAllBins())
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    const T current = LeastOf(ColourOf<T>([this](int c) { return GetRangeMax(c); }));
    const T limit = LeastOf(ColourOf<T>([this](int c) { return this->GetHistogram(c).GetRightCenter(); }));
    const auto bits = detail::AskForBitdepth(this->GetFrame(), current, limit);
    if (bits && self)
        ApplyBitdepth(*bits);
}

template <typename T>
void zel_RGBMappingModule<T>::ApplyBitdepth(int bits) {
    for (int c = 0; c < 3; ++c)
        this->GetChannel(c).rangeMax = detail::LargestOf<T>(bits);
    ResetMapping();
}

template <typename T>
bool zel_RGBMappingModule<T>::SetLevelsStretch() {
    if (!HaveAllBins())
        return false;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto chosen = detail::AskForLevels<T>(
        this->GetFrame(), ListOf([this](int c) { return this->GetChannel(c).CopyPart(this->GetHistogram(c)); }),
        ListOf([this](int c) { return GetLevels(c); }), ChannelNames());
    if (!self)
        return false;
    if (!chosen) {
        ResetMapping();
        return false;
    }
    for (std::size_t c = 0; c < 3; ++c)
        this->GetChannel(static_cast<int>(c)).levels = (*chosen)[c];
    UpdateLUTs();
    return true;
}

template <typename T>
bool zel_RGBMappingModule<T>::SetThreshold() {
    if (!HaveAllBins())
        return false;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto chosen = detail::AskForThresholds<T>(
        this->GetFrame(), ListOf([this](int c) { return this->GetChannel(c).CopyPart(this->GetHistogram(c)); }),
        ListOf([this](int c) { return GetThresholds(c); }), ChannelNames());
    if (!self)
        return false;
    if (!chosen) {
        ResetMapping(); // other than in a gray module, a thresholding in force is restored
        return false;
    }
    for (std::size_t c = 0; c < 3; ++c)
        this->GetChannel(static_cast<int>(c)).thresholds = (*chosen)[c];
    DoThresholding();
    return true;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template bool zel_RGBMappingModule<T>::HaveAllBins() const;                                                        \
    template void zel_RGBMappingModule<T>::SetRange();                                                                 \
    template void zel_RGBMappingModule<T>::SetBitdepth();                                                              \
    template void zel_RGBMappingModule<T>::ApplyBitdepth(int);                                                         \
    template bool zel_RGBMappingModule<T>::SetLevelsStretch();                                                         \
    template bool zel_RGBMappingModule<T>::SetThreshold();
ZEL_INSTANTIATE(unsigned char)
ZEL_INSTANTIATE(unsigned short)
#undef ZEL_INSTANTIATE

} // namespace zel
