#pragma once

#include "mapping/zel_palettemapping.h"
#include "model/zel_complexparts.h"

#include <array>
#include <complex>

namespace zel {

/// Menu entry of the real part, as an offset from the module's first id; those of the other parts follow in their
/// order.
inline constexpr int zel_firstPartEntry = 17;

/// The mapping of complex images: one of the four parts is shown at a time, as a gray image of its values is. Each part
/// keeps its own range, levels and thresholds; the stretch and the palette are common to all. T is float.
template <typename T>
class ZEL_EXPORT zel_ComplexMappingModule : public zel_PaletteMappingModule<std::complex<T>>,
                                            public zel_ComplexPartShown {
public:
    /// Shows the first part that is enabled.
    /// @param frame                              gets the events; null until the module is added to one
    /// @param histograms                         of the four parts; copied
    /// @param real, imaginary, phase, amplitude  whether the part can be shown; not if it is constant over the image
    /// @throws const char* "Complex: Shouldn't get here" if none can be shown
    zel_ComplexMappingModule(wxFrame* frame, const HistogramSet<std::complex<T>>& histograms, bool real, bool imaginary,
                             bool phase, bool amplitude);

    wxMenu* CreateMenu(int& id) override;
    /// Computes the part shown for these voxels alone.
    void Map(const std::complex<T>* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const override;

    ComplexMode GetShowMode() const override { return static_cast<ComplexMode>(this->GetShownChannel()); }
    /// Whether the part can be shown: it is not constant over the image.
    bool IsPartEnabled(ComplexMode part) const { return m_enabled[static_cast<std::size_t>(part)]; }

    /// Levels of a part.
    const TLevelsParams<T, unsigned char>& GetLevels(ComplexMode part) const { return this->GetChannel(part).levels; }
    /// Thresholds of a part.
    const ThresParams<T>& GetThresholds(ComplexMode part) const { return this->GetChannel(part).thresholds; }
    /// The values that count as the part's range.
    T GetRangeMin(ComplexMode part) const { return this->GetChannel(part).rangeMin; }
    T GetRangeMax(ComplexMode part) const { return this->GetChannel(part).rangeMax; } ///< its other end

    void OnMapping(wxCommandEvent& event); ///< of the menu
    /// Sets the marks of the entries of the parts.
    void OnShowPartChange(wxUpdateUIEvent& event);

private:
    using Enabled = std::array<bool, complexModeCount>;

    static int FirstOf(const Enabled& enabled);
    void ChoosePart(ComplexMode part, bool isChecked);

    Enabled m_enabled;
};

extern template class zel_ComplexMappingModule<float>;

} // namespace zel
