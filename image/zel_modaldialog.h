#pragma once

#include "model/zel_export.h"

#include <wx/dialog.h>
#include <wx/msgdlg.h>
#include <wx/weakref.h>

namespace zel {

/// Shows a dialog and waits for its end, like its ShowModal, but is safe if a window above it is destroyed meanwhile: a
/// host may close a viewer from a timer, or its own window with all viewers. Every modal dialog should be shown by
/// this, and be a local variable of the function that shows it, so that it ends with its call.
///
/// When its parent is destroyed, or a window above that, the dialog is removed from it and ended. Handlers and modules
/// of that window are gone when the call returns; code after it refers to what it still needs by a wxWeakRef:
///
///     const wxWeakRef<wxEvtHandler> self(this);
///     SomeDialog dialog(GetFrame(), value);
///     if (RunModal(dialog) != wxID_OK || !self)
///         return;
///
/// A dialog with another one over it ends after that one. If the upper one is a modal dialog that was not shown by
/// this, both stay until it has ended by itself.
/// @return the code the dialog was ended with, but always wxID_CANCEL if a window above it was destroyed
ZEL_EXPORT int RunModal(wxDialog& dialog);

/// A message box that is as safe; otherwise like wxMessageBox.
/// @param text, caption, style  as for wxMessageBox
/// @param parent                null for the active window, which may be a viewer
ZEL_EXPORT void ShowMessage(const wxString& text, const wxString& caption = wxMessageBoxCaptionStr,
                            long style = wxOK | wxCENTRE, wxWindow* parent = nullptr);

} // namespace zel
