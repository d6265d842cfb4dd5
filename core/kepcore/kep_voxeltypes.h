#pragma once

#include "core/kepcore/kep_rgb.h"

#include <complex>

/// The voxel types that frames exist for; X is called with each. Every list of voxel types alone stands here. Lists of
/// pairs, of keys with outputs and of labels with voxels, stand with their classes (kep_lut.h, kep_labeledimage3d.h),
/// and so does the list of what a histogram counts (zel_histogram.h).
#define KEP_GRAY_TYPES(X) X(unsigned char) X(unsigned short) X(int) X(float)
#define KEP_COLOUR_TYPES(X) X(kep::RGB_generic<unsigned char>) X(kep::RGB_generic<unsigned short>)

/// Types that a canvas shows.
#define KEP_DISPLAY_TYPES(X) KEP_GRAY_TYPES(X) KEP_COLOUR_TYPES(X) X(std::complex<float>)

/// Types that a sequence of frames may hold.
#define KEP_CONTAINER_TYPES(X) KEP_DISPLAY_TYPES(X) X(unsigned long long) X(double) X(std::complex<double>)

/// All types of frames.
#define KEP_FRAME_TYPES(X) KEP_CONTAINER_TYPES(X) X(bool)
