#include "core/kepcore/file/kep_temporaryname.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace kep::detail;

const Writer someone{"desk.0123abcd", 1234, 567890};

TEST(TemporaryName, TellsTargetMachineProcessAndNumber) {
    EXPECT_EQ(MakeTemporaryName("cells", ".tif", someone, 7), ".cells-desk.0123abcd-1234-567890-7.tif");
    EXPECT_EQ(MakeTemporaryName("cells", "", someone, 0), ".cells-desk.0123abcd-1234-567890-0");
    EXPECT_EQ(ReadTemporaryName(".cells-desk.0123abcd-1234-567890-7.tif", "cells", ".tif"), someone);
    EXPECT_EQ(ReadTemporaryName(".cells-desk.0123abcd-1234-567890-0", "cells", ""), someone);
}

TEST(TemporaryName, OfAnotherTargetIsNoneOfThisOne) {
    for (const char* const other : {"cells-desk.0123abcd-1234-567890-7.tif",
                                    ".cells-desk.0123abcd-1234-567890-7.ics",
                                    ".cells-desk.0123abcd-1234-567890-7.tiff",
                                    ".cells-desk.0123abcd-1234-567890-7",
                                    ".cells-2-desk.0123abcd-1234-567890-7.tif",
                                    ".cell-desk.0123abcd-1234-567890-7.tif",
                                    ".cells2-desk.0123abcd-1234-567890-7.tif",
                                    ".cells-.tif",
                                    ".cells-1234-0.tif",
                                    ".cells-desk-1234-567890.tif",
                                    ".cells-desk-1234-567890-.tif",
                                    ".cells-desk-1234--7.tif",
                                    ".cells-desk--567890-7.tif",
                                    ".cells--1234-567890-7.tif",
                                    ".cells-desk-0-567890-7.tif",
                                    ".cells-desk--1234-567890-7.tif",
                                    ".cells-desk-99999999999-567890-7.tif",
                                    ".cells-desk-1234-5x-7.tif",
                                    ".cells-desk-1234-567890-7-8.tif",
                                    ".cells-desk-1234-567890- 7.tif",
                                    "",
                                    ".",
                                    ".tif",
                                    ".cells-"})
        EXPECT_FALSE(ReadTemporaryName(other, "cells", ".tif")) << other;
}

TEST(TemporaryName, TellsTargetsWithHyphensApart) {
    // Whatever stands in front of the last four words is the target's.
    const std::string name = MakeTemporaryName("a-b", ".tif", someone, 1);
    EXPECT_FALSE(ReadTemporaryName(name, "a", ".tif"));
    EXPECT_EQ(ReadTemporaryName(name, "a-b", ".tif"), someone);
    const Writer numbers{"77", 88, 99};
    EXPECT_FALSE(ReadTemporaryName(MakeTemporaryName("a-66", ".tif", numbers, 1), "a", ".tif"));
}

TEST(TemporaryName, FitsAFolderWhateverTheTargetIsCalled) {
    std::string host(64, 'h');
    host += ".0123abcd";
    const Writer longest{host, 2147483647, 18446744073709551615U};
    const std::string stem(300, 's');
    const std::string suffix = "." + std::string(300, 'x');
    for (const std::string& s : {std::string("s"), stem})
        for (const std::string& x : {std::string(), std::string(".tif"), suffix}) {
            const std::string name = MakeTemporaryName(s, x, longest, 4294967295U);
            EXPECT_LE(name.size(), 255U);
            EXPECT_EQ(ReadTemporaryName(name, s, x), longest) << name;
        }
}

TEST(TemporaryName, IsCutBetweenCharacters) {
    std::string stem = "x";
    for (int i = 0; i < 100; ++i)
        stem += "\xC2\xB5"; // the micro sign
    const std::string name = MakeTemporaryName(stem, ".tif", someone, 0);
    const std::size_t end = name.find("-desk");
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(name[end - 1], '\xB5');
}

TEST(ThisWriter, IsThisProcessOnThisMachine) {
    const Writer self = GetThisWriter();
    EXPECT_EQ(self.process, ::getpid());
    EXPECT_GT(self.started, 0U);
    EXPECT_EQ(self.machine.find('-'), std::string::npos);
    EXPECT_EQ(self.machine.find('/'), std::string::npos);
    std::string host(65, '\0');
    ASSERT_EQ(::gethostname(host.data(), host.size()), 0);
    host.resize(host.find('\0'));
    std::replace(host.begin(), host.end(), '-', '+');
    EXPECT_TRUE(self.machine.starts_with(host + ".")) << self.machine;
    EXPECT_EQ(GetThisWriter(), self);
    EXPECT_EQ(ReadTemporaryName(MakeTemporaryName("a", ".tif", self, 0), "a", ".tif"), self);
    EXPECT_TRUE(IsRunning(self));
}

TEST(ThisWriter, IsAnotherOneWhereItsNumberCameAgain) {
    Writer before = GetThisWriter();
    --before.started;
    EXPECT_FALSE(IsRunning(before));
    before.started = 0; // not known: its number is taken
    EXPECT_TRUE(IsRunning(before));
}

TEST(ThisWriter, RunsUntilItIsKilled) {
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const Writer self = GetThisWriter();
        if (::write(ready[1], &self.started, sizeof self.started) != sizeof self.started)
            ::_exit(1);
        for (;;)
            ::pause();
    }
    Writer writer = GetThisWriter();
    writer.process = child;
    ASSERT_EQ(::read(ready[0], &writer.started, sizeof writer.started), ssize_t{sizeof writer.started});
    ::close(ready[0]);
    ::close(ready[1]);
    EXPECT_TRUE(IsRunning(writer));
    EXPECT_FALSE(IsLeftover(writer, 1'000'000, writer.machine));

    ASSERT_EQ(::kill(child, SIGKILL), 0);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(IsRunning(writer)); // its parent has not noticed yet, and the number is still taken
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_FALSE(IsRunning(writer));
    EXPECT_TRUE(IsLeftover(writer, 0, writer.machine));
}

TEST(Leftover, OfAnotherMachineIsToldByItsAge) {
    const Writer self = GetThisWriter();
    Writer other{"elsewhere.01234567", self.process, self.started};
    EXPECT_FALSE(IsLeftover(other, 3600, self.machine));
    EXPECT_TRUE(IsLeftover(other, 3601, self.machine));
    EXPECT_FALSE(IsLeftover(other, -1'000'000, self.machine)); // clocks differ
    // The same host after a start of its system, or another machine of that name.
    other.machine = self.machine;
    other.machine.back() = other.machine.back() == '0' ? '1' : '0';
    EXPECT_FALSE(IsLeftover(other, 3600, self.machine));
    EXPECT_TRUE(IsLeftover(other, 3601, self.machine));
    EXPECT_FALSE(IsLeftover(self, 1'000'000, self.machine)); // at work, however slowly
}

} // namespace
