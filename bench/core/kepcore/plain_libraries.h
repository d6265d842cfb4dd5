#pragma once

// The files' libraries and the system by themselves, without anything of our own: what reading and writing is measured
// against. Everything here throws std::runtime_error when it fails.

#include "core/kepcore/kep_image3d.h"

#include <cstddef>
#include <memory>
#include <string>

using SampleFrame = kep::Image3d<unsigned short>;

/// Memory that the system gives anew, for so many voxels, in pages as large as those of frames: a frame is always read
/// into such memory, as the old voxels stay until the new ones are complete.
class FreshVoxels {
public:
    explicit FreshVoxels(std::size_t number);
    unsigned short* begin() { return voxels.get(); }
    unsigned short* end() { return voxels.get() + number; }
    std::size_t GetBytes() const { return number * sizeof(unsigned short); }

private:
    std::size_t number;
    std::unique_ptr<unsigned short[]> voxels;
};

/// read(2) of a file's last bytes, as many as the voxels take.
void ReadPlainBytes(const std::string& name, FreshVoxels& to);
/// write(2) of the voxels to a new file.
void WritePlainBytes(const std::string& name, const SampleFrame& frame);

/// A stack with one directory a slice.
struct TiffLayout {
    int compression;
    int predictor; ///< 1 none, 2 horizontal
    int level;     ///< of deflate; other compressions take no notice of it
    int rowsPerStrip;
};
void WriteTiffAlone(const std::string& name, const SampleFrame& frame, const TiffLayout& layout);
void ReadTiffAlone(const std::string& name, FreshVoxels& to);

/// @param gzipLevel  0 for uncompressed
void WriteIcsAlone(const std::string& name, const SampleFrame& frame, int gzipLevel);
void ReadIcsAlone(const std::string& name, FreshVoxels& to);

/// Waits until a written file is on the disk, as every save of ours does.
void Flush(const std::string& name);
