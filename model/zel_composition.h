#pragma once

#include "core/kepcore/kep_image3d.h"
#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_picture.h"
#include "model/zel_planes.h"
#include "model/zel_projection.h"

#include <functional>

namespace zel {

// Pictures that are composed of others, for saving: the three windows beside one another, and sheets of slices. A
// sheet is white where nothing was put, one voxel thick, and has no resolution. A copy is cut to its source and to the
// sheet. Spacings below 0 count as 0.
//
// Sheets with a side beyond the range of int are refused: kep::LibException, whose text tells the size. Those that
// are only larger than the memory give std::bad_alloc.

using Sheet = kep::Image3d<Colour>; ///< an RGB frame one voxel thick: Image3d::SaveImage writes it

/// Pixels that stay their owner's: rows from top to bottom, without gaps.
struct PictureSource {
    const Colour* pixels = nullptr; ///< null for a picture that is left out
    Size size;                      ///< columns and rows
};

/// Which windows go into a saved view: those that are shown and asked for. A mask asks for one window, by its own
/// value, or for all, by zel_PT_ALL; any other asks for none.
ZEL_EXPORT PerPlane<bool> WindowsToSave(zel_ProjectionType projections, const PerPlane<bool>& shown);

/// Size of a saved view. Width and upper height are those of the XY picture, also where XY is left out and XZ or YZ
/// need its place; the height of the XZ picture serves as the width of YZ too, as both show the same extent of Z.
/// @param pictures  sizes of the three windows' pictures, pixels
/// @param isIn      which pictures are in
/// @param spacing   pixels between two pictures
ZEL_EXPORT Size ViewSheetSize(const PerPlane<Size>& pictures, const PerPlane<bool>& isIn, int spacing);

/// The pictures of the windows on one sheet, each at its own size: XY at the top left, YZ to its right, XZ under it.
ZEL_EXPORT Sheet ComposeView(const PerPlane<PictureSource>& pictures, const PerPlane<bool>& isIn, int spacing);

/// A sheet of XY pictures, one for each slice: first, first + step, and so on up to last.
struct GalleryOptions {
    int first = 0;      ///< numbered from 0
    int last = 0;       ///< above or equal to first
    int step = 1;       ///< below 1 counts as 1
    bool byRows = true; ///< `count` is the number of rows; else of columns
    int count = 1;      ///< below 1 counts as 1
    int spacing = 10;   ///< pixels between two pictures
};

/// The same gallery with room for all of its slices.
ZEL_EXPORT GalleryOptions WithRoomForAll(const GalleryOptions& options);

/// Size of a gallery. The number of pictures that it has room for is (last - first + 1) / step in whole numbers, at
/// least 1: one less than there are slices where the last of them is followed by less than a step. What lies beyond
/// the sheet is not drawn.
/// @param options  of the gallery
/// @param tile     size of one picture, pixels
ZEL_EXPORT Size GallerySheetSize(const GalleryOptions& options, const Size& tile);

/// The pictures of all slices on one sheet, row by row. Of each picture as many pixels as a tile holds are read, as one
/// run over its rows: only a picture of the tile's size looks the same in its place, the rows of any other slip.
/// @param options    of the gallery
/// @param tile       size of one picture, pixels
/// @param pictureOf  called once for each slice, in order; what it returns must last until the next call
ZEL_EXPORT Sheet ComposeGallery(const GalleryOptions& options, const Size& tile,
                                const std::function<PictureSource(int slice)>& pictureOf);

} // namespace zel
