#include "bench/core/kepcore/plain_libraries.h"

#include "core/kepcore/kep_hugepages.h"

#include <fcntl.h>
#include <libics.h>
#include <memory>
#include <stdexcept>
#include <tiffio.h>
#include <unistd.h>
#include <vector>

namespace {

void Require(bool succeeded, const std::string& what) {
    if (!succeeded)
        throw std::runtime_error(what + " failed");
}

class Descriptor {
public:
    Descriptor(const std::string& name, int flags) : number(open(name.c_str(), flags | O_CLOEXEC, 0666)) {
        Require(number >= 0, "open of " + name);
    }
    ~Descriptor() { close(number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int number;
};

std::unique_ptr<TIFF, decltype(&TIFFClose)> OpenTiff(const std::string& name, const char* mode) {
    std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFOpen(name.c_str(), mode), &TIFFClose);
    Require(tiff != nullptr, "TIFFOpen of " + name);
    return tiff;
}

} // namespace

FreshVoxels::FreshVoxels(std::size_t voxelCount)
    : number(voxelCount), voxels(std::make_unique_for_overwrite<unsigned short[]>(voxelCount)) {
    kep::AdviseHugePages(voxels.get(), GetBytes());
}

void ReadPlainBytes(const std::string& name, FreshVoxels& to) {
    const Descriptor file(name, O_RDONLY);
    const std::size_t bytes = to.GetBytes();
    Require(lseek(file.number, -static_cast<off_t>(bytes), SEEK_END) >= 0, "lseek");
    auto* const at = reinterpret_cast<char*>(to.begin());
    for (std::size_t done = 0; done < bytes;) {
        const ssize_t got = read(file.number, at + done, bytes - done);
        Require(got > 0, "read");
        done += static_cast<std::size_t>(got);
    }
}

void WritePlainBytes(const std::string& name, const SampleFrame& frame) {
    const Descriptor file(name, O_WRONLY | O_CREAT | O_TRUNC);
    const std::size_t bytes = frame.GetNumVoxels() * sizeof(unsigned short);
    const auto* const at = reinterpret_cast<const char*>(frame.begin());
    for (std::size_t done = 0; done < bytes;) {
        const ssize_t put = write(file.number, at + done, bytes - done);
        Require(put > 0, "write");
        done += static_cast<std::size_t>(put);
    }
}

void WriteTiffAlone(const std::string& name, const SampleFrame& frame, const TiffLayout& layout) {
    const auto tiff = OpenTiff(name, "w");
    const auto rows = static_cast<std::size_t>(layout.rowsPerStrip);
    std::vector<unsigned short> strip(rows * frame.size.x); // the predictor changes it
    for (std::size_t z = 0; z < frame.size.z; ++z) {
        TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(frame.size.x));
        TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(frame.size.y));
        TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 16);
        TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows));
        TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, layout.compression);
        if (layout.compression == COMPRESSION_ADOBE_DEFLATE)
            TIFFSetField(tiff.get(), TIFFTAG_ZIPQUALITY, layout.level);
        if (layout.predictor != PREDICTOR_NONE)
            TIFFSetField(tiff.get(), TIFFTAG_PREDICTOR, layout.predictor);
        std::uint32_t number = 0;
        for (std::size_t y = 0; y < frame.size.y; y += rows, ++number) {
            const std::size_t voxels = std::min(rows, frame.size.y - y) * frame.size.x;
            const auto bytes = static_cast<tmsize_t>(voxels * sizeof(unsigned short));
            std::copy_n(frame.GetVoxelAddr(0, y, z), voxels, strip.begin());
            Require(TIFFWriteEncodedStrip(tiff.get(), number, strip.data(), bytes) == bytes, "TIFFWriteEncodedStrip");
        }
        Require(TIFFWriteDirectory(tiff.get()) == 1, "TIFFWriteDirectory");
    }
}

void ReadTiffAlone(const std::string& name, FreshVoxels& to) {
    const auto tiff = OpenTiff(name, "r");
    auto* at = reinterpret_cast<unsigned char*>(to.begin());
    do {
        for (std::uint32_t strip = 0; strip < TIFFNumberOfStrips(tiff.get()); ++strip) {
            const tmsize_t bytes = TIFFReadEncodedStrip(tiff.get(), strip, at, -1);
            Require(bytes > 0, "TIFFReadEncodedStrip");
            at += bytes;
        }
    } while (TIFFReadDirectory(tiff.get()) == 1);
    Require(at == reinterpret_cast<unsigned char*>(to.end()), "reading all strips");
}

void WriteIcsAlone(const std::string& name, const SampleFrame& frame, int gzipLevel) {
    ICS* ics = nullptr;
    Require(IcsOpen(&ics, name.c_str(), "w2") == IcsErr_Ok, "IcsOpen");
    const std::size_t sizes[] = {frame.size.x, frame.size.y, frame.size.z};
    Require(IcsSetLayout(ics, Ics_uint16, 3, sizes) == IcsErr_Ok, "IcsSetLayout");
    Require(IcsSetCompression(ics, gzipLevel == 0 ? IcsCompr_uncompressed : IcsCompr_gzip, gzipLevel) == IcsErr_Ok,
            "IcsSetCompression");
    Require(IcsSetData(ics, frame.begin(), frame.GetNumVoxels() * sizeof(unsigned short)) == IcsErr_Ok, "IcsSetData");
    Require(IcsClose(ics) == IcsErr_Ok, "IcsClose");
}

void ReadIcsAlone(const std::string& name, FreshVoxels& to) {
    ICS* ics = nullptr;
    Require(IcsOpen(&ics, name.c_str(), "r") == IcsErr_Ok, "IcsOpen");
    Require(IcsGetData(ics, to.begin(), to.GetBytes()) == IcsErr_Ok, "IcsGetData");
    Require(IcsClose(ics) == IcsErr_Ok, "IcsClose");
}

void Flush(const std::string& name) {
    const Descriptor file(name, O_RDONLY);
    Require(fsync(file.number) == 0, "fsync");
}
