#pragma once

#include "model/zel_matrix.h"

#include <gtest/gtest.h>

/// Compares matrices written row by row, as on paper.
inline void ExpectRows(const zel::Matrix4& matrix, const std::array<float, 16>& rows, float tolerance = 1e-6F) {
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            EXPECT_NEAR(matrix[row + 4 * column], rows[4 * row + column], tolerance)
                << "row " << row << ", column " << column;
}

inline void ExpectNear(const zel::Vector3f& actual, const zel::Vector3f& expected, float tolerance = 1e-6F) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}
