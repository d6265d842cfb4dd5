#pragma once

#include "host/options.h"

namespace zelviewer {

/// Writes the views, galleries or the film that the options ask for, each frame's whole or not at all. Pictures are
/// made as those of the windows are, of the whole image, but without what is drawn over them: cut pointer, texts and
/// bars. A view has the window's proportions and its cut; a gallery has one pixel a voxel. Needs the toolkit, but no
/// display.
/// @throws Failure; the files written before stay
void SavePictures(const Options& options);

} // namespace zelviewer
