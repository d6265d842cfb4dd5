#pragma once

#include "dialogs/zel_histgraph.h"
#include "dialogs/zel_minmaxctrl.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"
#include "model/zel_mappingparams.h"

#include <wx/arrstr.h>
#include <wx/dialog.h>

#include <memory>
#include <string>
#include <vector>

class WXDLLIMPEXP_FWD_CORE wxCheckBox;
class WXDLLIMPEXP_FWD_CORE wxChoice;

namespace zel {

/// What the levels and the thresholding dialog share: the graph of a channel's histogram, the choice of the channel,
/// and the previews, which go to the parent's event handlers while the dialog is open.
///
/// Two or more channels of the same bounds have a pseudo-channel "All" besides, whose every change overwrites the
/// parameters of each channel.
/// @tparam Params  TLevelsParams<T, unsigned char> or ThresParams<T>
template <typename T, typename Params>
class ZEL_EXPORT zel_ChannelDialog : public wxDialog {
public:
    ~zel_ChannelDialog() override;

    /// The parameters of each channel, as OK has left them.
    void GetParams(std::vector<Params>& out) const { out = params; }
    /// Takes up what the controls have changed, and previews it if the preview box is checked.
    void DoPreview();
    /// Previews without being asked: each channel, or "All".
    void GeneratePreviewEvents(bool all);
    /// @param channel  -1 for "All"
    void SelectChannel(int channel);

    /// Once the dialog is hidden it previews nothing more: its caller has decided what stays.
    bool Show(bool show = true) override;

protected:
    /// The names by which assertions call the dialog.
    struct Source {
        const char* file;      ///< the source, as hosts know it
        const char* className; ///< without namespace
    };

    /// Makes the graph. The rest begins with Open.
    /// @param parent, id, title, pos, size, style  as for wxDialog
    /// @param histograms                           must live as long as the dialog is open, with its histograms
    /// @param params_vector                        of each channel; copied
    /// @param channel_names                        of each channel, for the choice
    /// @param source                               of the derived class
    zel_ChannelDialog(wxWindow* parent, wxWindowID id, const std::vector<Histogram<T>*>& histograms,
                      const std::vector<Params>& params_vector, const wxArrayString& channel_names,
                      const wxString& title, const wxPoint& pos, const wxSize& size, long style, const Source& source);

    /// Fills the controls of the layout, shows the first channel or "All", and begins to listen.
    void Open(const wxArrayString& channel_names, int resetId, const wxSize& size);

    /// Has the controls show these parameters and change them.
    virtual void BindControls(Params& shown, const Histogram<T>& histogram) = 0;
    virtual void ResetControls() = 0; ///< puts the controls to the bounds of the histogram
    /// Checks the contents of the controls and writes them to the parameters. @return false if something is wrong
    virtual bool StoreControls() = 0;

    bool HasChannels() const { return !_HistData_vector.empty() && !params.empty(); } ///< there is something to choose

    HistGraph<T>* graph;                                ///< of the channel that is chosen, the dialog's child
    const std::vector<Histogram<T>*>& _HistData_vector; ///< of each channel, the caller's
    std::vector<Params> params;                         ///< of each channel, as the controls have changed them

private:
    void PrepareAll();
    bool IsAllChosen() const;
    void SendPreview(const Params& shown, int channel);
    void OnHistogramType();
    void OnChannel();
    void OnReset();
    void OnOk();
    std::string Function(const char* name) const;

    wxChoice* m_typeChoice = nullptr;
    wxChoice* m_channelChoice = nullptr;
    wxCheckBox* m_previewBox = nullptr;
    std::unique_ptr<Params> All_params;
    std::unique_ptr<Histogram<T>> All_histdata;
    Source m_source;
    bool m_over = false; ///< shown and hidden again
};

#define ZEL_DECLARE(T)                                                                                                 \
    extern template class zel_ChannelDialog<T, TLevelsParams<T, unsigned char>>;                                       \
    extern template class zel_ChannelDialog<T, ThresParams<T>>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
