#pragma once

#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_rgb.h"
#include "core/kepcore/kep_voxeltypes.h"
#include "model/zel_export.h"

#include <complex>
#include <cstddef>
#include <limits>

namespace mor {

namespace detail {

/// The two ends of a type's numeric limits. Of a floating-point type the lower one is the smallest positive normal
/// number and not the most negative: hosts see it in containers without frames and may test for it.
template <typename T>
struct Ends {
    static constexpr T Upper() { return std::numeric_limits<T>::max(); }
    static constexpr T Lower() { return std::numeric_limits<T>::min(); }
};
template <typename C>
struct Ends<kep::RGB_generic<C>> {
    static constexpr kep::RGB_generic<C> Upper() { return {Ends<C>::Upper(), Ends<C>::Upper(), Ends<C>::Upper()}; }
    static constexpr kep::RGB_generic<C> Lower() { return {Ends<C>::Lower(), Ends<C>::Lower(), Ends<C>::Lower()}; }
};
template <typename F>
struct Ends<std::complex<F>> {
    static constexpr std::complex<F> Upper() { return {Ends<F>::Upper(), Ends<F>::Upper()}; }
    static constexpr std::complex<F> Lower() { return {Ends<F>::Lower(), Ends<F>::Lower()}; }
};

/// Widens [min, max] to hold another range, by component. A NaN compares false and changes nothing.
template <typename T>
constexpr void Widen(T& min, T& max, const T& otherMin, const T& otherMax) {
    if (otherMin < min)
        min = otherMin;
    if (otherMax > max)
        max = otherMax;
}
template <typename C>
constexpr void Widen(kep::RGB_generic<C>& min, kep::RGB_generic<C>& max, const kep::RGB_generic<C>& otherMin,
                     const kep::RGB_generic<C>& otherMax) {
    Widen(min.red, max.red, otherMin.red, otherMax.red);
    Widen(min.green, max.green, otherMin.green, otherMax.green);
    Widen(min.blue, max.blue, otherMin.blue, otherMax.blue);
}

} // namespace detail

/// Smallest and largest voxel value, for colours by component. A new one has the values of an image without frames:
/// the upper end of T as minimum and the lower end as maximum.
template <typename T>
struct ZEL_EXPORT ExtremaValues {
    T min = detail::Ends<T>::Upper(); ///< the smallest value, by component
    T max = detail::Ends<T>::Lower(); ///< the greatest value, by component

    void SetEmpty() { *this = ExtremaValues(); } ///< as of an image without frames
    /// Lowers the minimum and raises the maximum where the other's lie beyond.
    void Merge(const ExtremaValues& other) { detail::Widen(min, max, other.min, other.max); }

    friend constexpr bool operator==(const ExtremaValues& a, const ExtremaValues& b) = default; ///< exact
};

/// Extremes of complex voxels. Real and imaginary part have theirs apart, so min need not be a voxel of the image.
template <typename F>
struct ZEL_EXPORT ExtremaValues<std::complex<F>> {
    /// The smallest real part and the smallest imaginary part.
    std::complex<F> min = detail::Ends<std::complex<F>>::Upper();
    std::complex<F> max = detail::Ends<std::complex<F>>::Lower(); ///< the greatest ones
    F amplitudeMin = detail::Ends<F>::Upper();                    ///< of sqrt(re * re + im * im)
    F amplitudeMax = detail::Ends<F>::Lower();                    ///< of the same
    F phaseMin = detail::Ends<F>::Upper();                        ///< of atan2(im, re), -pi to pi
    F phaseMax = detail::Ends<F>::Lower();                        ///< of the same

    void SetEmpty() { *this = ExtremaValues(); } ///< as of an image without frames
    /// Lowers each minimum and raises each maximum where the other's lie beyond.
    void Merge(const ExtremaValues& other) {
        F reMin = min.real(), imMin = min.imag(), reMax = max.real(), imMax = max.imag();
        detail::Widen(reMin, reMax, other.min.real(), other.max.real());
        detail::Widen(imMin, imMax, other.min.imag(), other.max.imag());
        min = {reMin, imMin};
        max = {reMax, imMax};
        detail::Widen(amplitudeMin, amplitudeMax, other.amplitudeMin, other.amplitudeMax);
        detail::Widen(phaseMin, phaseMax, other.phaseMin, other.phaseMax);
    }

    friend constexpr bool operator==(const ExtremaValues& a, const ExtremaValues& b) = default; ///< exact
};

/// Sets the extremes from the voxels of one frame: they start at its first voxel, and each voxel that lies beyond
/// replaces them. A NaN compares false: it changes nothing, but as the first voxel it stays both minimum and maximum.
/// A frame without voxels leaves the extremes as they are. One reading pass.
template <typename T>
void ComputeFrameExtremes(const kep::Image3d<T>& frame, ExtremaValues<T>& extremes);

/// Extremes of a frame whose voxels come in blocks, one behind the other: the same as ComputeFrameExtremes of them all.
template <typename T>
class ZEL_EXPORT RunningExtremes {
public:
    /// The next voxels of the frame.
    void Add(const T* first, std::size_t number);
    /// Those of all voxels so far; empty values if there were none.
    const ExtremaValues<T>& Get() const { return values; }
    std::size_t CountVoxels() const { return voxels; } ///< that have come

private:
    T start{}; ///< the first voxel, which all others are held against
    ExtremaValues<T> values;
    std::size_t voxels = 0;
};

/// Widens the extremes by those of one frame. A frame without voxels leaves them as they are. One reading pass.
template <typename T>
void MergeFrameExtremes(const kep::Image3d<T>& frame, ExtremaValues<T>& extremes);

#define ZEL_DECLARE(T)                                                                                                 \
    extern template ZEL_EXPORT void ComputeFrameExtremes<T>(const kep::Image3d<T>&, ExtremaValues<T>&);                \
    extern template ZEL_EXPORT void MergeFrameExtremes<T>(const kep::Image3d<T>&, ExtremaValues<T>&);
KEP_CONTAINER_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace mor
