#pragma once

#include "model/zel_export.h"

#include <wx/dialog.h>
#include <wx/msgdlg.h>
#include <wx/weakref.h>

namespace zel {

/// Shows a dialog and waits for its end, as its ShowModal does, and bears that a window above it goes meanwhile: a host
/// may close a viewer from a timer, or its own window with all viewers. Every modal dialog is to be shown by this, and
/// to lie on the stack of the function that shows it, so that it ends with its call.
///
/// When its parent goes, or a window above that, the dialog is taken off it and ended. Handlers and modules of that
/// window are gone when the call returns; the code behind it holds what it still needs by a wxWeakRef:
///
///     const wxWeakRef<wxEvtHandler> self(this);
///     SomeDialog dialog(GetFrame(), value);
///     if (RunModal(dialog) != wxID_OK || !self)
///         return;
///
/// A dialog with another one over it ends after that one. If the upper one is a modal dialog that was not shown by
/// this, both stay until it has ended by itself.
/// @return what the dialog was ended with; wxID_CANCEL, whatever that was, if a window above it has gone
ZEL_EXPORT int RunModal(wxDialog& dialog);

/// A message box that can be shown as safely; otherwise as wxMessageBox.
/// @param parent  null for the active window, which may be a viewer
ZEL_EXPORT void ShowMessage(const wxString& text, const wxString& caption = wxMessageBoxCaptionStr,
                            long style = wxOK | wxCENTRE, wxWindow* parent = nullptr);

} // namespace zel
