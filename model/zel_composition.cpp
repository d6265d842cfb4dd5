#include "model/zel_composition.h"

#include "core/kepcore/kep_exceptions.h"

#include <algorithm>
#include <limits>
#include <string>

namespace zel {

namespace {

constexpr Colour white{255, 255, 255};

/// Sums of sides fit in here.
struct WideSize {
    long long x;
    long long y;
};

Size Narrow(const WideSize& size) {
    constexpr long long largest = std::numeric_limits<int>::max();
    if (size.x > largest || size.y > largest)
        throw kep::LibException("The picture would have " + std::to_string(size.x) + " x " + std::to_string(size.y) +
                                " pixels, which is too large.");
    return {static_cast<int>(size.x), static_cast<int>(size.y)};
}

Sheet WhiteSheet(const Size& size) {
    Sheet sheet;
    sheet.MakeRoom(static_cast<std::size_t>(size.x), static_cast<std::size_t>(size.y), 1);
    sheet.Fill(white);
    return sheet;
}

/// What a saved view has from the left to the right and from the top to the bottom.
struct ViewGrid {
    bool hasLeft, hasRight, hasTop, hasBottom;
    long long left, right, top, bottom; // sizes; 0 for what is not there
    long long betweenColumns, betweenRows;
};

ViewGrid LayOut(const PerPlane<Size>& pictures, const PerPlane<bool>& isIn, int spacing) {
    const bool xy = isIn[zel_PT_XY], xz = isIn[zel_PT_XZ], yz = isIn[zel_PT_YZ];
    ViewGrid grid{xy || xz, yz, xy || yz, xz, 0, 0, 0, 0, 0, 0};
    const int depth = pictures[zel_PT_XZ].y;
    grid.left = grid.hasLeft ? pictures[zel_PT_XY].x : 0;
    grid.right = grid.hasRight ? depth : 0;
    grid.top = grid.hasTop ? pictures[zel_PT_XY].y : 0;
    grid.bottom = grid.hasBottom ? depth : 0;
    const int between = std::max(spacing, 0);
    grid.betweenColumns = grid.hasLeft && grid.hasRight ? between : 0;
    grid.betweenRows = grid.hasTop && grid.hasBottom ? between : 0;
    return grid;
}

Size SizeOf(const ViewGrid& grid) {
    return Narrow(WideSize{grid.left + grid.betweenColumns + grid.right, grid.top + grid.betweenRows + grid.bottom});
}

/// Copies `width` pixels of a row of the sheet from a source of that many pixels, as far as the row reaches.
/// @param x, y  a place right of and below the sheet's first pixel, or that one
void PutRow(const Colour* from, long long width, long long x, long long y, Sheet& sheet) {
    const auto sheetWidth = static_cast<long long>(sheet.GetSizeX());
    if (y >= static_cast<long long>(sheet.GetSizeY()) || x >= sheetWidth || width < 1)
        return;
    std::copy_n(from, std::min(width, sheetWidth - x),
                sheet.GetVoxelAddr(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0));
}

void PutPicture(const PictureSource& picture, long long x, long long y, Sheet& sheet) {
    for (int row = 0; row < picture.size.y; ++row)
        PutRow(picture.pixels + std::ptrdiff_t{picture.size.x} * row, picture.size.x, x, y + row, sheet);
}

int StepOf(const GalleryOptions& options) {
    return std::max(options.step, 1);
}

int SpacingOf(const GalleryOptions& options) {
    return std::max(options.spacing, 0);
}

struct GalleryGrid {
    long long columns;
    long long rows;
};

GalleryGrid LayOut(const GalleryOptions& options) {
    const long long slices = static_cast<long long>(options.last) - options.first + 1;
    const long long pictures = std::max(slices / StepOf(options), 1LL);
    const int given = std::max(options.count, 1);
    const long long other = (pictures + given - 1) / given;
    return options.byRows ? GalleryGrid{other, given} : GalleryGrid{given, other};
}

Size SizeOf(const GalleryGrid& grid, const GalleryOptions& options, const Size& tile) {
    // Products of numbers that are held in 32 bits fit in 64.
    constexpr long long most = std::numeric_limits<int>::max();
    const long long spacing = SpacingOf(options);
    const auto along = [spacing, most](long long count, int each) {
        return (spacing + each) * std::min(count, most) - spacing;
    };
    return Narrow(WideSize{along(grid.columns, tile.x), along(grid.rows, tile.y)});
}

/// @param x, y  place of the tile's first pixel
void PutTile(const PictureSource& picture, const Size& tile, long long x, long long y, Sheet& sheet) {
    const long long pixels = static_cast<long long>(picture.size.x) * picture.size.y;
    for (int row = 0; row < tile.y; ++row) {
        const long long at = static_cast<long long>(row) * tile.x;
        if (at >= pixels)
            return;
        PutRow(picture.pixels + at, std::min<long long>(tile.x, pixels - at), x, y + row, sheet);
    }
}

} // namespace

PerPlane<bool> WindowsToSave(zel_ProjectionType projections, const PerPlane<bool>& shown) {
    PerPlane<bool> isIn;
    for (const Plane& plane : planes)
        isIn[plane.type] = shown[plane.type] && (projections == plane.type || projections == zel_PT_ALL);
    return isIn;
}

Size ViewSheetSize(const PerPlane<Size>& pictures, const PerPlane<bool>& isIn, int spacing) {
    return SizeOf(LayOut(pictures, isIn, spacing));
}

Sheet ComposeView(const PerPlane<PictureSource>& pictures, const PerPlane<bool>& isIn, int spacing) {
    PerPlane<Size> sizes;
    for (const Plane& plane : planes)
        sizes[plane.type] = pictures[plane.type].size;
    const ViewGrid grid = LayOut(sizes, isIn, spacing);
    Sheet sheet = WhiteSheet(SizeOf(grid));
    if (isIn[zel_PT_XY])
        PutPicture(pictures[zel_PT_XY], 0, 0, sheet);
    if (isIn[zel_PT_YZ])
        PutPicture(pictures[zel_PT_YZ], grid.left + grid.betweenColumns, 0, sheet);
    if (isIn[zel_PT_XZ])
        PutPicture(pictures[zel_PT_XZ], 0, grid.top + grid.betweenRows, sheet);
    return sheet;
}

Size GallerySheetSize(const GalleryOptions& options, const Size& tile) {
    return SizeOf(LayOut(options), options, tile);
}

GalleryOptions WithRoomForAll(const GalleryOptions& options) {
    const long long step = StepOf(options);
    const long long slices = (static_cast<long long>(options.last) - options.first) / step + 1;
    GalleryOptions roomy = options;
    roomy.last =
        static_cast<int>(std::min<long long>(options.first + slices * step - 1, std::numeric_limits<int>::max()));
    return roomy;
}

Sheet ComposeGallery(const GalleryOptions& options, const Size& tile,
                     const std::function<PictureSource(int slice)>& pictureOf) {
    const GalleryGrid grid = LayOut(options);
    Sheet sheet = WhiteSheet(SizeOf(grid, options, tile));
    const long long columnStep = static_cast<long long>(tile.x) + SpacingOf(options);
    const long long rowStep = static_cast<long long>(tile.y) + SpacingOf(options);
    long long column = 0, row = 0;
    for (long long slice = options.first; slice <= options.last; slice += StepOf(options)) {
        PutTile(pictureOf(static_cast<int>(slice)), tile, column * columnStep, row * rowStep, sheet);
        if (++column == grid.columns) {
            column = 0;
            ++row;
        }
    }
    return sheet;
}

} // namespace zel
