#pragma once

#include "model/zel_stretch.h" // where it stands now; hosts include it by this name too
