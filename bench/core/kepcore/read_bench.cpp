#include "bench/core/kepcore/plain_libraries.h"
#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/support/scratch_folder.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <tiffio.h>

namespace {

using Write = std::function<void(const std::string& name, const SampleFrame& frame)>;
using Read = std::function<void(const std::string& name, FreshVoxels& to)>;

void AddReading(const std::string& what, const std::string& fileName, const Write& write, const Read& alone,
                const std::string& unit, double limit) {
    const auto prepare = [=] {
        const auto sample = GetSampleFrame<unsigned short>();
        const std::string name = GetScratchName(fileName);
        write(name, *sample); // which leaves the file in the page cache

        const auto frame = std::make_shared<SampleFrame>();
        frame->ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        if (!std::equal(sample->begin(), sample->end(), frame->begin(), frame->end()))
            throw std::runtime_error(name + " does not read to what was written");

        const auto work = [=] {
            SampleFrame fresh;
            fresh.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        };
        const std::size_t voxels = sample->GetNumVoxels();
        const auto yardstick = [=] {
            FreshVoxels fresh(voxels);
            alone(name, fresh);
        };
        return Comparison{.work = work,
                          .yardstick = yardstick,
                          .unit = unit,
                          .limit = limit,
                          .bytes = voxels * sizeof(unsigned short),
                          .processorTime = true}; // the yardsticks have one thread
    };
    AddComparison(what, prepare, 2.0);
}

Write MakeTiffWriter(int compression, int predictor) {
    return [=](const std::string& name, const SampleFrame& frame) {
        WriteTiffAlone(name, frame, {compression, predictor, 6, 64});
    };
}
Write MakeIcsWriter(int gzipLevel) {
    return [=](const std::string& name, const SampleFrame& frame) { WriteIcsAlone(name, frame, gzipLevel); };
}
void WriteOurTiff(const std::string& name, const SampleFrame& frame) {
    frame.SaveImage(name.c_str(), kep::FF_TIFF, true, nullptr);
}

/// A plain ICS file of so many time points. The last one is the frame, the others are holes.
void WriteIcsTimes(const std::string& name, const SampleFrame& frame, std::size_t times) {
    std::ostringstream header;
    header << "\t\nics_version\t2.0\nfilename\ttimes\nlayout\tparameters\t5\nlayout\torder\tbits\tx\ty\tz\tt\n"
           << "layout\tsizes\t16\t" << frame.size.x << "\t" << frame.size.y << "\t" << frame.size.z << "\t" << times
           << "\nrepresentation\tformat\tinteger\nrepresentation\tsign\tunsigned\n"
           << "representation\tcompression\tuncompressed\nrepresentation\tbyte_order\t1\t2\nend\n";
    const std::size_t bytes = frame.GetNumVoxels() * sizeof(unsigned short);
    std::ofstream file(name, std::ios::binary);
    file << header.str();
    file.seekp(static_cast<std::streamoff>((times - 1) * bytes), std::ios::cur);
    file.write(reinterpret_cast<const char*>(frame.begin()), static_cast<std::streamsize>(bytes));
    if (!file.flush())
        throw std::runtime_error(name + " cannot be written");
}

/// One frame of a file with many; the yardstick reads as many bytes.
void AddReadingOfAFrame() {
    const auto prepare = [] {
        constexpr std::size_t times = 64;
        const auto sample = GetSampleFrame<unsigned short>();
        const std::string name = GetScratchName("times.ics");
        WriteIcsTimes(name, *sample, times);
        const auto frame = std::make_shared<SampleFrame>();
        frame->ReadFrame(name.c_str(), 0, times - 1);
        if (!std::equal(sample->begin(), sample->end(), frame->begin(), frame->end()))
            throw std::runtime_error(name + " does not read to what was written");
        const std::size_t voxels = sample->GetNumVoxels();
        const auto yardstick = [=] {
            FreshVoxels fresh(voxels);
            ReadPlainBytes(name, fresh);
        };
        return Comparison{.work = [=] { frame->ReadFrame(name.c_str(), 0, times - 1); },
                          .yardstick = yardstick,
                          .unit = "reads",
                          .limit = 1.5,
                          .bytes = voxels * sizeof(unsigned short),
                          .processorTime = true};
    };
    AddComparison("read 1 frame of 64, ICS plain", prepare, 2.0);
}

[[maybe_unused]] const bool added = [] {
    const Write plainTiff = MakeTiffWriter(COMPRESSION_NONE, PREDICTOR_NONE);
    AddReading("read TIFF plain", "plain.tif", plainTiff, ReadPlainBytes, "reads", 1.1);
    AddReading("read TIFF LZW", "lzw.tif", MakeTiffWriter(COMPRESSION_LZW, PREDICTOR_NONE), ReadTiffAlone, "libtiffs",
               1.05);
    AddReading("read TIFF LZW, predictor", "lzw2.tif", MakeTiffWriter(COMPRESSION_LZW, PREDICTOR_HORIZONTAL),
               ReadTiffAlone, "libtiffs", 1.05);
    AddReading("read TIFF deflate", "deflate.tif", MakeTiffWriter(COMPRESSION_ADOBE_DEFLATE, PREDICTOR_HORIZONTAL),
               ReadTiffAlone, "libtiffs", 1.05);
    AddReading("read TIFF deflate of our own", "own.tif", WriteOurTiff, ReadTiffAlone, "libtiffs", 1.05);
    AddReading("read ICS plain", "plain.ics", MakeIcsWriter(0), ReadPlainBytes, "reads", 1.1);
    AddReadingOfAFrame();
    AddReading("read ICS gzip", "gzip.ics", MakeIcsWriter(6), ReadIcsAlone, "libicses", 0.5);
    return true;
}();

} // namespace
