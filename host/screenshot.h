#pragma once

#include "viewer/zel_viewer3dcanvas.h"

#include <wx/image.h>

#include <string>

namespace zelviewer {

/// The picture of a canvas with its windows, as they are now. Taken from the windows' own pictures, not from the
/// screen, where another window may lie over them.
wxImage ComposePicture(zel::zel_Viewer3dCanvas& canvas);

/// Writes a picture as PNG; it appears under its name when it is whole.
/// @throws kep::IOException
void WritePng(const wxImage& picture, const std::string& fileName);

} // namespace zelviewer
