#pragma once

#include "model/zel_export.h"

#include <wx/event.h>

namespace zel {

class zel_DrWin3d;

/// A mouse event in a drawing window, handed to the canvas. A host binds zel_EVT_MOUSE3D on the canvas, for any id,
/// to give the mouse a use.
class ZEL_EXPORT zel_Mouse3dEvent : public wxEvent {
public:
    /// A copy of the toolkit's event, with the window that it came to.
    explicit zel_Mouse3dEvent(zel_DrWin3d* drawingWindow = nullptr, const wxMouseEvent& event = wxMouseEvent());

    wxEvent* Clone() const override { return new zel_Mouse3dEvent(*this); } ///< for pending events

    /// The drawing window that the mouse is in.
    zel_DrWin3d* GetWindow() const { return m_window; }
    /// The toolkit's event; its positions are pixels of the window's client area.
    const wxMouseEvent& GetMouseEvent() const { return m_mouseEvent; }

private:
    zel_DrWin3d* m_window;
    wxMouseEvent m_mouseEvent;
};

/// The mapping of voxels to colours has changed. Sent synchronously to the frame, which passes it to the canvas.
class ZEL_EXPORT zel_MappingEvent : public wxEvent {
public:
    explicit zel_MappingEvent(bool committed = true); ///< a preview if not committed

    wxEvent* Clone() const override { return new zel_MappingEvent(*this); } ///< for pending events

    /// True for a final change, false for a preview; only final changes reach the volume window.
    bool IsCommitted() const { return m_committed; }

private:
    bool m_committed;
};

/// The labels' overlay has changed. Sent synchronously to the frame, which passes it to the canvas.
class ZEL_EXPORT zel_OverlayingEvent : public wxEvent {
public:
    /// Of the modules' commands only "Reload" sets the two, and always both.
    /// @param dataChanged  the labels are others than before; nothing in the library asks for it
    /// @param reload       the overlayer is to load its labels anew, and all is resampled
    explicit zel_OverlayingEvent(bool dataChanged = false, bool reload = false);

    wxEvent* Clone() const override { return new zel_OverlayingEvent(*this); } ///< for pending events

    bool GetDataChanged() const { return m_dataChanged; } ///< as the constructor got it
    bool GetReload() const { return m_reload; }           ///< as the constructor got it

private:
    bool m_dataChanged;
    bool m_reload;
};

/// Where a viewer is has changed: its cut, its view or its time, whoever did it. Sent to the canvas, for any id, when
/// the events at hand have been dealt with; one event tells of all changes since the last, and the first of where the
/// viewer opens. A handler may move any viewer, so that two are linked by setting each to the place of the other: a
/// move to where one is tells nothing.
class ZEL_EXPORT zel_PositionEvent : public wxEvent {
public:
    explicit zel_PositionEvent(bool cut = false, bool view = false, bool time = false); ///< what has changed

    wxEvent* Clone() const override { return new zel_PositionEvent(*this); } ///< for pending events

    bool HasCutChanged() const { return m_cut; } ///< the place of the cut
    /// The visible box or the scale.
    bool HasViewChanged() const { return m_view; }
    bool HasTimeChanged() const { return m_time; } ///< the frame that is shown

private:
    bool m_cut;
    bool m_view;
    bool m_time;
};

/// Bind it on the canvas.
ZEL_EXPORT extern const wxEventTypeTag<zel_Mouse3dEvent> zel_EVT_MOUSE3D;
/// @{
/// Bind it on the frame, and skip it: the frame passes it to the canvas.
ZEL_EXPORT extern const wxEventTypeTag<zel_MappingEvent> zel_EVT_MAPPING_CHANGED;
ZEL_EXPORT extern const wxEventTypeTag<zel_OverlayingEvent> zel_EVT_OVERLAYING_CHANGED;
/// @}
/// Bind it on the canvas.
ZEL_EXPORT extern const wxEventTypeTag<zel_PositionEvent> zel_EVT_POSITION_CHANGED;

} // namespace zel
