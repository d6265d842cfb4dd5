#pragma once

#include "model/zel_surfacearrays.h" // where it stands now; hosts include it by this name too
