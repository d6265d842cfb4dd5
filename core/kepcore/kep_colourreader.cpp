#include "core/kepcore/kep_colourreader.h"

#include "core/kepcore/convert/kep_block.h"
#include "core/kepcore/convert/kep_convert.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_slices.h"
#include "core/kepcore/frame/kep_extent.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace kep {

namespace {

/// Reads a channel's frame into one colour of another.
/// @param to  that colour in the first voxel
template <typename C>
void ReadColour(detail::FrameSource& source, const std::string& fileName, C* to) {
    const detail::FrameHeader& header = source.GetHeader();
    const detail::VoxelConverter converter(header, detail::targetType<C>, fileName);
    const std::size_t sliceVoxels = header.size.x * header.size.y;
    const auto converted = std::make_unique<C[]>(sliceVoxels);
    detail::ForEachSlice(source, [&](std::size_t z, const std::byte* slice) {
        converter.Convert(slice, {0, 0, z}, sliceVoxels, reinterpret_cast<std::byte*>(converted.get()));
        C* const at = to + 3 * z * sliceVoxels;
        for (std::size_t i = 0; i < sliceVoxels; ++i)
            at[3 * i] = converted[i];
    });
}

} // namespace

ColourReader::ColourReader(const char* fileName, std::vector<std::size_t> wanted)
    : name(fileName != nullptr ? fileName : ""), channels(std::move(wanted)) {
    channels.resize(std::min<std::size_t>(channels.size(), 3));
    detail::ReadWithinMemory(name.c_str(), [this] { frames = detail::OpenFrames(name.c_str()); });
}

ColourReader::~ColourReader() = default;
ColourReader::ColourReader(ColourReader&&) noexcept = default;
ColourReader& ColourReader::operator=(ColourReader&&) noexcept = default;

template <typename C>
void ColourReader::ReadFrame(std::size_t time, Image3d<RGB_generic<C>>& frame) {
    Image3d<RGB_generic<C>> read;
    detail::ReadWithinMemory(name.c_str(), [&] {
        const detail::FrameAxes& axes = frames->GetAxes();
        for (const std::size_t channel : channels)
            if (channel >= axes.channels || time >= axes.times)
                detail::ThrowNoSuchFrame(name, channel, time, axes.channels, axes.times);
        const detail::FrameHeader& header = frames->GetHeader();
        const auto voxels = detail::CountVoxels(header.size, sizeof(RGB_generic<C>));
        if (!voxels)
            throw std::bad_alloc(); // no memory could hold them
        read.size = header.size;
        read.data = channels.size() == 3 ? detail::MakeUnsetBlock<RGB_generic<C>>(*voxels)
                                         : detail::MakeZeroBlock<RGB_generic<C>>(*voxels);
        if (const auto& watch = detail::WatchOfThread())
            watch->Begin(channels.size() * header.size.z);
        for (std::size_t colour = 0; colour < channels.size(); ++colour)
            ReadColour<C>(*frames->Open(channels[colour], time), name, &read.begin()->red + colour);
        read.offset = header.offset;
        read.resolution = header.resolution;
        read.description = header.description;
    });
    frame = std::move(read);
}

template KEP_EXPORT void ColourReader::ReadFrame(std::size_t, Image3d<RGB_generic<unsigned char>>&);
template KEP_EXPORT void ColourReader::ReadFrame(std::size_t, Image3d<RGB_generic<unsigned short>>&);

} // namespace kep
