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
    /// What counts is the time that processors spend on this process, in all its threads. So for what waits for others,
    /// such as the display, and where the yardstick has fewer threads: two against one would flatter.
    bool processorTime = false;
};

/// Registers a benchmark. `prepare` is called once, when the benchmark is chosen to run; it may throw.
/// @param seconds  that the work alone takes in all rounds together, or little more; a tenth of it where the
///                 environment has ZEL_BENCH_SHORT
void AddComparison(const std::string& name, std::function<Comparison()> prepare, double seconds = 0.5);

/// One of the numbers that a growth is measured over.
struct GrowthPoint {
    double number; ///< of voxels, frames, or whatever grows
    /// Prepares the work; called once.
    std::function<std::function<void()>()> prepare;
};

/// Registers a benchmark of how processor time grows with a number: the slope of the line through its points, both
/// axes in logarithms.
/// @param points  at least two, in ascending order
/// @param limit   of the slope
void AddGrowth(const std::string& name, std::vector<GrowthPoint> points, double limit);

/// One line a benchmark that has run: name, ms by the clock and of all processors, times the yardstick by what counts,
/// limit, and "ok" or "OVER".
void PrintComparisons();

/// Reads every byte once, as fast as the processor's baseline can.
void ReadOnce(const void* bytes, std::size_t count);

/// A copy between two blocks of its own that have been touched before: the yardstick of what fills a picture.
std::function<void()> MakeCopy(std::size_t bytes);
