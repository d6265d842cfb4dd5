#include "core/kepalgo/kep_copytoimage.h"

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
        int index = VoxelIndexAt(place, tolerance);
        const bool onFarFace = index >= 0 && static_cast<std::size_t>(index) == src.extent &&
                               place <= static_cast<double>(src.extent) + tolerance;
        if (dst.extent == 1 && onFarFace)
            --index; // the cut may lie there, and shows the last layer
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

/// Copies the lines of dst along one axis.
template <typename T>
class LineCopier {
public:
    explicit LineCopier(const AxisPlan& axis) : plan(axis) {
        if (plan.indices.empty())
            return;
        const std::size_t span = static_cast<std::size_t>(plan.indices.back() - plan.indices.front());
        consecutive = plan.stride == 1 && span + 1 == plan.indices.size() && IsRising();
        if (plan.stride != 1)
            FindDistinct();
    }

    /// @param src  the voxel with index 0 of the line in src
    /// @param dst  plan.extent voxels
    void Copy(const T* src, T* dst) {
        std::fill(dst, dst + plan.first, T());
        T* const inside = dst + plan.first;
        const std::size_t count = plan.indices.size();
        if (consecutive) {
            std::copy_n(src + plan.indices.front(), count, inside);
        } else if (distinct.empty()) {
            for (std::size_t i = 0; i < count; ++i)
                inside[i] = src[plan.indices[i]];
        } else {
            // Voxels a row apart each lie in a cache line of their own: fetch each once, in a loop that waits for
            // nothing else, and spread them from there.
            for (std::size_t i = 0; i < distinct.size(); ++i)
                gathered[i] = src[distinct[i]];
            for (std::size_t i = 0; i < count; ++i)
                inside[i] = gathered[static_cast<std::size_t>(places[i])];
        }
        std::fill(inside + count, dst + plan.extent, T());
    }

private:
    bool IsRising() const { return std::adjacent_find(plan.indices.begin(), plan.indices.end()) == plan.indices.end(); }

    void FindDistinct() {
        places.reserve(plan.indices.size());
        for (std::size_t i = 0; i < plan.indices.size(); ++i) {
            if (i == 0 || plan.indices[i] != plan.indices[i - 1])
                distinct.push_back(static_cast<std::size_t>(plan.indices[i]) * plan.stride);
            places.push_back(static_cast<int>(distinct.size()) - 1);
        }
        gathered.resize(distinct.size());
    }

    const AxisPlan& plan;
    bool consecutive = false;          // the line of src can be copied as it stands
    std::vector<std::size_t> distinct; // the voxels of src that the line shows, where they lie apart
    std::vector<int> places;           // for each place inside src, which of them
    std::vector<T> gathered;           // their values
};

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
    LineCopier<T> line(inner);

    const T* shownBefore = nullptr; // the line of src that the line before in dst shows
    T* to = dst.begin();
    for (std::size_t k = 0; k < z.extent; ++k) {
        for (std::size_t j = 0; j < middle.extent; ++j, to += inner.extent) {
            if (!z.Holds(k) || !middle.Holds(j)) {
                std::fill(to, to + inner.extent, T());
                shownBefore = nullptr;
                continue;
            }
            const T* const from = src.begin() + z.GetSourceIndex(k) + middle.GetSourceIndex(j);
            if (from == shownBefore)
                std::copy_n(to - inner.extent, inner.extent, to);
            else
                line.Copy(from, to);
            shownBefore = from;
        }
    }
}

#define KEP_INSTANTIATE(T) template void CopyToImage<T>(const Image3d<T>&, Image3d<T>&);
KEP_DISPLAY_TYPES(KEP_INSTANTIATE)

} // namespace kep
