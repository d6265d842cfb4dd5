#pragma once

#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_mapper.h"
#include "model/zel_picture.h"
#include "model/zel_viewoptions.h"

namespace zel {

/// How a picture becomes an icon of the same proportions: pixels are taken at equal distances, without a filter. An
/// icon larger than the picture shows its middle pixel all over.
struct IconPlan {
    Size drawn;      ///< of the picture in the icon; (0, 0) if one side would have no pixel
    Point corner;    ///< of the picture in the icon
    Point firstFrom; ///< pixel of the picture that is taken first
    Point step;      ///< from there to the next one, along both axes
    /// The part of the icon that is not transparent. Where an odd number of pixels is left over, the last row or column
    /// of the picture is not in it.
    Rect opaque;

    friend bool operator==(const IconPlan&, const IconPlan&) = default; ///< of all fields
};

/// @param picture  its columns and rows
/// @param icon     likewise
ZEL_EXPORT IconPlan PlanIcon(const Size& picture, const Size& icon);

/// Draws a picture into an icon, mirrored as the XY window shows it, on black.
/// @param picture  as it was made, before it was mirrored
/// @param options  which axes are mirrored
/// @param icon     of the size that is wanted
ZEL_EXPORT void DrawIcon(const ColourBuffer& picture, const ViewOptions& options, ColourBuffer& icon);

/// Draws the mask of that icon: white where it is opaque, black where it is transparent.
/// @param picture  its columns and rows
/// @param mask     of the icon's size
ZEL_EXPORT void DrawIconMask(const Size& picture, ColourBuffer& mask);

} // namespace zel
