#pragma once

#include "model/zel_layout.h" // where it stands now; hosts include it by this name too
