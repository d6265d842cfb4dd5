#include "core/kepcore/kep_threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <numeric>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

const std::size_t threadsOfMachine = std::max(std::thread::hardware_concurrency(), 1U);

/// The limit as it is at the start, and again behind each test.
class ThreadsTest : public testing::Test {
protected:
    ThreadsTest() { kep::SetThreadLimit(0); }
    ~ThreadsTest() override {
        ::unsetenv("ZEL_THREADS");
        kep::SetThreadLimit(0);
    }
    static void SetEnvironment(const char* text) {
        ::setenv("ZEL_THREADS", text, 1);
        kep::SetThreadLimit(0);
    }
};

/// The threads that have been in Note, and how many were there at once.
class Visitors {
public:
    void Note() {
        const std::size_t now = ++inside;
        {
            const std::lock_guard lock(mutex);
            ids.insert(std::this_thread::get_id());
            most = std::max(most, now);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        --inside;
    }
    std::size_t CountThreads() const { return ids.size(); }
    std::size_t GetMostAtOnce() const { return most; }

private:
    std::atomic<std::size_t> inside{0};
    std::mutex mutex;
    std::set<std::thread::id> ids;
    std::size_t most = 0;
};

TEST_F(ThreadsTest, TheMachineSetsTheLimit) {
    EXPECT_EQ(kep::GetThreadLimit(), threadsOfMachine);
    kep::SetThreadLimit(threadsOfMachine + 7);
    EXPECT_EQ(kep::GetThreadLimit(), threadsOfMachine);
    kep::SetThreadLimit(1);
    EXPECT_EQ(kep::GetThreadLimit(), 1U);
    kep::SetThreadLimit(0);
    EXPECT_EQ(kep::GetThreadLimit(), threadsOfMachine);
}

TEST_F(ThreadsTest, TheEnvironmentSetsItLower) {
    SetEnvironment("1");
    EXPECT_EQ(kep::GetThreadLimit(), 1U);
    SetEnvironment("1000000");
    EXPECT_EQ(kep::GetThreadLimit(), threadsOfMachine);
}

TEST_F(ThreadsTest, NonsenseInTheEnvironmentCountsAsNothing) {
    for (const char* text : {"", "0", "-1", "many", "1x", "99999999999999999999"}) {
        SetEnvironment(text);
        EXPECT_EQ(kep::GetThreadLimit(), threadsOfMachine) << '"' << text << '"';
    }
}

TEST_F(ThreadsTest, EachPartIsDoneOnce) {
    for (const std::size_t number : {0U, 1U, 2U, 3U, 1000U}) {
        std::vector<std::atomic<int>> done(number);
        kep::ForEachPart(number, [&](std::size_t i) { ++done[i]; });
        EXPECT_TRUE(std::all_of(done.begin(), done.end(), [](const auto& times) { return times == 1; })) << number;
    }
}

TEST_F(ThreadsTest, OneThreadGoesInOrderOnTheCallersThread) {
    kep::SetThreadLimit(1);
    std::vector<std::size_t> order;
    Visitors visitors;
    kep::ForEachPart(5, [&](std::size_t i) {
        visitors.Note();
        order.push_back(i);
    });
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(visitors.CountThreads(), 1U);
}

TEST_F(ThreadsTest, AllThreadsOfTheLimitTakePart) {
    if (threadsOfMachine < 2)
        GTEST_SKIP() << "the machine has one processor";
    kep::SetThreadLimit(2);
    Visitors visitors;
    kep::ForEachPart(20, [&](std::size_t) { visitors.Note(); });
    EXPECT_EQ(visitors.CountThreads(), 2U);
    EXPECT_EQ(visitors.GetMostAtOnce(), 2U);
}

TEST_F(ThreadsTest, OperationsInsidePartsHaveNoThreadsOfTheirOwn) {
    Visitors visitors;
    kep::ForEachPart(4, [&](std::size_t) { kep::ForEachPart(4, [&](std::size_t) { visitors.Note(); }); });
    EXPECT_LE(visitors.GetMostAtOnce(), threadsOfMachine);
}

TEST_F(ThreadsTest, OperationsAtOnceShareTheLimit) {
    std::atomic<std::size_t> inside{0};
    std::atomic<std::size_t> most{0};
    const auto work = [&](std::size_t) {
        const std::size_t now = ++inside;
        std::size_t before = most;
        while (before < now && !most.compare_exchange_weak(before, now)) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        --inside;
    };
    constexpr std::size_t callers = 4;
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < callers; ++i)
            threads.emplace_back([&] { kep::ForEachPart(50, work); });
    }
    EXPECT_LE(most, callers + threadsOfMachine - 1); // the callers' own threads work in any case
}

TEST_F(ThreadsTest, TheFailureOfTheLowestPartIsThrown) {
    for (int round = 0; round < 200; ++round) {
        const auto work = [](std::size_t i) {
            if (i == 3 || i == 4 || i == 7)
                throw std::runtime_error(std::to_string(i));
        };
        try {
            kep::ForEachPart(10, work);
            FAIL() << "nothing was thrown";
        } catch (const std::runtime_error& error) {
            ASSERT_STREQ(error.what(), "3");
        }
    }
}

TEST_F(ThreadsTest, PartsThatNobodyHasTakenAreLeftOutAfterAFailure) {
    kep::SetThreadLimit(1);
    std::size_t done = 0;
    const auto work = [&](std::size_t i) {
        ++done;
        if (i == 2)
            throw std::runtime_error("third");
    };
    EXPECT_THROW(kep::ForEachPart(10, work), std::runtime_error);
    EXPECT_EQ(done, 3U);
}

TEST_F(ThreadsTest, ThreadsAreThereAgainAfterAFailure) {
    if (threadsOfMachine < 2)
        GTEST_SKIP() << "the machine has one processor";
    for (int round = 0; round < 100; ++round)
        EXPECT_THROW(kep::ForEachPart(4, [](std::size_t) { throw std::runtime_error("each"); }), std::runtime_error);
    Visitors visitors;
    kep::ForEachPart(20, [&](std::size_t) { visitors.Note(); });
    EXPECT_GE(visitors.CountThreads(), 2U);
}

TEST_F(ThreadsTest, WorkGoesOnBeside) {
    int done = 0;
    {
        kep::Beside beside([&] { done = 1; });
        beside.Wait();
        EXPECT_EQ(done, 1);
        beside.Wait(); // once more does no harm
    }
    {
        kep::Beside unawaited([&] { done = 2; });
    }
    EXPECT_EQ(done, 2);
}

TEST_F(ThreadsTest, WorkBesideIsDoneHereWithOneThread) {
    kep::SetThreadLimit(1);
    std::thread::id where;
    kep::Beside beside([&] { where = std::this_thread::get_id(); });
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST_F(ThreadsTest, FailuresBesideAreThrownByTheWait) {
    for (const std::size_t limit : {std::size_t{1}, threadsOfMachine}) {
        kep::SetThreadLimit(limit);
        kep::Beside beside([] { throw std::runtime_error("beside"); });
        EXPECT_THROW(beside.Wait(), std::runtime_error);
        EXPECT_NO_THROW(beside.Wait());
        const kep::Beside unheard([] { throw std::runtime_error("nobody asks"); });
    }
}

} // namespace
