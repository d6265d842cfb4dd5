#include "volume/gl/zel_opengldisplay.h"

#include <wx/utils.h>

#if defined(__WXGTK__) && !wxUSE_GLCANVAS_EGL
#include <GL/glx.h> // last: it brings macros with everyday names
#endif

namespace zel {

bool HasOpenGLDisplay() {
#if defined(__WXGTK__) && !wxUSE_GLCANVAS_EGL
    return wxGetDisplayInfo().type == wxDisplayX11 && glXQueryExtension(wxGetX11Display(), nullptr, nullptr) != 0;
#else
    return true;
#endif
}

} // namespace zel
