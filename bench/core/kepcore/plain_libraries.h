#pragma once

// The files' libraries and the system by themselves, without anything of our own: what reading and writing is measured
// against. Everything here throws std::runtime_error when it fails.

#include "core/kepcore/kep_image3d.h"

#include <string>
#include <vector>

using SampleFrame = kep::Image3d<unsigned short>;

/// Memory for the voxels of a frame, touched before.
std::vector<unsigned short> MakeBuffer(const SampleFrame& frame);

/// read(2) of a file's last bytes, as many as the buffer takes.
void ReadPlainBytes(const std::string& name, std::vector<unsigned short>& to);
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
void ReadTiffAlone(const std::string& name, std::vector<unsigned short>& to);

/// @param gzipLevel  0 for uncompressed
void WriteIcsAlone(const std::string& name, const SampleFrame& frame, int gzipLevel);
void ReadIcsAlone(const std::string& name, std::vector<unsigned short>& to);

/// Waits until a written file is on the disk, as every save of ours does.
void Flush(const std::string& name);
