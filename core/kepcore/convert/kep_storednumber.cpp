#include "core/kepcore/convert/kep_storednumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace kep::detail {

namespace {

// One number. Each Carry says whether the number of a file can stand in memory, and gives it.

/// Two-valued: anything but 0 is set, NaN too.
template <typename From>
inline bool Carry(From v, bool& to) {
    to = v != From{};
    return true;
}

/// To a floating type: the nearest number. A finite double must not become infinite.
template <typename From, typename To>
requires std::is_floating_point_v<To>
inline bool Carry(From v, To& to) {
    if constexpr (std::is_same_v<From, double> && std::is_same_v<To, float>) {
        constexpr double rounding = 0x1.ffffffp127; // from here on the nearest float is infinity
        const bool fits = !(std::fabs(v) >= rounding) || std::isinf(v);
        to = static_cast<float>(fits ? v : 0.0);
        return fits;
    } else {
        to = static_cast<To>(v);
        return true;
    }
}

/// From one integer type to another: the same number.
template <typename From, typename To>
requires(std::is_integral_v<From>&& std::is_integral_v<To>) inline bool Carry(From v, To& to) {
    to = static_cast<To>(v);
    return std::in_range<To>(v);
}

/// From a floating type to an integer: whole numbers that fit.
template <typename From, typename To>
requires(std::is_floating_point_v<From>&& std::is_integral_v<To>) inline bool Carry(From v, To& to) {
    // Both limits are 0 or powers of two, so they are exact; the upper one is the first number that is too large.
    constexpr auto low = static_cast<From>(std::numeric_limits<To>::min());
    constexpr From high = static_cast<From>(To{1} << (std::numeric_limits<To>::digits - 1)) * From{2};
    const bool inside = v >= low && v < high;
    to = static_cast<To>(inside ? v : From{});
    return inside && static_cast<From>(to) == v;
}

template <typename From, typename To>
std::size_t CarryAll(const void* from, std::size_t count, void* to) {
    const auto* const in = static_cast<const From*>(from);
    auto* const out = static_cast<To*>(to);
    unsigned char refused = 0;
    for (std::size_t i = 0; i < count; ++i)
        refused |= static_cast<unsigned char>(!Carry(in[i], out[i]));
    if (refused == 0)
        return count;
    To unused{};
    return static_cast<std::size_t>(std::find_if(in, in + count, [&](From v) { return !Carry(v, unused); }) - in);
}

/// The kernels from one stored type, in the order of Channel.
template <typename From>
constexpr std::array<NumberKernel, 7> kernelsFrom{CarryAll<From, unsigned char>, CarryAll<From, unsigned short>,
                                                  CarryAll<From, int>,           CarryAll<From, unsigned long long>,
                                                  CarryAll<From, float>,         CarryAll<From, double>,
                                                  CarryAll<From, bool>};

/// Integers in full, floating numbers with the fewest digits that give them back.
template <typename From>
std::string FormatNumber(const std::byte* number) {
    From v{};
    std::memcpy(&v, number, sizeof(v));
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), v).ptr;
    return {text.data(), end};
}

/// Finite, but not whole.
template <typename From>
bool IsFraction(const std::byte* number) {
    From v{};
    std::memcpy(&v, number, sizeof(v));
    const auto floating = static_cast<double>(v); // exact where it matters
    return std::is_floating_point_v<From> && std::isfinite(floating) && std::trunc(floating) != floating;
}

template <typename From>
constexpr StoredNumber Store(NumberKind kind) {
    return {kind, sizeof(From), kernelsFrom<From>, FormatNumber<From>, IsFraction<From>};
}

constexpr std::array<StoredNumber, 10> storedNumbers{Store<std::uint8_t>(NumberKind::Unsigned),
                                                     Store<std::uint16_t>(NumberKind::Unsigned),
                                                     Store<std::uint32_t>(NumberKind::Unsigned),
                                                     Store<std::uint64_t>(NumberKind::Unsigned),
                                                     Store<std::int8_t>(NumberKind::Signed),
                                                     Store<std::int16_t>(NumberKind::Signed),
                                                     Store<std::int32_t>(NumberKind::Signed),
                                                     Store<std::int64_t>(NumberKind::Signed),
                                                     Store<float>(NumberKind::Float),
                                                     Store<double>(NumberKind::Float)};

/// Parts of complex voxels are carried as numbers of their own.
NumberKind GetPartKind(NumberKind kind) {
    if (kind == NumberKind::ComplexSigned)
        return NumberKind::Signed;
    return kind == NumberKind::ComplexFloat ? NumberKind::Float : kind;
}

} // namespace

const StoredNumber& FindStoredNumber(const SampleType& sample, const std::string& fileName) {
    const auto found = std::find_if(storedNumbers.begin(), storedNumbers.end(), [&](const StoredNumber& stored) {
        return stored.kind == GetPartKind(sample.kind) && stored.bytes == sample.bytes;
    });
    if (found == storedNumbers.end())
        ThrowNotSupported(fileName, std::to_string(8 * sample.bytes) + "-bit");
    return *found;
}

} // namespace kep::detail
