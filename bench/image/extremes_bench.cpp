#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "model/zel_extremes.h"

#include <benchmark/benchmark.h>

namespace {

template <typename T>
void AddExtremes(const std::string& type) {
    AddComparison("extremes " + type, [] {
        const auto frame = GetSampleFrame<T>();
        const std::size_t bytes = frame->GetNumVoxels() * sizeof(T);
        const auto work = [=] {
            mor::ExtremaValues<T> extremes;
            mor::ComputeFrameExtremes(*frame, extremes);
            benchmark::DoNotOptimize(extremes);
        };
        return Comparison{.work = work,
                          .yardstick = [=] { ReadOnce(frame->begin(), bytes); },
                          .unit = "passes",
                          .limit = 1.5,
                          .bytes = bytes};
    });
}

[[maybe_unused]] const bool added = [] {
    AddExtremes<unsigned char>("uint8");
    AddExtremes<unsigned short>("uint16");
    AddExtremes<int>("int");
    AddExtremes<float>("float");
    AddExtremes<unsigned long long>("uint64");
    AddExtremes<double>("double");
    return true;
}();

} // namespace
