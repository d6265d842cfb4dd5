#pragma once

#include "model/zel_mapper.h" // where it stands now; hosts include it by this name too
