#pragma once

class wxWindow;

namespace zel {

/// Fills the help of the volume window and gives it its size.
void VolVisHelpFunc(wxWindow* dialog);

} // namespace zel
