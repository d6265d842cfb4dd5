#include "core/kepcore/kep_threads.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kep {

namespace {

std::size_t ThreadsOfMachine() {
    return std::max(std::thread::hardware_concurrency(), 1U);
}

/// What the environment asks for; nonsense counts as nothing.
std::size_t LimitAtStart() {
    const char* const text = std::getenv("ZEL_THREADS");
    if (text == nullptr)
        return ThreadsOfMachine();
    char* end = nullptr;
    const long long asked = std::strtoll(text, &end, 10);
    if (end == text || *end != '\0' || asked < 1)
        return ThreadsOfMachine();
    return std::min(static_cast<std::size_t>(asked), ThreadsOfMachine());
}

std::atomic<std::size_t>& Limit() {
    static std::atomic<std::size_t> limit{LimitAtStart()};
    return limit;
}

std::atomic<std::size_t> helpersAtWork{0}; ///< of all operations together

thread_local bool isInside = false; ///< an operation that has its threads already

/// While one lives, this thread works for such an operation.
class Inside {
public:
    Inside() : before(std::exchange(isInside, true)) {}
    ~Inside() { isInside = before; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

private:
    bool before;
};

/// The right to one more thread, for as long as it lives.
class Permit {
public:
    static bool Take() {
        if (isInside)
            return false;
        std::size_t taken = helpersAtWork.load(std::memory_order_relaxed);
        do {
            if (taken + 1 >= Limit().load(std::memory_order_relaxed))
                return false;
        } while (!helpersAtWork.compare_exchange_weak(taken, taken + 1, std::memory_order_relaxed));
        return true;
    }
    static void Return() { helpersAtWork.fetch_sub(1, std::memory_order_relaxed); }
};

/// Runs work as a helper, on a thread that has a permit.
void RunAsHelper(const std::function<void()>& work) {
    {
        const Inside inside;
        work();
    }
    Permit::Return();
}

/// Starts a helper; an empty thread if there is none to be had.
std::jthread StartHelper(const std::function<void()>& work) {
    if (!Permit::Take())
        return {};
    try {
        return std::jthread([&work] { RunAsHelper(work); });
    } catch (...) { // no thread, or no memory for one: others do what it would have done
        Permit::Return();
        return {};
    }
}

/// The numbers that threads take from each other, and what went wrong.
class Numbers {
public:
    explicit Numbers(std::size_t number) : end(number) {}

    void TakeAll(const std::function<void(std::size_t)>& work) noexcept {
        while (!failed) {
            const std::size_t i = next++; // it is done in any case: a failure of a lower number counts
            if (i >= end)
                return;
            try {
                work(i);
            } catch (...) {
                Fail(i);
            }
        }
    }

    void Rethrow() const {
        if (failure)
            std::rethrow_exception(failure);
    }

private:
    void Fail(std::size_t i) {
        const std::lock_guard lock(mutex);
        if (!failure || i < failedAt) {
            failure = std::current_exception();
            failedAt = i;
        }
        failed = true;
    }

    const std::size_t end;
    std::atomic<std::size_t> next{0};
    std::atomic<bool> failed{false};
    std::mutex mutex;
    std::exception_ptr failure;
    std::size_t failedAt = 0;
};

} // namespace

std::size_t GetThreadLimit() {
    return Limit();
}

void SetThreadLimit(std::size_t threads) {
    Limit() = threads == 0 ? LimitAtStart() : std::min(threads, ThreadsOfMachine());
}

void ForEachPart(std::size_t number, const std::function<void(std::size_t i)>& work) {
    if (number <= 1 || isInside || GetThreadLimit() == 1) {
        for (std::size_t i = 0; i < number; ++i)
            work(i);
        return;
    }
    Numbers numbers(number);
    const std::function<void()> takeAll = [&] { numbers.TakeAll(work); };
    {
        std::vector<std::jthread> helpers;
        try {
            helpers.resize(std::min(number, GetThreadLimit()) - 1);
        } catch (const std::bad_alloc&) { // this thread does it all
        }
        for (std::jthread& helper : helpers) {
            helper = StartHelper(takeAll);
            if (!helper.joinable())
                break;
        }
        const Inside inside;
        takeAll();
    }
    numbers.Rethrow();
}

class Beside::Thread {
public:
    explicit Thread(std::function<void()> toDo) : work(std::move(toDo)), helper(StartHelper(run)) {
        if (!helper.joinable())
            run();
    }

    void Wait() {
        if (helper.joinable())
            helper.join();
        if (failure)
            std::rethrow_exception(std::exchange(failure, nullptr));
    }

private:
    std::function<void()> work;
    std::exception_ptr failure;
    std::function<void()> run = [this] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    };
    std::jthread helper; // the last member: it uses the others
};

Beside::Beside(std::function<void()> work) : thread(std::make_unique<Thread>(std::move(work))) {}

Beside::~Beside() = default;

void Beside::Wait() {
    thread->Wait();
}

} // namespace kep
