#include "model/zel_matrix.h"

#include <cmath>
#include <numbers>

namespace zel {

Matrix4 Multiply(const Matrix4& left, const Matrix4& right) {
    Matrix4 product{};
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row) {
            double sum = 0.0; // rounded once, so that many small turns stay a rotation for longer
            for (std::size_t i = 0; i < 4; ++i)
                sum += static_cast<double>(left[row + 4 * i]) * static_cast<double>(right[i + 4 * column]);
            product[row + 4 * column] = static_cast<float>(sum);
        }
    return product;
}

Matrix4 TranslationMatrix(const Vector3f& by) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, by.x, by.y, by.z, 1};
}

Matrix4 ScaleMatrix(const Vector3f& by) {
    return {by.x, 0, 0, 0, 0, by.y, 0, 0, 0, 0, by.z, 0, 0, 0, 0, 1};
}

Matrix4 RotationMatrix(const Rotation& rotation) {
    const auto ax = static_cast<double>(rotation.axis.x), ay = static_cast<double>(rotation.axis.y),
               az = static_cast<double>(rotation.axis.z);
    const double length = std::hypot(ax, ay, az);
    if (!(length > 0.0) || !std::isfinite(length) || !std::isfinite(rotation.angle))
        return identityMatrix;
    const double x = ax / length, y = ay / length, z = az / length;
    const double radians = static_cast<double>(rotation.angle) * std::numbers::pi / 180.0;
    const double c = std::cos(radians), s = std::sin(radians), t = 1.0 - c;
    const auto f = [](double value) { return static_cast<float>(value); };
    return {f(x * x * t + c),
            f(y * x * t + z * s),
            f(z * x * t - y * s),
            0,
            f(x * y * t - z * s),
            f(y * y * t + c),
            f(z * y * t + x * s),
            0,
            f(x * z * t + y * s),
            f(y * z * t - x * s),
            f(z * z * t + c),
            0,
            0,
            0,
            0,
            1};
}

bool IsMirroring(const Matrix4& matrix) {
    const Vector3f normal = Cross(ColumnOf(matrix, 0), ColumnOf(matrix, 1)), third = ColumnOf(matrix, 2);
    return normal.x * third.x + normal.y * third.y + normal.z * third.z < 0.0F;
}

Matrix4 InverseRotation(const Matrix4& matrix) {
    Matrix4 inverse = matrix;
    for (std::size_t column = 0; column < 3; ++column)
        for (std::size_t row = 0; row < 3; ++row)
            inverse[row + 4 * column] = matrix[column + 4 * row];
    inverse[12] = inverse[13] = inverse[14] = 0.0F;
    return inverse;
}

Vector3f TurnDirection(const Matrix4& matrix, const Vector3f& direction) {
    const auto along = [&](std::size_t row) {
        return matrix[row] * direction.x + matrix[row + 4] * direction.y + matrix[row + 8] * direction.z;
    };
    return {along(0), along(1), along(2)};
}

Matrix4 LookAlongMatrix(const Vector3f& forward, const Vector3f& up) {
    const Vector3f side = Cross(forward, up);
    const Vector3f upwards = Cross(side, forward);
    return {side.x, upwards.x, -forward.x, 0, side.y, upwards.y, -forward.y, 0,
            side.z, upwards.z, -forward.z, 0, 0,      0,         0,          1};
}

std::array<double, 16> PerspectiveMatrix(int width, int height) {
    constexpr double halfAngle = 0.3490658503988659; // 20 degrees
    const double f = 1.0 / std::tan(halfAngle);
    const double aspect = static_cast<double>(width) / static_cast<double>(height);
    constexpr double depth = -1.0040080160320641;       // (50 + 0.1) / (0.1 - 50)
    constexpr double depthShift = -0.20040080160320642; // 2 * 50 * 0.1 / (0.1 - 50)
    return {f / aspect, 0, 0, 0, 0, f, 0, 0, 0, 0, depth, -1, 0, 0, depthShift, 0};
}

Matrix4 TextureMatrix(const Vector3f& scale, const Matrix4& inverseRotation, float eyeDistance) {
    Matrix4 matrix = TranslationMatrix({0.5F, 0.5F, 0.5F});
    matrix = Multiply(matrix, ScaleMatrix({0.5F, 0.5F, 1.0F}));
    matrix = Multiply(matrix, ScaleMatrix(scale));
    matrix = Multiply(matrix, inverseRotation);
    return Multiply(matrix, TranslationMatrix({0.0F, 0.0F, -eyeDistance}));
}

} // namespace zel
