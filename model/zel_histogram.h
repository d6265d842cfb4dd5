#pragma once

#include "model/zel_export.h"

#include <complex>
#include <cstddef>
#include <memory>

class wxString;

namespace zel {

namespace detail {

/// The bin of a value among `size` bins, by the first and the last center. There must be bins.
template <typename T>
inline std::size_t FindBin(T value, T first, T last, std::size_t size) {
    if (!(value > first)) // and not "<=", so that NaN has a bin
        return 0;
    if (value >= last)
        return size - 1;
    // Multiplied before it is divided: integers with a bin of their own each would else fall one bin low now and then.
    const double left = static_cast<double>(first);
    const double top = static_cast<double>(size - 1);
    const double position = (static_cast<double>(value) - left) * top / (static_cast<double>(last) - left);
    if (!(position > 0)) // infinite centers give NaN
        return 0;
    return position < top ? static_cast<std::size_t>(position) : size - 1;
}

} // namespace detail

template <typename T>
class HistogramPart;

/// Counts of values in equally spaced bins. A bin has a center and no edges of its own: the bin of a value follows from
/// the first and the last center alone, and is the one whose center is the value or lies next below it.
///
/// Complete for unsigned char, unsigned short, int and float. For double there are only the constructor, the
/// destructor, Init, GetBinPos, GetBin, GetLeftCenter, GetRightCenter and size; for std::complex<float>, whose parts
/// have histograms of float instead, only an empty object. Copies are deep. Indexes are not tested.
template <typename T>
class ZEL_EXPORT Histogram {
public:
    /// Without bins.
    Histogram() = default;
    /// @{
    /// Deep. @throws std::bad_alloc the assigned one is then as it was
    Histogram(const Histogram& src);
    Histogram& operator=(const Histogram& src);
    /// @}
    /// The histogram that is moved from has no bins then.
    Histogram(Histogram&& src) noexcept;
    Histogram& operator=(Histogram&& src) noexcept; ///< as the move constructor
    virtual ~Histogram() = default;

    /// Drops what there was and makes n bins with counters of 0. The centers run from min to max, both included, and
    /// are truncated toward zero where T is an integer; a single bin has its center half way between. n = 0 leaves no
    /// bins. Nothing asks for max to lie above min, nor bounds n.
    /// Takes sizeof(std::size_t) + sizeof(T) bytes a bin.
    /// @throws std::bad_alloc the histogram is then as it was
    void Init(const T& min, const T& max, std::size_t n);
    /// Sets the counters to 0 and leaves the centers.
    void Clear();
    void Swap(Histogram& other) noexcept; ///< without copying

    std::size_t size() const { return count; } ///< number of bins
    bool empty() const { return count == 0; }  ///< no bins, as at first

    /// @{
    /// Counters.
    std::size_t& operator[](std::size_t i) { return bins[i]; }
    const std::size_t& operator[](std::size_t i) const { return bins[i]; }
    std::size_t* begin() { return bins.get(); }
    const std::size_t* begin() const { return bins.get(); }
    std::size_t* end() { return bins.get() + count; }
    const std::size_t* end() const { return bins.get() + count; }
    /// @}
    /// Counter of the bin of a value. There must be bins.
    std::size_t& GetBin(const T& value) { return bins[GetBinPos(value)]; }
    const std::size_t& GetBin(const T& value) const { return bins[GetBinPos(value)]; } ///< to read

    /// Bin of a value: its place between the first and the last center, truncated. Values outside fall in the end
    /// bins, NaN in the first; only values at or above the last center are in the last. A center that had to be rounded
    /// to fit in a float may itself lie in the bin below. There must be bins.
    /// For std::complex<float> it throws the C string "Not Implemented".
    std::size_t GetBinPos(T value) const;
    T GetBinCenter(std::size_t i) const { return centers[i]; } ///< in ascending order
    /// The first and the last center. There must be bins.
    T GetLeftCenter() const { return centers[0]; }
    T GetRightCenter() const { return centers[count - 1]; } ///< the greatest one

    /// Sum of all counters.
    std::size_t GetSum() const;
    /// The lowest bin that is not zero. If all are, the last bin, size() - 1: without bins the largest number.
    std::size_t FindFirstNonZero() const;
    /// The highest bin that is not zero; 0 if all are, or without bins.
    std::size_t FindLastNonZero() const;
    /// The bin in which the counters, added up from the left, reach a share p of the whole, 0 <= p <= 1. The first bin
    /// counts always: p = 0 gives 0, and so does any p when all counters are zero. There must be bins.
    std::size_t FindLeftPercentil(double p) const;
    /// The same from the right; p = 0, or counters of zero alone, give the last bin.
    std::size_t FindRightPercentil(double p) const;

    /// The bins from that of `from` to that of `to`, whichever is the lower, both included, to be read where they are.
    /// There must be bins. Any value has a bin, NaN the first.
    HistogramPart<T> GetPart(T from, T to) const&;
    HistogramPart<T> GetPart(T from, T to) const&& = delete; // the bins would be gone

    /// Makes this histogram a copy of src.GetPart(from, to), with counters and centers. src may be this histogram.
    /// @throws std::bad_alloc the histogram is then as it was
    void CreateSubHist(const Histogram& src, T from, T to);
    /// Adds the counters bin by bin, up to the smaller of the two sizes; the centers are not looked at.
    Histogram& operator+=(const Histogram& other);
    /// The same layout: sizes, first and last centers. The counters are left out on purpose.
    bool operator==(const Histogram& other) const;

    // Files have the toolkit's names, so these two live in the viewer library, and whoever calls them links it.

    /// Reads a histogram file as Save writes it. Memory is taken only for what a file of that length can hold, where a
    /// counter takes two bytes or more, and for up to 2^25 bins in any case, as most may be zero.
    /// @return false if the file can't be read or is no plain file, is of another element type, holds no sound layout,
    ///         promises more counters or bins than that, or asks for more memory than there is: nothing has changed
    ///         then. Also false if a counter is wrong or missing: the layout is then the file's, with the counters read
    ///         so far.
    bool Load(const wxString& fileName);
    /// Writes a text file: the name of T; the number of bins with the first and the last one that is not zero; the
    /// first and the last center; the counters from the first to the last bin that is not zero. Centers of float have
    /// 6 digits. The file appears under its name only when it is whole; what stood there is replaced then.
    /// @return false if the file could not be written, or without bins: what stood there stays
    bool Save(const wxString& fileName) const;

private:
    friend class HistogramPart<T>;

    /// Makes room for n counters and centers, which hold no sense yet. What was there goes once there is room.
    void Allocate(std::size_t n);
    void Dispose();
    void GetCopy(const Histogram& src);

    std::size_t count = 0;
    std::unique_ptr<std::size_t[]> bins; ///< counters, none without bins
    std::unique_ptr<T[]> centers;        ///< never falling from one to the next if min <= max
};

template <typename T>
inline std::size_t Histogram<T>::GetBinPos(T value) const {
    return detail::FindBin(value, GetLeftCenter(), GetRightCenter(), count);
}
/// Throws the C string "Not Implemented": complex values have no order.
template <>
ZEL_EXPORT std::size_t Histogram<std::complex<float>>::GetBinPos(std::complex<float> value) const;

/// Some neighbouring bins of a histogram, read where they are: what CreateSubHist would copy, and the same numbers. It
/// owns nothing: the histogram must stay, and not be given other bins, for as long as it is read. Counters that change
/// there change here.
///
/// For the element types with all operations. Indexes are those of the part, from 0, and are not tested.
template <typename T>
class ZEL_EXPORT HistogramPart {
public:
    /// All bins of a histogram; none if it has none.
    HistogramPart(const Histogram<T>& whole)
        : counters(whole.begin()), centers(whole.centers.get()), count(whole.size()) {}

    std::size_t size() const { return count; } ///< number of bins
    bool empty() const { return count == 0; }  ///< no bins

    /// @{
    /// Counters.
    const std::size_t& operator[](std::size_t i) const { return counters[i]; }
    const std::size_t* begin() const { return counters; }
    const std::size_t* end() const { return counters + count; }
    /// @}
    /// Counter of the bin of a value. There must be bins.
    const std::size_t& GetBin(const T& value) const { return counters[GetBinPos(value)]; }

    /// The rest is as in Histogram, counted and searched in these bins alone.
    std::size_t GetBinPos(T value) const { return detail::FindBin(value, GetLeftCenter(), GetRightCenter(), count); }
    /// @{
    /// As of a histogram that has these bins alone; indexes count from the first of them.
    T GetBinCenter(std::size_t i) const { return centers[i]; }
    T GetLeftCenter() const { return centers[0]; }
    T GetRightCenter() const { return centers[count - 1]; }
    std::size_t GetSum() const;
    std::size_t FindFirstNonZero() const;
    std::size_t FindLastNonZero() const;
    std::size_t FindLeftPercentil(double p) const;
    std::size_t FindRightPercentil(double p) const;
    /// @}

private:
    friend class Histogram<T>;
    HistogramPart(const Histogram<T>& whole, std::size_t first, std::size_t number)
        : counters(whole.begin() + first), centers(whole.centers.get() + first), count(number) {}

    const std::size_t* counters;
    const T* centers;
    std::size_t count;
};

/// Element types with all operations.
#define ZEL_HISTOGRAM_TYPES(X) X(unsigned char) X(unsigned short) X(int) X(float)

#define ZEL_DECLARE(T)                                                                                                 \
    extern template class Histogram<T>;                                                                                \
    extern template class HistogramPart<T>;
ZEL_HISTOGRAM_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
