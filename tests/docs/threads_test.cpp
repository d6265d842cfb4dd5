// What docs/embedding.md allows on other threads: each with objects of its own, all at the same time.

#include "core/kepalgo/kep_projection.h"
#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_readingwatch.h"
#include "model/zel_histogramcount.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace {

using Frame = kep::Image3d<unsigned short>;

constexpr std::size_t sliceCount = 9;

/// Voxels that differ from thread to thread.
Frame MakeFrame(unsigned seed) {
    Frame frame;
    frame.MakeRoom(61, 47, sliceCount);
    unsigned state = seed;
    for (unsigned short& voxel : frame) {
        state = state * 1664525U + 1013904223U;
        voxel = static_cast<unsigned short>(state >> 20); // 12 bits
    }
    return frame;
}

/// Saves and reads a frame, counts and projects it. @return what went wrong
std::string Work(unsigned seed, const std::string& fileName) {
    const Frame frame = MakeFrame(seed);
    frame.SaveImage(fileName.c_str(), kep::FF_BY_NAME, true, nullptr);
    std::size_t slices = 0;
    const kep::ReadingWatch watch([&slices](const kep::ReadingState& state) {
        slices = state.slices;
        return true;
    });
    Frame read;
    read.ReadImage(fileName.c_str(), nullptr, false, -1, nullptr, nullptr);
    if (!std::equal(frame.begin(), frame.end(), read.begin(), read.end()))
        return fileName + " reads back otherwise";
    if (slices != sliceCount)
        return "the watch has seen " + std::to_string(slices) + " slices";
    kep::FrameReader(fileName.c_str()).ReadFrame(0, 0, read);
    if (!std::equal(frame.begin(), frame.end(), read.begin(), read.end()))
        return fileName + " is read otherwise as one frame of a file";
    zel::Histogram<unsigned short> histogram;
    histogram.Init(0, 65535, 65536);
    zel::CountFrame(frame, histogram);
    if (histogram.GetSum() != frame.GetNumVoxels() ||
        histogram[frame.GetVoxel(0)] !=
            static_cast<std::size_t>(std::count(frame.begin(), frame.end(), frame.GetVoxel(0))))
        return "voxels are counted otherwise";
    Frame projection;
    kep::Get_AF_XY(frame, projection);
    unsigned short largest = 0;
    for (std::size_t z = 0; z < sliceCount; ++z)
        largest = std::max(largest, frame.GetVoxel(5, 4, z));
    return projection.GetVoxel(5, 4, 0) == largest ? "" : "the projection is another";
}

} // namespace

TEST(EmbeddingDocument, ThreadsWorkWithFilesAndFramesOfTheirOwn) {
    const ScratchFolder folder;
    constexpr unsigned threads = 4;
    constexpr unsigned rounds = 20;
    std::vector<std::string> faults(threads);
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            const std::string name = folder / (t % 2 == 0 ? "tiff" : "ics");
            for (unsigned round = 0; round < rounds && faults[t].empty(); ++round)
                faults[t] = Work(1000 * t + round, name + std::to_string(t) + (t % 2 == 0 ? ".tif" : ".ics"));
        });
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_EQ(faults, std::vector<std::string>(threads));
}
