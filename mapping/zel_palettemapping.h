#pragma once

#include "dialogs/zel_previewevents.h"
#include "mapping/zel_mappingmodule.h"
#include "model/zel_palette.h"

#include <functional>
#include <utility>

namespace zel {

/// Menu entries of the palettes, as offsets from the module's first id; also the palette modes.
enum zel_PaletteEntry : int {
    zel_PE_GRAY = 8,
    zel_PE_SATURATION = 9,
    zel_PE_LABELS = 10,
    zel_PE_PERIODIC = 11,
    zel_PE_FILE = 12
};

/// A mapping that shows one channel: a table holds its stretch and gives an 8-bit level, which is shown as gray or
/// takes its colour from a palette. The base of the gray module, whose one channel is always shown, and of the complex
/// one, which shows one of four.
///
/// 8 and 16 bits have a table entry for each possible value, int one for each number between the image's extremes, and
/// float 256 steps between them. What goes wrong in a table is shown in a message box, and the viewer goes on. A
/// channel whose histogram has no bins has no dialogs and no stretch but the identity.
template <typename Voxel>
class ZEL_EXPORT zel_PaletteMappingModule : public zel_MappingModule<Voxel> {
public:
    using Element = typename HistogramSet<Voxel>::Element; ///< of a channel's values

    wxMenu* CreateMenu(int& id) override; ///< the menu of the base, and the palettes

    void SetRange() override;    ///< of the channel that is shown
    void SetBitdepth() override; ///< of the channel that is shown
    /// What SetBitdepth does once the user has told how many: the shown channel's range ends with the largest value of
    /// so many bits, and the tables are made anew.
    void ApplyBitdepth(int bits);
    void SetIdentity() override;         ///< of the channel that is shown
    void SetLinearStretch() override;    ///< of the channel that is shown
    void SetPercentilStretch() override; ///< of the channel that is shown
    /// Needs a range no longer than the table; says so in the log otherwise. Values outside the range become black.
    void SetHistEqualStretch() override;
    bool SetLevelsStretch() override; ///< asks for levels, which are previewed
    bool SetThreshold() override;     ///< asks for thresholds, which are previewed

    /// These modules keep nothing in a configuration; each of the four logs that as an error.
    void ReadFromConfig(wxFileConfig& config) override;
    void WriteToConfig(wxFileConfig& config) override;        ///< logs an error
    void ReadLevelsFromConfig(wxFileConfig& config) override; ///< logs an error
    void WriteLevelsToConfig(wxFileConfig& config) override;  ///< logs an error

    /// The ranges can only shrink by this.
    void OnHistogramChange(const HistogramSet<Voxel>& histograms) override;
    void ResetMapping() override; ///< of the channel that is shown
    /// Whether any channel's histogram has bins.
    bool HasData() override;

    /// Spreads a palette over the levels from 1 on, again and again if it is short; level 0 is always black. An empty
    /// palette changes nothing.
    void SetPal(const Palette& palette);

    /// Gets a palette from the user. @param parent  for its dialogs; null without a frame
    /// @return false if there is none
    using PaletteQuestion = std::function<bool(wxWindow* parent, Palette& palette)>;
    /// Has the entry "Palette..." ask in another way. If that gives no palette, the one before stays, and its mark.
    /// Without a question of the host's the entry opens a file dialog, and is marked also when nothing was chosen or
    /// the file is bad, of which nothing is said; the colours stay then.
    void SetPaletteQuestion(PaletteQuestion question) { m_askForPalette = std::move(question); }

    /// Offset of the active palette's entry.
    int GetPaletteMode() const { return m_paletteMode; }
    /// Value of the channel shown to level.
    const kep::LUT<Element, unsigned char>& GetMappingTable() const { return m_mappingTable; }

    void OnUpdateUI(wxUpdateUIEvent& event); ///< sets the marks of the palettes
    /// Takes the levels into the table and tells the canvas; they stay the dialog's.
    void OnPreviewLevels(zel_LevelsEvent& event);
    /// Takes the thresholds into the table and tells the canvas.
    void OnPreviewThresholding(zel_ThresholdingEvent& event);

protected:
    /// @param frame       gets the events; null until the module is added to one
    /// @param histograms  of the whole sequence; copied
    /// @param shown       the channel that the tables are made for
    zel_PaletteMappingModule(wxFrame* frame, const HistogramSet<Voxel>& histograms, int shown);

    int GetShownChannel() const { return m_shown; } ///< the channel that the table is made for
    /// The tables stay as they are.
    void SetShownChannel(int channel) { m_shown = channel; }
    /// Makes the mapping table of the levels.
    void UpdateLUT();
    /// What a palette entry does; any other offset is left alone.
    void ChoosePalette(int offset);
    /// Colour of each level; null while gray is shown.
    const PaletteTable* GetPaletteTable() const { return m_paletteMode == zel_PE_GRAY ? nullptr : &m_paletteTable; }

private:
    ChannelMapping<Element>& Shown() { return this->GetChannel(m_shown); }
    const Histogram<Element>& GetShownHistogram() const { return this->GetHistogram(m_shown); }
    void InitMappingTable();
    /// Makes the mapping table of the thresholds.
    void DoThresholding();
    void LogNotKept(const char* function) const;

    int m_shown;
    int m_paletteMode = zel_PE_GRAY;
    PaletteQuestion m_askForPalette; // empty: the file dialog
    kep::LUT<Element, unsigned char> m_mappingTable;
    PaletteTable m_paletteTable;
};

/// The types of voxels that one channel at a time is shown of.
#define ZEL_PALETTE_TYPES(X) X(unsigned char) X(unsigned short) X(int) X(float) X(std::complex<float>)

#define ZEL_DECLARE(T) extern template class zel_PaletteMappingModule<T>;
ZEL_PALETTE_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
