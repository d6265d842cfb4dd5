#pragma once

class wxDialog;

namespace zel {

/// Ends a dialog with wxID_OK: its modal run if it has one, otherwise it hides.
void EndWithOk(wxDialog* dialog);

} // namespace zel
