#pragma once

#include "model/zel_histogramcount.h" // where it stands now; hosts include it by this name too
