#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// A piece of work and the least that it could cost: the same bytes copied, read, or handled by the library beneath.
/// Both run in turns, so that whatever slows the machine slows both.
struct Comparison {
    std::function<void()> work;
    std::function<void()> yardstick;
    std::string unit = "copies"; ///< what the yardstick does, in the plural
    double limit = 0.0;          ///< times the yardstick that the work may take
    std::size_t bytes = 0;       ///< that must be moved
    bool processorTime = false;  ///< of this process, for what waits for others, such as the display
};

/// Registers a benchmark. `prepare` is called once, when the benchmark is chosen to run; it may throw.
/// @param seconds  that the work alone takes in all rounds together, or little more
void AddComparison(const std::string& name, std::function<Comparison()> prepare, double seconds = 0.5);

/// One line a benchmark that has run: name, ms, times the yardstick, limit, and "ok" or "OVER".
void PrintComparisons();

/// Reads every byte once, as fast as the processor's baseline can.
void ReadOnce(const void* bytes, std::size_t count);

/// A copy between two blocks of its own that have been touched before: the yardstick of what fills a picture.
std::function<void()> MakeCopy(std::size_t bytes);
