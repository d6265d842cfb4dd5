// The commands of the gray module that ask the user.

#include "dialogs/dlg_levels.h"
#include "dialogs/dlg_set_range.h"
#include "dialogs/dlg_thres.h"
#include "dialogs/zel_channelparams.h"
#include "mapping/gray/zel_graymapping_impl.h"

#include <wx/frame.h>

#include <optional>

namespace zel {

namespace {

/// Lets the user choose parameters for a range of values.
/// @param start  what the dialog begins with, held within the range
/// @return none if the user has cancelled, or the frame has gone
template <typename Dialog, typename T, typename Params>
std::optional<Params> Ask(wxFrame* frame, Histogram<T>& range, const Params& start, const wxString& title) {
    wxArrayString names;
    names.Add("Gray");
    const std::vector<Histogram<T>*> histograms{&range};
    std::vector<Params> params{HoldWithin(range, start)};
    Dialog dialog(frame, wxID_ANY, histograms, params, names, title, wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxCLIP_CHILDREN);
    if (RunModal(dialog) != wxID_OK)
        return std::nullopt;
    dialog.GetParams(params);
    return params.front();
}

bool AskForRange(wxFrame* frame, float lowest, float highest, float& min, float& max) {
    return GetFloatRangeFromUser(frame, lowest, highest, min, max);
}

template <std::integral T>
bool AskForRange(wxFrame* frame, T lowest, T highest, T& min, T& max) {
    long first = min;
    long last = max;
    if (!GetLongRangeFromUser(frame, lowest, highest, first, last))
        return false;
    min = static_cast<T>(first);
    max = static_cast<T>(last);
    return true;
}

} // namespace

template <typename T>
void zel_GrayMappingModule<T>::SetRange() {
    if (!HasData())
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    const Histogram<T>& histogram = GetHistogram();
    T min = m_rangeMin;
    T max = m_rangeMax;
    if (!AskForRange(this->GetFrame(), histogram.GetLeftCenter(), histogram.GetRightCenter(), min, max) || !self)
        return;
    m_rangeMin = min;
    m_rangeMax = max;
    ResetMapping();
}

template <typename T>
bool zel_GrayMappingModule<T>::SetLevelsStretch() {
    if (!HasData())
        return false;
    const wxWeakRef<wxEvtHandler> self(this);
    Histogram<T> range;
    CreateRangeHist(range);
    const auto chosen = Ask<LevelsWidget<T, unsigned char>>(this->GetFrame(), range, m_levels, "Adjust Levels");
    if (!self)
        return false;
    if (chosen)
        UseLevels(*chosen);
    else
        ResetMapping();
    return chosen.has_value();
}

template <typename T>
bool zel_GrayMappingModule<T>::SetThreshold() {
    if (!HasData())
        return false;
    const wxWeakRef<wxEvtHandler> self(this);
    Histogram<T> range;
    CreateRangeHist(range);
    const auto chosen = Ask<ThresholdingDialog<T>>(this->GetFrame(), range, m_thresholds, "Adjust Thresholds");
    if (!self)
        return false;
    if (chosen) {
        m_thresholds = *chosen;
        DoThresholding();
    } else {
        UpdateLUT(); // the curve of the levels, whatever the stretch: an equalised picture becomes a plain ramp
    }
    return chosen.has_value();
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template void zel_GrayMappingModule<T>::SetRange();                                                                \
    template bool zel_GrayMappingModule<T>::SetLevelsStretch();                                                        \
    template bool zel_GrayMappingModule<T>::SetThreshold();
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
