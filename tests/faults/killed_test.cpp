// Each writer of the table in programs that are killed while they save.

#include "tests/faults/writer_fixture.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zel::test {
namespace {

constexpr const char* pathToKilled = "ZEL_SAVE_UNTIL_KILLED"; ///< environment of the program that is killed
constexpr int readyDescriptor = 3;                            ///< on which it tells that it begins

class KilledSaves : public WriterTest {
protected:
    /// Starts this program anew, for this test alone, to save to the path again and again.
    pid_t StartSaving() const {
        int ready[2];
        if (::pipe2(ready, O_CLOEXEC) != 0)
            return -1;
        const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
        std::string filter = std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name();
        const pid_t child = ::fork();
        if (child == 0) {
            ::setenv(pathToKilled, path.c_str(), 1);
            ::setenv("TMPDIR", scratchOfKilled.GetPath().c_str(), 1);
            const int nothing = ::open("/dev/null", O_RDWR);
            ::dup2(nothing, STDOUT_FILENO);
            ::dup2(nothing, STDERR_FILENO);
            ::dup2(ready[1], readyDescriptor);
            char name[] = "faults_test";
            char* arguments[] = {name, filter.data(), nullptr};
            ::execv("/proc/self/exe", arguments);
            ::_exit(127);
        }
        ::close(ready[1]);
        char sign = 0;
        const bool isReady = child > 0 && ::read(ready[0], &sign, 1) == 1;
        ::close(ready[0]);
        EXPECT_TRUE(isReady) << "the program did not begin to save";
        return child;
    }

    ScratchFolder scratchOfKilled;
};

[[noreturn]] void SaveUntilKilled(const Writer::Save& save, const std::string& path) {
    const char sign = 1;
    if (::write(readyDescriptor, &sign, 1) != 1)
        ::_exit(1);
    for (;;)
        save(path);
}

TEST_P(KilledSaves, LeaveAWholeFileAndTheNextOneCleansUp) {
    using std::chrono::microseconds;
    if (const char* const to = std::getenv(pathToKilled))
        SaveUntilKilled(save, to);
    LayOut(Before::File);
    std::map<std::string, std::set<std::string>> good; // by name
    const auto collect = [&] {
        for (const auto& [name, bytes] : Look())
            good[name].insert(bytes);
    };
    collect();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 4; ++i) { // some change what is there, to and fro
        EXPECT_EQ(Save(), "");
        collect();
    }
    const auto time = std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start);
    std::mt19937 random(5);
    std::uniform_int_distribution<long> until(0, std::clamp<long>(time.count() / 2, 1000, 300'000));
    const int kills = IsLongRun() ? 50 : 5;
    for (int i = 0; i < kills && !HasFailure(); ++i) {
        LayOut(Before::File);
        const pid_t child = StartSaving();
        ASSERT_GT(child, 0);
        std::this_thread::sleep_for(microseconds(until(random)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status));
        SCOPED_TRACE("kill " + std::to_string(i));
        std::size_t temporary = 0;
        for (const auto& [name, bytes] : Look()) {
            if (std::filesystem::path(name).filename().string().starts_with(".a"))
                ++temporary;
            else
                EXPECT_TRUE(good.contains(name) && good[name].contains(bytes)) << name << ", " << bytes.size();
        }
        EXPECT_LE(temporary, 1U);
        EXPECT_EQ(Save(), "");
        for (const std::string& name : folder.List())
            EXPECT_FALSE(name.starts_with('.')) << name;
        EXPECT_TRUE(writer.isRead(path));
    }
}

INSTANTIATE_TEST_SUITE_P(Writers, KilledSaves, testing::ValuesIn(AllWriters()), testing::PrintToStringParamName());

} // namespace
} // namespace zel::test
