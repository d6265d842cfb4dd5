// Each writer of the table while calls of the system fail, one after the other.

#include "tests/faults/writer_fixture.h"
#include "tests/support/failing_calls.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <set>

namespace zel::test {
namespace {

using testing::HasSubstr;
using testing::IsSupersetOf;

/// Calls without which a file is not whole or not in its place: their failure must be told.
const std::set<std::string> needed = {"open to write",  "pwrite", "write", "fsync",
                                      "close to write", "fchmod", "rename"};

class FailingCalls : public WriterTest {
protected:
    /// Saves with each call in turn failing. @return the calls that there were
    std::set<std::string> SaveWithEachCallFailing(Before start, int error, Failing lasting = Failing::Once) const {
        const Files whole = LookAtWhole(start);
        const std::size_t descriptors = CountDescriptors();
        std::set<std::string> calls;
        for (std::size_t number = 0;; ++number) {
            LayOut(start);
            const Files before = Look();
            std::string told, call;
            {
                const FailingCall fault(number, error, lasting);
                told = Save();
                call = fault.GetName();
            }
            SCOPED_TRACE("call " + std::to_string(number) + ", " + call + ": " + std::strerror(error) + "; told: \"" +
                         told + "\"");
            Files files = Look();
            if (lasting == Failing::FromThenOn) // temporary files can't be removed either
                std::erase_if(files, [](const auto& file) { return file.first.find("/.") != std::string::npos; });
            EXPECT_TRUE(AreOldOrWhole(files, before, whole));
            if (told.empty()) {
                EXPECT_TRUE(files == whole) << "saved, as it says";
                EXPECT_FALSE(needed.contains(call)) << "the failure is kept a secret";
            } else {
                EXPECT_TRUE(files == before || !writer.moreEndings.empty()) << "not saved, as it says";
                ExpectReason(told, call, error);
            }
            EXPECT_EQ(CountDescriptors(), descriptors);
            if (call.empty() || HasFailure())
                return calls;
            calls.insert(call);
        }
    }

private:
    void ExpectReason(const std::string& told, const std::string& call, int error) const {
        EXPECT_FALSE(call.empty()) << "nothing was in the way";
        if (!writer.tellsWhy)
            return;
        const bool isForbidden = error == EACCES || error == EPERM; // of an input that is told in words of its own
        const bool isInput = isForbidden && told.find("No permission to read the file") != std::string::npos;
        EXPECT_THAT(told, HasSubstr(isInput ? "No permission" : std::strerror(error)));
        EXPECT_THAT(told, HasSubstr("/zel-test-")) << "names a file";
    }
};

TEST_P(FailingCalls, LeaveTheOldFileOrTheWholeOne) {
    EXPECT_THAT(SaveWithEachCallFailing(Before::File, EIO),
                IsSupersetOf({"open to write", "pwrite", "fsync", "close to write", "rename", "fsync folder"}));
    SaveWithEachCallFailing(Before::File, ENOSPC);
    if (!IsLongRun())
        return;
    for (const int error : {EACCES, EROFS, EDQUOT, EPERM})
        SaveWithEachCallFailing(Before::File, error);
}

TEST_P(FailingCalls, LeaveNothingWhereNothingWas) {
    SaveWithEachCallFailing(Before::Nothing, EROFS);
    if (!IsLongRun())
        return;
    for (const int error : {EIO, ENOSPC, EACCES})
        SaveWithEachCallFailing(Before::Nothing, error);
}

TEST_P(FailingCalls, LeaveALinkInItsPlace) {
    SaveWithEachCallFailing(Before::Link, EACCES);
    if (IsLongRun())
        SaveWithEachCallFailing(Before::Link, EIO);
}

TEST_P(FailingCalls, UpToTheEndLeaveTheOldFileOrTheWholeOne) {
    SaveWithEachCallFailing(Before::File, EIO, Failing::FromThenOn);
    SaveWithEachCallFailing(Before::Nothing, EIO, Failing::FromThenOn);
}

TEST_P(FailingCalls, ThatAreInterruptedAreMadeAgain) {
    const Files whole = LookAtWhole(Before::File);
    LayOut(Before::File);
    std::string told;
    std::size_t interrupted = 0;
    {
        const InterruptedCalls calls;
        told = Save();
        interrupted = calls.GetCount();
    }
    EXPECT_EQ(told, "");
    EXPECT_TRUE(Look() == whole);
    EXPECT_GT(interrupted, 3U);
}

TEST_P(FailingCalls, ByAnInterruptionAtTheCloseHaveSaved) {
    const Files whole = LookAtWhole(Before::File);
    std::size_t closes = 0;
    std::string call = "first";
    for (std::size_t number = 0; !call.empty(); ++number) {
        LayOut(Before::File);
        std::string told;
        {
            const FailingCall fault(number, EINTR);
            told = Save();
            call = fault.GetName();
        }
        if (call != "close to write")
            continue;
        ++closes;
        EXPECT_EQ(told, "") << number;
        EXPECT_TRUE(Look() == whole) << number;
    }
    EXPECT_GE(closes, 1U);
}

INSTANTIATE_TEST_SUITE_P(Writers, FailingCalls, testing::ValuesIn(AllWriters()), testing::PrintToStringParamName());

} // namespace
} // namespace zel::test
