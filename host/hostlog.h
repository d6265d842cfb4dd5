#pragma once

#include <wx/log.h>

namespace zelviewer {

/// The log of the toolkit and the library. By default the toolkit opens a box for each message, progress included. Here
/// only errors open one, everything else goes to standard error.
class HostLog : public wxLogGui {
public:
    /// @param verbose  messages are printed too, not only warnings
    /// @param boxless  errors are printed instead of shown
    HostLog(bool verbose, bool boxless) : m_verbose(verbose), m_boxless(boxless) {}

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo& info) override;

private:
    bool m_verbose;
    bool m_boxless;
};

} // namespace zelviewer
