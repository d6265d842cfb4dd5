#include "bench/core/kepcore/plain_libraries.h"
#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/support/scratch_folder.h"

#include <filesystem>
#include <functional>
#include <tiffio.h>

namespace {

using Write = std::function<void(const std::string& name, const SampleFrame& frame)>;

void AddWriting(const std::string& what, const std::string& suffix, bool compress, const Write& alone,
                const std::string& unit) {
    const auto prepare = [=] {
        const auto sample = GetSampleFrame<unsigned short>();
        const std::string ours = GetScratchName("ours" + suffix);
        const std::string theirs = GetScratchName("theirs" + suffix);
        // Both write a new file and wait for the disk: a save is not done before.
        const auto yardstick = [=] {
            std::filesystem::remove(theirs);
            alone(theirs, *sample);
            Flush(theirs);
        };
        const auto work = [=] {
            std::filesystem::remove(ours);
            sample->SaveImage(ours.c_str(), kep::FF_BY_NAME, compress, nullptr);
        };
        return Comparison{.work = work,
                          .yardstick = yardstick,
                          .unit = unit,
                          .limit = 1.0,
                          .bytes = sample->GetNumVoxels() * sizeof(unsigned short),
                          .processorTime = true}; // neither the disk's time nor that of one thread against two
    };
    AddComparison(what, prepare, 2.0);
}

Write MakeTiffWriter(int compression, int predictor, int level) {
    return [=](const std::string& name, const SampleFrame& frame) {
        WriteTiffAlone(name, frame, {compression, predictor, level, 512}); // strips as large as ours
    };
}

[[maybe_unused]] const bool added = [] {
    AddWriting("write TIFF plain", ".tif", false, MakeTiffWriter(COMPRESSION_NONE, PREDICTOR_NONE, 0), "libtiffs");
    AddWriting("write TIFF deflate, its level 1", ".tif", true,
               MakeTiffWriter(COMPRESSION_ADOBE_DEFLATE, PREDICTOR_HORIZONTAL, 1), "libtiffs");
    AddWriting("write TIFF deflate, its level 6", ".tif", true,
               MakeTiffWriter(COMPRESSION_ADOBE_DEFLATE, PREDICTOR_HORIZONTAL, 6), "libtiffs");
    AddWriting("write ICS plain", ".ics", false, WritePlainBytes, "writes");
    AddWriting(
        "write ICS plain, libics", ".ics", false,
        [](const std::string& name, const SampleFrame& frame) { WriteIcsAlone(name, frame, 0); }, "libicses");
    for (const int level : {1, 6})
        AddWriting(
            "write ICS gzip, its level " + std::to_string(level), ".ics", true,
            [=](const std::string& name, const SampleFrame& frame) { WriteIcsAlone(name, frame, level); }, "libicses");
    return true;
}();

} // namespace
