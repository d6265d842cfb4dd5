#pragma once

#include <gtest/gtest.h>

#include <wx/log.h>

#include <string>
#include <vector>

/// Takes the log in while it lives, and expects nothing but messages.
class CollectedLog : public wxLog {
public:
    CollectedLog() : before(wxLog::SetActiveTarget(this)) {}
    ~CollectedLog() override { wxLog::SetActiveTarget(before); }
    CollectedLog(const CollectedLog&) = delete;
    CollectedLog& operator=(const CollectedLog&) = delete;

    std::vector<std::string> texts;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo&) override {
        EXPECT_EQ(level, wxLogLevel(wxLOG_Message)) << text;
        texts.push_back(text.utf8_string());
    }

private:
    wxLog* before;
};
