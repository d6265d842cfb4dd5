#pragma once

#include "model/zel_truncate.h" // where it stands now; hosts include it by this name too
