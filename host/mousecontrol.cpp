#include "host/mousecontrol.h"

#include "host/viewaxis.h"
#include "viewer/zel_commands.h"

#include <wx/frame.h>

#include <memory>
#include <optional>

namespace zelviewer {

namespace {

/// Which of X, Y and Z run along a window, and which through it.
struct Axes {
    int horizontal, vertical, third;
};

Axes AxesOf(const zel::zel_DrWin3d& window) {
    switch (window.GetProjectionType()) {
    case zel::zel_PT_XZ:
        return {0, 2, 1};
    case zel::zel_PT_YZ:
        return {2, 1, 0};
    default:
        return {0, 1, 2};
    }
}

template <typename T>
T At(const kep::Vector3d<T>& vector, int axis) {
    return axis == 0 ? vector.x : axis == 1 ? vector.y : vector.z;
}

class MouseControl {
public:
    explicit MouseControl(zel::zel_Viewer3dCanvas& canvas) : m_canvas(canvas) {}

    void OnMouse(zel::zel_DrWin3d& window, const wxMouseEvent& event) {
        const wxEventType type = event.GetEventType();
        if (type == wxEVT_LEFT_DOWN)
            SetCut(window, event.GetPosition());
        else if (type == wxEVT_LEFT_DCLICK)
            Centre(window, event.GetPosition());
        else if (type == wxEVT_MIDDLE_DOWN || type == wxEVT_MIDDLE_DCLICK)
            m_held = Hold{&window, Place(window, event.GetPosition())};
        else if (!event.MiddleIsDown())
            m_held.reset();
        else if (type == wxEVT_MOTION && m_held && m_held->window == &window)
            Show(window, m_held->place, event.GetPosition());
        if (type == wxEVT_MOUSEWHEEL && event.GetWheelAxis() == wxMOUSE_WHEEL_VERTICAL)
            OnWheel(window, event);
    }

private:
    /// A place in microns along a window's two axes.
    struct Point {
        float horizontal, vertical;
    };
    /// What the middle button has taken hold of.
    struct Hold {
        const zel::zel_DrWin3d* window;
        Point place;
    };

    /// @param pixels  of the window along this axis
    ViewAxis Look(int axis, int pixels) const {
        ViewAxis look;
        look.voxels = At(m_canvas.GetImageSize(), axis);
        look.boxOffset = At(m_canvas.GetBoundingBox().offset, axis);
        look.resolution = At(m_canvas.GetResolution().GetUsable().GetRes(), axis);
        look.visibleOffset = At(m_canvas.GetVisibleBox().offset, axis);
        look.visibleSize = At(m_canvas.GetVisibleBox().size, axis);
        look.scale = At(m_canvas.GetScale(), axis);
        look.pixels = pixels;
        look.reversed = m_canvas.IsAxisReversed(static_cast<std::size_t>(axis));
        return look;
    }
    ViewAxis Horizontal(const zel::zel_DrWin3d& window) const {
        return Look(AxesOf(window).horizontal, window.GetClientSize().x);
    }
    ViewAxis Vertical(const zel::zel_DrWin3d& window) const {
        return Look(AxesOf(window).vertical, window.GetClientSize().y);
    }
    Point Place(const zel::zel_DrWin3d& window, const wxPoint& at) const {
        return {MicronsAt(Horizontal(window), at.x), MicronsAt(Vertical(window), at.y)};
    }

    void SetCut(zel::zel_DrWin3d& window, const wxPoint& at) {
        window.SetCutFromPoint(MiddleOfVoxelAt(Horizontal(window), at.x), MiddleOfVoxelAt(Vertical(window), at.y));
        m_canvas.OnCutChange(window.GetOtherWindowsMask());
    }

    void Centre(zel::zel_DrWin3d& window, const wxPoint& at) {
        const Point place = Place(window, at);
        window.CenterAt(place.horizontal, place.vertical);
        m_canvas.OnVis3dChange(zel::zel_PT_ALL);
    }

    /// Brings a place under a pixel, as near as the image's edges let it.
    void Show(zel::zel_DrWin3d& window, const Point& place, const wxPoint& at) {
        const kep::Vector3d<float> before = m_canvas.GetVisibleBox().offset;
        window.CenterAt(CentreToShowAt(Horizontal(window), place.horizontal, at.x),
                        CentreToShowAt(Vertical(window), place.vertical, at.y));
        if (m_canvas.GetVisibleBox().offset != before)
            m_canvas.OnVis3dChange(zel::zel_PT_ALL);
    }

    void OnWheel(zel::zel_DrWin3d& window, const wxMouseEvent& event) {
        const int notches = m_wheel.Turn(event.GetWheelRotation(), event.GetWheelDelta());
        if (notches == 0)
            return;
        if (event.ControlDown())
            Zoom(window, event.GetPosition(), notches);
        else
            StepCut(window, -notches); // as Page Up and Page Down: away from the user is back
    }

    /// By the frame's own command, so that the frame's size follows as it does from the menu.
    void Zoom(zel::zel_DrWin3d& window, const wxPoint& at, int notches) {
        auto* const frame = dynamic_cast<wxFrame*>(wxGetTopLevelParent(&m_canvas));
        if (frame == nullptr)
            return;
        const Point place = Place(window, at);
        const wxPoint inCanvas = window.GetPosition() + at;
        for (int i = 0; i < std::abs(notches); ++i)
            frame->ProcessCommand(notches > 0 ? zel::zel_CMD_ZOOM_IN : zel::zel_CMD_ZOOM_OUT);
        Show(window, place, inCanvas - window.GetPosition()); // what was under the pointer stays there
    }

    void StepCut(const zel::zel_DrWin3d& window, int steps) {
        const int axis = AxesOf(window).third;
        const kep::Vector3d<float> cut = m_canvas.GetCut();
        const float moved = MiddleOfVoxelBeside(Look(axis, 1), At(cut, axis), steps);
        if (moved == At(cut, axis))
            return;
        // A window can set the cut along its own two axes only, so another one is asked.
        if (axis == 2)
            m_canvas.GetDrWin(zel::zel_PT_XZ)->SetCutFromPoint(cut.x, moved);
        else
            m_canvas.GetDrWin(zel::zel_PT_XY)->SetCutFromPoint(axis == 0 ? moved : cut.x, axis == 1 ? moved : cut.y);
        m_canvas.OnCutChange(window.GetProjectionType());
    }

    zel::zel_Viewer3dCanvas& m_canvas;
    WheelNotches m_wheel;
    std::optional<Hold> m_held;
};

} // namespace

void UseMouse(zel::zel_Viewer3dCanvas& canvas) {
    canvas.Bind(zel::zel_EVT_MOUSE3D, [control = std::make_shared<MouseControl>(canvas)](zel::zel_Mouse3dEvent& event) {
        event.Skip(); // the canvas tells of the pixel under the pointer
        if (event.GetWindow() != nullptr)
            control->OnMouse(*event.GetWindow(), event.GetMouseEvent());
    });
}

} // namespace zelviewer
