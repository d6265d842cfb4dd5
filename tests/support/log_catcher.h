#pragma once

#include <wx/log.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace zel::test {

/// While one lives, the toolkit's log comes here and opens no box.
class LogCatcher : public wxLog {
public:
    struct Entry {
        wxLogLevel level;
        std::string text;

        friend bool operator==(const Entry& a, const Entry& b) = default;
        friend std::ostream& operator<<(std::ostream& out, const Entry& entry) {
            return out << entry.level << " \"" << entry.text << '"';
        }
    };
    using Entries = std::vector<Entry>;

    LogCatcher() : m_previous(wxLog::SetActiveTarget(this)), m_previousLevel(wxLog::GetLogLevel()) {
        wxLog::SetLogLevel(wxLOG_Max);
    }
    ~LogCatcher() override {
        wxLog::SetLogLevel(m_previousLevel);
        wxLog::SetActiveTarget(m_previous);
    }
    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;

    const Entries& GetEntries() const { return m_entries; }
    bool Has(wxLogLevel level, const std::string& text) const {
        return std::find(m_entries.begin(), m_entries.end(), Entry{level, text}) != m_entries.end();
    }

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo&) override {
        m_entries.push_back({level, text.utf8_string()});
    }

private:
    Entries m_entries;
    wxLog* m_previous;
    wxLogLevel m_previousLevel;
};

} // namespace zel::test
