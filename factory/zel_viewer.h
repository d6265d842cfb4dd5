#pragma once

/// All that a host needs to show an image, with labels or without.
#include "factory/zel_labeledviewerfactory.h"
#include "factory/zel_viewerfactory.h"
#include "image/zel_image4d.h"
#include "viewer/zel_equipframe.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"
