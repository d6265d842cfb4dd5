#pragma once

#include "core/kepcore/kep_rgb.h"

#include <complex>

/// The voxel types that frames exist for; X is called with each. The lists stand here and nowhere else.
#define KEP_GRAY_TYPES(X) X(unsigned char) X(unsigned short) X(int) X(float)
#define KEP_COLOUR_TYPES(X) X(kep::RGB_generic<unsigned char>) X(kep::RGB_generic<unsigned short>)

/// Types that a canvas shows.
#define KEP_DISPLAY_TYPES(X) KEP_GRAY_TYPES(X) KEP_COLOUR_TYPES(X) X(std::complex<float>)

/// Types that a sequence of frames may hold.
#define KEP_CONTAINER_TYPES(X) KEP_DISPLAY_TYPES(X) X(unsigned long long) X(double) X(std::complex<double>)

/// All types of frames.
#define KEP_FRAME_TYPES(X) KEP_CONTAINER_TYPES(X) X(bool)
