#include "bench/support/comparison.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <limits>
#include <memory>

namespace {

struct Row {
    std::string name;
    std::string unit;
    double seconds = 0.0;   ///< by the clock
    double processor = 0.0; ///< of all threads
    bool processorTime = false;
    double ratio = 0.0;
    double limit = 0.0;
};

std::vector<Row>& GetRows() {
    static std::vector<Row> rows;
    return rows;
}

double Now(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Seconds by the clock and of all processors: the least of all rounds, as whatever else happens on the machine only
/// ever adds to them.
struct Times {
    double clock = std::numeric_limits<double>::infinity();
    double processor = std::numeric_limits<double>::infinity();

    void Add(const std::function<void()>& call) {
        const double clockBefore = Now(CLOCK_MONOTONIC);
        const double processorBefore = Now(CLOCK_PROCESS_CPUTIME_ID);
        call();
        processor = std::min(processor, Now(CLOCK_PROCESS_CPUTIME_ID) - processorBefore);
        clock = std::min(clock, Now(CLOCK_MONOTONIC) - clockBefore);
    }
};

/// A benchmark that is repeated, or tried for the number of its rounds, leaves its last row.
void SetRow(const Row& row) {
    auto& rows = GetRows();
    const auto at = std::find_if(rows.begin(), rows.end(), [&](const Row& other) { return other.name == row.name; });
    if (at == rows.end())
        rows.push_back(row);
    else
        *at = row;
}

/// Of the straight line with the least squares through the logarithms.
double SlopeOf(const std::vector<GrowthPoint>& points, const std::vector<Times>& times) {
    const auto count = static_cast<double>(points.size());
    double sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double x = std::log(points[i].number), y = std::log(times[i].processor);
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

void RunComparison(benchmark::State& state, const std::string& name, const Comparison& comparison) {
    Times work;
    Times yardstick;
    for (auto _ : state) {
        yardstick.Add(comparison.yardstick);
        const double start = Now(CLOCK_MONOTONIC);
        work.Add(comparison.work);
        state.SetIterationTime(Now(CLOCK_MONOTONIC) - start);
    }
    const double ratio = comparison.processorTime ? work.processor / yardstick.processor : work.clock / yardstick.clock;
    state.SetBytesProcessed(static_cast<std::int64_t>(comparison.bytes) * state.iterations());
    state.counters["bytes"] = static_cast<double>(comparison.bytes);
    state.counters["best_ms"] = work.clock * 1e3;
    state.counters["processor_ms"] = work.processor * 1e3;
    state.counters["yardstick_ms"] = (comparison.processorTime ? yardstick.processor : yardstick.clock) * 1e3;
    state.counters["ratio"] = ratio;
    state.counters["limit"] = comparison.limit;

    SetRow({name, comparison.unit, work.clock, work.processor, comparison.processorTime, ratio, comparison.limit});
}

} // namespace

void AddComparison(const std::string& name, std::function<Comparison()> prepare, double seconds) {
    // Google Benchmark calls the function anew for each number of rounds that it tries; the input is made once.
    auto prepared = std::make_shared<std::unique_ptr<Comparison>>();
    benchmark::RegisterBenchmark(name.c_str(),
                                 [name, prepare = std::move(prepare), prepared](benchmark::State& state) {
                                     try {
                                         if (!*prepared)
                                             *prepared = std::make_unique<Comparison>(prepare());
                                         RunComparison(state, name, **prepared);
                                     } catch (const std::exception& failure) {
                                         state.SkipWithError(failure.what());
                                     }
                                 })
        ->UseManualTime()
        ->MinTime(std::getenv("ZEL_BENCH_SHORT") != nullptr ? seconds / 10 : seconds)
        ->Unit(benchmark::kMillisecond);
}

void AddGrowth(const std::string& name, std::vector<GrowthPoint> points, double limit) {
    const auto run = [name, points = std::move(points), limit](benchmark::State& state) {
        std::vector<std::function<void()>> works;
        for (const GrowthPoint& point : points)
            works.push_back(point.prepare());
        std::vector<Times> times(points.size());
        for (auto _ : state) {
            for (std::size_t i = 0; i < works.size(); ++i)
                times[i].Add(works[i]);
            state.SetIterationTime(times.back().clock);
        }
        const double slope = SlopeOf(points, times);
        state.counters["slope"] = slope;
        std::string unit = "slope:";
        for (const Times& each : times) {
            char text[32];
            std::snprintf(text, sizeof text, " %.2f", each.processor * 1e3);
            unit += text;
        }
        SetRow({name, unit + " ms", times.back().clock, times.back().processor, true, slope, limit});
    };
    const int rounds = std::getenv("ZEL_BENCH_SHORT") != nullptr ? 5 : 40;
    benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Iterations(rounds)->Unit(benchmark::kMillisecond);
}

void PrintComparisons() {
    std::printf("\n%-36s %9s %9s  %7s %-24s %6s\n", "name", "ms", "cpu ms", "times", "", "limit");
    for (const Row& row : GetRows())
        std::printf("%-36s %9.3f %9.3f  %7.2f %-24s %6.2f  %s\n", row.name.c_str(), row.seconds * 1e3,
                    row.processor * 1e3, row.ratio,
                    (row.unit + (row.processorTime && !row.unit.starts_with("slope") ? ", cpu" : "")).c_str(),
                    row.limit, row.ratio <= row.limit ? "ok" : "OVER");
}

void ReadOnce(const void* bytes, std::size_t count) {
    typedef std::uint64_t Pack __attribute__((vector_size(16)));
    std::array<Pack, 4> sums{};
    const auto* at = static_cast<const unsigned char*>(bytes);
    std::size_t i = 0;
    for (; i + sizeof sums <= count; i += sizeof sums) {
#pragma GCC unroll 4
        for (std::size_t k = 0; k < sums.size(); ++k) {
            Pack pack;
            std::memcpy(&pack, at + i + k * sizeof(Pack), sizeof pack);
            sums[k] += pack;
        }
    }
    std::uint64_t rest = 0;
    for (; i < count; ++i)
        rest += at[i];
    benchmark::DoNotOptimize(sums);
    benchmark::DoNotOptimize(rest);
}

std::function<void()> MakeCopy(std::size_t bytes) {
    auto from = std::make_shared<std::vector<unsigned char>>(bytes, static_cast<unsigned char>(1));
    auto to = std::make_shared<std::vector<unsigned char>>(bytes);
    return [from, to] {
        std::memcpy(to->data(), from->data(), from->size());
        benchmark::ClobberMemory();
    };
}
