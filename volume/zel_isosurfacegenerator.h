#pragma once

#include "model/zel_isosurfacegenerator.h" // where it stands now; hosts include it by this name too
