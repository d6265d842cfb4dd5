#pragma once

#include "image/zel_labeledimage4d.h"

namespace zelviewer {

/// Labels of any whole numbers up to 65535.
using Labels = mor::LabeledImage4d<unsigned short, unsigned short>;

} // namespace zelviewer
