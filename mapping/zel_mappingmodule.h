#pragma once

#include "histogram/zel_histogramset.h"
#include "image/kep.h"
#include "model/zel_channelmapping.h"
#include "model/zel_export.h"
#include "model/zel_mapper.h"
#include "viewer/zel_extensionmodule.h"

#include <wx/menu.h>
#include <wx/weakref.h>

#include <array>

class WXDLLIMPEXP_FWD_BASE wxFileConfig;

namespace zel {

/// Menu entries of a mapping module, as offsets from its first id. Those from no stretch to threshold are also the
/// stretch modes.
enum zel_MappingEntry : int {
    zel_ME_BITDEPTH = 0,
    zel_ME_RANGE = 1,
    zel_ME_NO_STRETCH = 2,
    zel_ME_LINEAR_STRETCH = 3,
    zel_ME_PERCENTIL_STRETCH = 4,
    zel_ME_EQUALIZATION = 5,
    zel_ME_LEVELS = 6,
    zel_ME_THRESHOLD = 7,
    zel_ME_LAST = 21 ///< the last id that a module reserves; it has no entry
};

/// Decides what colour a voxel gets on the screen: to the canvas it is a mapper, to the frame an extension module with
/// the menu "&Mapping". It keeps the histograms of the image, the tables and the stretch. Exists for the types of
/// KEP_DISPLAY_TYPES; the factory makes the concrete one.
///
/// Map can be called from construction on. Each command of the menu ends in a zel_EVT_MAPPING_CHANGED at the frame,
/// and in a zel_EVT_MAPPING_COMMAND for the host unless the command does not propagate. The previews of the dialogs
/// are bound with the menu: a module without one shows none.
///
/// The frame, and the module with it, may go while a command of it shows a dialog; the command then ends there, and the
/// dialog as cancelled.
template <typename T>
class ZEL_EXPORT zel_MappingModule : public zel_ExtensionModule, public zel_Mapper<T> {
public:
    /// @param frame           gets the events; null until the module is added to one
    /// @param histograms      of the whole sequence; copied
    /// @param percentilValue  fraction of the voxels that the percentil stretch leaves out at either end
    zel_MappingModule(wxFrame* frame, const HistogramSet<T>& histograms, double percentilValue);

    /// Takes 22 ids, of which the first is one above the value given, and leaves `id` on the last. To be called once.
    wxMenu* CreateMenu(int& id) override;

    // The commands of the menu. The two first ask for what counts as the image's range and make the tables anew if the
    // user agrees.
    virtual void SetRange() = 0;    ///< asks for both ends
    virtual void SetBitdepth() = 0; ///< asks for the number of bits; in the menu for 8 and 16 bits only
    // The stretches. The two with a dialog return whether the user has agreed.
    virtual void SetIdentity() = 0;         ///< the whole range
    virtual void SetLinearStretch() = 0;    ///< from the lowest value that occurs to the highest
    virtual void SetPercentilStretch() = 0; ///< without the fraction GetPercentilValue() at either end
    virtual void SetHistEqualStretch() = 0; ///< as many voxels for each level
    virtual bool SetLevelsStretch() = 0;    ///< asks for levels, which are previewed
    virtual bool SetThreshold() = 0;        ///< asks for thresholds, which are previewed

    // A host may keep a mapping in a configuration of its own; nothing in the library calls these.
    virtual void ReadFromConfig(wxFileConfig& config) = 0;       ///< the whole state
    virtual void WriteToConfig(wxFileConfig& config) = 0;        ///< the whole state
    virtual void ReadLevelsFromConfig(wxFileConfig& config) = 0; ///< the levels alone
    virtual void WriteLevelsToConfig(wxFileConfig& config) = 0;  ///< the levels alone

    /// For the host to call when the image's data have changed.
    virtual void OnHistogramChange(const HistogramSet<T>& histograms) = 0;
    /// Makes the tables anew, by the present stretch.
    virtual void ResetMapping() = 0;
    virtual bool HasData() = 0; ///< a histogram has bins

    /// 0 no stretch, 1 linear, 2 percentil, 3 histogram equalization, 4 levels, 5 threshold.
    int GetStretchMode() const { return m_stretchMode - zel_ME_NO_STRETCH; }
    /// Fraction of the voxels that is left out at either end.
    double GetPercentilValue() const { return m_percentilValue; }
    /// The next percentil stretch, or ResetMapping, takes it up.
    void SetPercentilValue(double value) { m_percentilValue = value; }
    const HistogramSet<T>& GetHistograms() const { return m_histograms; } ///< of each channel

    /// Runs a command that all modules have. @param event  a command with an id of this module
    void OnMapping(wxCommandEvent& event);
    void OnUpdateUI(wxUpdateUIEvent& event); ///< sets the marks of the stretches

protected:
    using Element = typename HistogramSet<T>::Element; ///< of a channel's values
    /// 1 of gray images, 3 of colours, 4 of complex ones.
    static constexpr int channelCount = HistogramSet<T>::channelCount;

    /// Whether CreateMenu has been called.
    bool HasMenu() const { return GetMenuId(0) != 0; }
    /// Offset of a command's menu entry.
    int OffsetOf(const wxEvent& event) const { return event.GetId() - GetMenuId(0); }
    /// The offset of the active stretch: no stretch to threshold, or whatever a configuration held.
    int GetStretchEntry() const { return m_stretchMode; }
    void SetStretchEntry(int entry) { m_stretchMode = entry; } ///< changes no table
    /// Runs a stretch that asks nothing, from no stretch to equalization. @return whether the entry is one of them
    bool RunStretch(int entry);
    /// The entry "Set bitdepth...", for voxels of 8 and 16 bits. @param menu  as CreateMenu has made it
    void InsertBitdepth(wxMenu& menu) const;
    /// Sets the mark of a menu entry. An offset without an entry, or of one that has no mark, is left alone: whatever
    /// number a configuration held as the stretch may come here.
    void CheckEntry(int offset, bool isChecked);
    /// Tells the canvas, by way of the frame, that the tables have changed.
    void TellMappingChanged(bool committed);
    /// Runs a command to its end: what all modules do with it, then `own(offset)`, then the canvas is told, and the
    /// host. Whatever of it shows a dialog may outlive the module; the rest is then left out.
    template <typename Own>
    void RunCommand(wxCommandEvent& event, const Own& own) {
        const wxWeakRef<wxEvtHandler> self(this);
        OnMapping(event);
        if (self)
            own(OffsetOf(event));
        if (self)
            FinishCommand(event);
    }

    /// Histogram of a channel, whole.
    const Histogram<Element>& GetHistogram(int channel) const {
        if constexpr (channelCount == 1)
            return m_histograms.Get();
        else
            return m_histograms.Get(channel);
    }
    /// Whether any channel has.
    bool HasBins() const { return !m_histograms.IsEmpty(); }
    /// Range, levels and thresholds of a channel.
    ChannelMapping<Element>& GetChannel(int channel) { return m_channels[static_cast<std::size_t>(channel)]; }
    /// The same, to read.
    const ChannelMapping<Element>& GetChannel(int channel) const {
        return m_channels[static_cast<std::size_t>(channel)];
    }
    /// Copies new histograms and narrows the ranges to them. The tables stay.
    void TakeHistograms(const HistogramSet<T>& histograms);

private:
    void FinishCommand(const wxCommandEvent& event);

    HistogramSet<T> m_histograms;
    std::array<ChannelMapping<Element>, channelCount> m_channels;
    int m_stretchMode = zel_ME_NO_STRETCH;
    wxWeakRef<wxMenu> m_menu; // the menu bar's
    double m_percentilValue;
};

#define ZEL_DECLARE(T) extern template class zel_MappingModule<T>;
KEP_DISPLAY_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
