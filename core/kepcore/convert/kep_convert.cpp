#include "core/kepcore/convert/kep_convert.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace kep::detail {

namespace {

/// Voxels that are converted at once: their numbers stay in the processor's first cache on the way.
constexpr std::size_t blockVoxels = 1024;
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

using Kernel = std::size_t (*)(const void*, std::size_t, void*);

/// The kernels from one stored type, in the order of Channel.
template <typename From>
constexpr std::array<Kernel, 7> kernelsFrom{CarryAll<From, unsigned char>, CarryAll<From, unsigned short>,
                                            CarryAll<From, int>,           CarryAll<From, unsigned long long>,
                                            CarryAll<From, float>,         CarryAll<From, double>,
                                            CarryAll<From, bool>};

struct StoredNumber {
    NumberKind kind;
    int bytes;
    const std::array<Kernel, 7>& kernels;
    std::string (*format)(const std::byte* number);
    bool (*isFraction)(const std::byte* number);
};

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

const StoredNumber& FindStoredNumber(const SampleType& sample, const std::string& name) {
    const auto found = std::find_if(storedNumbers.begin(), storedNumbers.end(), [&](const StoredNumber& stored) {
        return stored.kind == GetPartKind(sample.kind) && stored.bytes == sample.bytes;
    });
    if (found == storedNumbers.end())
        ThrowNotSupported(name, std::to_string(8 * sample.bytes) + "-bit");
    return *found;
}

/// Each number three times.
template <typename Number>
void Triple(const void* from, std::size_t count, void* to) {
    const auto* const in = static_cast<const Number*>(from);
    auto* const out = static_cast<RGB_generic<Number>*>(to);
    for (std::size_t i = 0; i < count; ++i)
        out[i] = {in[i], in[i], in[i]};
}

template <typename Number>
void AddImaginary(const void* from, std::size_t count, void* to) {
    const auto* const in = static_cast<const Number*>(from);
    auto* const out = static_cast<std::complex<Number>*>(to);
    for (std::size_t i = 0; i < count; ++i)
        out[i] = {in[i], Number{}};
}

void TellIfAnySet(const void* from, std::size_t numbersPerVoxel, std::size_t count, void* to) {
    const auto* in = static_cast<const bool*>(from);
    auto* const out = static_cast<bool*>(to);
    for (std::size_t i = 0; i < count; ++i, in += numbersPerVoxel)
        out[i] = std::any_of(in, in + numbersPerVoxel, [](bool set) { return set; });
}

/// The first component of each colour voxel.
/// @return whether the three components are equal in all of them; three NaN count as equal
template <typename Number>
bool TakeEqualComponents(const void* from, std::size_t count, void* to) {
    const auto* const in = static_cast<const RGB_generic<Number>*>(from);
    auto* const out = static_cast<Number*>(to);
    const auto areEqual = [](Number a, Number b) { return a == b || (a != a && b != b); };
    bool equal = true;
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = in[i].red;
        equal = equal && areEqual(in[i].red, in[i].green) && areEqual(in[i].red, in[i].blue);
    }
    return equal;
}

bool TakeEqualComponents(const SampleType& sample, const void* from, std::size_t count, void* to) {
    if (sample.kind == NumberKind::Float)
        return sample.bytes == 4 ? TakeEqualComponents<float>(from, count, to)
                                 : TakeEqualComponents<double>(from, count, to);
    switch (sample.bytes) {
    case 1:
        return TakeEqualComponents<std::uint8_t>(from, count, to);
    case 2:
        return TakeEqualComponents<std::uint16_t>(from, count, to);
    case 4:
        return TakeEqualComponents<std::uint32_t>(from, count, to);
    default:
        return TakeEqualComponents<std::uint64_t>(from, count, to);
    }
}

/// Moves a place on by some voxels.
VoxelPlace Advance(VoxelPlace place, std::size_t voxels, const Vector3d<std::size_t>& size) {
    const std::size_t alongX = place.x + voxels;
    const std::size_t alongY = place.y + alongX / size.x;
    return {alongX % size.x, alongY % size.y, place.z + alongY / size.y};
}

} // namespace

/// The stages of one block on the way, as many numbers as a colour voxel has.
struct VoxelConverter::Scratch {
    alignas(double) std::array<std::byte, blockVoxels * 3 * sizeof(double)> gray{};
    alignas(double) std::array<std::byte, blockVoxels * 3 * sizeof(double)> numbers{};
};

std::size_t TargetType::GetChannelBytes() const {
    constexpr std::array<std::size_t, 7> bytes{1, 2, 4, 8, 4, 8, 1}; // in the order of Channel
    return bytes[static_cast<std::size_t>(channel)];
}

SampleType GetStoredType(const TargetType& type) {
    constexpr std::array<NumberKind, 7> kinds{NumberKind::Unsigned, NumberKind::Unsigned, NumberKind::Signed,
                                              NumberKind::Unsigned, NumberKind::Float,    NumberKind::Float,
                                              NumberKind::Unsigned}; // in the order of Channel
    const NumberKind kind = kinds[static_cast<std::size_t>(type.channel)];
    return {type.shape == VoxelShape::Complex ? NumberKind::ComplexFloat : kind,
            static_cast<int>(type.GetChannelBytes())};
}

VoxelConverter::VoxelConverter(const FrameHeader& fileHeader, const TargetType& target, std::string fileName)
    : header(fileHeader), type(target), name(std::move(fileName)) {
    const bool isBool = type.channel == Channel::Bool;
    const bool isColour = header.components == 3;
    const bool isComplex = header.sample.IsComplex();
    if (header.componentsAreChannels && type.shape != VoxelShape::Colour)
        ThrowChannels(name, static_cast<std::size_t>(header.components));
    if (isComplex && !isBool && type.shape != VoxelShape::Complex)
        ThrowCannotConvert("complex");

    kernel = FindStoredNumber(header.sample, name).kernels[static_cast<std::size_t>(type.channel)];
    lookUp = !header.palette.empty() && type.shape == VoxelShape::Colour;
    if (isBool && (isColour || isComplex)) {
        numbersPerVoxel = isColour ? 3 : 2;
        after = After::TellIfAnySet;
    } else if (isComplex) {
        numbersPerVoxel = 2;
    } else if (isColour && type.shape == VoxelShape::Colour) {
        numbersPerVoxel = 3;
    } else {
        before = isColour ? Before::TakeGray : Before::Nothing;
        after = type.shape == VoxelShape::Colour    ? After::Triple
                : type.shape == VoxelShape::Complex ? After::AddImaginary
                                                    : After::Nothing;
    }
    plain = !lookUp && !isBool && before == Before::Nothing && after == After::Nothing &&
            header.sample == GetStoredType(type);
}

void VoxelConverter::Convert(const std::byte* from, const VoxelPlace& place, std::size_t count, std::byte* to) const {
    const std::size_t storedBytes = header.sample.GetSampleBytes() * static_cast<std::size_t>(header.components);
    if (plain) {
        std::memcpy(to, from, count * storedBytes);
        return;
    }
    Scratch scratch;
    for (std::size_t done = 0; done < count; done += blockVoxels) {
        const std::size_t voxels = std::min(blockVoxels, count - done);
        const std::byte* const block = from + done * storedBytes;
        std::byte* const converted = to + done * type.GetVoxelBytes();
        if (lookUp)
            LookUpColours(block, voxels, converted);
        else
            ConvertBlock(block, Advance(place, done, header.size), voxels, converted, scratch);
    }
}

void VoxelConverter::ConvertBlock(const std::byte* from, const VoxelPlace& place, std::size_t count, std::byte* to,
                                  Scratch& scratch) const {
    if (before == Before::TakeGray) {
        if (!TakeEqualComponents(header.sample, from, count, scratch.gray.data()))
            ThrowCannotConvert("colour");
        from = scratch.gray.data();
    }
    std::byte* const carried = after == After::Nothing ? to : scratch.numbers.data();
    const std::size_t fit = kernel(from, count * numbersPerVoxel, carried);
    if (fit < count * numbersPerVoxel)
        Refuse(from + fit * static_cast<std::size_t>(header.sample.bytes),
               Advance(place, fit / numbersPerVoxel, header.size));

    switch (after) {
    case After::Nothing:
        break;
    case After::Triple:
        type.channel == Channel::UChar ? Triple<unsigned char>(carried, count, to)
                                       : Triple<unsigned short>(carried, count, to);
        break;
    case After::AddImaginary:
        type.channel == Channel::Float ? AddImaginary<float>(carried, count, to)
                                       : AddImaginary<double>(carried, count, to);
        break;
    case After::TellIfAnySet:
        TellIfAnySet(carried, numbersPerVoxel, count, to);
        break;
    }
}

void VoxelConverter::LookUpColours(const std::byte* from, std::size_t count, std::byte* to) const {
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t index = 0;
        if (header.sample.bytes == 1)
            index = std::to_integer<std::uint16_t>(from[i]);
        else
            std::memcpy(&index, from + 2 * i, 2);
        if (index >= header.palette.size())
            ThrowDamaged(name, "a voxel lies outside its colour table");
        const RGB_generic<unsigned short>& colour = header.palette[index];
        if (type.channel == Channel::UShort) {
            reinterpret_cast<RGB_generic<unsigned short>*>(to)[i] = colour;
        } else {
            const auto highByte = [](unsigned short v) { return static_cast<unsigned char>(v >> 8); };
            reinterpret_cast<RGB_generic<unsigned char>*>(to)[i] = {highByte(colour.red), highByte(colour.green),
                                                                    highByte(colour.blue)};
        }
    }
}

void VoxelConverter::ThrowCannotConvert(const std::string& kind) const {
    ThrowCannotRead("", "", name, " holds " + kind + " voxels, which cannot be converted to " + type.name + ".");
}

void VoxelConverter::Refuse(const std::byte* number, const VoxelPlace& place) const {
    const StoredNumber& stored = FindStoredNumber(header.sample, name);
    const bool toWhole = type.channel != Channel::Float && type.channel != Channel::Double;
    const bool isFraction = toWhole && stored.isFraction(number);
    const std::string at =
        "(" + std::to_string(place.x) + ", " + std::to_string(place.y) + ", " + std::to_string(place.z) + ")";
    const std::string wrong = isFraction ? " is not a whole number and cannot be converted to " : " does not fit into ";
    ThrowCannotRead("The value " + stored.format(number) + " at " + at, " in ", name, wrong + type.name + ".");
}

} // namespace kep::detail
