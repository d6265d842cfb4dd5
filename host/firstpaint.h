#pragma once

#include "viewer/zel_viewer3dcanvas.h"

#include <functional>

namespace zelviewer {

/// Calls a function once all shown drawing windows of a canvas have painted: before that the toolkit does not
/// paint, and the size of the window is not final.
class FirstPaint : public wxEvtHandler {
public:
    FirstPaint(zel::zel_Viewer3dCanvas& canvas, std::function<void()> whenPainted);

private:
    void OnPaint(wxPaintEvent& event);

    std::function<void()> m_whenPainted;
    int m_missing = 0; // mask of the windows
};

} // namespace zelviewer
