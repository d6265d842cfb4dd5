#pragma once

// Sets of small histograms, and a log that is read.

#include "histogram/zel_histogramset.h"
#include "tests/model/counted.h"

#include <wx/log.h>

#include <string>
#include <utility>
#include <vector>

namespace zel::test {

template <typename T>
HistogramSet<T> SetOf(const Histogram<T>& histogram) {
    HistogramSet<T> set;
    set.Set(histogram);
    return set;
}

/// Takes in everything that is logged while it lives.
class NotedLog : public wxLog {
public:
    using Entries = std::vector<std::pair<wxLogLevel, std::string>>;

    NotedLog() : m_previous(wxLog::SetActiveTarget(this)), m_previousLevel(wxLog::GetLogLevel()) {
        wxLog::SetLogLevel(wxLOG_Max);
    }
    ~NotedLog() override {
        wxLog::SetLogLevel(m_previousLevel);
        wxLog::SetActiveTarget(m_previous);
    }
    NotedLog(const NotedLog&) = delete;
    NotedLog& operator=(const NotedLog&) = delete;

    Entries entries;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo&) override {
        entries.emplace_back(level, text.utf8_string());
    }

private:
    wxLog* m_previous;
    wxLogLevel m_previousLevel;
};

} // namespace zel::test
