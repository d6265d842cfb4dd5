#pragma once

#include "dialogs/zel_channeldialog.h"
#include "dialogs/zel_minmaxctrl.h"

namespace zel {

/// The dialog of the levels: a low value, a high value and a gamma for the input, a low and a high value for the
/// output, which may cross, for one channel or for "All". Each change is previewed by a zel_LevelsEvent to the parent's
/// event handlers. The parameters are a copy: the caller fetches them with GetParams once ShowModal returns wxID_OK.
///
/// U is unsigned char.
template <typename T, typename U>
class ZEL_EXPORT LevelsWidget : public zel_ChannelDialog<T, TLevelsParams<T, U>> {
public:
    /// Previews at once.
    /// @param parent, id, title, pos, size, style  as for wxDialog; the parent's event handlers get the previews
    /// @param histograms                           of each channel, at least one; not owned, and needed as long as the
    ///                                             dialog is open
    /// @param params_vector                        of each channel, within the values of its histogram
    /// @param channel_names                        of each channel, for the choice
    LevelsWidget(wxWindow* parent, wxWindowID id, const std::vector<Histogram<T>*>& histograms,
                 const std::vector<TLevelsParams<T, U>>& params_vector, const wxArrayString& channel_names,
                 const wxString& title, const wxPoint& pos, const wxSize& size, long style);

private:
    void BindControls(TLevelsParams<T, U>& shown, const Histogram<T>& histogram) override;
    void ResetControls() override;
    bool StoreControls() override;

    VariableMinMaxCtrl<T>* m_inputControl;
    VariableMinMaxCtrl<U>* m_outputControl;
};

#define ZEL_DECLARE(T) extern template class LevelsWidget<T, unsigned char>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
