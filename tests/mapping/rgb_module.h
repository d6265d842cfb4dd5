#pragma once

// The module of colour images without a frame and a menu: its ids then start at 0, so an entry's id is its offset.

#include "mapping/zel_rgbmapping.h"
#include "tests/mapping/counted.h"

namespace zel::test {

/// Histograms of the three channels.
template <typename T>
HistogramSet<kep::RGB_generic<T>> SetOf(const Histogram<T>& red, const Histogram<T>& green, const Histogram<T>& blue) {
    HistogramSet<kep::RGB_generic<T>> set;
    set.Set(0, red);
    set.Set(1, green);
    set.Set(2, blue);
    return set;
}

/// A module whose dialogs are agreed to at once, with the parameters that they begin with.
template <typename T>
class ColourModule : public zel_RGBMappingModule<T> {
public:
    using Colour = kep::RGB_generic<unsigned char>;

    ColourModule(const Histogram<T>& red, const Histogram<T>& green, const Histogram<T>& blue)
        : zel_RGBMappingModule<T>(nullptr, SetOf(red, green, blue)) {}
    /// Three channels alike.
    explicit ColourModule(const Histogram<T>& channel) : ColourModule(channel, channel, channel) {}

    bool SetLevelsStretch() override { return true; }
    bool SetThreshold() override { return true; }

    void Choose(int entry, bool isChecked = true) {
        wxCommandEvent event(wxEVT_MENU, entry);
        event.SetInt(isChecked ? 1 : 0);
        this->OnMapping(event);
    }
    void PreviewGamma(double gamma, int channel) {
        zel_LevelsEvent event(0, 255, gamma, 0, 255, channel);
        this->OnPreviewLevels(event);
    }
    void PreviewThresholds(float lower, float upper, int channel) {
        zel_ThresholdingEvent event(lower, upper, channel);
        this->OnPreviewThresholding(event);
    }
    /// The level of a component.
    int operator()(int channel, T component) const { return this->GetMappingTable(channel).Get(component); }
    Colour ColourOf(kep::RGB_generic<T> voxel) const {
        ColourBuffer buffer(1, 1);
        this->Map(&voxel, buffer);
        return buffer.data[0];
    }
};

} // namespace zel::test
