#include "core/kepcore/kep_imageinfo.h"

#include "core/kepcore/file/kep_file.h"

namespace kep {

namespace {

using detail::FrameHeader;
using detail::NumberKind;

VoxelType FindUnsignedType(int bits) {
    if (bits == 1)
        return VoxelType::Binary;
    if (bits <= 8)
        return VoxelType::Gray8;
    if (bits <= 16)
        return VoxelType::Gray16;
    return bits < 32 ? VoxelType::Int : VoxelType::UInt64;
}

VoxelType FindComplexType(const detail::SampleType& sample) {
    if (sample.kind == NumberKind::ComplexFloat)
        return sample.bytes == 4 ? VoxelType::Complex : VoxelType::DoubleComplex;
    if (sample.bytes == 8)
        return VoxelType::Other; // double has 53 bits for a number
    return sample.bytes == 4 ? VoxelType::DoubleComplex : VoxelType::Complex;
}

VoxelType FindVoxelType(const FrameHeader& header) {
    const detail::SampleType& sample = header.sample;
    if (sample.IsComplex())
        return FindComplexType(sample);
    if (header.components == 3) {
        if (sample.kind != NumberKind::Unsigned || sample.bytes > 2)
            return VoxelType::Other;
        return sample.bytes == 1 ? VoxelType::RGB8 : VoxelType::RGB16;
    }
    if (!header.palette.empty())
        return sample.bytes == 1 ? VoxelType::Gray8 : VoxelType::Gray16; // the index
    if (sample.kind == NumberKind::Float)
        return sample.bytes == 4 ? VoxelType::Float : VoxelType::Double;
    if (sample.kind == NumberKind::Signed)
        return sample.bytes == 8 ? VoxelType::Other : VoxelType::Int;
    return FindUnsignedType(header.storedBits);
}

std::string DescribeNumber(const FrameHeader& header) {
    const int bits = header.sample.IsComplex() ? 8 * header.sample.bytes : header.storedBits;
    const std::string text = std::to_string(bits) + "-bit";
    switch (header.sample.kind) {
    case NumberKind::Signed:
    case NumberKind::ComplexSigned:
        return text + " signed";
    case NumberKind::Float:
    case NumberKind::ComplexFloat:
        return text + " float";
    case NumberKind::Unsigned:
        break;
    }
    return header.components == 1 && bits > 1 ? text + " unsigned" : text;
}

std::string DescribeStoredType(const FrameHeader& header) {
    if (!header.palette.empty())
        return std::to_string(header.storedBits) + "-bit palette";
    if (header.sample.IsComplex())
        return "complex " + DescribeNumber(header);
    return header.components == 3 ? "RGB " + DescribeNumber(header) : DescribeNumber(header);
}

} // namespace

ImageInfo detail::MakeImageInfo(const FrameHeader& header) {
    ImageInfo info;
    info.format = header.format;
    info.size = header.size;
    info.voxelType = FindVoxelType(header);
    info.storedType = DescribeStoredType(header);
    info.compression = header.compression;
    info.resolution = header.resolution;
    info.offset = header.offset;
    info.description = header.description;
    info.fileSize = header.fileSize;
    info.dataFile = header.dataFile;
    return info;
}

ImageInfo ReadImageInfo(const char* fileName) {
    const char* const name = fileName != nullptr ? fileName : "";
    return detail::ReadWithinMemory(name, [&] { return detail::MakeImageInfo(detail::OpenFrame(name)->GetHeader()); });
}

} // namespace kep
