#pragma once

#include "factory/zel_viewer.h" // where it stands now; hosts include it by this name too
