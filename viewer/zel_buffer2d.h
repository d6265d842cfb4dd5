#pragma once

#include "model/zel_buffer2d.h" // where it stands now; hosts include it by this name too
