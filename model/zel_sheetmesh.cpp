#include "model/zel_sheetmesh.h"

#include <cmath>

namespace zel {

SheetMesh MakeSheetMesh() {
    const auto across = [](std::size_t i) { return static_cast<float>(i) / 7.0F - 0.5F; };
    SheetMesh mesh;
    for (std::size_t row = 0; row < sheetSide; ++row)
        for (std::size_t column = 0; column < sheetSide; ++column) {
            const float x = across(column), y = across(row);
            const float r = std::sqrt(x * x + y * y + 0.25F);
            mesh[sheetSide * row + column] = {2.0F * x / r, 2.0F * y / r, 1.0F - 0.5F / r};
        }
    return mesh;
}

} // namespace zel
