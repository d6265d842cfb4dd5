#include "core/kepcore/kep_image3d.h"

#include "core/kepcore/convert/kep_block.h"
#include "core/kepcore/convert/kep_convert.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_exceptions.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace kep {

namespace {

using PixelBox = VOI<T_pair<int, std::size_t>>;

/// The part of a file that is kept, in voxels of the file, and where it goes in the frame.
struct Window {
    Vector3d<std::size_t> inFile;
    Vector3d<std::size_t> inFrame;
    Vector3d<std::size_t> size; ///< (0, 0, 0) if the box lies beside the file's voxels
};

bool FindRange(int boxFrom, std::size_t boxSize, std::size_t fileSize, std::size_t& inFile, std::size_t& inFrame,
               std::size_t& count) {
    const auto from = static_cast<std::int64_t>(boxFrom);
    inFile = static_cast<std::size_t>(std::max<std::int64_t>(from, 0));
    inFrame = static_cast<std::size_t>(std::max<std::int64_t>(-from, 0));
    if (inFrame >= boxSize || inFile >= fileSize)
        return false;
    count = std::min(boxSize - inFrame, fileSize - inFile);
    return true;
}

Window FindWindow(const PixelBox& box, const Vector3d<std::size_t>& fileSize) {
    Window window;
    const bool overlaps =
        FindRange(box.offset.x, box.size.x, fileSize.x, window.inFile.x, window.inFrame.x, window.size.x) &&
        FindRange(box.offset.y, box.size.y, fileSize.y, window.inFile.y, window.inFrame.y, window.size.y) &&
        FindRange(box.offset.z, box.size.z, fileSize.z, window.inFile.z, window.inFrame.z, window.size.z);
    return overlaps ? window : Window();
}

/// Voxels of a frame of the size, or bad_alloc if no memory could hold them.
std::size_t CountVoxels(const Vector3d<std::size_t>& size, std::size_t voxelBytes) {
    if (size.x == 0 || size.y == 0 || size.z == 0)
        return 0;
    std::size_t voxels = 0;
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(size.x, size.y, &voxels) || __builtin_mul_overflow(voxels, size.z, &voxels) ||
        __builtin_mul_overflow(voxels, voxelBytes, &bytes) ||
        bytes > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()))
        throw std::bad_alloc();
    return voxels;
}

/// All voxels of the file, in their order.
void ReadWhole(detail::FrameSource& source, const detail::VoxelConverter& converter, std::size_t voxelBytes,
               std::byte* to) {
    const detail::FrameHeader& header = source.GetHeader();
    if (converter.IsPlainCopy()) {
        source.ReadSlices(header.size.z, to);
        return;
    }
    const std::size_t sliceVoxels = header.size.x * header.size.y;
    const auto slice = std::make_unique<std::byte[]>(header.GetSliceBytes());
    for (std::size_t z = 0; z < header.size.z; ++z) {
        source.ReadSlices(1, slice.get());
        converter.Convert(slice.get(), {0, 0, z}, sliceVoxels, to + z * sliceVoxels * voxelBytes);
    }
}

/// The voxels of a window. Every slice is read, so that a file with damage behind the window is refused too.
void ReadWindow(detail::FrameSource& source, const detail::VoxelConverter& converter, std::size_t voxelBytes,
                const Window& window, const Vector3d<std::size_t>& frameSize, std::byte* to) {
    const detail::FrameHeader& header = source.GetHeader();
    const std::size_t storedBytes = header.sample.GetSampleBytes() * static_cast<std::size_t>(header.components);
    const auto slice = std::make_unique<std::byte[]>(header.GetSliceBytes());
    for (std::size_t z = 0; z < header.size.z; ++z) {
        source.ReadSlices(1, slice.get());
        if (z < window.inFile.z || z - window.inFile.z >= window.size.z)
            continue;
        const std::size_t frameZ = z - window.inFile.z + window.inFrame.z;
        for (std::size_t j = 0; j < window.size.y; ++j) {
            const std::size_t y = window.inFile.y + j;
            const std::size_t index = (frameZ * frameSize.y + window.inFrame.y + j) * frameSize.x + window.inFrame.x;
            converter.Convert(slice.get() + (y * header.size.x + window.inFile.x) * storedBytes,
                              {window.inFile.x, y, z}, window.size.x, to + index * voxelBytes);
        }
    }
}

template <typename T>
void ReadFrame(const char* fileName, const PixelBox* voi, Image3d<T>& frame) {
    const std::unique_ptr<detail::FrameSource> source = detail::OpenFrame(fileName);
    const detail::FrameHeader& header = source->GetHeader();
    const detail::VoxelConverter converter(header, detail::targetType<T>, fileName);

    frame.size = voi != nullptr ? voi->size : header.size;
    const std::size_t voxels = CountVoxels(frame.size, sizeof(T));
    if (voi == nullptr) {
        frame.data = detail::MakeUnsetBlock<T>(voxels);
        ReadWhole(*source, converter, sizeof(T), reinterpret_cast<std::byte*>(frame.begin()));
    } else {
        frame.data = detail::MakeZeroBlock<T>(voxels);
        ReadWindow(*source, converter, sizeof(T), FindWindow(*voi, header.size), frame.size,
                   reinterpret_cast<std::byte*>(frame.begin()));
    }
    frame.offset = header.offset;
    frame.resolution = header.resolution;
    frame.description = header.description;
}

} // namespace

template <typename T>
Image3d<T>::Image3d(const char* fileName, const PixelBox* voi, bool reserved, int reservedNumber,
                    const Vector3d<float>* newOffset, const Resolution* newResolution) {
    ReadImage(fileName, voi, reserved, reservedNumber, newOffset, newResolution);
}

template <typename T>
void Image3d<T>::ReadImage(const char* fileName, const PixelBox* voi, bool reserved, int reservedNumber,
                           const Vector3d<float>* newOffset, const Resolution* newResolution) {
    Image3d frame;
    const char* const name = fileName != nullptr ? fileName : "";
    detail::ReadWithinMemory(name, [&] {
        if (reserved || reservedNumber != -1)
            throw IOException("ReadImage(): These arguments are not supported.", name,
                              "These arguments are not supported.");
        ReadFrame(name, voi, frame);
    });
    if (newOffset != nullptr)
        frame.offset = *newOffset;
    if (newResolution != nullptr)
        frame.resolution = *newResolution;
    if (voi != nullptr)
        frame.offset += PixelsToMicrons(voi->offset, frame.resolution);
    *this = std::move(frame);
}

#define KEP_INSTANTIATE(T)                                                                                             \
    template Image3d<T>::Image3d(const char*, const PixelBox*, bool, int, const Vector3d<float>*, const Resolution*);  \
    template void Image3d<T>::ReadImage(const char*, const PixelBox*, bool, int, const Vector3d<float>*,               \
                                        const Resolution*);
KEP_FRAME_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
