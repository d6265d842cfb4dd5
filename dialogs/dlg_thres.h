#pragma once

#include "dialogs/zel_channeldialog.h"
#include "dialogs/zel_minmaxctrl.h"

namespace zel {

/// The dialog of the thresholds: a lower and an upper one for each channel or for "All", previewed by a
/// zel_ThresholdingEvent to the parent's event handlers. Otherwise as LevelsWidget.
template <typename T>
class ZEL_EXPORT ThresholdingDialog : public zel_ChannelDialog<T, ThresParams<T>> {
public:
    /// Previews at once.
    /// @param parent, id, title, pos, size, style  as for wxDialog; the parent's event handlers get the previews
    /// @param histograms                           of each channel, at least one; not owned, and needed as long as the
    ///                                             dialog is open
    /// @param params_vector                        of each channel, within the values of its histogram
    /// @param channel_names                        of each channel, for the choice
    ThresholdingDialog(wxWindow* parent, wxWindowID id, const std::vector<Histogram<T>*>& histograms,
                       const std::vector<ThresParams<T>>& params_vector, const wxArrayString& channel_names,
                       const wxString& title, const wxPoint& pos, const wxSize& size, long style);

private:
    void BindControls(ThresParams<T>& shown, const Histogram<T>& histogram) override;
    void ResetControls() override;
    bool StoreControls() override;

    VariableMinMaxCtrl<T>* m_control;
};

#define ZEL_DECLARE(T) extern template class ThresholdingDialog<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
