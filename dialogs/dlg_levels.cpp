#include "dialogs/dlg_levels.h"

#include "dialogs/controls/zel_rangecontrol.h"
#include "dialogs/wdr/dlg_levels_wdr.h"
#include "dialogs/wdr/zel_histogramlayout.h"

namespace zel {

template <typename T, typename U>
LevelsWidget<T, U>::LevelsWidget(wxWindow* parent, wxWindowID id, const std::vector<Histogram<T>*>& histograms,
                                 const std::vector<TLevelsParams<T, U>>& params_vector,
                                 const wxArrayString& channel_names, const wxString& title, const wxPoint& pos,
                                 const wxSize& size, long style)
    : zel_ChannelDialog<T, TLevelsParams<T, U>>(parent, id, histograms, params_vector, channel_names, title, pos, size,
                                                style, {"dlg_levels", "LevelsWidget"}),
      m_inputControl(
          MakeRangeControl<T>(this, zel_inputControlId, {.showGamma = true, .shaded = true, .rightColour = *wxWHITE})),
      m_outputControl(MakeRangeControl<U>(this, zel_outputControlId,
                                          {.allowCrossing = true, .shaded = true, .rightColour = *wxWHITE})) {
    LevelsFunc(this);
    this->Open(channel_names, zel_levelsResetId, size);
}

template <typename T, typename U>
void LevelsWidget<T, U>::BindControls(TLevelsParams<T, U>& shown, const Histogram<T>& histogram) {
    m_inputControl->BindVariables(&shown.inMin, &shown.inMax, &shown.gamma, histogram.GetLeftCenter(),
                                  histogram.GetRightCenter(), PositionCount(histogram.size()));
    m_outputControl->BindVariables(&shown.outMin, &shown.outMax, nullptr, 0, 255, 256);
}

template <typename T, typename U>
void LevelsWidget<T, U>::ResetControls() {
    m_inputControl->Reset();
    m_outputControl->Reset();
}

template <typename T, typename U>
bool LevelsWidget<T, U>::StoreControls() {
    return m_inputControl->Validate() && m_inputControl->TransferDataFromWindow() && m_outputControl->Validate() &&
           m_outputControl->TransferDataFromWindow();
}

#define ZEL_INSTANTIATE(T) template class LevelsWidget<T, unsigned char>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
