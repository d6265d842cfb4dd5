#pragma once

#include "core/kepcore/kep_vector.h"
#include "model/zel_planes.h"

#include <array>

namespace zel {

/// What the user has chosen to see, and how: the part of a view that a host can keep and give back.
struct ViewOptions {
    bool showXY = true;                           ///< the XY window is on view
    bool showXZ = true;                           ///< the XZ window is on view
    bool showYZ = true;                           ///< the YZ window is on view
    zel_ProjectionContent contentXY = zel_PC_CUT; ///< of the XY window
    zel_ProjectionContent contentXZ = zel_PC_CUT; ///< of the XZ window
    zel_ProjectionContent contentYZ = zel_PC_CUT; ///< of the YZ window
    int zoom = 0;                                 ///< level n > 0 magnifies n + 1 times, n < 0 reduces 1 - n times
    kep::Vector3d<float> cut;                     ///< microns
    kep::Vector3d<float> baseScale;               ///< pixels per micron at zoom 0
    bool reversedX = false;                       ///< X is displayed mirrored
    bool reversedY = false;                       ///< Y likewise
    bool reversedZ = false;                       ///< Z likewise

    /// @param type  zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    bool& Shown(zel_ProjectionType type) { return this->*shown[IndexOf(type)]; }
    bool Shown(zel_ProjectionType type) const { return this->*shown[IndexOf(type)]; } ///< to read
    /// @param type  zel_PT_XY, zel_PT_XZ or zel_PT_YZ
    zel_ProjectionContent& Content(zel_ProjectionType type) { return this->*content[IndexOf(type)]; }
    zel_ProjectionContent Content(zel_ProjectionType type) const { return this->*content[IndexOf(type)]; } ///< to read
    /// Whether an axis is displayed mirrored.
    bool& Reversed(Axis axis) { return this->*reversed[static_cast<std::size_t>(axis)]; }
    bool Reversed(Axis axis) const { return this->*reversed[static_cast<std::size_t>(axis)]; } ///< to read

private:
    static constexpr std::array shown{&ViewOptions::showXY, &ViewOptions::showXZ, &ViewOptions::showYZ};
    static constexpr std::array content{&ViewOptions::contentXY, &ViewOptions::contentXZ, &ViewOptions::contentYZ};
    static constexpr std::array reversed{&ViewOptions::reversedX, &ViewOptions::reversedY, &ViewOptions::reversedZ};
};

} // namespace zel
