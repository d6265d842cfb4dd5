#include "model/zel_trackball.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zel {

Vector3f ProjectToSphere(const Point& pointer, const Size& window) {
    if (window.x <= 0 || window.y <= 0)
        return {0.0F, 0.0F, 1.0F};
    const double width = window.x, height = window.y;
    const double x = (2.0 * pointer.x - width) / width;
    const double y = (height - 2.0 * pointer.y) / height;
    const double fromCentre = std::sqrt(x * x + y * y);
    const double z = std::cos(std::min(fromCentre, 1.0) * std::numbers::pi / 2.0);
    const double length = std::sqrt(x * x + y * y + z * z);
    return {static_cast<float>(x / length), static_cast<float>(y / length), static_cast<float>(z / length)};
}

Rotation RotationBetween(const Vector3f& from, const Vector3f& to) {
    const double x = static_cast<double>(to.x) - static_cast<double>(from.x);
    const double y = static_cast<double>(to.y) - static_cast<double>(from.y);
    const double z = static_cast<double>(to.z) - static_cast<double>(from.z);
    return {static_cast<float>(90.0 * std::sqrt(x * x + y * y + z * z)), Cross(from, to)};
}

} // namespace zel
