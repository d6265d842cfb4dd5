#pragma once

#include "model/zel_export.h" // where it stands now; hosts include it by this name too
