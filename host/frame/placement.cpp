#include "host/frame/placement.h"

#include "host/frame/places.h"
#include "viewer/zel_firstshow.h"
#include "viewer/zel_fit.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/display.h>

#include <memory>
#include <vector>

namespace zelviewer {

namespace {

std::vector<wxRect> AreasOfDisplays() {
    std::vector<wxRect> areas;
    for (unsigned i = 0; i < wxDisplay::GetCount(); ++i)
        areas.push_back(wxDisplay(i).GetClientArea());
    return areas;
}

/// The corners of the other viewers on the screen.
std::vector<wxPoint> CornersOfOthers(const wxWindow& frame) {
    std::vector<wxPoint> corners;
    for (const wxWindow* const window : wxTopLevelWindows)
        if (window != &frame && window->IsShown() && dynamic_cast<const zel::zel_Viewer3dFrame*>(window) != nullptr)
            corners.push_back(window->GetPosition());
    return corners;
}

class FirstShow {
public:
    FirstShow(zel::zel_Viewer3dFrame& frame, const std::optional<WindowPlace>& remembered) : m_frame(frame) {
        if (!remembered)
            return;
        m_isMaximized = remembered->isMaximized;
        m_remembered = StillOnADisplay(remembered->rect, AreasOfDisplays());
    }

    void Place() {
        if (m_remembered) {
            m_frame.SetSize(BesideOthers(*m_remembered, CornersOfOthers(m_frame), wxDisplay(&m_frame).GetClientArea()));
            zel::FillRoom(*m_frame.GetCanvas(), m_frame.GetClientSize());
        } else {
            m_frame.ResizeFrameIfRequired();
            const wxRect area = wxDisplay(0U).GetClientArea();
            m_frame.Move(
                BesideOthers(CentredIn(area, m_frame.GetSize()), CornersOfOthers(m_frame), area).GetPosition());
        }
        m_surroundings = GetSurroundings();
    }

    bool IsMaximized() const { return m_isMaximized; }

    /// What the window manager puts around the first window of a program is known only when it is about to appear.
    void OnSize(wxSizeEvent& event) {
        event.Skip();
        if (!m_isOver && GetSurroundings() != m_surroundings && !m_frame.IsMaximized()) {
            m_isOver = true;
            Place();
        }
    }

private:
    wxSize GetSurroundings() const { return m_frame.GetSize() - m_frame.GetClientSize(); }

    zel::zel_Viewer3dFrame& m_frame;
    std::optional<wxRect> m_remembered;
    bool m_isMaximized = false;
    bool m_isOver = false;
    wxSize m_surroundings;
};

} // namespace

void ShowInPlace(zel::zel_Viewer3dFrame& frame, const std::optional<WindowPlace>& remembered) {
    const auto show = std::make_shared<FirstShow>(frame, remembered);
    show->Place();
    frame.Bind(wxEVT_SIZE, [show](wxSizeEvent& event) { show->OnSize(event); });
    zel::PrepareFirstShow(frame);
    if (show->IsMaximized())
        frame.Maximize();
    frame.Show();
}

} // namespace zelviewer
