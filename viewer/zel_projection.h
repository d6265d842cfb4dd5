#pragma once

#include "model/zel_projection.h" // where it stands now; hosts include it by this name too
