#pragma once

// The one door to the imaging core: everything above it includes this header and none of the core's own.

#include "core/kepalgo/kep_copytoimage.h"
#include "core/kepalgo/kep_labeledimage3d.h"
#include "core/kepalgo/kep_labelprojection.h"
#include "core/kepalgo/kep_lut.h"
#include "core/kepalgo/kep_lutpixels.h"
#include "core/kepalgo/kep_neighbourhood.h"
#include "core/kepalgo/kep_projection.h"
#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_fileformat.h"
#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "core/kepcore/kep_plainfile.h"
#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_rgb.h"
#include "core/kepcore/kep_vector.h"
#include "core/kepcore/kep_version.h"
#include "core/kepcore/kep_voxeltypes.h"
