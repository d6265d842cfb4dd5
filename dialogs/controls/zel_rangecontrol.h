#pragma once

#include "dialogs/zel_minmaxctrl.h"

namespace zel {

/// What a dialog's range control has, by name.
struct RangeControlFeatures {
    bool showGamma = false;
    bool allowCrossing = false; ///< low may pass high
    bool shaded = false;        ///< a ramp in the stripe, otherwise a plain band
    wxColour rightColour;       ///< of the stripe; the left one is black, the ramp's white
};

template <typename T>
VariableMinMaxCtrl<T>* MakeRangeControl(wxWindow* parent, int id, const RangeControlFeatures& features) {
    return new VariableMinMaxCtrl<T>(parent, id, features.showGamma, features.allowCrossing, features.shaded, *wxBLACK,
                                     features.rightColour, *wxWHITE);
}

} // namespace zel
