#pragma once

class wxWindow;

namespace zel {

constexpr int zel_outputControlId = 10006; ///< the control of the output values
constexpr int zel_levelsResetId = 10007;

/// Lays out the levels dialog, which has made its graph and its controls before.
void LevelsFunc(wxWindow* dialog);

} // namespace zel
