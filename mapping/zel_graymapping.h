#pragma once

#include "mapping/zel_palettemapping.h"

namespace zel {

/// The mapping of single-valued images: T is unsigned char, unsigned short, int or float.
template <typename T>
class ZEL_EXPORT zel_GrayMappingModule : public zel_PaletteMappingModule<T> {
public:
    /// Shows the whole range, without a stretch.
    /// @param frame       gets the events; null until the module is added to one
    /// @param histograms  of the whole sequence; copied
    zel_GrayMappingModule(wxFrame* frame, const HistogramSet<T>& histograms);

    wxMenu* CreateMenu(int& id) override;
    void Map(const T* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const override;

    /// The levels: those of the last stretch, or with which the dialog begins.
    const TLevelsParams<T, unsigned char>& GetLevels() const { return this->GetChannel(0).levels; }
    /// The thresholds: those of the last dialog, or the ends of the range.
    const ThresParams<T>& GetThresholds() const { return this->GetChannel(0).thresholds; }
    /// The intensities that count as the image's range.
    T GetRangeMin() const { return this->GetChannel(0).rangeMin; }
    T GetRangeMax() const { return this->GetChannel(0).rangeMax; } ///< its other end

    void OnMapping(wxCommandEvent& event); ///< of the menu
};

#define ZEL_DECLARE(T) extern template class zel_GrayMappingModule<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
