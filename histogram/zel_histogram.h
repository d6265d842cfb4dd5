#pragma once

#include "model/zel_histogram.h" // where it stands now; hosts include it by this name too
