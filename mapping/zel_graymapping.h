#pragma once

#include "dialogs/zel_previewevents.h"
#include "mapping/zel_mappingmodule.h"
#include "mapping/zel_palette.h"
#include "model/zel_mappingparams.h"

namespace zel {

/// Menu entries of the palettes, as offsets from the module's first id; also the palette modes.
enum zel_PaletteEntry : int {
    zel_PE_GRAY = 8,
    zel_PE_SATURATION = 9,
    zel_PE_LABELS = 10,
    zel_PE_PERIODIC = 11,
    zel_PE_FILE = 12
};

/// The mapping of single-valued images: T is unsigned char, unsigned short, int or float. A table holds the stretch and
/// gives an 8-bit level, which is shown as gray or takes its colour from a palette.
///
/// 8 and 16 bits have a table entry for each possible value, int one for each number between the image's extremes, and
/// float 256 steps between them. What goes wrong in a table is shown in a message box, and the viewer goes on.
template <typename T>
class ZEL_EXPORT zel_GrayMappingModule : public zel_MappingModule<T> {
public:
    zel_GrayMappingModule(wxFrame* frame, const HistogramSet<T>& histograms);

    wxMenu* CreateMenu(int& id) override;
    void Map(const T* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const override;

    void SetRange() override;
    void SetBitdepth() override;
    void SetIdentity() override;
    void SetLinearStretch() override;
    void SetPercentilStretch() override;
    /// Needs a range no longer than the table; says so in the log otherwise. Values outside the range become black.
    void SetHistEqualStretch() override;
    bool SetLevelsStretch() override;
    bool SetThreshold() override;

    /// Gray modules keep nothing in a configuration; each of the four logs that as an error.
    void ReadFromConfig(wxFileConfig& config) override;
    void WriteToConfig(wxFileConfig& config) override;
    void ReadLevelsFromConfig(wxFileConfig& config) override;
    void WriteLevelsToConfig(wxFileConfig& config) override;

    /// The range can only shrink by this.
    void OnHistogramChange(const HistogramSet<T>& histograms) override;
    void ResetMapping() override;
    bool HasData() override;

    /// Spreads a palette over the levels from 1 on, again and again if it is short; level 0 is always black. An empty
    /// palette changes nothing.
    void SetPal(const Palette& palette);

    /// Offset of the active palette's entry.
    int GetPaletteMode() const { return m_paletteMode; }
    const TLevelsParams<T, unsigned char>& GetLevels() const { return m_levels; }
    const ThresParams<T>& GetThresholds() const { return m_thresholds; }
    /// The intensities that count as the image's range.
    T GetRangeMin() const { return m_rangeMin; }
    T GetRangeMax() const { return m_rangeMax; }
    /// Voxel value to level.
    const kep::LUT<T, unsigned char>& GetMappingTable() const { return m_mappingTable; }

    void OnMapping(wxCommandEvent& event);
    void OnUpdateUI(wxUpdateUIEvent& event);
    void OnPreviewLevels(zel_LevelsEvent& event);
    void OnPreviewThresholding(zel_ThresholdingEvent& event);

private:
    const Histogram<T>& GetHistogram() const { return this->m_histograms.Get(); }
    void InitMappingTable();
    void TakeWholeRange();
    void UseLevels(const TLevelsParams<T, unsigned char>& levels);
    /// Makes the mapping table of the levels.
    void UpdateLUT();
    /// Makes the mapping table of the thresholds.
    void DoThresholding();
    /// The part of the histogram between the ends of the range, whichever of them is the lower.
    void CreateRangeHist(Histogram<T>& histogram) const;
    void ChoosePalette(int entry);
    void LogNotKept(const char* function) const;

    T m_rangeMin{};
    T m_rangeMax{};
    int m_paletteMode = zel_PE_GRAY;
    kep::LUT<T, unsigned char> m_mappingTable;
    kep::LUT<unsigned char, kep::RGB_generic<unsigned char>> m_paletteTable;
    TLevelsParams<T, unsigned char> m_levels;
    ThresParams<T> m_thresholds;
};

#define ZEL_DECLARE(T) extern template class zel_GrayMappingModule<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
