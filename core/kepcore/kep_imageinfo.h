#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_fileformat.h"
#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_vector.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace kep {

/// The smallest voxel type that holds every voxel that a file of some kind can have.
enum class VoxelType {
    Binary,        ///< bool
    Gray8,         ///< unsigned char
    Gray16,        ///< unsigned short
    Int,           ///< int
    UInt64,        ///< unsigned long long
    Float,         ///< float
    Double,        ///< double
    RGB8,          ///< RGB_generic<unsigned char>
    RGB16,         ///< RGB_generic<unsigned short>
    Complex,       ///< std::complex<float>
    DoubleComplex, ///< std::complex<double>
    Other          ///< none holds all of them, e.g. signed 64-bit numbers; reading tests the values
};

/// What a file says of itself.
struct KEP_EXPORT ImageInfo {
    FileFormat format = FF_BY_NAME;         ///< FF_TIFF or FF_ICS
    Vector3d<std::size_t> size;             ///< voxels
    VoxelType voxelType = VoxelType::Other; ///< the smallest one that holds all its voxels
    std::string storedType;  ///< as on disk, for the user: "16-bit unsigned", "1-bit", "8-bit palette", "RGB 8-bit"
    std::string compression; ///< for the user: "none", "LZW", "deflate", "gzip"
    Resolution resolution;   ///< pixels per micron; not defined if the file has none
    Vector3d<float> offset;  ///< microns
    std::map<std::string, std::string> description; ///< free metadata: names and values in UTF-8
    std::uint64_t fileSize = 0;                     ///< bytes, with a separate data file's
    std::string dataFile; ///< name of the separate file that holds the voxels; empty if there is none
};

/// Tells what a file is, without reading its voxels. A file that passes can still turn out damaged when it is read.
/// @param fileName  in the file system's encoding
/// @throws IOException with the texts of Image3d::ReadImage
KEP_EXPORT ImageInfo ReadImageInfo(const char* fileName);

} // namespace kep
