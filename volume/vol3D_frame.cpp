#include "volume/vol3D_frame.h"
#include "dialogs/dlg_volume_help.h"
#include "model/zel_volumeview.h"
#include "volume/vol3D_canvas.h"

#include <wx/menu.h>
#include <wx/statusbr.h>

#include <cstddef>

namespace zel {

namespace {

// Some equal stock ids of the toolkit; an entry with a label of its own keeps it.
enum Command : int {
    helpCommand = 5006,
    firstDirectionCommand = 5007, // six, in the order of viewDirections
    whiteBackgroundCommand = 10002,
    hidePlaneCommand = 10003,
    hideBoxCommand = 10004,
    saveViewCommand = 10005,
    loadViewCommand = 10006
};

constexpr int lastDirectionCommand = firstDirectionCommand + static_cast<int>(viewDirections.size()) - 1;

wxMenu* MakeViewMenu() {
    auto* const menu = new wxMenu;
    int id = firstDirectionCommand;
    for (const char* const axis : {"x", "y", "z"}) {
        menu->Append(id++, wxString(axis) + "+", wxString("View along positive ") + axis + " axis");
        menu->Append(id++, wxString(axis) + "-", wxString("View along negative ") + axis + " axis");
    }
    menu->AppendSeparator();
    menu->AppendCheckItem(whiteBackgroundCommand, "&White background", "Draw white background instead of black");
    menu->AppendCheckItem(hidePlaneCommand, "Hide &clipping plane", "Hide the clipping plane");
    menu->AppendCheckItem(hideBoxCommand, "Hide &box", "Hide the view box");
    menu->AppendSeparator();
    menu->Append(saveViewCommand, "&Save view", "Save current view to a file");
    menu->Append(loadViewCommand, "&Load view", "Load view from a file");
    return menu;
}

wxMenu* MakeHelpMenu() {
    auto* const menu = new wxMenu;
    menu->Append(helpCommand, "&Help\tCtrl-H", "Shows this window's help");
    return menu;
}

} // namespace

vol3D_VolVisFrame::vol3D_VolVisFrame(wxWindow* parent, wxWindowID id, const wxString& title, const wxPoint& pos,
                                     const wxSize& size, long style, MeshDrawing meshDrawing)
    : wxFrame(parent, id, title, pos, size, style) {
    MakeMenus();
    wxStatusBar* const statusBar = CreateStatusBar(2);
    m_canvas = new vol3D_VolVisCanvas(statusBar, this, wxID_ANY, wxPoint(0, 0), GetClientSize(), 0, "VolGLCanvas",
                                      vol3D_VolVisCanvas::ChooseAttributes(meshDrawing), meshDrawing);
    Bind(wxEVT_SET_FOCUS, [this](wxFocusEvent&) { m_canvas->SetFocus(); });
    Bind(wxEVT_CLOSE_WINDOW, &vol3D_VolVisFrame::OnClose, this);
}

vol3D_VolVisFrame::~vol3D_VolVisFrame() {
    SendDestroyEvent(); // dialogs over this window end before anything of it is gone
}

void vol3D_VolVisFrame::MakeMenus() {
    auto* const bar = new wxMenuBar;
    bar->Append(MakeViewMenu(), "&View");
    bar->Append(MakeHelpMenu(), "&Help");
    SetMenuBar(bar);
    Bind(wxEVT_MENU, &vol3D_VolVisFrame::OnViewDirection, this, firstDirectionCommand, lastDirectionCommand);
    const auto bind = [this](int id, const auto& handle) { Bind(wxEVT_MENU, handle, id); };
    bind(whiteBackgroundCommand, [this](wxCommandEvent& event) {
        const float shade = event.IsChecked() ? 1.0F : 0.0F;
        m_canvas->SetBackground(shade, shade, shade);
    });
    bind(hidePlaneCommand, [this](wxCommandEvent& event) { m_canvas->SetShowPlane(!event.IsChecked()); });
    bind(hideBoxCommand, [this](wxCommandEvent& event) { m_canvas->SetShowBox(!event.IsChecked()); });
    bind(saveViewCommand, [this](wxCommandEvent&) { m_canvas->SaveView(); });
    bind(loadViewCommand, [this](wxCommandEvent&) { m_canvas->LoadView(); });
    Bind(wxEVT_MENU, &vol3D_VolVisFrame::OnHelp, this, helpCommand);
}

void vol3D_VolVisFrame::OnViewDirection(wxCommandEvent& event) {
    const auto& [forward, up] = viewDirections[static_cast<std::size_t>(event.GetId() - firstDirectionCommand)];
    m_canvas->SetViewDirection(viewDirectionDistance, forward.x, forward.y, forward.z, up.x, up.y, up.z);
}

void vol3D_VolVisFrame::OnHelp(wxCommandEvent&) {
    if (!m_help)
        m_help = new VolumeHelpDialog(this);
    m_help->Show();
    m_help->SetFocus();
}

void vol3D_VolVisFrame::OnClose(wxCloseEvent& event) {
    if (!event.CanVeto()) {
        Destroy();
        return;
    }
    if (m_help)
        m_help->Destroy();
    m_help = nullptr;
    Show(false);
    event.Veto();
}

} // namespace zel
