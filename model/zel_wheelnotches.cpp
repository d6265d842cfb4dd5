#include "model/zel_wheelnotches.h"

namespace zel {

int WheelNotches::Turn(int rotation, int delta) {
    if (delta <= 0)
        return 0;
    m_rest += rotation;
    const int notches = m_rest / delta;
    m_rest %= delta;
    return notches;
}

} // namespace zel
