#include "dialogs/dlg_thres.h"

#include "dialogs/controls/zel_rangecontrol.h"
#include "dialogs/wdr/dlg_thres_wdr.h"
#include "dialogs/wdr/zel_histogramlayout.h"
#include "dialogs/zel_previewevents.h"

namespace zel {

template <typename T>
ThresholdingDialog<T>::ThresholdingDialog(wxWindow* parent, wxWindowID id, const std::vector<Histogram<T>*>& histograms,
                                          const std::vector<ThresParams<T>>& params_vector,
                                          const wxArrayString& channel_names, const wxString& title, const wxPoint& pos,
                                          const wxSize& size, long style)
    : zel_ChannelDialog<T, ThresParams<T>>(parent, id, histograms, params_vector, channel_names, title, pos, size,
                                           style, {"dlg_thres", "ThresholdingDialog"}),
      m_control(MakeRangeControl<T>(this, zel_inputControlId, {.rightColour = *wxBLACK})) {
    if (this->HasChannels())
        BindControls(this->params.front(), *histograms.front());
    ThresholdFunc(this);
    this->Open(channel_names, zel_thresholdResetId, size);
    this->Bind(zel_EVT_THRESHOLDING_PREVIEW, [this](zel_ThresholdingEvent&) { this->DoPreview(); });
}

template <typename T>
void ThresholdingDialog<T>::BindControls(ThresParams<T>& shown, const Histogram<T>& histogram) {
    m_control->BindVariables(&shown.lower, &shown.upper, nullptr, histogram.GetLeftCenter(), histogram.GetRightCenter(),
                             PositionCount(histogram.size()));
}

template <typename T>
void ThresholdingDialog<T>::ResetControls() {
    m_control->Reset();
}

template <typename T>
bool ThresholdingDialog<T>::StoreControls() {
    return m_control->Validate() && m_control->TransferDataFromWindow();
}

#define ZEL_INSTANTIATE(T) template class ThresholdingDialog<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
