#pragma once

#include "image/kep.h"
#include "model/zel_export.h"
#include "model/zel_histogram.h"

#include <array>
#include <complex>
#include <cstddef>
#include <utility>

namespace zel {

namespace detail {

/// The histograms that an image with voxels of type T has: how many, and of what.
template <typename T>
struct HistogramChannels {
    using Element = T;
    static constexpr int count = 1;
};
template <typename C>
struct HistogramChannels<kep::RGB_generic<C>> {
    using Element = C;
    static constexpr int count = 3;
};
template <typename F>
struct HistogramChannels<std::complex<F>> {
    using Element = F;
    static constexpr int count = 4;
};

} // namespace detail

/// The histograms of one image: one for a gray image; red, green and blue for a colour image, of the component type;
/// real part, imaginary part, phase atan2(im, re) and amplitude sqrt(re * re + im * im), in that order, for a complex
/// image, of float. Channels are not tested.
///
/// A move is a copy: the histograms of the source stay.
template <typename T>
class ZEL_EXPORT HistogramSet {
public:
    /// 1 of gray images, 3 of colours, 4 of complex ones.
    static constexpr int channelCount = detail::HistogramChannels<T>::count;
    using Element = typename detail::HistogramChannels<T>::Element; ///< type of the values that are counted
    using Channel = Histogram<Element>;                             ///< one histogram

    /// All channels without bins.
    HistogramSet() = default;
    /// The histograms of an image, by CreateFromImage.
    explicit HistogramSet(const kep::Image3d<T>& image) { CreateFromImage(image); }
    /// @{
    /// Deep.
    HistogramSet(const HistogramSet& src) = default;
    HistogramSet& operator=(const HistogramSet& src) = default;
    /// @}

    /// Discards the old contents and counts the voxels of one frame, under a notice on the screen: that needs a running
    /// user interface. Bins and their bounds:
    /// - unsigned char and its colours: 256 from 0 to 255; unsigned short and its colours: 65536 from 0 to 65535
    /// - int: 2147483648 over the whole range of the type, which take 24 GiB
    /// - float: one for each whole number up to the largest float: there is no memory for it, and it always throws
    /// - complex: 256 in each channel between the least and the greatest value of that channel; an image without voxels
    ///   gives channels without bins
    ///
    /// Histograms of int and float images are better made from bounds of their own, with Histogram::Init and
    /// CountFrame.
    /// @throws std::bad_alloc nothing has changed then
    void CreateFromImage(const kep::Image3d<T>& image);

    /// The same with given bounds, 256 bins in each channel. Values outside fall in the end bins.
    /// @param image       one frame
    /// @param mins, maxs  four values each, in the order of the channels
    void CreateFromImage(const kep::Image3d<T>& image, const float* const mins,
                         const float* const maxs) requires(detail::HistogramChannels<T>::count == 4);

    /// No channel has bins.
    bool IsEmpty() const;
    void Swap(HistogramSet& other) noexcept; ///< without copying

    /// @{
    /// The histogram of a gray image.
    Channel& Get() requires(channelCount == 1) { return channels[0]; }
    const Channel& Get() const requires(channelCount == 1) { return channels[0]; }
    void Set(const Channel& histogram) requires(channelCount == 1) { channels[0] = histogram; }
    void Set(Channel&& histogram) noexcept requires(channelCount == 1) { channels[0] = std::move(histogram); }
    /// @}

    /// @{
    /// The histogram of a channel: 0 to channelCount - 1.
    Channel& Get(int channel) requires(channelCount > 1) { return channels[static_cast<std::size_t>(channel)]; }
    const Channel& Get(int channel) const requires(channelCount > 1) {
        return channels[static_cast<std::size_t>(channel)];
    }
    Channel& operator[](int channel) requires(channelCount > 1) { return channels[static_cast<std::size_t>(channel)]; }
    const Channel& operator[](int channel) const requires(channelCount > 1) {
        return channels[static_cast<std::size_t>(channel)];
    }
    void Set(int channel, const Channel& histogram) requires(channelCount > 1) {
        channels[static_cast<std::size_t>(channel)] = histogram;
    }
    void Set(int channel, Channel&& histogram) noexcept requires(channelCount > 1) {
        channels[static_cast<std::size_t>(channel)] = std::move(histogram);
    }
    /// @}

private:
    std::array<Channel, channelCount> channels;
};

#define ZEL_DECLARE(T) extern template class HistogramSet<T>;
KEP_DISPLAY_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
