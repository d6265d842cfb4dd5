#pragma once

/// All that a host needs to show an image.
#include "factory/zel_viewerfactory.h"
#include "image/zel_image4d.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"
