#pragma once

#include "model/zel_export.h"

#include <wx/colour.h>
#include <wx/gdicmn.h>

#include <optional>
#include <vector>

namespace zel {

/// The triangles by the ids of their events.
enum TriangleId { zel_triangleRight = 0, zel_triangleLeft = 1, zel_triangleMiddle = 2, zel_triangleNone = 1000 };

/// The state of a row of triangles. Positions run from 0 to count - 1.
struct TriangleRow {
    int count = 256;            ///< positions
    int left = 0;               ///< of the left triangle
    int right = 255;            ///< of the right triangle
    double gamma = 1.0;         ///< moves the middle triangle
    int middle = 128;           ///< of the gamma triangle
    bool showGamma = false;     ///< there is a middle triangle
    bool allowCrossing = false; ///< left and right may pass each other
};

/// Position of the gamma triangle: halfway for gamma 1, on the left triangle for 10, on the right one for 0.1.
ZEL_EXPORT int MiddlePosition(const TriangleRow& row);

/// Gamma that belongs to a position of the gamma triangle, at most 10.
/// @return none if left and right are at the same position
ZEL_EXPORT std::optional<double> GammaAtPosition(const TriangleRow& row, int position);

/// x of the tip of a triangle, in a row of this width in pixels.
ZEL_EXPORT int TipOfTriangle(int position, int count, int width);

/// The position under the mouse, clamped to the row. Not quite the inverse of TipOfTriangle: a press on a tip may mean
/// a place beside it.
ZEL_EXPORT int PositionUnderMouse(int x, int count, int width);

/// The triangle that a press at a position grabs: the nearest one. Of triangles at one position the one on whose
/// side the pointer is.
ZEL_EXPORT TriangleId ChooseTriangle(const TriangleRow& row, int position);

/// Where a triangle goes that is dragged to a position.
/// @return none if it stays; without crossing the outer ones stop at each other
ZEL_EXPORT std::optional<int> DragTriangle(const TriangleRow& row, TriangleId triangle, int position);

/// Half the difference of two colours, in each component.
ZEL_EXPORT wxColour MiddleColour(const wxColour& left, const wxColour& right);

/// One line of a triangle.
struct TriangleLine {
    wxPoint from;    ///< first pixel
    wxPoint to;      ///< not drawn itself
    wxColour colour; ///< of the pen, one pixel wide
};

/// The lines of one triangle, eight rows of its colour and a black outline, in the order of drawing.
ZEL_EXPORT std::vector<TriangleLine> LayOutTriangle(int tip, const wxColour& colour);

} // namespace zel
