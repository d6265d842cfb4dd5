#include "core/kepcore/kep_image3d.h"

#include "core/kepcore/convert/kep_block.h"
#include "core/kepcore/convert/kep_convert.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_slices.h"
#include "core/kepcore/file/kep_watchstate.h"
#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_voxelvisitor.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace kep {

namespace {

using PixelBox = VOI<T_pair<int, std::size_t>>;

/// Bytes of voxels that are read before somebody looks at them: few calls, and yet still in the caches.
constexpr std::size_t groupBytes = std::size_t{8} << 20;

/// Voxels that are in the file as they are in memory: all at once, or, where somebody looks on, in groups of slices.
template <typename T>
void ReadPlain(detail::FrameSource& source, T* to) {
    const detail::FrameHeader& header = source.GetHeader();
    const auto& watch = detail::WatchOfThread();
    const bool isSeen = watch || VoxelVisitor<T>::IsThere();
    const std::size_t group = isSeen ? std::max<std::size_t>(1, groupBytes / header.GetSliceBytes()) : header.size.z;
    const std::size_t sliceVoxels = header.size.x * header.size.y;
    for (std::size_t z = 0; z < header.size.z; z += group) {
        const std::size_t count = std::min(group, header.size.z - z);
        T* const first = to + z * sliceVoxels;
        source.ReadSlices(count, reinterpret_cast<std::byte*>(first));
        VoxelVisitor<T>::Show(first, count * sliceVoxels);
        if (watch)
            watch->AddSlices(count);
    }
}

/// All voxels of the file, in their order.
template <typename T>
void ReadWhole(detail::FrameSource& source, const detail::VoxelConverter& converter, T* to) {
    if (converter.IsPlainCopy())
        return ReadPlain(source, to);
    const detail::FrameHeader& header = source.GetHeader();
    const std::size_t sliceVoxels = header.size.x * header.size.y;
    T* notShown = to;
    detail::ForEachSlice(source, [&](std::size_t z, const std::byte* slice) {
        T* const first = to + z * sliceVoxels;
        converter.Convert(slice, {0, 0, z}, sliceVoxels, reinterpret_cast<std::byte*>(first));
        const auto waiting = static_cast<std::size_t>(first + sliceVoxels - notShown);
        if (waiting * sizeof(T) < groupBytes && z + 1 < header.size.z)
            return;
        VoxelVisitor<T>::Show(notShown, waiting);
        notShown += waiting;
    });
}

/// The voxels that a box covers. Every slice is read, so that a file with damage behind the box is refused too.
void ReadWindow(detail::FrameSource& source, const detail::VoxelConverter& converter, std::size_t voxelBytes,
                const detail::Overlap& window, const Vector3d<std::size_t>& frameSize, std::byte* to) {
    const detail::FrameHeader& header = source.GetHeader();
    const std::size_t storedBytes = header.sample.GetSampleBytes() * static_cast<std::size_t>(header.components);
    detail::ForEachSlice(source, [&](std::size_t z, const std::byte* slice) {
        if (z < window.inFrame.z || z - window.inFrame.z >= window.size.z)
            return;
        const std::size_t frameZ = z - window.inFrame.z + window.inBox.z;
        for (std::size_t j = 0; j < window.size.y; ++j) {
            const std::size_t y = window.inFrame.y + j;
            const std::size_t index = (frameZ * frameSize.y + window.inBox.y + j) * frameSize.x + window.inBox.x;
            converter.Convert(slice + (y * header.size.x + window.inFrame.x) * storedBytes, {window.inFrame.x, y, z},
                              window.size.x, to + index * voxelBytes);
        }
    });
}

/// Reads what a source has into a new frame.
template <typename T>
void FillFrame(detail::FrameSource& source, const char* fileName, const PixelBox* voi, Image3d<T>& frame) {
    const detail::FrameHeader& header = source.GetHeader();
    const detail::VoxelConverter converter(header, detail::targetType<T>, fileName);

    frame.size = voi != nullptr ? voi->size : header.size;
    const auto voxels = detail::CountVoxels(frame.size, sizeof(T));
    if (!voxels)
        throw std::bad_alloc(); // no memory could hold them
    if (const auto& watch = detail::WatchOfThread())
        watch->Begin(header.size.z);
    if (voi == nullptr) {
        frame.data = detail::MakeUnsetBlock<T>(*voxels);
        ReadWhole(source, converter, frame.begin());
    } else {
        frame.data = detail::MakeZeroBlock<T>(*voxels);
        ReadWindow(source, converter, sizeof(T), detail::FindOverlap(*voi, header.size), frame.size,
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
        FillFrame(*detail::OpenFrame(name), name, voi, frame);
    });
    if (newOffset != nullptr)
        frame.offset = *newOffset;
    if (newResolution != nullptr)
        frame.resolution = *newResolution;
    if (voi != nullptr)
        frame.offset += PixelsToMicrons(voi->offset, frame.resolution);
    *this = std::move(frame);
}

template <typename T>
void Image3d<T>::ReadFrame(const char* fileName, std::size_t channel, std::size_t time) {
    FrameReader(fileName).ReadFrame(channel, time, *this);
}

FrameReader::FrameReader(const char* fileName) : name(fileName != nullptr ? fileName : "") {
    detail::ReadWithinMemory(name.c_str(), [this] {
        frames = detail::OpenFrames(name.c_str());
        const detail::FrameAxes& found = frames->GetAxes();
        axes = {detail::MakeImageInfo(frames->GetHeader()),
                found.channels,
                found.times,
                found.channelInfos,
                found.frameInterval,
                found.series};
    });
}

FrameReader::~FrameReader() = default;
FrameReader::FrameReader(FrameReader&&) noexcept = default;
FrameReader& FrameReader::operator=(FrameReader&&) noexcept = default;

template <typename T>
void FrameReader::ReadFrame(std::size_t channel, std::size_t time, Image3d<T>& frame) {
    Image3d<T> read;
    detail::ReadWithinMemory(name.c_str(), [&] {
        if (channel >= axes.channels || time >= axes.times)
            detail::ThrowNoSuchFrame(name, channel, time, axes.channels, axes.times);
        FillFrame(*frames->Open(channel, time), name.c_str(), nullptr, read);
    });
    frame = std::move(read);
}

#define KEP_INSTANTIATE(T)                                                                                             \
    template Image3d<T>::Image3d(const char*, const PixelBox*, bool, int, const Vector3d<float>*, const Resolution*);  \
    template void Image3d<T>::ReadImage(const char*, const PixelBox*, bool, int, const Vector3d<float>*,               \
                                        const Resolution*);                                                            \
    template void Image3d<T>::ReadFrame(const char*, std::size_t, std::size_t);                                        \
    template KEP_EXPORT void FrameReader::ReadFrame(std::size_t, std::size_t, Image3d<T>&);
KEP_FRAME_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
