#include "viewer/zel_mousecontrol.h"

#include "model/zel_axislook.h"
#include "model/zel_wheelnotches.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/frame.h>

#include <memory>
#include <optional>

namespace zel {

namespace {

class MouseControl {
public:
    explicit MouseControl(zel_Viewer3dCanvas& canvas) : m_canvas(canvas) {}

    /// A canvas may be made without one, lose all frames, or be closing.
    bool HasImage() const { return m_canvas.GetImageCount() > 0; }

    void OnMouse(const zel_DrWin3d& window, const wxMouseEvent& event) {
        const wxEventType type = event.GetEventType();
        if (type == wxEVT_LEFT_DOWN) {
            m_dragged = &window;
            SetCut(window, event.GetPosition());
        } else if (type == wxEVT_MOTION && event.LeftIsDown() && m_dragged == &window) {
            SetCut(window, event.GetPosition());
        }
        if (type == wxEVT_LEFT_DCLICK)
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
        const zel_DrWin3d* window;
        Point place;
    };

    /// @param pixels  of the window along this axis
    AxisLook Look(Axis axis, int pixels) const {
        return LookAlong(m_canvas.GetView(), m_canvas.GetImageGeometry(), axis, pixels);
    }
    AxisLook Horizontal(const zel_DrWin3d& window) const {
        return Look(window.GetPlane().horizontal, window.GetClientSize().x);
    }
    AxisLook Vertical(const zel_DrWin3d& window) const {
        return Look(window.GetPlane().vertical, window.GetClientSize().y);
    }
    Point Place(const zel_DrWin3d& window, const wxPoint& at) const {
        return {MicronsAt(Horizontal(window), at.x), MicronsAt(Vertical(window), at.y)};
    }

    void SetCut(const zel_DrWin3d& window, const wxPoint& at) {
        m_canvas.Apply(m_canvas.GetView().MoveCutIn(window.GetPlane(), MiddleOfVoxelAt(Horizontal(window), at.x),
                                                    MiddleOfVoxelAt(Vertical(window), at.y)));
    }

    void Centre(const zel_DrWin3d& window, const wxPoint& at) {
        const Point place = Place(window, at);
        m_canvas.Apply(m_canvas.GetView().CentreOn(window.GetPlane(), place.horizontal, place.vertical));
    }

    /// Brings a place under a pixel, as near as the image's edges let it.
    void Show(const zel_DrWin3d& window, const Point& place, const wxPoint& at) {
        View& view = m_canvas.GetView();
        const kep::Vector3d<float> before = view.visibleBox.offset;
        const ViewChange change =
            view.CentreOn(window.GetPlane(), CentreToShowAt(Horizontal(window), place.horizontal, at.x),
                          CentreToShowAt(Vertical(window), place.vertical, at.y));
        if (view.visibleBox.offset != before)
            m_canvas.Apply(change);
    }

    void OnWheel(const zel_DrWin3d& window, const wxMouseEvent& event) {
        const int notches = m_wheel.Turn(event.GetWheelRotation(), event.GetWheelDelta());
        if (notches == 0)
            return;
        if (event.ControlDown())
            Zoom(window, event.GetPosition(), notches);
        else if (event.ShiftDown())
            m_canvas.GoToFrame(m_canvas.GetTime() - notches);
        else
            StepCut(window.GetPlane(), -notches); // as Page Up and Page Down: away from the user is back
    }

    /// By the frame's own command, so that the frame's size follows as it does from the menu.
    void Zoom(const zel_DrWin3d& window, const wxPoint& at, int notches) {
        auto* const frame = dynamic_cast<wxFrame*>(wxGetTopLevelParent(&m_canvas));
        if (frame == nullptr)
            return;
        const Point place = Place(window, at);
        const wxPoint inCanvas = window.GetPosition() + at;
        for (int i = 0; i < std::abs(notches); ++i)
            frame->ProcessCommand(notches > 0 ? zel_CMD_ZOOM_IN : zel_CMD_ZOOM_OUT);
        Show(window, place, inCanvas - window.GetPosition()); // what was under the pointer stays there
    }

    void StepCut(const Plane& plane, int steps) {
        View& view = m_canvas.GetView();
        const float cut = At(view.options.cut, plane.third);
        const float moved = MiddleOfVoxelBeside(Look(plane.third, 1), cut, steps);
        if (moved != cut)
            m_canvas.Apply(view.MoveCutThrough(plane, moved));
    }

    zel_Viewer3dCanvas& m_canvas;
    WheelNotches m_wheel;
    std::optional<Hold> m_held;
    const zel_DrWin3d* m_dragged = nullptr; // in which the left button was pressed
};

} // namespace

void UseMouse(zel_Viewer3dCanvas& canvas) {
    canvas.Bind(zel_EVT_MOUSE3D, [control = std::make_shared<MouseControl>(canvas)](zel_Mouse3dEvent& event) {
        event.Skip(); // the canvas tells of the pixel under the pointer
        if (event.GetWindow() != nullptr && control->HasImage())
            control->OnMouse(*event.GetWindow(), event.GetMouseEvent());
    });
}

} // namespace zel
