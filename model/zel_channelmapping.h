#pragma once

#include "model/zel_export.h"
#include "model/zel_histogram.h"
#include "model/zel_mappingparams.h"
#include "model/zel_stretch.h"

#include <utility>

namespace zel {

/// The state of one channel's mapping: which values count as the image's range, and the levels and thresholds from
/// which its table can be made at any time. A gray image has one of these, a colour image three, a complex one four.
///
/// The histogram that the operations ask for is the channel's, whole. They leave a channel whose histogram has no bins
/// as it is, unless they say otherwise. T is unsigned char, unsigned short, int or float.
template <typename T>
struct ZEL_EXPORT ChannelMapping {
    T rangeMin{};              ///< may lie above rangeMax where a range was asked for that the histogram doesn't have
    T rangeMax{};              ///< the other end
    GrayLevels<T> levels;      ///< from which the table is made, unless it is equalised or thresholded
    ThresParams<T> thresholds; ///< in voxel values

    /// The range of a histogram, and levels and thresholds from one end to the other. Without bins the range is that of
    /// a new TLevelsParams<T, unsigned char>.
    static ChannelMapping Of(const Histogram<T>& histogram);

    /// Takes from the range what lies below the histogram and above it. A range that lies wholly outside becomes the
    /// histogram's, and so does an end that is NaN; a range with its ends exchanged stays so.
    void NarrowRange(const Histogram<T>& histogram);

    /// The part of a histogram, which has bins, between the ends of the range, whichever of them is the lower.
    HistogramPart<T> GetPart(const Histogram<T>& histogram) const;
    /// The same as a histogram of its own.
    Histogram<T> CopyPart(const Histogram<T>& histogram) const;

    // The stretches change the levels, and not the table.

    /// The whole range. Works without bins too.
    void StretchNone() { levels = {rangeMin, rangeMax}; }
    /// Levels from the lowest value of the range that occurs to the highest.
    void StretchLinear(const Histogram<T>& histogram);
    /// The same for a colour channel: one with less than two values takes the ends of its range.
    void StretchLinearOrWhole(const Histogram<T>& histogram);
    /// @param histogram  of the channel
    /// @param fraction   of the voxels, left out at either end
    void StretchPercentil(const Histogram<T>& histogram, double fraction);
    /// Equalises the table itself. The levels are then only where a dialog begins.
    /// @return false, and nothing is changed, if the range has more bins than the table has entries
    bool Equalize(const Histogram<T>& histogram, GrayTable<T>& table);

    // Before a table is made anew, the parameters are held within the range. The ends of the range count as bin
    // numbers here and not as values: for 8 and 16 bits the two are the same as long as the histogram covers the type;
    // for int and float images they differ.

    void HoldLevels(const Histogram<T>& histogram); ///< raises inMin to the lower end and lowers inMax to the upper one
    void HoldThresholds(const Histogram<T>& histogram); ///< holds both within the ends
    /// Both, and each end of the levels on either side.
    void HoldAll(const Histogram<T>& histogram);

    /// Whether thresholds make a difference. At the ends of the range they don't: the channel is not thresholded then.
    bool IsThresholdedBy(const ThresParams<T>& params) const { return params != ThresParams<T>{rangeMin, rangeMax}; }

private:
    std::pair<T, T> GetRangeInBins(const Histogram<T>& histogram) const;
};

#define ZEL_DECLARE(T) extern template struct ChannelMapping<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
