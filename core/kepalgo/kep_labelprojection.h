#pragma once

#include "core/kepalgo/kep_labeledimage3d.h"

namespace kep {

/// @{
/// Projections of labels along the axis that the name leaves out: the largest label of each line, with the shape,
/// resolution and offset of the pictures of Get_AF_*. dst is another object than src; an empty src empties it. Costs
/// one pass over src; with a mask, a copy of src and a pass over that as well.
/// @param src         the labels
/// @param dst         gets the picture
/// @param mask        labels whose entry is false count as background; 65536 entries, or null to take all
/// @param secondKind  keeps the outlines alone: a pixel becomes 0 unless it lies on the picture's edge or one of its
///                    four neighbours differs from it. Takes a copy of the picture
/// @throws std::bad_alloc
template <typename L, typename V>
void Get_Labeled_AF_XY(const LabeledImage3d<L, V>& src, Image3d<unsigned short>& dst, const bool* const mask,
                       bool secondKind);
template <typename L, typename V>
void Get_Labeled_AF_XZ(const LabeledImage3d<L, V>& src, Image3d<unsigned short>& dst, const bool* const mask,
                       bool secondKind);
template <typename L, typename V>
void Get_Labeled_AF_YZ(const LabeledImage3d<L, V>& src, Image3d<unsigned short>& dst, const bool* const mask,
                       bool secondKind);
/// @}

#define KEP_DECLARE(L, V)                                                                                              \
    extern template KEP_EXPORT void Get_Labeled_AF_XY<L, V>(const LabeledImage3d<L, V>&, Image3d<unsigned short>&,     \
                                                            const bool*, bool);                                        \
    extern template KEP_EXPORT void Get_Labeled_AF_XZ<L, V>(const LabeledImage3d<L, V>&, Image3d<unsigned short>&,     \
                                                            const bool*, bool);                                        \
    extern template KEP_EXPORT void Get_Labeled_AF_YZ<L, V>(const LabeledImage3d<L, V>&, Image3d<unsigned short>&,     \
                                                            const bool*, bool);
KEP_LABEL_TYPES(KEP_DECLARE)
#undef KEP_DECLARE

} // namespace kep
