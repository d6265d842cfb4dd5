#include "core/kepalgo/kep_copytoimage.h"

#include "core/kepcore/kep_threads.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kep {

namespace {

/// Which voxels of src one axis of dst shows. Places inside src follow each other without a gap, as the voxel at a
/// place never goes back while the place goes on.
struct AxisPlan {
    std::vector<int> indices; ///< voxels of src, for dst's places from `first` on; never falling
    std::size_t first = 0;    ///< dst's first place that lies inside src
    std::size_t extent = 0;   ///< places of dst, inside src or not
    std::size_t stride = 1;   ///< from one voxel of src to its neighbour on this axis

    std::size_t GetEnd() const { return first + indices.size(); }
    bool Holds(std::size_t place) const { return place >= first && place < GetEnd(); }
    std::size_t GetSourceIndex(std::size_t place) const {
        return static_cast<std::size_t>(indices[place - first]) * stride;
    }
};

/// One axis of a frame.
struct Axis {
    float offset = 0.0F;     ///< microns
    float resolution = 1.0F; ///< pixels per micron, usable
    std::size_t extent = 0;  ///< voxels
};

AxisPlan PlanAxis(const Axis& src, const Axis& dst, std::size_t stride) {
    AxisPlan plan;
    plan.extent = dst.extent;
    plan.stride = stride;
    plan.indices.reserve(dst.extent);
    const double start =
        (static_cast<double>(dst.offset) - static_cast<double>(src.offset)) * static_cast<double>(src.resolution);
    const double step = static_cast<double>(src.resolution) / static_cast<double>(dst.resolution);
    const double tolerance = VoxelTolerance(dst.offset, src.offset, src.resolution);
    for (std::size_t i = 0; i < dst.extent; ++i) {
        const double place = start + static_cast<double>(i) * step;
        const int index = VoxelIndexShownAt(place, tolerance, src.extent, dst.extent);
        if (index < 0)
            continue;
        if (static_cast<std::size_t>(index) >= src.extent)
            break;
        if (plan.indices.empty())
            plan.first = i;
        plan.indices.push_back(index);
    }
    return plan;
}

/// Copies lines of dst along one axis.
template <typename T>
class LineCopier {
public:
    explicit LineCopier(const AxisPlan& axis) : plan(axis) {
        if (plan.stride == 1 && Follows(1))
            pattern = Pattern::Consecutive;
        else if (plan.stride == 1 && Follows(2))
            pattern = Pattern::Doubled;
    }

    /// @param src  the voxel with index 0 of the line in src
    /// @param dst  plan.extent voxels
    void Copy(const T* src, T* dst) const {
        T* const inside = dst + plan.first;
        const std::size_t count = plan.indices.size();
        std::fill(dst, inside, T());
        std::fill(inside + count, dst + plan.extent, T());
        if (pattern == Pattern::Consecutive && count > 0)
            std::copy_n(src + plan.indices[0], count, inside);
        else if (pattern == Pattern::Doubled && count > 1)
            CopyDoubled(src, inside, count);
        else
            CopyOneByOne(src, inside, count);
    }

private:
    enum class Pattern {
        Consecutive, ///< the voxels lie behind each other, each shown once
        Doubled,     ///< the same, each shown twice, but for the first and the last
        Other
    };

    /// Whether each voxel lies behind the one shown some places before.
    bool Follows(std::size_t places) const {
        for (std::size_t i = places; i < plan.indices.size(); ++i)
            if (plan.indices[i] != plan.indices[i - places] + 1)
                return false;
        return true;
    }

    void CopyOneByOne(const T* src, T* inside, std::size_t count) const {
        const int* const indices = plan.indices.data();
        const std::size_t stride = plan.stride;
#pragma GCC unroll 8
        for (std::size_t i = 0; i < count; ++i)
            inside[i] = src[static_cast<std::size_t>(indices[i]) * stride];
    }

    void CopyDoubled(const T* src, T* inside, std::size_t count) const {
        const std::size_t firstPair = plan.indices[0] == plan.indices[1] ? 0 : 1;
        inside[0] = src[plan.indices[0]];
        inside[count - 1] = src[plan.indices[count - 1]];
        const T* __restrict from = src + plan.indices[firstPair];
        T* __restrict to = inside + firstPair;
        const std::size_t pairs = (count - firstPair) / 2;
        for (std::size_t k = 0; k < pairs; ++k) {
            to[2 * k] = from[k];
            to[2 * k + 1] = from[k];
        }
    }

    const AxisPlan& plan;
    Pattern pattern = Pattern::Other;
};

/// Copies slices of dst, whose lines show those of src that `middle` and `z` name.
template <typename T>
void CopySlices(const T* src, const LineCopier<T>& line, std::size_t lineExtent, const AxisPlan& middle,
                const AxisPlan& z, std::size_t begin, std::size_t end, T* to) {
    const T* shownBefore = nullptr; // the line of src that the line before in dst shows
    for (std::size_t k = begin; k < end; ++k) {
        for (std::size_t j = 0; j < middle.extent; ++j, to += lineExtent) {
            if (!z.Holds(k) || !middle.Holds(j)) {
                std::fill(to, to + lineExtent, T());
                shownBefore = nullptr;
                continue;
            }
            const T* const from = src + z.GetSourceIndex(k) + middle.GetSourceIndex(j);
            if (from == shownBefore)
                std::copy_n(to - lineExtent, lineExtent, to);
            else
                line.Copy(from, to);
            shownBefore = from;
        }
    }
}

std::size_t CountShown(const AxisPlan& axis) {
    return axis.indices.empty() ? 0 : static_cast<std::size_t>(axis.indices.back() - axis.indices.front()) + 1;
}

/// Whether so many voxels of src are gathered, each from a line of the cache of its own, that they come from memory:
/// then threads wait for it side by side.
bool IsWorthThreads(const AxisPlan& inner, const AxisPlan& middle, const AxisPlan& z) {
    constexpr std::size_t worthwhile = 65536;
    const auto gathered = [](const AxisPlan& axis) { return std::min(CountShown(axis), axis.indices.size()); };
    return gathered(inner) * gathered(middle) * gathered(z) >= worthwhile;
}

} // namespace

template <typename T>
void CopyToImage(const Image3d<T>& src, Image3d<T>& dst) {
    if (dst.IsEmpty())
        return;
    if (src.IsEmpty()) {
        std::fill(dst.begin(), dst.end(), T());
        return;
    }
    const Vector3d<float> srcRes = src.resolution.GetUsable().GetRes();
    const Vector3d<float> dstRes = dst.resolution.GetUsable().GetRes();
    const AxisPlan x = PlanAxis({src.offset.x, srcRes.x, src.size.x}, {dst.offset.x, dstRes.x, dst.size.x}, 1);
    const AxisPlan y = PlanAxis({src.offset.y, srcRes.y, src.size.y}, {dst.offset.y, dstRes.y, dst.size.y}, src.size.x);
    const AxisPlan z =
        PlanAxis({src.offset.z, srcRes.z, src.size.z}, {dst.offset.z, dstRes.z, dst.size.z}, src.size.x * src.size.y);

    // A frame that is one voxel wide has its lines along y, and x takes the place of y.
    const bool alongX = dst.size.x != 1;
    const AxisPlan& inner = alongX ? x : y;
    const AxisPlan& middle = alongX ? y : x;
    const LineCopier<T> line(inner);
    const auto copySlices = [&](std::size_t begin, std::size_t end) {
        CopySlices(src.begin(), line, inner.extent, middle, z, begin, end,
                   dst.begin() + begin * middle.extent * inner.extent);
    };
    if (alongX || !IsWorthThreads(inner, middle, z))
        return copySlices(0, z.extent);
    const std::size_t parts = std::min(GetThreadLimit(), z.extent);
    ForEachPart(parts, [&](std::size_t i) { copySlices(z.extent * i / parts, z.extent * (i + 1) / parts); });
}

#define KEP_INSTANTIATE(T) template void CopyToImage<T>(const Image3d<T>&, Image3d<T>&);
KEP_DISPLAY_TYPES(KEP_INSTANTIATE)

} // namespace kep
