#pragma once

namespace zel {

/// Whether the toolkit can make windows for OpenGL on this display. Where it cannot, it crashes when it is asked to.
bool HasOpenGLDisplay();

} // namespace zel
