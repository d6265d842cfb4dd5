#pragma once

#include "model/zel_navigation.h" // where it stands now; hosts include it by this name too
