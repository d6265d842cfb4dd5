#pragma once

#include "model/zel_mappingparams.h" // where it stands now; hosts include it by this name too
