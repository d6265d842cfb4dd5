#pragma once

#include "model/zel_extremes.h" // where it stands now; hosts include it by this name too
