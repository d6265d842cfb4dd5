#pragma once

#include "model/zel_export.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_events.h"
#include "viewer/zel_extensionmodule.h"

#include <wx/frame.h>
#include <wx/timer.h>

#include <deque>

namespace zel {

class zel_Viewer3dCanvas;

/// The top-level window of a viewer: menus, status bar, and one canvas that fills its client area. It is built but
/// not shown. Nothing but the canvas may be made a direct child of it.
///
/// Commands that come before a canvas is set do nothing. When the frame goes, its parent, if it has one, gets an
/// update-UI event with the id zel_CMD_FRAME_CLOSING. A handler of it may run an event loop but must not throw. It also
/// comes when the frame goes with its parent, out of the parent's base class: a parent with a handler of its own
/// destroys its frames in its own destructor (DestroyChildren), or unbinds there.
///
/// A host may close the frame, or a window above it, at any time, also while a modal dialog of the viewer is open: the
/// dialog then ends as cancelled.
///
/// An exception that leaves a command reaches the toolkit, whose default is to end the program: a host overrides
/// wxApp::OnExceptionInMainLoop.
class ZEL_EXPORT zel_Viewer3dFrame : public wxFrame {
public:
    /// Makes the frame with its menus and its status bar, and without a canvas. Parameters are as for wxFrame.
    zel_Viewer3dFrame(wxWindow* parent, int id, const wxString& title, const wxPoint& pos, const wxSize& size,
                      long style);
    ~zel_Viewer3dFrame() override;

    /// The toolkit deletes the frame a little later; from here on nothing is drawn or browsed, so a host may delete an
    /// image of its own, and labels.
    bool Destroy() override;

    zel_Viewer3dCanvas* GetCanvas() const { return m_canvas; } ///< null before SetCanvas
    /// Takes a canvas, made as a child of this frame, and gives it the client area. One that was there is destroyed
    /// at once, so this is not for handlers of its own events.
    /// The frame keeps its size; ResizeFrameIfRequired adjusts it.
    void SetCanvas(zel_Viewer3dCanvas* canvas);

    /// Pushes the module on the frame. With a menu, the module also gets its entry in the menu bar and is deleted
    /// with the frame; without, it stays the host's and must outlive the frame.
    void AddExtensionModule(zel_ExtensionModule* module, const wxString& label, bool withMenu);
    /// Appends a copy of the menu's own entries; the caller keeps the menu. An entry with a submenu becomes a plain
    /// one. Named so because the toolkit takes the plain name on one platform.
    void AppendMenuW(const wxMenu* menu, const wxString& label);
    /// The command id that the next module's menu starts from.
    int GetNextMenuId() const { return m_nextMenuId; }

    /// Brings the frame to the canvas's optimal size, if "Auto adjust frame size" is checked.
    void ResizeFrameIfRequired();
    /// Shows a text in the status bar for some seconds.
    void SetInfoStatusText(const wxString& text, int seconds);
    void ClearInfoStatusText(); ///< empties the field of such messages
    /// Gives the frame, and the volume window, icons made of the present XY picture.
    void RefreshIcon();

protected:
    /// Takes a message out of the status bar.
    class MyStatusTimer : public wxTimer {
    public:
        explicit MyStatusTimer(zel_Viewer3dFrame* frame) : m_frame(frame) {} ///< not owned
        void Notify() override;                                              ///< the time is over

    private:
        zel_Viewer3dFrame* m_frame;
    };

    MyStatusTimer m_statusTimer; ///< runs for as long as a message stays in the status bar

private:
    void Reset();
    /// Runs a command of the Sequence menu, and shows in the status bar what it says.
    void OnSequenceMenuCmd(wxCommandEvent& event);
    void OnAdjustFrameSize(wxCommandEvent& event);
    void OnZoomIn(wxCommandEvent& event);
    void OnZoomOut(wxCommandEvent& event);
    void OnNormalZoom(wxCommandEvent& event);
    void OnToggleProjection(wxCommandEvent& event);
    void OnReverseAxis(wxCommandEvent& event);
    void OnAutoFocus(wxCommandEvent& event);
    void OnShowWindowsAnnotation(wxCommandEvent& event);
    void OnShowInfo(wxCommandEvent& event);
    void OnSave3dData(wxCommandEvent& event);
    void OnSaveView(wxCommandEvent& event);
    void OnSaveGalleryView(wxCommandEvent& event);
    void OnVisualizeVolume(wxCommandEvent& event);
    void OnPreferences(wxCommandEvent& event);
    void OnMove(wxMoveEvent& event);
    void OnIdle(wxIdleEvent& event);
    void OnMappingChanged(zel_MappingEvent& event);
    void OnOverlayingChanged(zel_OverlayingEvent& event);
    void OnUpdateUI(wxUpdateUIEvent& event);

    int m_nextMenuId = zel_firstModuleId;
    std::deque<bool> m_moduleFlags; // for each module pushed, whether it is deleted when it is popped
    zel_Viewer3dCanvas* m_canvas = nullptr;
    wxSize m_adjustedSize;       // after the last adjustment, to see whether somebody else has resized since
    wxSize m_adjustedDecoration; // the frame's size less its client size at that time

    wxDECLARE_EVENT_TABLE();
};

} // namespace zel
