#pragma once

class wxWindow;

namespace zel {

constexpr int zel_thresholdResetId = 10006;

/// Lays out the thresholding dialog, which has made its graph and its control before.
void ThresholdFunc(wxWindow* dialog);

} // namespace zel
