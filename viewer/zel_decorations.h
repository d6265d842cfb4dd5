#pragma once

#include "model/zel_decorations.h" // where it stands now; hosts include it by this name too
