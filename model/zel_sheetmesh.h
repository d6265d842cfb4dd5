#pragma once

#include "model/zel_export.h"
#include "model/zel_matrix.h"

#include <array>
#include <cstddef>

namespace zel {

/// Points along each side of a sheet.
inline constexpr std::size_t sheetSide = 8;

/// One of the curved sheets on which the volume is drawn, row after row: a bowl that is open towards the viewer.
using SheetMesh = std::array<Vector3f, sheetSide * sheetSide>;

/// The point at row i, column j is (2x / r, 2y / r, 1 - 0.5 / r) with x = j / 7 - 0.5, y = i / 7 - 0.5 and
/// r = sqrt(x * x + y * y + 0.25), in single precision.
ZEL_EXPORT SheetMesh MakeSheetMesh();

/// Four points of the mesh for each of its 7 x 7 quads, row after row.
using SheetQuads = std::array<std::size_t, 4 * (sheetSide - 1) * (sheetSide - 1)>;

/// Each quad goes round by (row, column), (row, column + 1), (row + 1, column + 1), (row + 1, column).
constexpr SheetQuads MakeSheetQuads() {
    SheetQuads quads{};
    std::size_t next = 0;
    for (std::size_t row = 0; row + 1 < sheetSide; ++row)
        for (std::size_t column = 0; column + 1 < sheetSide; ++column) {
            const std::size_t first = sheetSide * row + column;
            for (const std::size_t point : {first, first + 1, first + sheetSide + 1, first + sheetSide})
                quads[next++] = point;
        }
    return quads;
}

/// How far towards the viewer a sheet is moved from the volume's centre: from -1 for the first to 1 for the last, so
/// that they are drawn from back to front. A single sheet has no place: the result is not a number.
/// @param sheet  0 <= sheet < count
/// @param count  of all sheets
constexpr float PlaceOfSheet(int sheet, int count) {
    return 2.0F * static_cast<float>(sheet) / static_cast<float>(count - 1) - 1.0F;
}

} // namespace zel
