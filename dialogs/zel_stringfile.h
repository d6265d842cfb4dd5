#pragma once

#include "image/zel_stringfile.h" // where it stands now; hosts include it by this name too
