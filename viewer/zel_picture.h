#pragma once

#include "model/zel_picture.h" // where it stands now; hosts include it by this name too
