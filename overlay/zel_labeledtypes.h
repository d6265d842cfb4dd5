#pragma once

#include "image/kep.h"

#include <complex>

/// What a viewer with labels exists for; X is called with the type of the image's voxels, that of the labels, and that
/// of the files they come from: each of KEP_DISPLAY_TYPES with each of KEP_LABEL_TYPES.
#define ZEL_LABELED_TYPES(X)                                                                                           \
    ZEL_WITH_LABELS(X, unsigned char)                                                                                  \
    ZEL_WITH_LABELS(X, unsigned short)                                                                                 \
    ZEL_WITH_LABELS(X, int)                                                                                            \
    ZEL_WITH_LABELS(X, float)                                                                                          \
    ZEL_WITH_LABELS(X, kep::RGB_generic<unsigned char>)                                                                \
    ZEL_WITH_LABELS(X, kep::RGB_generic<unsigned short>)                                                               \
    ZEL_WITH_LABELS(X, std::complex<float>)

#define ZEL_WITH_LABELS(X, T)                                                                                          \
    X(T, unsigned short, unsigned char)                                                                                \
    X(T, unsigned short, unsigned short)                                                                               \
    X(T, unsigned short, bool)
