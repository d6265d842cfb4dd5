#include "host/hostlog.h"

#include "host/message.h"

namespace zelviewer {

void HostLog::DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo& info) {
    if (level <= wxLOG_Error && !m_boxless)
        wxLogGui::DoLogRecord(level, text, info);
    else if (level <= wxLOG_Warning)
        PrintWarning(text.utf8_string());
    else if (m_verbose)
        PrintMessage(text.utf8_string());
}

} // namespace zelviewer
