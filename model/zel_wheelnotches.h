#pragma once

#include "model/zel_export.h"

namespace zel {

/// Makes whole notches of a wheel's turns, some of which come in parts of one.
class ZEL_EXPORT WheelNotches {
public:
    /// @param rotation  of one event, above 0 away from the user
    /// @param delta     of a whole notch
    /// @return how many notches became full
    int Turn(int rotation, int delta);

private:
    int m_rest = 0;
};

} // namespace zel
