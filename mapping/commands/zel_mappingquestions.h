#pragma once

// Private: the questions that the commands of the mapping modules ask.

#include "dialogs/dlg_levels.h"
#include "dialogs/dlg_thres.h"
#include "dialogs/zel_channelparams.h"
#include "dialogs/zel_modaldialog.h"
#include "model/zel_channelmapping.h"
#include "model/zel_saturate.h"

#include <cmath>
#include <optional>
#include <vector>

class WXDLLIMPEXP_FWD_CORE wxFrame;

namespace zel::detail {

/// Asks for parameters of some channels.
/// @param histograms  the part of each channel's histogram that is its range
/// @param start       what the dialog begins with; held within those parts
/// @return none if the user has cancelled, or the frame has gone
template <typename Dialog, typename T, typename Params>
std::optional<std::vector<Params>> AskForParams(wxFrame* frame, std::vector<Histogram<T>> histograms,
                                                std::vector<Params> start, const wxArrayString& names,
                                                const wxString& title) {
    std::vector<Histogram<T>*> addresses;
    for (std::size_t i = 0; i < histograms.size(); ++i) {
        start[i] = HoldWithin(histograms[i], start[i]);
        addresses.push_back(&histograms[i]);
    }
    Dialog dialog(frame, wxID_ANY, addresses, start, names, title, wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxCLIP_CHILDREN);
    if (RunModal(dialog) != wxID_OK)
        return std::nullopt;
    dialog.GetParams(start);
    return start;
}

template <typename T>
auto AskForLevels(wxFrame* frame, std::vector<Histogram<T>> histograms, std::vector<GrayLevels<T>> start,
                  const wxArrayString& names) {
    return AskForParams<LevelsWidget<T, unsigned char>>(frame, std::move(histograms), std::move(start), names,
                                                        "Adjust Levels");
}
template <typename T>
auto AskForThresholds(wxFrame* frame, std::vector<Histogram<T>> histograms, std::vector<ThresParams<T>> start,
                      const wxArrayString& names) {
    return AskForParams<ThresholdingDialog<T>>(frame, std::move(histograms), std::move(start), names,
                                               "Adjust Thresholds");
}

/// Asks for the number of bits in which the image's range ends.
/// @param current  the largest value now in the range
/// @param largest  the largest value that the image can have
/// @return none if the user has cancelled, left the bits as they are, or the frame has gone
std::optional<int> AskForBitdepth(wxFrame* frame, double current, double largest);

/// The largest value of so many bits, as far as T goes.
template <typename T>
T LargestOf(int bits) {
    return SaturateTo<T>(std::ldexp(1.0, bits) - 1.0);
}

} // namespace zel::detail
