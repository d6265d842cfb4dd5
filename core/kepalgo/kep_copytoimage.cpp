#include "core/kepalgo/kep_copytoimage.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
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

/// One voxel several times over, as few stores write it.
template <typename T>
struct Block {
    static constexpr std::size_t size = 2;
    static void Store(const T& voxel, T* to) { to[0] = to[1] = voxel; }
};
template <typename T>
requires(std::has_single_bit(sizeof(T))) struct Block<T> {
    using Bits =
        std::conditional_t<sizeof(T) == 1, std::uint8_t,
                           std::conditional_t<sizeof(T) == 2, std::uint16_t,
                                              std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>>;
    typedef Bits Pack __attribute__((vector_size(16)));

    static constexpr std::size_t size = sizeof(Pack) / sizeof(T);
    static void Store(const T& voxel, T* to) {
        Bits bits;
        std::memcpy(&bits, &voxel, sizeof bits);
        const Pack pack = Pack{} + bits;
        std::memcpy(static_cast<void*>(to), &pack, sizeof pack);
    }
};

/// Writes each of some voxels twice.
template <typename T>
void DoubleVoxels(const T* __restrict voxels, std::size_t count, T* __restrict to) {
    std::size_t k = 0;
    if constexpr (std::is_same_v<T, RGB_generic<unsigned char>> && std::endian::native == std::endian::little) {
        // Two voxels and the first two bytes of a third are one word; voxel by voxel it takes three times as long.
        for (; k + 2 < count; k += 2) {
            std::uint64_t both;
            std::memcpy(&both, voxels + k, sizeof both);
            const std::uint64_t first = both & 0xFFFFFFU;
            const std::uint64_t second = both >> 24 & 0xFFFFFFU;
            const std::uint64_t head = first | first << 24 | second << 48;
            const auto tail = static_cast<std::uint32_t>(second >> 16 | second << 8);
            std::memcpy(static_cast<void*>(to + 2 * k), &head, sizeof head);
            std::memcpy(reinterpret_cast<unsigned char*>(to + 2 * k) + sizeof head, &tail, sizeof tail);
        }
    }
    for (; k < count; ++k) {
        to[2 * k] = voxels[k];
        to[2 * k + 1] = voxels[k];
    }
}

/// Copies the lines of dst along one axis.
template <typename T>
class LineCopier {
public:
    explicit LineCopier(const AxisPlan& axis) : plan(axis) {
        const std::vector<int>& indices = plan.indices;
        bool repeats = false;
        bool leavesOut = false;
        for (std::size_t i = 1; i < indices.size(); ++i) {
            repeats |= indices[i] == indices[i - 1];
            leavesOut |= indices[i] > indices[i - 1] + 1;
        }
        if (leavesOut)
            pattern = Pattern::Scattered;
        else if (repeats)
            FindRuns();
    }

    /// @param src  the voxel with index 0 of the line in src
    /// @param dst  plan.extent voxels
    void Copy(const T* src, T* dst) {
        T* const inside = dst + plan.first;
        const std::size_t count = plan.indices.size();
        std::fill(dst, inside, T());
        if (count != 0)
            CopyInside(src, inside, count);
        std::fill(inside + count, dst + plan.extent, T());
    }

private:
    enum class Pattern {
        Consecutive, ///< each voxel once
        Doubled,     ///< each twice, but for the first and the last
        Repeated,    ///< each several times
        Scattered    ///< anything else
    };

    void FindRuns() {
        const std::vector<int>& indices = plan.indices;
        for (std::size_t i = 0; i < indices.size(); ++i)
            if (i == 0 || indices[i] != indices[i - 1])
                runs.push_back(static_cast<int>(i));
        const std::size_t count = runs.size();
        runs.push_back(static_cast<int>(indices.size()));
        bool doubled = true;
        for (std::size_t k = 1; k + 1 < count; ++k)
            doubled = doubled && runs[k + 1] - runs[k] == 2;
        // Below about three times, a block a voxel costs more than it saves.
        pattern = doubled ? Pattern::Doubled : indices.size() >= 5 * count / 2 ? Pattern::Repeated : Pattern::Scattered;
        if (plan.stride != 1 && pattern != Pattern::Scattered)
            gathered.resize(count);
    }

    void CopyInside(const T* src, T* inside, std::size_t count) {
        const T* const voxels = src + static_cast<std::size_t>(plan.indices.front()) * plan.stride;
        switch (pattern) {
        case Pattern::Consecutive:
            if (plan.stride == 1)
                std::copy_n(voxels, count, inside);
            else
                Gather(voxels, inside, count);
            return;
        case Pattern::Scattered:
            Scatter(src, inside, count);
            return;
        case Pattern::Doubled:
        case Pattern::Repeated:
            break;
        }
        const T* line = voxels;
        if (plan.stride != 1) {
            Gather(voxels, gathered.data(), gathered.size());
            line = gathered.data();
        }
        if (pattern == Pattern::Doubled)
            Double(line, inside);
        else
            Repeat(line, inside);
    }

    /// Voxels a row apart each lie in a cache line of their own, so this loop waits for nothing else.
    void Gather(const T* voxels, T* to, std::size_t count) const {
        const std::size_t stride = plan.stride;
#pragma GCC unroll 8
        for (std::size_t i = 0; i < count; ++i)
            to[i] = voxels[i * stride];
    }

    void Scatter(const T* src, T* inside, std::size_t count) const {
        const int* const indices = plan.indices.data();
        const std::size_t stride = plan.stride;
#pragma GCC unroll 8
        for (std::size_t i = 0; i < count; ++i)
            inside[i] = src[static_cast<std::size_t>(indices[i]) * stride];
    }

    void Double(const T* voxels, T* inside) const {
        const std::size_t last = runs.size() - 2;
        std::fill(inside, inside + runs[1], voxels[0]);
        if (last > 0)
            DoubleVoxels(voxels + 1, last - 1, inside + runs[1]);
        std::fill(inside + runs[last], inside + runs[last + 1], voxels[last]);
    }

    /// Writes each voxel as often as it is shown. What a block writes too much the next one overwrites.
    void Repeat(const T* voxels, T* inside) const {
        const int* const from = runs.data();
        const std::size_t count = runs.size() - 1;
        const std::size_t end = static_cast<std::size_t>(from[count]);
        std::size_t k = 0;
        for (; k < count && static_cast<std::size_t>(from[k + 1]) + Block<T>::size <= end; ++k) {
            const T voxel = voxels[k];
            T* to = inside + from[k];
            T* const next = inside + from[k + 1];
            do {
                Block<T>::Store(voxel, to);
                to += Block<T>::size;
            } while (to < next);
        }
        for (; k < count; ++k)
            std::fill(inside + from[k], inside + from[k + 1], voxels[k]);
    }

    const AxisPlan& plan;
    Pattern pattern = Pattern::Consecutive;
    std::vector<int> runs;   // of equal voxels: where each begins, and the end of the last
    std::vector<T> gathered; // the voxels shown, if they lie apart and repeat
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
