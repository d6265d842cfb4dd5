#pragma once

#include "tests/support/failing_calls.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

/// Saves over an old file again and again, each time with the next call of the system failing: the file must be the
/// old one where saving says that it failed, and whole where it does not, and nothing else may be left in the folder.
/// For programs that link zel_faults.
/// @param name  the file that `save` writes, alone in its folder
/// @param save  returns whether the file was saved
inline void ExpectOldOrWholeAtEveryFault(const std::string& name, const std::function<bool()>& save) {
    ASSERT_TRUE(save());
    const std::string whole = ReadBytes(name);
    const std::string old = "what stood there before";
    const std::filesystem::path path(name);
    for (const int error : {EIO, ENOSPC}) {
        bool failed = true;
        std::size_t number = 0;
        for (; failed; ++number) {
            WriteBytes(name, old);
            bool saved = false;
            {
                const FailingCall fault(number, error);
                saved = save();
                failed = fault.HasFailed();
            }
            ASSERT_TRUE(ReadBytes(name) == (saved ? whole : old)) << "call " << number << ", saved: " << saved;
            for (const auto& entry : std::filesystem::directory_iterator(path.parent_path()))
                ASSERT_EQ(entry.path(), path) << "call " << number;
        }
        EXPECT_GT(number, 4U); // at the least a file is opened, written, flushed, closed and renamed
    }
}
