#pragma once

#include "model/zel_meshfile.h" // where it stands now; hosts include it by this name too
