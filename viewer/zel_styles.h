#pragma once

#include "dialogs/zel_styles.h" // where it stands now; hosts include it by this name too
