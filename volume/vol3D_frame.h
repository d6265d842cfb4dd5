#pragma once

#include "model/zel_export.h"
#include "model/zel_wholemeshes.h"

#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/weakref.h>

namespace zel {

class vol3D_VolVisCanvas;

/// The window of the volume view: menus, a status bar with two fields, and the canvas that fills it. Closing only hides
/// it, so that it comes back as quickly as it went; a close that cannot be vetoed destroys it.
class ZEL_EXPORT vol3D_VolVisFrame : public wxFrame {
public:
    /// Makes the frame with its canvas, which is to be started by Init.
    /// @param parent, id, title, pos, size, style  as for wxFrame
    /// @param meshDrawing                          as the canvas takes it, which gets the attributes for it
    vol3D_VolVisFrame(wxWindow* parent, wxWindowID id, const wxString& title, const wxPoint& pos, const wxSize& size,
                      long style, MeshDrawing meshDrawing = MeshDrawing::Halved);
    /// May be deleted directly, also while a dialog over it is open: that ends as cancelled.
    ~vol3D_VolVisFrame() override;

    vol3D_VolVisCanvas* GetCanvas() const { return m_canvas; } ///< lives as long as the frame
    /// The window with the list of keys; null until it was asked for, and again after the frame was closed.
    wxDialog* GetHelpDialog() const { return m_help; }

private:
    void MakeMenus();
    void OnViewDirection(wxCommandEvent& event);
    void OnHelp(wxCommandEvent& event);
    void OnClose(wxCloseEvent& event);

    vol3D_VolVisCanvas* m_canvas;
    wxWeakRef<wxDialog> m_help;
};

} // namespace zel
