#pragma once

#include "model/zel_imageiterator.h" // where it stands now; hosts include it by this name too
