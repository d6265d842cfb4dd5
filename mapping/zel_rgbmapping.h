#pragma once

#include "dialogs/zel_previewevents.h"
#include "mapping/zel_mappingmodule.h"

#include <array>

namespace zel {

/// Menu entries of the colour channels, as offsets from the module's first id.
enum zel_ChannelEntry : int { zel_CE_SHOW_ALL = 13, zel_CE_RED = 14, zel_CE_GREEN = 15, zel_CE_BLUE = 16 };

/// The mapping of colour images: the gray mapping three times, with a table for each channel, which can be hidden, and
/// without palettes. T is the component: unsigned char or unsigned short. Channels are 0 red, 1 green, 2 blue.
///
/// A table has an entry for each value of T, whatever the histogram's bounds. A channel whose histogram has no bins has
/// the whole range of T and no stretch but the identity; while there is such a channel, no dialog opens. There is no
/// histogram equalization.
template <typename T>
class ZEL_EXPORT zel_RGBMappingModule : public zel_MappingModule<kep::RGB_generic<T>> {
public:
    /// Shows the whole range of each channel, without a stretch.
    /// @param frame       gets the events; null until the module is added to one
    /// @param histograms  of the whole sequence; copied
    zel_RGBMappingModule(wxFrame* frame, const HistogramSet<kep::RGB_generic<T>>& histograms);

    wxMenu* CreateMenu(int& id) override;
    void Map(const kep::RGB_generic<T>* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const override;

    void SetRange() override;
    /// One depth for the three channels.
    void SetBitdepth() override;
    /// What SetBitdepth does once the user has told how many.
    void ApplyBitdepth(int bits);
    void SetIdentity() override;
    /// A channel with less than two values is shown over its whole range.
    void SetLinearStretch() override;
    void SetPercentilStretch() override;
    /// Logs that there is none.
    void SetHistEqualStretch() override;
    bool SetLevelsStretch() override; ///< asks for levels of each channel, which are previewed
    /// A channel whose thresholds are left at the ends of its range keeps its levels.
    bool SetThreshold() override;

    // The state goes to and from the configuration's current path, in keys that begin with "RGBMAP_". Reading makes no
    // table: ResetMapping does. Missing keys give no stretch, the whole range of T, and all channels shown. Doubles are
    // written with six digits.

    /// @{
    /// The whole state, or the levels alone.
    void ReadFromConfig(wxFileConfig& config) override;
    void WriteToConfig(wxFileConfig& config) override;
    void ReadLevelsFromConfig(wxFileConfig& config) override;
    void WriteLevelsToConfig(wxFileConfig& config) override;
    /// @}

    /// The ranges can only shrink by this.
    void OnHistogramChange(const HistogramSet<kep::RGB_generic<T>>& histograms) override;
    /// Holds levels and thresholds within the ranges, whatever the stretch.
    /// @throws kep::LibException for a gamma that is not a positive number, which only a configuration can bring
    void ResetMapping() override;
    /// Whether any channel's histogram has bins.
    bool HasData() override;

    /// Whether a channel takes part in the picture; else it is black there.
    bool IsChannelShown(int channel) const { return m_isShown[static_cast<std::size_t>(channel)]; }
    /// Levels of a channel.
    const TLevelsParams<T, unsigned char>& GetLevels(int channel) const { return this->GetChannel(channel).levels; }
    /// Thresholds of a channel.
    const ThresParams<T>& GetThresholds(int channel) const { return this->GetChannel(channel).thresholds; }
    /// The intensities that count as the channel's range.
    T GetRangeMin(int channel) const { return this->GetChannel(channel).rangeMin; }
    T GetRangeMax(int channel) const { return this->GetChannel(channel).rangeMax; } ///< its other end
    /// Component to level, also of a hidden channel.
    const kep::LUT<T, unsigned char>& GetMappingTable(int channel) const {
        return m_tables[static_cast<std::size_t>(channel)];
    }

    void OnMapping(wxCommandEvent& event);        ///< of the menu
    void OnUpdateUI(wxUpdateUIEvent& event);      ///< sets the marks of the channels
    void OnPreviewLevels(zel_LevelsEvent& event); ///< takes the levels into the table and tells the canvas
    /// Takes the thresholds into the table and tells the canvas.
    void OnPreviewThresholding(zel_ThresholdingEvent& event);

private:
    using Table = kep::LUT<T, unsigned char>;

    Table& TableOf(int channel) { return m_tables[static_cast<std::size_t>(channel)]; }
    void UpdateChannelLUT(Table& table, const TLevelsParams<T, unsigned char>& params);
    /// Makes the tables of the levels.
    void UpdateLUTs();
    void DoChannelThresholding(Table& table, const ThresParams<T>& params, int channel);
    /// Makes the tables of the thresholds.
    void DoThresholding();
    bool HaveAllBins() const;
    void ChooseChannels(int offset, bool isChecked);

    std::array<bool, 3> m_isShown{true, true, true};
    std::array<Table, 3> m_tables;
    Table m_blackTable;
};

extern template class zel_RGBMappingModule<unsigned char>;
extern template class zel_RGBMappingModule<unsigned short>;

} // namespace zel
