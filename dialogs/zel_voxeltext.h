#pragma once

#include "image/zel_voxeltext.h" // where it stands now; hosts include it by this name too
