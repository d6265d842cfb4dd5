#include "host/frame/hostmenus.h"

#include "host/frame/filemenu.h"
#include "host/frame/gotodialog.h"
#include "host/report.h"
#include "host/screenshot.h"
#include "image/zel_modaldialog.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_fit.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/accel.h>
#include <wx/clipbrd.h>
#include <wx/dataobj.h>
#include <wx/menu.h>

#include <memory>
#include <optional>
#include <utility>

namespace zelviewer {

namespace {

// Ids of the program's own commands, beyond those that the library's modules take.
enum Command : int {
    copyViewCommand = 20000,
    goToCommand,
    fitCommand,
    keysCommand,
};

void CopyView(zel::zel_Viewer3dCanvas& canvas) {
    const wxImage picture = ComposePicture(canvas);
    const wxClipboardLocker clipboard;
    if (!clipboard || !picture.IsOk())
        return;
    HavePng();
    wxTheClipboard->SetData(new wxBitmapDataObject(wxBitmap(picture))); // owned by the clipboard
    wxTheClipboard->Flush();                                            // it outlives the program
}

void ShowKeys(wxWindow* parent) {
    zel::ShowMessage(
        "Space\tsets the cut to the pointer\n"
        "C, Alt+C\tcentres a window on the pointer, or on the cut\n"
        "Arrows\tmove the windows\n"
        "Page Up, Page Down\tmove the cut through the window with the keyboard\n"
        "Home, End\tshow the first or the last frame\n"
        "=, -\tshow the next or the previous frame\n"
        "F2, F3, 1\tzoom in, out, and back to normal\n"
        "0\tfits the picture to the window\n"
        "A\tshows projections instead of cuts\n"
        "V\topens the volume window\n"
        "I\topens the info window\n\n"
        "A click sets the cut, a drag moves it along. The wheel goes through the slices, with Shift through "
        "the time, with Ctrl it zooms. The middle button moves the picture.",
        "Keys and mouse", wxOK | wxICON_INFORMATION, parent);
}

void ShowAbout(wxWindow* parent) {
    zel::ShowMessage("A viewer for images of many layers and their sequences in time.\n\n" +
                         wxString::FromUTF8(VersionText()),
                     "About zelviewer", wxOK | wxICON_INFORMATION, parent);
}

void AddMenus(zel::zel_Viewer3dFrame& frame) {
    auto* const edit = new wxMenu;
    edit->Append(copyViewCommand, "&Copy view\tCtrl+C", "Copy the picture of the windows");
    edit->Append(goToCommand, "&Go to...\tCtrl+G", "Go to a voxel and a frame by their numbers");
    edit->Append(fitCommand, "&Fit the picture to the window\t0", "Scale the picture as large as the window has room");
    auto* const help = new wxMenu;
    help->Append(keysCommand, "&Keys and mouse", "What keys and mouse do");
    help->Append(wxID_ABOUT, "&About zelviewer", "The versions of the program and of its libraries");
    frame.GetMenuBar()->Insert(0, edit, "&Edit");
    frame.GetMenuBar()->Append(help, "&Help");
}

/// The library's own two keys, and the program's: those of a table come before a window's own use of a key.
void AddKeys(zel::zel_Viewer3dFrame& frame) {
    const wxAcceleratorEntry entries[] = {
        {wxACCEL_CTRL, WXK_NUMPAD_ADD, zel::zel_CMD_ZOOM_IN},
        {wxACCEL_CTRL, WXK_NUMPAD_SUBTRACT, zel::zel_CMD_ZOOM_OUT},
        {wxACCEL_CTRL, '=', zel::zel_CMD_ZOOM_IN},
        {wxACCEL_CTRL, '-', zel::zel_CMD_ZOOM_OUT},
        {wxACCEL_CTRL, 'C', copyViewCommand},
        {wxACCEL_NORMAL, '0', fitCommand},
    };
    frame.SetAcceleratorTable(wxAcceleratorTable(static_cast<int>(std::size(entries)), entries));
}

/// Grays what has nothing to work on, also after the image has got other frames.
class IdleEntries {
public:
    explicit IdleEntries(zel::zel_Viewer3dFrame& frame) : m_frame(frame) {}

    void Update() {
        const zel::zel_Viewer3dCanvas* const canvas = m_frame.GetCanvas();
        const bool isSequence = canvas != nullptr && m_frame.GetCanvas()->GetImageCount() > 1;
        if (m_isSequence == isSequence)
            return;
        m_isSequence = isSequence;
        for (const int id :
             {zel::zel_CMD_BROWSE_FORWARD, zel::zel_CMD_BROWSE_BACKWARD, zel::zel_CMD_STOP_BROWSING,
              zel::zel_CMD_LOOP_MODE, zel::zel_CMD_OSCILLATION_MODE, zel::zel_CMD_BROWSING_RANGE, zel::zel_CMD_FASTER,
              zel::zel_CMD_SLOWER, zel::zel_CMD_LARGER_STEP, zel::zel_CMD_SMALLER_STEP})
            m_frame.GetMenuBar()->Enable(id, isSequence);
    }

private:
    zel::zel_Viewer3dFrame& m_frame;
    std::optional<bool> m_isSequence; // as the entries show it
};

void GrayIdleEntries(zel::zel_Viewer3dFrame& frame) {
    const auto entries = std::make_shared<IdleEntries>(frame);
    entries->Update();
    frame.Bind(wxEVT_IDLE, [entries](wxIdleEvent& event) {
        event.Skip();
        entries->Update();
    });
}

/// Keeps the last of the three windows: an empty viewer says nothing, and looks like a failure.
void KeepAWindow(zel::zel_Viewer3dFrame& frame) {
    const std::pair<int, zel::zel_ProjectionType> commands[] = {{zel::zel_CMD_SHOW_XY, zel::zel_PT_XY},
                                                                {zel::zel_CMD_SHOW_XZ, zel::zel_PT_XZ},
                                                                {zel::zel_CMD_SHOW_YZ, zel::zel_PT_YZ}};
    for (const auto& [id, type] : commands)
        frame.Bind(
            wxEVT_MENU,
            [&frame, only = type](wxCommandEvent& event) {
                int shown = 0;
                for (const zel::zel_ProjectionType each : {zel::zel_PT_XY, zel::zel_PT_XZ, zel::zel_PT_YZ})
                    shown |= frame.GetCanvas()->IsDrWinShown(each) ? each : 0;
                if (shown != only) {
                    event.Skip(); // to the library
                    return;
                }
                frame.GetMenuBar()->Check(event.GetId(), true);
                frame.SetInfoStatusText("This window is the last one.", 5);
            },
            id);
}

} // namespace

void AddHostMenus(zel::zel_Viewer3dFrame& frame, const HostActions& actions) {
    AddMenus(frame);
    AddFileMenu(frame, actions);
    AddKeys(frame);
    GrayIdleEntries(frame);
    KeepAWindow(frame);
    const auto bind = [&frame](int id, const auto& handle) { frame.Bind(wxEVT_MENU, handle, id); };
    bind(copyViewCommand, [&frame](wxCommandEvent&) { CopyView(*frame.GetCanvas()); });
    bind(goToCommand, [&frame](wxCommandEvent&) { AskWhereToGo(*frame.GetCanvas()); });
    bind(fitCommand, [&frame](wxCommandEvent&) { zel::FillRoom(*frame.GetCanvas(), frame.GetClientSize()); });
    frame.Bind(wxEVT_MAXIMIZE, [&frame](wxMaximizeEvent& event) {
        event.Skip();
        frame.CallAfter([&frame] { zel::FillRoom(*frame.GetCanvas(), frame.GetClientSize()); }); // once it has its size
    });
    bind(keysCommand, [&frame](wxCommandEvent&) { ShowKeys(&frame); });
    bind(wxID_ABOUT, [&frame](wxCommandEvent&) { ShowAbout(&frame); });
}

} // namespace zelviewer
