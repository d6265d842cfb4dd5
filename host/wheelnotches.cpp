#include "host/wheelnotches.h"

namespace zelviewer {

int WheelNotches::Turn(int rotation, int delta) {
    if (delta <= 0)
        return 0;
    m_rest += rotation;
    const int notches = m_rest / delta;
    m_rest %= delta;
    return notches;
}

} // namespace zelviewer
