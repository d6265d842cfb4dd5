#pragma once

// How every dialog of this room is shown. Sequences, which warn of what they read, need it too, so it is in their room.

#include "image/zel_modaldialog.h"
