#include "core/kepcore/kep_image3d.h"

#include "core/kepcore/convert/kep_block.h"
#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/kep_exceptions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kep {

namespace {

/// x * y * z, if a block of so many voxels can be addressed.
/// @param text  of the LibException that is thrown otherwise
template <typename T>
std::size_t CountVoxels(const Vector3d<std::size_t>& size, const char* text) {
    if (const auto voxels = detail::CountVoxels(size, sizeof(T)))
        return *voxels;
    throw LibException(text);
}

template <typename T>
std::valarray<T> CopyBlock(const std::valarray<T>& from) {
    std::valarray<T> block = detail::MakeUnsetBlock<T>(from.size());
    if (from.size() > 0)
        std::copy_n(&from[0], from.size(), &block[0]);
    return block;
}

/// The voxels of a box of src; `fill` for those outside it.
template <typename T>
std::valarray<T> CutBlock(const Image3d<T>& src, const typename Image3d<T>::PixelBox& box, T fill, const char* text) {
    const std::size_t voxels = CountVoxels<T>(box.size, text);
    const detail::Overlap overlap = detail::FindOverlap(box, src.size);
    std::valarray<T> block = detail::MakeUnsetBlock<T>(voxels);
    if (voxels == 0)
        return block;
    if (overlap.size != box.size)
        std::fill_n(&block[0], voxels, fill);
    const auto& [inFrame, inBox, size] = overlap;
    for (std::size_t k = 0; k < size.z; ++k) {
        for (std::size_t j = 0; j < size.y; ++j) {
            const T* const from = src.GetVoxelAddr(inFrame.x, inFrame.y + j, inFrame.z + k);
            std::copy_n(from, size.x, &block[((inBox.z + k) * box.size.y + inBox.y + j) * box.size.x + inBox.x]);
        }
    }
    return block;
}

template <typename T>
Vector3d<float> FindBoxOffset(const Image3d<T>& src, const Vector3d<int>& origin) {
    Vector3d<float> offset = src.offset;
    offset += PixelsToMicrons(origin, src.resolution);
    return offset;
}

/// An axis of a box in microns as voxels of a frame, cut to the frame.
struct VoxelRange {
    std::size_t first = 0;
    std::size_t count = 0;
};

VoxelRange FindVoxelRange(float boxFrom, float boxSize, float frameFrom, float resolution, std::size_t frameSize) {
    const double r = resolution;
    const double low = std::round((static_cast<double>(boxFrom) - static_cast<double>(frameFrom)) * r);
    const double high = low + std::round(static_cast<double>(boxSize) * r);
    // 2^53 voxels are enough for every frame, so a double holds the limits; a box of NaN covers nothing.
    const auto size = static_cast<double>(frameSize);
    if (!(low < size) || !(high > 0.0) || !(high > low))
        return {};
    const auto first = static_cast<std::size_t>(std::max(low, 0.0));
    return {first, static_cast<std::size_t>(std::min(high, size)) - first};
}

} // namespace

template <typename T>
Image3d<T>::Image3d(const Vector3d<float>* newOffset, const Resolution* newResolution)
    : offset(newOffset != nullptr ? *newOffset : Vector3d<float>()),
      resolution(newResolution != nullptr ? *newResolution : Resolution()) {}

template <typename T>
Image3d<T>::Image3d(const Image3d& src, const PixelBox* voi)
    : offset(voi != nullptr ? FindBoxOffset(src, voi->offset) : src.offset),
      size(voi != nullptr ? voi->size : src.size),
      resolution(src.resolution),
      data(voi != nullptr ? CutBlock(src, *voi, T(), "Image3d, copy constructor: The box is too large.")
                          : CopyBlock(src.data)),
      description(src.description) {}

template <typename T>
Image3d<T>::Image3d(const Image3d& src, const MicronBox& voi) : offset(src.offset), resolution(src.resolution) {
    const Vector3d<float> r = src.resolution.GetUsable().GetRes();
    const VoxelRange x = FindVoxelRange(voi.offset.x, voi.size.x, src.offset.x, r.x, src.size.x);
    const VoxelRange y = FindVoxelRange(voi.offset.y, voi.size.y, src.offset.y, r.y, src.size.y);
    const VoxelRange z = FindVoxelRange(voi.offset.z, voi.size.z, src.offset.z, r.z, src.size.z);
    offset += PixelsToMicrons(Vector3d<std::size_t>(x.first, y.first, z.first), src.resolution);
    description = src.description;
    if (x.count == 0 || y.count == 0 || z.count == 0)
        return;
    size = {x.count, y.count, z.count};
    data = detail::MakeUnsetBlock<T>(size.x * size.y * size.z);
    T* to = begin();
    for (std::size_t k = 0; k < size.z; ++k) {
        for (std::size_t j = 0; j < size.y; ++j)
            to = std::copy_n(src.GetVoxelAddr(x.first, y.first + j, z.first + k), size.x, to);
    }
}

template <typename T>
Image3d<T>::Image3d(Image3d&& src) noexcept {
    Swap(src);
}

template <typename T>
Image3d<T>::~Image3d() = default;

template <typename T>
Image3d<T>& Image3d<T>::operator=(const Image3d& src) {
    if (this == &src)
        return *this;
    std::map<std::string, std::string> newDescription = src.description;
    if (data.size() == src.data.size()) {
        std::copy(src.begin(), src.end(), begin());
    } else {
        std::valarray<T> block = CopyBlock(src.data);
        data.swap(block);
    }
    offset = src.offset;
    size = src.size;
    resolution = src.resolution;
    description.swap(newDescription);
    return *this;
}

template <typename T>
Image3d<T>& Image3d<T>::operator=(Image3d&& src) noexcept {
    Image3d taken(std::move(src)); // by way of a third, so that what was here goes, and moving to itself is safe
    Swap(taken);
    return *this;
}

template <typename T>
void Image3d<T>::MakeRoom(std::size_t x, std::size_t y, std::size_t z) {
    const std::size_t voxels = CountVoxels<T>({x, y, z}, "MakeRoom(): The image is too large.");
    if (voxels != data.size()) {
        std::valarray<T> block = detail::MakeZeroBlock<T>(voxels);
        data.swap(block);
    }
    size = {x, y, z};
}

template <typename T>
void Image3d<T>::DisposeData() {
    std::valarray<T>().swap(data);
    size = {};
}

template <typename T>
void Image3d<T>::CopyFromVOI(const Image3d& src, const PixelBox& voi, bool keepGeometry, T fill) {
    std::valarray<T> block = CutBlock(src, voi, fill, "CopyFromVOI(): The box is too large.");
    if (!keepGeometry) {
        offset = FindBoxOffset(src, voi.offset);
        resolution = src.resolution;
    }
    data.swap(block);
    size = voi.size;
}

template <typename T>
void Image3d<T>::Fill(T v) {
    std::fill(begin(), end(), v);
}

template <typename T>
void Image3d<T>::Swap(Image3d& other) noexcept {
    std::swap(offset, other.offset);
    std::swap(size, other.size);
    std::swap(resolution, other.resolution);
    data.swap(other.data);
    description.swap(other.description);
}

#define KEP_INSTANTIATE(T) template class Image3d<T>;
KEP_FRAME_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
