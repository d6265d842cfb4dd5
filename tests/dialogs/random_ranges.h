#pragma once

// Ranges of floats as images have them, for dialogs that must take their own values back.

#include "tests/support/user.h"

#include <cmath>
#include <random>
#include <utility>

namespace zel::test {

using FloatRange = std::pair<float, float>;

/// A range about 1 wide, and for every second number one of 0.001 to 1000.
inline FloatRange RandomRange(std::mt19937& random, int number) {
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const double width = number % 2 == 0 ? between(0.9, 1.1) : std::pow(10.0, between(-3.0, 3.0));
    const double low = between(-1.0, 1.0) * width;
    return {static_cast<float>(low), static_cast<float>(low + width)};
}

/// Presses OK in a dialog that is not on the screen. @return whether the dialog has taken it
inline bool IsAccepted(wxDialog& dialog) {
    dialog.SetReturnCode(wxID_CANCEL);
    wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
    In(dialog, wxID_OK).ProcessWindowEvent(ok);
    return dialog.GetReturnCode() == wxID_OK;
}

} // namespace zel::test
