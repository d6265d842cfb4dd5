#pragma once

#include <wx/bitmap.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/window.h>

namespace zel {

/// Paints a window through a bitmap, in answer to its paint event, so that nothing flickers.
/// @param draw  called with the bitmap's device context and the client size, unless that is empty
template <typename Draw>
void PaintBuffered(wxWindow& window, const Draw& draw) {
    wxPaintDC dc(&window);
    const wxSize size = window.GetClientSize();
    if (size.x <= 0 || size.y <= 0)
        return;
    wxBitmap bitmap(size);
    wxMemoryDC picture(bitmap);
    draw(picture, size);
    dc.Blit(0, 0, size.x, size.y, &picture, 0, 0);
}

} // namespace zel
