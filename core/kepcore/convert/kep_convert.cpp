#include "core/kepcore/convert/kep_convert.h"

#include "core/kepcore/convert/kep_storednumber.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace kep::detail {

namespace {

/// Voxels that are converted at once: their numbers stay in the processor's first cache on the way.
constexpr std::size_t blockVoxels = 1024;

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
