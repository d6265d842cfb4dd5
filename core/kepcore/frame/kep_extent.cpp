#include "core/kepcore/frame/kep_extent.h"

#include <algorithm>
#include <limits>

namespace kep::detail {

namespace {

/// One axis of an overlap.
struct Range {
    std::size_t inFrame = 0;
    std::size_t inBox = 0;
    std::size_t count = 0;
};

Range FindRange(int boxFrom, std::size_t boxSize, std::size_t frameSize) {
    Range range;
    if (boxFrom < 0)
        range.inBox = static_cast<std::size_t>(-static_cast<std::int64_t>(boxFrom));
    else
        range.inFrame = static_cast<std::size_t>(boxFrom);
    if (range.inBox < boxSize && range.inFrame < frameSize)
        range.count = std::min(boxSize - range.inBox, frameSize - range.inFrame);
    return range;
}

} // namespace

std::optional<std::uint64_t> Multiply(std::initializer_list<std::uint64_t> factors) {
    if (std::find(factors.begin(), factors.end(), 0U) != factors.end())
        return 0; // whatever the others are
    std::uint64_t product = 1;
    for (const std::uint64_t factor : factors) {
        if (__builtin_mul_overflow(product, factor, &product))
            return std::nullopt;
    }
    return product;
}

std::optional<std::size_t> CountVoxels(const Vector3d<std::size_t>& size, std::size_t voxelBytes) {
    const auto bytes = Multiply({size.x, size.y, size.z, voxelBytes});
    if (!bytes || *bytes > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()))
        return std::nullopt;
    return static_cast<std::size_t>(*bytes / voxelBytes);
}

Overlap FindOverlap(const VOI<T_pair<int, std::size_t>>& box, const Vector3d<std::size_t>& frameSize) {
    const Range x = FindRange(box.offset.x, box.size.x, frameSize.x);
    const Range y = FindRange(box.offset.y, box.size.y, frameSize.y);
    const Range z = FindRange(box.offset.z, box.size.z, frameSize.z);
    if (x.count == 0 || y.count == 0 || z.count == 0)
        return {};
    return {{x.inFrame, y.inFrame, z.inFrame}, {x.inBox, y.inBox, z.inBox}, {x.count, y.count, z.count}};
}

} // namespace kep::detail
