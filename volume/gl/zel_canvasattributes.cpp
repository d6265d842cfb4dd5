#include "volume/gl/zel_canvasattributes.h"

#include "volume/vol3D_canvas.h"

#include <wx/log.h>

namespace zel {

const int* ChooseCanvasAttributes(MeshDrawing meshDrawing, const std::function<bool(const int*)>& isSupported) {
    if (meshDrawing == MeshDrawing::Halved)
        return vol3D_VolVisCanvas::attributes;
    for (const int* const withDepth :
         {vol3D_VolVisCanvas::attributesWithDepth, vol3D_VolVisCanvas::attributesWithSmallDepth})
        if (isSupported(withDepth))
            return withDepth;
    wxLogWarning("This display has no depth buffer for OpenGL. Meshes are drawn one over the other.");
    return vol3D_VolVisCanvas::attributes;
}

} // namespace zel
