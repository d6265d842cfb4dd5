#pragma once

// Private to the library: how the numbers of a file become voxels of a frame.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_rgb.h"

#include <complex>
#include <cstddef>
#include <string>

namespace kep::detail {

/// One number of a voxel in memory.
enum class Channel { UChar, UShort, Int, UInt64, Float, Double, Bool };

enum class VoxelShape { Single, Colour, Complex };

/// A voxel type, as conversions see it.
struct TargetType {
    Channel channel;
    VoxelShape shape;
    const char* name; ///< in messages

    std::size_t GetChannelBytes() const;
    std::size_t GetChannels() const { return shape == VoxelShape::Colour ? 3 : shape == VoxelShape::Complex ? 2 : 1; }
    std::size_t GetVoxelBytes() const { return GetChannelBytes() * GetChannels(); }
};

template <typename T>
extern const TargetType targetType; // for each type below and no other
template <>
inline constexpr TargetType targetType<unsigned char>{Channel::UChar, VoxelShape::Single, "8-bit gray"};
template <>
inline constexpr TargetType targetType<unsigned short>{Channel::UShort, VoxelShape::Single, "16-bit gray"};
template <>
inline constexpr TargetType targetType<int>{Channel::Int, VoxelShape::Single, "32-bit integer"};
template <>
inline constexpr TargetType targetType<unsigned long long>{Channel::UInt64, VoxelShape::Single, "64-bit integer"};
template <>
inline constexpr TargetType targetType<float>{Channel::Float, VoxelShape::Single, "float"};
template <>
inline constexpr TargetType targetType<double>{Channel::Double, VoxelShape::Single, "double"};
template <>
inline constexpr TargetType targetType<RGB_generic<unsigned char>>{Channel::UChar, VoxelShape::Colour, "RGB"};
template <>
inline constexpr TargetType targetType<RGB_generic<unsigned short>>{Channel::UShort, VoxelShape::Colour, "16-bit RGB"};
template <>
inline constexpr TargetType targetType<std::complex<float>>{Channel::Float, VoxelShape::Complex, "complex"};
template <>
inline constexpr TargetType targetType<std::complex<double>>{Channel::Double, VoxelShape::Complex, "double complex"};
template <>
inline constexpr TargetType targetType<bool>{Channel::Bool, VoxelShape::Single, "binary"};

/// How the numbers of a channel are stored when they are written. Two-valued voxels are written as bytes.
SampleType GetStoredType(const TargetType& type);

/// Converts numbers one by one and returns the index of the first that does not fit, or count.
using NumberKernel = std::size_t (*)(const void* from, std::size_t count, void* to);

/// Where a voxel stands in a file.
struct VoxelPlace {
    std::size_t x = 0;
    std::size_t y = 0;
    std::size_t z = 0;
};

/// Converts the voxels of one file to one voxel type. Values are tested, not types: a voxel is carried over exactly,
/// or to the nearest number of a floating type, or the file is refused.
class VoxelConverter {
public:
    /// @param fileHeader  must outlive the converter
    /// @throws IOException the file's kind of voxels never becomes the type
    VoxelConverter(const FrameHeader& fileHeader, const TargetType& target, std::string fileName);

    /// The voxels in the file are those in memory, byte by byte.
    bool IsPlainCopy() const { return plain; }

    /// Converts voxels that follow each other in the file, x fastest.
    /// @param place  of the first one, for messages
    /// @throws IOException a voxel does not fit
    void Convert(const std::byte* from, const VoxelPlace& place, std::size_t count, std::byte* to) const;

private:
    struct Scratch;
    enum class Before { Nothing, TakeGray };
    enum class After { Nothing, Triple, AddImaginary, TellIfAnySet };

    void ConvertBlock(const std::byte* from, const VoxelPlace& place, std::size_t count, std::byte* to,
                      Scratch& scratch) const;
    void LookUpColours(const std::byte* from, std::size_t count, std::byte* to) const;
    [[noreturn]] void ThrowCannotConvert(const std::string& kind) const;
    [[noreturn]] void Refuse(const std::byte* number, const VoxelPlace& place) const;

    const FrameHeader& header;
    TargetType type;
    std::string name;
    NumberKernel kernel = nullptr;
    Before before = Before::Nothing;
    After after = After::Nothing;
    std::size_t numbersPerVoxel = 1; // that the kernel sees
    bool plain = false;
    bool lookUp = false; // colours come from the file's table
};

} // namespace kep::detail
