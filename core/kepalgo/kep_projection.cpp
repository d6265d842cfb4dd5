#include "core/kepalgo/kep_projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace kep {

namespace {

/// A colour frame is projected as a frame of three times as many numbers.
template <typename T>
struct VoxelTraits {
    using Number = T;
    static constexpr std::size_t channels = 1;
};
template <typename C>
struct VoxelTraits<RGB_generic<C>> {
    using Number = C;
    static constexpr std::size_t channels = 3;
};

template <typename T>
const auto* GetNumbers(const Image3d<T>& image) {
    return reinterpret_cast<const typename VoxelTraits<T>::Number*>(image.begin());
}
template <typename T>
auto* GetNumbers(Image3d<T>& image) {
    return reinterpret_cast<typename VoxelTraits<T>::Number*>(image.begin());
}

/// As many numbers as every processor of the target takes at once.
template <typename C>
struct Pack {
    typedef C Type __attribute__((vector_size(16)));
    static constexpr std::size_t size = sizeof(Type) / sizeof(C);

    static Type Load(const C* from) {
        Type pack;
        std::memcpy(&pack, from, sizeof pack);
        return pack;
    }
    static void Store(const Type& pack, C* to) { std::memcpy(to, &pack, sizeof pack); }
};

/// The rule of the projections: `next` takes the place of `largest` where it is strictly greater, or where `largest`
/// is no number. For numbers and packs of them.
struct ExactRule {
    template <typename V>
    static V Choose(const V& next, const V& largest) {
        return ((next > largest) | (largest != largest)) ? next : largest;
    }
};
/// The same in one instruction, for a `largest` that is never a NaN.
struct QuickRule {
    template <typename V>
    static V Choose(const V& next, const V& largest) {
        return next > largest ? next : largest;
    }
};

/// Raises the numbers of a line to those of some lines beside it, taken in order.
template <typename Rule, std::size_t Lines, typename C>
void RaiseTo(C* line, const std::array<const C*, Lines> others, std::size_t count) {
    constexpr std::size_t width = Pack<C>::size;
    constexpr std::size_t packs = 4; // a cache line
    std::size_t i = 0;
    for (; i + packs * width <= count; i += packs * width) {
        // The processor does not foresee several streams by itself. A single one it does, and is hindered then.
        if constexpr (Lines > 1) {
            for (const C* other : others) {
                // By the address, as it may lie beyond the frame, where no pointer may point.
                const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(other + i) + 512;
                __builtin_prefetch(reinterpret_cast<const void*>(ahead)); // NOLINT(performance-no-int-to-ptr)
            }
        }
#pragma GCC unroll 4
        for (std::size_t j = i; j < i + packs * width; j += width) {
            auto largest = Pack<C>::Load(line + j);
#pragma GCC unroll 4
            for (std::size_t k = 0; k < Lines; ++k)
                largest = Rule::Choose(Pack<C>::Load(others[k] + j), largest);
            Pack<C>::Store(largest, line + j);
        }
    }
    for (; i < count; ++i) {
        for (const C* other : others)
            line[i] = Rule::Choose(other[i], line[i]);
    }
}

/// Lines of numbers of equal length, one every `stride` numbers.
template <typename C>
struct Lines {
    const C* first = nullptr;
    std::size_t count = 0; ///< lines, at least 1
    std::size_t stride = 0;
    std::size_t length = 0; ///< numbers in each

    const C* operator[](std::size_t i) const { return first + i * stride; }
};

/// Corrects what the quick rule leaves open: nothing above minus infinity may mean that there was no number at all.
/// @param projected  of the lines, with minus infinity where there were only NaNs
void FinishLine(float* projected, const Lines<float>& lines) {
    constexpr float lowest = -std::numeric_limits<float>::infinity();
    if (std::find(projected, projected + lines.length, lowest) == projected + lines.length)
        return;
    std::copy_n(lines[0], lines.length, projected);
    for (std::size_t i = 1; i < lines.count; ++i)
        RaiseTo<ExactRule, 1, float>(projected, {lines[i]}, lines.length);
}

/// Where a projection of lines starts from: the first line, without NaNs.
template <typename C>
void StartLine(const Lines<C>& lines, C* projected) {
    std::copy_n(lines[0], lines.length, projected);
    if constexpr (std::is_floating_point_v<C>)
        std::replace_if(
            projected, projected + lines.length, [](C number) { return std::isnan(number); },
            -std::numeric_limits<C>::infinity());
}

/// Four lines a step halve what is read and written of the projection.
constexpr std::size_t linesAtOnce = 4;

/// Projects lines that lie far apart.
template <typename C>
void ProjectDistantLines(const Lines<C>& lines, C* projected) {
    StartLine(lines, projected);
    std::size_t i = 1;
    for (; i + linesAtOnce <= lines.count; i += linesAtOnce)
        RaiseTo<QuickRule, linesAtOnce, C>(projected, {lines[i], lines[i + 1], lines[i + 2], lines[i + 3]},
                                           lines.length);
    for (; i < lines.count; ++i)
        RaiseTo<QuickRule, 1, C>(projected, {lines[i]}, lines.length);
}

/// Projects lines that lie side by side. Lines of one memory page taken at once would confuse the processor's
/// read-ahead, so each of the four comes from a quarter of its own. Among numbers the order is all the same; among
/// floats it tells 0 from -0.
template <typename C>
void ProjectNeighbouringLines(const Lines<C>& lines, C* projected) {
    StartLine(lines, projected);
    std::size_t i = 1;
    if constexpr (!std::is_floating_point_v<C>) {
        const std::size_t quarter = lines.count / linesAtOnce;
        for (i = 0; i < quarter; ++i)
            RaiseTo<QuickRule, linesAtOnce, C>(
                projected, {lines[i], lines[quarter + i], lines[2 * quarter + i], lines[3 * quarter + i]},
                lines.length);
        i = linesAtOnce * quarter;
    }
    for (; i < lines.count; ++i)
        RaiseTo<QuickRule, 1, C>(projected, {lines[i]}, lines.length);
}

/// The largest of a row of voxels, which lie one behind the other, by channel.
template <std::size_t Channels, typename C>
std::array<C, Channels> FindLargestInRow(const C* row, std::size_t count) {
    constexpr bool isFloat = std::is_floating_point_v<C>;
    constexpr std::size_t width = Pack<C>::size;
    // Lanes of numbers side by side; a lane stays with its channel as there are three packs for colours.
    constexpr std::size_t packs = Channels == 1 ? 4 : Channels;
    std::array<C, Channels> largest;
    if constexpr (isFloat)
        largest.fill(-std::numeric_limits<C>::infinity());
    else
        std::copy_n(row, Channels, largest.begin());
    std::size_t i = 0;
    if (count >= packs * width) {
        std::array<typename Pack<C>::Type, packs> lanes;
        for (std::size_t k = 0; k < packs; ++k)
            lanes[k] = isFloat ? typename Pack<C>::Type{} + largest[0] : Pack<C>::Load(row + k * width);
        for (; i + packs * width <= count; i += packs * width) {
#pragma GCC unroll 4
            for (std::size_t k = 0; k < packs; ++k)
                lanes[k] = QuickRule::Choose(Pack<C>::Load(row + i + k * width), lanes[k]);
        }
        if constexpr (Channels == 1) {
            lanes[0] = QuickRule::Choose(lanes[1], lanes[0]);
            lanes[2] = QuickRule::Choose(lanes[3], lanes[2]);
            lanes[0] = QuickRule::Choose(lanes[2], lanes[0]);
        }
        std::array<C, (Channels == 1 ? 1 : packs) * width> ends;
        std::memcpy(ends.data(), lanes.data(), sizeof ends);
        for (std::size_t j = 0; j < ends.size(); ++j)
            largest[j % Channels] = QuickRule::Choose(ends[j], largest[j % Channels]);
    }
    for (; i < count; i += Channels) {
        for (std::size_t c = 0; c < Channels; ++c)
            largest[c] = QuickRule::Choose(row[i + c], largest[c]);
    }
    return largest;
}

/// Corrects what the lanes leave open: of 0 and -0 the first one stays, and minus infinity may mean that there was
/// no number.
float FinishRow(float largest, const float* row, std::size_t count) {
    if (largest == 0.0F)
        return *std::find(row, row + count, 0.0F);
    if (largest == -std::numeric_limits<float>::infinity() && std::find(row, row + count, largest) == row + count)
        return row[0];
    return largest;
}

/// Gives dst the shape of a projection. False if there is nothing to project.
template <typename T>
bool Prepare(const Image3d<T>& src, const Vector3d<std::size_t>& size, const Vector3d<float>& offset, Image3d<T>& dst) {
    if (src.IsEmpty())
        dst.DisposeData();
    else
        dst.MakeRoom(size.x, size.y, size.z);
    dst.offset = offset;
    dst.resolution = src.resolution;
    return !src.IsEmpty();
}

} // namespace

template <typename T>
void Get_AF_XY(const Image3d<T>& src, Image3d<T>& dst) {
    if (!Prepare(src, {src.size.x, src.size.y, 1}, {src.offset.x, src.offset.y, 0.0F}, dst))
        return;
    using Number = typename VoxelTraits<T>::Number;
    const std::size_t rowLength = src.size.x * VoxelTraits<T>::channels;
    const std::size_t slice = rowLength * src.size.y;
    Number* const projected = GetNumbers(dst);
    // Whole slices at a time, so that memory is read in its order.
    ProjectDistantLines<Number>({GetNumbers(src), src.size.z, slice, slice}, projected);
    if constexpr (std::is_same_v<T, float>) {
        for (std::size_t y = 0; y < src.size.y; ++y)
            FinishLine(projected + y * rowLength, {GetNumbers(src) + y * rowLength, src.size.z, slice, rowLength});
    }
}

template <typename T>
void Get_AF_XZ(const Image3d<T>& src, Image3d<T>& dst) {
    if (!Prepare(src, {src.size.x, 1, src.size.z}, {src.offset.x, 0.0F, src.offset.z}, dst))
        return;
    using Number = typename VoxelTraits<T>::Number;
    const std::size_t rowLength = src.size.x * VoxelTraits<T>::channels;
    for (std::size_t z = 0; z < src.size.z; ++z) {
        const Lines<Number> rows{GetNumbers(src) + z * src.size.y * rowLength, src.size.y, rowLength, rowLength};
        Number* const projected = GetNumbers(dst) + z * rowLength;
        ProjectNeighbouringLines(rows, projected);
        if constexpr (std::is_same_v<T, float>)
            FinishLine(projected, rows);
    }
}

template <typename T>
void Get_AF_YZ(const Image3d<T>& src, Image3d<T>& dst) {
    if (!Prepare(src, {1, src.size.y, src.size.z}, {0.0F, src.offset.y, src.offset.z}, dst))
        return;
    using Number = typename VoxelTraits<T>::Number;
    constexpr std::size_t channels = VoxelTraits<T>::channels;
    const std::size_t rowLength = src.size.x * channels;
    const Number* row = GetNumbers(src);
    Number* projected = GetNumbers(dst);
    for (std::size_t i = 0; i < src.size.y * src.size.z; ++i, row += rowLength, projected += channels) {
        auto largest = FindLargestInRow<channels>(row, rowLength);
        if constexpr (std::is_same_v<T, float>)
            largest[0] = FinishRow(largest[0], row, rowLength);
        std::copy_n(largest.begin(), channels, projected);
    }
}

#define KEP_INSTANTIATE(T)                                                                                             \
    template void Get_AF_XY<T>(const Image3d<T>&, Image3d<T>&);                                                        \
    template void Get_AF_XZ<T>(const Image3d<T>&, Image3d<T>&);                                                        \
    template void Get_AF_YZ<T>(const Image3d<T>&, Image3d<T>&);
KEP_GRAY_TYPES(KEP_INSTANTIATE)
KEP_COLOUR_TYPES(KEP_INSTANTIATE)

} // namespace kep
