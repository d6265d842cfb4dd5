#pragma once

#include "mapping/zel_palettemapping.h"

namespace zel {

/// The mapping of single-valued images: T is unsigned char, unsigned short, int or float.
template <typename T>
class ZEL_EXPORT zel_GrayMappingModule : public zel_PaletteMappingModule<T> {
public:
    zel_GrayMappingModule(wxFrame* frame, const HistogramSet<T>& histograms);

    wxMenu* CreateMenu(int& id) override;
    void Map(const T* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const override;

    const TLevelsParams<T, unsigned char>& GetLevels() const { return this->GetChannel(0).levels; }
    const ThresParams<T>& GetThresholds() const { return this->GetChannel(0).thresholds; }
    /// The intensities that count as the image's range.
    T GetRangeMin() const { return this->GetChannel(0).rangeMin; }
    T GetRangeMax() const { return this->GetChannel(0).rangeMax; }

    void OnMapping(wxCommandEvent& event);
};

#define ZEL_DECLARE(T) extern template class zel_GrayMappingModule<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
