#pragma once

#include "core/kepcore/kep_rgb.h"
#include "model/zel_export.h"

#include <cstddef>
#include <functional>

namespace zel {

/// A pixel of a label picture: the number of the object that is seen there, 0 for none. Labels have 15 bits there.
using LabelPixel = unsigned short;

/// The bit of a label picture's pixel that says: on the boundary of its label.
constexpr LabelPixel boundaryBit = 0x8000;

/// The label of a pixel, on a boundary or not.
constexpr LabelPixel LabelOf(LabelPixel pixel) {
    return static_cast<LabelPixel>(pixel & ~boundaryBit);
}

/// Sets the boundary bit in a picture of labels, `height` rows of `width` pixels. Background stays 0, so a label that
/// touches it is outlined inside itself; the picture's edge counts as a boundary.
///
/// A pixel whose label differs from the one above is marked with it, and so it is with the one at its left, which is
/// looked at after that: a pixel that was marked because of the one above always takes its left neighbour along, even
/// where both have one label. Horizontal boundaries are therefore one pixel longer to the left, which hosts rely on.
/// A label of 16 bits looks like a boundary from the start.
ZEL_EXPORT void MarkBoundaries(LabelPixel* labels, std::size_t width, std::size_t height);

/// Gives the colour of a label. It is asked once or a few times for each label of a picture, in any order.
using ColourOfLabel = std::function<kep::RGB_generic<unsigned char>(LabelPixel)>;

/// Paints the labels of a cut into a picture of the same size: boundaries in the label's colour, and what is inside
/// mixed with the picture, channel by channel: picture * transparency + colour * (1 - transparency), truncated. At
/// transparency 1 the inside stays as it is, at 0 it has the label's colour.
/// @param labels        `count` pixels, with their boundaries marked
/// @param count         pixels of the picture and of `labels`
/// @param transparency  0 to 1; what lies outside counts as the nearer end, and NaN as 0
/// @param colourOf      gives the colour of each label
/// @param picture       `count` pixels, which are changed
ZEL_EXPORT void BlendCut(const LabelPixel* labels, std::size_t count, float transparency, const ColourOfLabel& colourOf,
                         kep::RGB_generic<unsigned char>* picture);

/// Paints the labels of a projection into a picture of the same size. Where `outlines` has a label the picture gets its
/// colour; then, wherever `labels` is not 0, it is mixed with the colour of that label as in a cut. At transparency 1
/// the outlines are all that is left.
/// @param labels        `count` pixels; they are passed on to colourOf as they are, with the boundary bit if they have
///                      it
/// @param outlines      `count` pixels; their boundary bits do not count
/// @param count         pixels of the picture, of `labels` and of `outlines`
/// @param transparency  as in BlendCut
/// @param colourOf      gives the colour of each label
/// @param picture       `count` pixels, which are changed
ZEL_EXPORT void BlendProjection(const LabelPixel* labels, const LabelPixel* outlines, std::size_t count,
                                float transparency, const ColourOfLabel& colourOf,
                                kep::RGB_generic<unsigned char>* picture);

/// One press of "Increase transparency": 0.05 more, at most 1.
ZEL_EXPORT float IncreaseTransparency(float transparency);
/// One press of "Decrease transparency": 0.05 less, at least 0.
ZEL_EXPORT float DecreaseTransparency(float transparency);

} // namespace zel
