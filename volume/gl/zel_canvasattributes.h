#pragma once

#include "model/zel_export.h"
#include "model/zel_wholemeshes.h"

#include <functional>

namespace zel {

/// The attribute list of a volume window. For whole meshes it asks for a depth buffer of 24 bits, or of 16 where the
/// display has no such windows; where it has neither, the list is the one without, and the log says so.
/// @param isSupported  asked for each list until one is
/// @return of static lifetime, ended by 0
ZEL_EXPORT const int* ChooseCanvasAttributes(MeshDrawing meshDrawing,
                                             const std::function<bool(const int*)>& isSupported);

} // namespace zel
