#pragma once

#include "histogram/zel_histogramset.h"
#include "image/zel_image4d.h"

#include <cstddef>
#include <memory>
#include <type_traits>

namespace zel {

/// Counts voxels while they are read: made before the files of an image, it has the image's histograms when they are
/// there, and a large image opens without a second way through memory. For that the bins must be known before the
/// voxels are, so it counts unsigned char, unsigned short and their colours, and nothing of other types.
///
///     zel::ReadingHistograms<unsigned short> counts;
///     auto image = std::make_unique<mor::Image4d<unsigned short>>();
///     image->ReadSequence(names, false);
///     auto* module = counts.Hold(*image)
///         ? new zel::zel_GrayMappingModule<unsigned short>(frame, counts.Get())
///         : dynamic_cast<zel::zel_GrayMappingModule<unsigned short>*>(zel::zel_CreateMapperForType(frame, *image));
///
/// The voxels must not have been changed since.
template <typename T>
class ReadingHistograms {
public:
    /// Whether the type's voxels are counted.
    static constexpr bool counts = std::is_unsigned_v<typename HistogramSet<T>::Element>;

    /// Counts from here on what is read on this thread, see kep::VoxelVisitor.
    ReadingHistograms() {
        if constexpr (counts)
            Start();
    }
    ReadingHistograms(const ReadingHistograms&) = delete;
    ReadingHistograms& operator=(const ReadingHistograms&) = delete;

    /// Whether all voxels of an image were counted, and no others. Not so for two-valued files, boxes, channels that
    /// were put together as colours, and where something else was read besides.
    bool Hold(const mor::Image4d<T>& image) const {
        return counts && counted > 0 && counted == image.GetFrameSize() * image.GetNumFrames();
    }
    /// What was counted so far, in bins over the whole range of the type.
    const HistogramSet<T>& Get() const { return histograms; }

private:
    ZEL_EXPORT void Start();

    HistogramSet<T> histograms;
    std::size_t counted = 0;
    std::unique_ptr<kep::VoxelVisitor<T>> visitor;
};

} // namespace zel
