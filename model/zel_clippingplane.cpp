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

} // namespace zel
