#pragma once

#include "tests/support/log_catcher.h"

#include <gtest/gtest.h>

/// Takes the log in while it lives, and expects nothing but messages.
class CollectedLog : public zel::test::LogCatcher {
public:
    std::vector<std::string> texts;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo&) override {
        EXPECT_EQ(level, wxLogLevel(wxLOG_Message)) << text;
        texts.push_back(text.utf8_string());
    }
};
