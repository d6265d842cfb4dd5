#include "bench/support/comparison.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <exception>
#include <limits>
#include <memory>

namespace {

struct Row {
    std::string name;
    std::string unit;
    double seconds = 0.0;
    double ratio = 0.0;
    double limit = 0.0;
};

std::vector<Row>& GetRows() {
    static std::vector<Row> rows;
    return rows;
}

double Now(bool processorTime) {
    timespec now{};
    clock_gettime(processorTime ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double Measure(const std::function<void()>& call, bool processorTime) {
    const double start = Now(processorTime);
    call();
    return Now(processorTime) - start;
}

void RunComparison(benchmark::State& state, const std::string& name, const Comparison& comparison) {
    // The fastest round of each counts: whatever else happens on the machine only ever adds to it.
    double work = std::numeric_limits<double>::infinity();
    double yardstick = work;
    for (auto _ : state) {
        yardstick = std::min(yardstick, Measure(comparison.yardstick, comparison.processorTime));
        const double seconds = Measure(comparison.work, comparison.processorTime);
        work = std::min(work, seconds);
        state.SetIterationTime(seconds);
    }
    const double ratio = work / yardstick;
    state.SetBytesProcessed(static_cast<std::int64_t>(comparison.bytes) * state.iterations());
    state.counters["bytes"] = static_cast<double>(comparison.bytes);
    state.counters["best_ms"] = work * 1e3;
    state.counters["yardstick_ms"] = yardstick * 1e3;
    state.counters["ratio"] = ratio;
    state.counters["limit"] = comparison.limit;

    // A benchmark that is repeated, or tried for the number of its rounds, leaves its last row.
    auto& rows = GetRows();
    const auto at = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.name == name; });
    const Row row{name, comparison.unit, work, ratio, comparison.limit};
    if (at == rows.end())
        rows.push_back(row);
    else
        *at = row;
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
        ->MinTime(seconds)
        ->Unit(benchmark::kMillisecond);
}

void PrintComparisons() {
    std::printf("\n%-34s %9s  %17s  %6s\n", "name", "ms", "times", "limit");
    for (const Row& row : GetRows())
        std::printf("%-34s %9.3f  %6.2f %10s  %6.2f  %s\n", row.name.c_str(), row.seconds * 1e3, row.ratio,
                    row.unit.c_str(), row.limit, row.ratio <= row.limit ? "ok" : "OVER");
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
