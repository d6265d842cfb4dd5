#pragma once

#include "model/zel_export.h"

#include <wx/colour.h>
#include <wx/gdicmn.h>

#include <vector>

namespace zel {

/// What a gradient stripe shows.
struct StripeState {
    bool shaded = true;                  ///< a gamma ramp between the two positions; if not, a plain band
    wxColour leftColour{0, 0, 0};        ///< up to the left position
    wxColour rightColour{255, 255, 255}; ///< from the right position on
    wxColour rampColour{255, 255, 255};  ///< bright end of the ramp, or the band
    double gamma = 1.0;                  ///< of the ramp
    int count = 256;                     ///< positions
    int left = 0;    ///< beyond `right` the stripe is crossed: the colours swap, the ramp runs the other way
    int right = 255; ///< from 0 to count - 1
};

/// One rectangle of a stripe.
struct StripeFill {
    wxRect area;     ///< may reach over the edge
    wxColour colour; ///< fills all of it
};

/// The rectangles of a stripe, to be filled one after the other; the first covers all of it. Some reach over the edge.
ZEL_EXPORT std::vector<StripeFill> LayOutStripe(const StripeState& state, wxSize window);

} // namespace zel
