#pragma once

#include "factory/zel_viewerfactory.h" // where it stands now; hosts include it by this name too
