#include "host/firstpaint.h"

namespace zelviewer {

FirstPaint::FirstPaint(zel::zel_Viewer3dCanvas& canvas, std::function<void()> whenPainted)
    : m_whenPainted(std::move(whenPainted)) {
    for (const zel::zel_ProjectionType type : {zel::zel_PT_XY, zel::zel_PT_XZ, zel::zel_PT_YZ}) {
        zel::zel_DrWin3d* const window = canvas.GetDrWin(type);
        if (!window->IsShown())
            continue;
        m_missing |= type;
        window->Bind(wxEVT_PAINT, &FirstPaint::OnPaint, this);
    }
}

void FirstPaint::OnPaint(wxPaintEvent& event) {
    event.Skip(); // the window paints itself
    auto* const window = static_cast<zel::zel_DrWin3d*>(event.GetEventObject());
    if ((m_missing & window->GetProjectionType()) == 0)
        return;
    m_missing &= ~window->GetProjectionType();
    if (m_missing == 0)
        CallAfter([this] { m_whenPainted(); });
}

} // namespace zelviewer
