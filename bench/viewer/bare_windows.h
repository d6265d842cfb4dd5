#pragma once

#include "viewer/zel_viewer3dcanvas.h"

#include <vector>

class wxFrame;

/// Runs the event loop for a time.
void Pump(long milliseconds);

/// Runs the event loop until nothing has come for longer than a frame of the display takes. Waits without work.
void PumpUntilQuiet();

/// Shows a window, and lets it come to rest.
void ShowAndRest(wxFrame& frame);

/// Windows as large as the drawing windows of a canvas, which do nothing but blit a picture: the least that a paint
/// can cost.
class BareWindows {
public:
    explicit BareWindows(const zel::zel_Viewer3dCanvas& canvas);

    void Blit();
    /// Of all windows together.
    std::size_t GetPixels() const;

private:
    std::vector<wxWindow*> m_windows;
};
