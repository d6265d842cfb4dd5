#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_rgb.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

/// Types of keys and outputs that tables exist for; X is called with each pair.
#define KEP_TABLE_TYPES(X)                                                                                             \
    X(unsigned char, unsigned char)                                                                                    \
    X(unsigned short, unsigned char)                                                                                   \
    X(int, unsigned char)                                                                                              \
    X(float, unsigned char)                                                                                            \
    X(unsigned char, kep::RGB_generic<unsigned char>)

namespace kep {

/// A look-up table from voxel values, the keys, to outputs.
///
/// The n entries stand for keys spread evenly from the first to the last: entry i for first + i * (last - first) /
/// (n - 1). A key is looked up at the nearest entry; whole numbers with one entry each are looked up exactly. Keys
/// below the first get the first entry, keys above the last one the last, NaN the first.
template <typename T, typename U>
class KEP_EXPORT LUT {
public:
    /// Without entries.
    LUT() = default;
    /// @{
    /// Deep.
    LUT(const LUT&) = default;
    LUT& operator=(const LUT&) = default;
    /// @}
    /// The table that is moved from has no entries then.
    LUT(LUT&& src) noexcept;
    LUT& operator=(LUT&& src) noexcept; ///< as the move constructor
    ~LUT() = default;

    /// Makes a table of `size` entries for keys from `first` to `last`, all of them U(). A size below 0 counts as 0.
    /// With first == last all keys get the first entry.
    /// @throws LibException("LUT::Init(): Not enough memory for the table."): the table is then empty
    void Init(long size, T first, T last);

    /// Stores the entry of a key; keys between two entries share the nearest. An empty table stays as it is.
    /// @throws LibException("LUT::Set(): The key lies outside the table."), also for NaN
    void Set(T key, const U& value);

    /// The entry of a key; U() from an empty table. Costs a comparison or two for whole numbers, and for others a
    /// division too.
    U Get(T key) const {
        if constexpr (hasTypeSize<T>) {
            if (m_coversType)
                return m_entries[key];
        }
        return m_entries.empty() ? U() : m_entries[GetIndex(key)];
    }

    /// Entries, one for each value of T, if the table covers the type of 8 or 16 bits; else null. Valid until Init, and
    /// until the table is assigned to or moved from.
    const U* GetWholeType() const { return m_coversType ? m_entries.data() : nullptr; }

    /// The entries in the order of their keys; null without any. Valid as long.
    U* GetData() { return m_entries.data(); }
    const U* GetData() const { return m_entries.data(); } ///< to read
    /// The key that an entry stands for; between two whole numbers the one nearer to zero.
    T GetKey(std::size_t index) const { return static_cast<T>(GetPlace(index)); }

    /// Whether there are no entries: before Init, and after one that asked for none or failed.
    bool IsEmpty() const { return m_entries.empty(); }
    std::size_t GetSize() const { return m_entries.size(); } ///< number of entries
    T GetFirst() const { return m_first; }                   ///< key of the first entry
    T GetLast() const { return m_last; }                     ///< key of the last entry

    /// A straight line between two keys, and all that lies beside it.
    struct Ramp {
        T from; ///< the keys up to it give low
        T to;   ///< the keys from it on give high
        U low;  ///< the outputs, which may fall
        U high; ///< as low
    };
    /// The line that CreateGamma drew last, if its gamma was 1 and nothing was drawn over it. A hint for those who
    /// compute outputs instead of looking them up: entries that were changed by Set and GetData are not in it.
    const std::optional<Ramp>& GetRamp() const { return m_ramp; }

    /// Outputs a * key + b, rounded, held between low and high, which may fall.
    void CreateAffine(float a, float b, U low, U high) requires std::integral<U>;

    /// A curve from (from, low) to (to, high): low for keys up to `from`, high from `to` on, and between them
    /// low + (high - low) * t ^ (1 / gamma), rounded, where t goes from 0 to 1. With from == to keys above give high.
    /// from and to may come in any order, and high may lie below low. Takes well below a millisecond for 65536 entries.
    /// @throws LibException("LUT::CreateGamma(): The gamma must be a positive number."), also for infinity
    void CreateGamma(T from, T to, float gamma, U low, U high) requires std::integral<U>;

    /// Entries from that of `from` to that of `to`, both included, give high, the others low. If the interval lies
    /// outside the table, or from > to, all give low.
    void CreateThresholding(T from, T to, U low, U high) requires std::integral<U>;

private:
    template <typename Key>
    static constexpr bool hasTypeSize = std::unsigned_integral<Key> && sizeof(Key) <= 2;

    std::size_t GetIndex(T key) const {
        const std::size_t top = m_entries.size() - 1;
        if (!(key > m_first) || !(m_last > m_first))
            return 0;
        if (key >= m_last)
            return top;
        if (m_oneEach)
            return static_cast<std::size_t>(static_cast<std::int64_t>(key) - static_cast<std::int64_t>(m_first));
        const auto first = static_cast<double>(m_first);
        const double share = (static_cast<double>(key) - first) / (static_cast<double>(m_last) - first);
        const double place = share * static_cast<double>(top) + 0.5;
        return place < static_cast<double>(top) ? static_cast<std::size_t>(place) : top;
    }
    double GetPlace(std::size_t index) const;
    template <typename Curve>
    void FillByCurve(const Curve& curve);

    std::vector<U> m_entries;
    T m_first{};
    T m_last{};
    bool m_oneEach = false;    ///< the keys are whole numbers with one entry each
    bool m_coversType = false; ///< and they are all values of a type of 8 or 16 bits
    std::optional<Ramp> m_ramp;
};

#define KEP_DECLARE(T, U) extern template class LUT<T, U>;
KEP_TABLE_TYPES(KEP_DECLARE)
#undef KEP_DECLARE

} // namespace kep
