#pragma once

#include "viewer/zel_viewer3dcanvas.h"

#include <wx/image.h>

#include <string>

namespace zelviewer {

/// The picture of a canvas with its windows, as they are now. Taken from the windows' own pictures, not from the
/// screen, where another window may cover them. No picture (IsOk) where the canvas has no room for one.
wxImage ComposePicture(zel::zel_Viewer3dCanvas& canvas);

/// PNG can be written, and the clipboard takes pictures, from here on.
void HavePng();

/// Where the picture of the volume window goes: beside that of the viewer, "a.png" becomes "a-volume.png".
/// @param fileName  with an ending
std::string VolumePictureName(const std::string& fileName);

/// Writes a picture as PNG; the file gets its name once it is complete.
/// @throws kep::IOException
void WritePng(const wxImage& picture, const std::string& fileName);

} // namespace zelviewer
