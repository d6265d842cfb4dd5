#pragma once

// For tests of sequences in files.

#include "tests/support/collected_log.h"
#include "tests/support/scratch_folder.h"

#include <wx/arrstr.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A folder for files, and a log in which nothing but messages is expected.
class SequenceFolder : public testing::Test {
protected:
    wxString Name(const std::string& file) const { return wxString::FromUTF8(folder / file); }
    wxArrayString Names(const std::vector<std::string>& files) const {
        wxArrayString names;
        for (const auto& file : files)
            names.Add(Name(file));
        return names;
    }

    ScratchFolder folder;
    CollectedLog log;
};
