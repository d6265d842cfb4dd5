// Histogram files while the system fails, and files that promise what they do not hold.

#include "model/zel_histogram.h"
#include "tests/support/failing_memory.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/peak_memory.h"
#include "tests/support/save_faults.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>
#include <wx/string.h>

#include <csignal>
#include <cstddef>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using zel::Histogram;

/// Runs a check in a process of its own that is ended after some seconds, as it may hang.
/// @return whether the check held
template <typename Check>
bool HoldsInTime(Check check) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(10);
        ::_exit(check() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class HistogramFaults : public testing::Test {
protected:
    HistogramFaults() {
        histogram.Init(0, 9999, 10000);
        for (std::size_t i = 0; i < histogram.size(); ++i)
            histogram[i] = i * i * 12345;
    }
    std::string Path() const { return folder / "histogram.txt"; }
    wxString Name() const { return wxString::FromUTF8(Path()); }
    /// Whether a file of these bytes is refused, and nothing of it taken.
    template <typename T>
    bool Refuses(const std::string& bytes) const {
        WriteBytes(Path(), bytes);
        Histogram<T> loaded;
        loaded.Init(1, 2, 3);
        return !loaded.Load(Name()) && loaded.size() == 3;
    }

    ScratchFolder folder;
    Histogram<int> histogram;
};

TEST_F(HistogramFaults, FileIsTheOldOneOrWholeWhicheverCallFails) {
    ExpectOldOrWholeAtEveryFault(Path(), [this] { return histogram.Save(Name()); });
}

TEST_F(HistogramFaults, FullDiskLeavesTheOldFile) {
    WriteBytes(Path(), "old");
    bool saved = true;
    {
        const FileSizeLimit full(5000);
        saved = histogram.Save(Name());
    }
    EXPECT_FALSE(saved);
    EXPECT_TRUE(ReadBytes(Path()) == "old");
    EXPECT_EQ(folder.List(), std::vector<std::string>{"histogram.txt"});
}

TEST_F(HistogramFaults, KilledSaveLeavesAWholeFile) {
    Histogram<int> other;
    other.Init(0, 99999, 100000);
    for (std::size_t i = 0; i < other.size(); ++i)
        other[i] = 7 * i + 1;
    ASSERT_TRUE(other.Save(Name()));
    const std::string large = ReadBytes(Path());
    ASSERT_TRUE(histogram.Save(Name()));
    const std::string small = ReadBytes(Path());
    for (unsigned i = 0; i < 30; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (;;) {
                other.Save(Name());
                histogram.Save(Name());
            }
        }
        ::usleep(3000 + 700 * i);
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        const std::string bytes = ReadBytes(Path());
        ASSERT_TRUE(bytes == large || bytes == small) << bytes.size() << " bytes, killed for the time " << i;
    }
}

TEST_F(HistogramFaults, WhatIsNoPlainFileIsRefusedAtOnce) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const wxString pipe = wxString::FromUTF8(folder / "pipe");
    EXPECT_TRUE(HoldsInTime([&] { return !histogram.Save(pipe); }));
    EXPECT_TRUE(HoldsInTime([&] { return !Histogram<int>(histogram).Load(pipe); }));
    EXPECT_TRUE(HoldsInTime([&] { return !histogram.Save("/dev/null"); }));
    EXPECT_TRUE(HoldsInTime([&] { return !Histogram<int>(histogram).Load("/dev/zero"); }));
    EXPECT_TRUE(HoldsInTime([&] { return !Histogram<int>(histogram).Load("/dev/tty"); }));
    EXPECT_TRUE(HoldsInTime([&] { return !histogram.Save(wxString::FromUTF8(folder.GetPath())); }));
    EXPECT_TRUE(HoldsInTime([&] { return !Histogram<int>(histogram).Load(wxString::FromUTF8(folder.GetPath())); }));
    EXPECT_EQ(folder.List(), std::vector<std::string>{"pipe"});
}

TEST_F(HistogramFaults, RangeThatTheFileCannotHoldTakesNoMemory) {
    const std::size_t before = PeakMemory();
    EXPECT_TRUE(Refuses<float>("float\n30000000 0 29999999 \n0 1\n1 "));
    EXPECT_TRUE(Refuses<float>("float\n50000000 0 0 \n0 1\n1 ")); // 600 MB
    EXPECT_TRUE(Refuses<int>("int\n33554433 0 0 \n0 1\n1 "));     // one more than 2^25
    EXPECT_TRUE(Refuses<int>("int\n18446744073709551615 0 18446744073709551614 \n0 1\n1 "));
    EXPECT_LT(PeakMemory(), before + (std::size_t{16} << 20));
}

TEST_F(HistogramFaults, RangeOfMoreThanHalfAsManyCountersAsBytesIsRefused) {
    // 17 bytes in front of the counters and 8 of them: 25, which hold 12 counters at most.
    const std::string counters = "1 1 1 1 ";
    EXPECT_TRUE(Refuses<int>("int\n99 1 13 \n0 1\n" + counters));
    Histogram<int> loaded; // 12 could be: the layout is taken, and then counters are missing
    WriteBytes(Path(), "int\n99 1 12 \n0 1\n" + counters);
    EXPECT_FALSE(loaded.Load(Name()));
    EXPECT_EQ(loaded.size(), 99U);
    EXPECT_EQ(loaded.GetSum(), 4U);
}

TEST_F(HistogramFaults, ManyBinsWithOneCounterComeBack) {
    Histogram<unsigned short> sparse, loaded;
    sparse.Init(0, 65535, 65536);
    sparse[40000] = 3;
    ASSERT_TRUE(sparse.Save(Name()));
    EXPECT_EQ(ReadBytes(Path()), "unsigned short\n65536 40000 40000 \n0 65535\n3 ");
    ASSERT_TRUE(loaded.Load(Name()));
    EXPECT_TRUE(loaded == sparse);
    EXPECT_EQ(loaded[40000], 3U);
    EXPECT_EQ(loaded.GetSum(), 3U);
}

TEST_F(HistogramFaults, TheMostBinsComeBack) {
    constexpr std::size_t most = std::size_t{1} << 25;
    WriteBytes(Path(), "unsigned char\n33554432 33554431 33554431 \n0 255\n7 ");
    Histogram<unsigned char> loaded;
    ASSERT_TRUE(loaded.Load(Name()));
    ASSERT_EQ(loaded.size(), most);
    EXPECT_EQ(loaded[most - 1], 7U);
    EXPECT_EQ(loaded.FindFirstNonZero(), most - 1);
}

TEST_F(HistogramFaults, AFileWithACounterForEachBinMayHaveAnyNumberOfThem) {
    // As an image of whole numbers from 0 to 2^25 gives it: one bin more than a short file may promise.
    constexpr std::size_t bins = (std::size_t{1} << 25) + 1;
    std::string bytes = "int\n33554433 0 33554432 \n0 33554432\n";
    const std::size_t layout = bytes.size();
    bytes.resize(layout + 2 * bins, ' ');
    for (std::size_t i = 0; i < bins; ++i)
        bytes[layout + 2 * i] = i % 2 == 0 ? '3' : '4';
    WriteBytes(Path(), bytes);
    Histogram<int> loaded;
    ASSERT_TRUE(loaded.Load(Name()));
    ASSERT_EQ(loaded.size(), bins);
    EXPECT_EQ(loaded.GetRightCenter(), 33554432);
    EXPECT_EQ(loaded[bins - 2], 4U);
    EXPECT_EQ(loaded.GetSum(), 3 * bins + bins / 2);
}

TEST_F(HistogramFaults, LackOfMemoryIsToldByTheResult) {
    histogram.Init(0, 99, 100);
    ASSERT_TRUE(histogram.Save(Name()));
    const std::string whole = ReadBytes(Path());
    const wxString name = Name();
    bool failed = true;
    for (std::size_t number = 0; failed; ++number) {
        WriteBytes(Path(), "old");
        bool saved = true;
        {
            const FailingMemory memory(number);
            EXPECT_NO_THROW(saved = histogram.Save(name)) << number;
            failed = memory.HasFailed();
        }
        ASSERT_TRUE(ReadBytes(Path()) == (saved ? whole : "old")) << number;
    }
    failed = true;
    WriteBytes(Path(), whole);
    for (std::size_t number = 0; failed; ++number) {
        Histogram<int> loaded;
        bool isLoaded = true;
        {
            const FailingMemory memory(number);
            EXPECT_NO_THROW(isLoaded = loaded.Load(name)) << number;
            failed = memory.HasFailed();
        }
        ASSERT_EQ(loaded.size(), isLoaded ? 100U : 0U) << number;
    }
}

} // namespace
