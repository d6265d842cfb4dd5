#pragma once

#include "core/kepcore/kep_export.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace kep {

/// How many threads the library's operations take at most, the calling one included, in the whole process.
///
/// That is what SetThreadLimit was told, or else the environment variable ZEL_THREADS, or else as many as the machine
/// has; never more than those. Results do not depend on it.
KEP_EXPORT std::size_t GetThreadLimit();

/// Sets the limit. May be called at any time and on any thread; operations that run go on as they began.
/// @param threads  1: everything runs on the thread that asks for it; 0: as it was at the start
KEP_EXPORT void SetThreadLimit(std::size_t threads);

/// Calls work(i) for each i below `number`, on this thread and on others that end with the call. They take the numbers
/// in ascending order, so with one thread it is a plain loop; the larger a number's share of work, the fewer should
/// they be. To be used from 0.2 ms of work on: below that a thread takes longer to come than it helps.
///
/// Operations of several threads at once share the limit, and those inside `work` have no threads of their own. Where
/// no thread can be had, this one does it all.
/// @throws what work(i) has thrown, for the lowest i of them. Then the numbers that nobody had taken are left out.
KEP_EXPORT void ForEachPart(std::size_t number, const std::function<void(std::size_t i)>& work);

/// One piece of work beside what this thread does meanwhile.
class KEP_EXPORT Beside {
public:
    /// Starts it on another thread if the limit and the machine have one, else does it here and now. What it uses must
    /// stay until Wait or the destructor, which both wait for it.
    explicit Beside(std::function<void()> work);
    ~Beside();
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;

    /// Waits for the end of it. @throws what it has thrown, the first time that it is called
    void Wait();

private:
    class Thread;
    std::unique_ptr<Thread> thread;
};

} // namespace kep
