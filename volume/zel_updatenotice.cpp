#include "volume/zel_updatenotice.h"

namespace zel {

zel_UpdateNotice::Keyboard::Keyboard() : window(wxWindow::FindFocus()) {}

zel_UpdateNotice::Keyboard::~Keyboard() {
    if (window && wxWindow::FindFocus() != window)
        window->SetFocus();
}

zel_UpdateNotice::zel_UpdateNotice(const wxString& text, wxWindow* over) : m_notice(text, over) {}

zel_UpdateNotice::~zel_UpdateNotice() = default;

} // namespace zel
