#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "model/zel_histogramcount.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <complex>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace {

template <typename T>
using Frame = std::shared_ptr<const kep::Image3d<T>>;

/// The sample frame with all but a tenth of its voxels dark, as thresholded images are.
template <typename T>
Frame<T> MakeDarkFrame() {
    auto frame = std::make_shared<kep::Image3d<T>>(*GetSampleFrame<T>());
    std::size_t i = 0;
    for (T& voxel : *frame) {
        if (i++ % 10 != 0)
            voxel = T();
    }
    return frame;
}

Frame<std::complex<float>> MakeComplexFrame() {
    const auto gray = GetSampleFrame<float>();
    auto frame = std::make_shared<kep::Image3d<std::complex<float>>>();
    frame->MakeRoom(gray->GetSizeX(), gray->GetSizeY(), gray->GetSizeZ());
    std::transform(gray->begin(), gray->end(), frame->begin(), [before = 0.0F](float value) mutable {
        return std::complex<float>(value - 110.0F, std::exchange(before, value) - 110.0F);
    });
    return frame;
}

template <typename T>
void AddCounting(const std::string& name, std::function<Frame<T>()> makeFrame, T low, T high, std::size_t bins,
                 double limit) {
    AddComparison("histogram " + name, [=] {
        const auto frame = makeFrame();
        const auto work = [=] {
            zel::Histogram<T> histogram;
            histogram.Init(low, high, bins);
            zel::CountFrame(*frame, histogram);
            benchmark::DoNotOptimize(histogram[0]);
        };
        const std::size_t bytes = frame->GetNumVoxels() * sizeof(T);
        return Comparison{.work = work,
                          .yardstick = [=] { ReadOnce(frame->begin(), bytes); },
                          .unit = "passes",
                          .limit = limit,
                          .bytes = bytes};
    });
}

template <typename C>
void AddColours(const std::string& name, C high, double limit) {
    AddComparison("histograms " + name, [=] {
        const auto frame = GetSampleFrame<kep::RGB_generic<C>>();
        const auto work = [=] {
            zel::Histogram<C> histograms[3];
            for (auto& histogram : histograms)
                histogram.Init(0, high, std::size_t{high} + 1);
            zel::CountFrame<C>(*frame, {&histograms[0], &histograms[1], &histograms[2]});
            benchmark::DoNotOptimize(histograms[0][0]);
        };
        const std::size_t bytes = frame->GetNumVoxels() * sizeof(C) * 3;
        return Comparison{.work = work,
                          .yardstick = [=] { ReadOnce(frame->begin(), bytes); },
                          .unit = "passes",
                          .limit = limit,
                          .bytes = bytes};
    });
}

[[maybe_unused]] const bool added = [] {
    AddCounting<unsigned char>("uint8, 256 bins", GetSampleFrame<unsigned char>, 0, 255, 256, 3);
    AddCounting<unsigned short>("uint16, 65536 bins", GetSampleFrame<unsigned short>, 0, 65535, 65536, 2.5);
    AddCounting<unsigned short>("dark uint16, 65536 bins", MakeDarkFrame<unsigned short>, 0, 65535, 65536, 2.5);
    AddCounting<int>("int, 4096 bins", GetSampleFrame<int>, 0, 4095, 4096, 4);
    AddCounting<int>("int, 1048576 bins", GetSampleFrame<int>, 0, 1048575, 1048576, 6);
    AddCounting<float>("float, 256 bins", GetSampleFrame<float>, 0, 4095, 256, 4);
    AddCounting<float>("dark float, 256 bins", MakeDarkFrame<float>, 0, 4095, 256, 4);
    AddCounting<float>("float, one bin a value", GetSampleFrame<float>, 0, 4095, 4096, 4);
    AddColours<unsigned char>("RGB8", 255, 6);
    AddColours<unsigned short>("RGB16", 65535, 4);
    AddComparison("histograms complex", [] {
        const auto frame = MakeComplexFrame();
        const auto work = [=] {
            zel::ComplexHistograms histograms;
            histograms[0].Init(-110, 3985, 256);
            histograms[1].Init(-110, 3985, 256);
            histograms[2].Init(-3.2F, 3.2F, 256);
            histograms[3].Init(0, 5636, 256);
            zel::CountFrame(*frame, histograms);
            benchmark::DoNotOptimize(histograms[0][0]);
        };
        const std::size_t bytes = frame->GetNumVoxels() * sizeof(std::complex<float>);
        return Comparison{.work = work,
                          .yardstick = [=] { ReadOnce(frame->begin(), bytes); },
                          .unit = "passes",
                          .limit = 30,
                          .bytes = bytes};
    });
    return true;
}();

} // namespace
