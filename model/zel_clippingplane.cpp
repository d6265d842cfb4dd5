#include "model/zel_clippingplane.h"

namespace zel {

ClippingPlane MakeClippingPlane(const Matrix4& planeMatrix, double offset) {
    const Vector3f normal = ColumnOf(planeMatrix, 0), across = ColumnOf(planeMatrix, 1),
                   along = ColumnOf(planeMatrix, 2);
    const auto d = static_cast<float>(offset);
    const auto corner = [&](float a, float b) {
        return Vector3f(normal.x * d + a * across.x + b * along.x, normal.y * d + a * across.y + b * along.y,
                        normal.z * d + a * across.z + b * along.z);
    };
    constexpr float reach = 0.8F;
    return {{-static_cast<double>(normal.x), -static_cast<double>(normal.y), -static_cast<double>(normal.z), offset},
            {corner(-reach, -reach), corner(-reach, reach), corner(reach, -reach), corner(reach, reach)}};
}

bool Keeps(const ClippingPlane& plane, const Vector3f& place) {
    const auto& [a, b, c, d] = plane.equation;
    return a * static_cast<double>(place.x) + b * static_cast<double>(place.y) + c * static_cast<double>(place.z) + d >=
           0.0;
}

} // namespace zel
