#include "core/kepcore/tiff/kep_tifflayout.h"

#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/tiff/kep_tifflimits.h"

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <limits>
#include <vector>

namespace kep::detail {

namespace {

constexpr std::uint64_t maxSamples = 4; ///< of a colour
constexpr std::uint64_t maxChannels = 0xFFFF;
constexpr std::uint64_t maxBlocks = std::uint64_t{1} << 24U;

struct Packing {
    unsigned number;
    const char* name;
    bool isRead;
    std::uint64_t expansion;
    bool predicts = false; ///< the tag of predictors counts
};
constexpr std::uint64_t faxRunsExpansion = 2560 / 12 + 1;
/// Fax pictures of differences have no bound: a white row takes a bit however wide it is. The largest of the others
/// serves them. In rows of runs the longest code has 12 bits and stands for 2560 pixels.
constexpr std::array<Packing, 19> packings{{
    {packedPlain, "none", true, 1},
    {packedFaxRuns, "CCITT RLE", true, faxRunsExpansion},
    {packedFaxGroup3, "CCITT group 3", true, 33000},
    {packedFaxGroup4, "CCITT group 4", true, 33000},
    {packedLzw, "LZW", true, 2600, true},
    {6, "old JPEG", false, 1},
    {packedJpeg, "JPEG", true, 2000},
    {packedDeflate, "deflate", true, 1040, true},
    {32766, "NeXT", false, 1},
    {32771, "CCITT RLE of words", false, 1},
    {packedPackBits, "PackBits", true, 64},
    {32809, "ThunderScan", false, 1},
    {packedOldDeflate, "deflate", true, 1040, true},
    {34676, "SGI LogLuv", false, 1},
    {34712, "JPEG 2000", false, 1},
    {34887, "LERC", false, 1},
    {packedLzma, "LZMA", true, 8000, true},
    {packedZstd, "Zstandard", true, 33000, true},
    {50001, "WebP", false, 1},
}};

const Packing* FindPacking(unsigned compression) {
    const auto* const found = std::find_if(packings.begin(), packings.end(),
                                           [=](const Packing& packing) { return packing.number == compression; });
    return found == packings.end() ? nullptr : found;
}

/// The product, or the largest number where it does not fit.
std::uint64_t MultiplyUpToLargest(std::initializer_list<std::uint64_t> factors) {
    return Multiply(factors).value_or(std::numeric_limits<std::uint64_t>::max());
}

/// A number with an upper bound, and 1 for a lower one.
std::uint32_t ReadSize(const TiffValues& values, const TiffDirectory& directory, TiffTag tag, const char* name) {
    const std::uint64_t size = values.ReadNumber(directory.Find(tag), 0);
    if (size == 0 || size > longestTiffSide)
        ThrowDamaged(values.GetFile().GetName(), "its " + std::string(name) + " is " + std::to_string(size));
    return static_cast<std::uint32_t>(size);
}

/// A number that stands once for each sample, the same for all of them.
unsigned ReadOfSamples(const TiffValues& values, const TiffDirectory& directory, TiffTag tag, unsigned samples,
                       unsigned absent, const char* name) {
    const TiffEntry entry = directory.Find(tag);
    if (!entry.IsThere())
        return absent;
    const std::vector<std::uint64_t> numbers = values.ReadNumbers(entry, samples);
    if (std::adjacent_find(numbers.begin(), numbers.end(), std::not_equal_to<>()) != numbers.end())
        ThrowNotSupported(values.GetFile().GetName(), "samples of different " + std::string(name));
    return static_cast<unsigned>(std::min<std::uint64_t>(numbers.front(), 0xFFFF));
}

/// The samples of a gray picture up to the first one that is known to be something else, such as alpha.
unsigned CountChannels(const TiffValues& values, const TiffDirectory& directory, const TiffLayout& layout) {
    constexpr std::uint64_t unspecified = 0;
    unsigned channels = layout.samples - layout.extraSamples;
    if (layout.extraSamples == 0)
        return channels;
    try {
        for (const std::uint64_t kind : values.ReadNumbers(directory.Find(tagExtraSamples), layout.extraSamples)) {
            if (kind != unspecified)
                break;
            ++channels;
        }
    } catch (const IOException&) { // the picture does not depend on a damaged tag
    }
    return channels;
}

/// Width and height of tiles, or rows of strips.
void ReadBlocks(const TiffValues& values, const TiffDirectory& directory, TiffLayout& layout) {
    const std::string& name = values.GetFile().GetName();
    layout.isTiled = directory.Find(tagTileWidth).IsThere() || directory.Find(tagTileHeight).IsThere();
    if (layout.isTiled) {
        layout.blockWidth = ReadSize(values, directory, tagTileWidth, "tiles' width");
        layout.blockHeight = ReadSize(values, directory, tagTileHeight, "tiles' height");
        const auto isTooLarge = [](std::uint32_t tile, std::uint32_t page) {
            return tile > std::max<std::uint64_t>((std::uint64_t{page} + 15) / 16 * 16, 1024);
        };
        if (isTooLarge(layout.blockWidth, layout.width) || isTooLarge(layout.blockHeight, layout.height))
            ThrowDamaged(name, "its tiles are larger than its pages");
    } else {
        const std::uint64_t rows = values.ReadNumber(directory.Find(tagRowsPerStrip), layout.height);
        if (rows == 0)
            ThrowDamaged(name, "its strips have no rows");
        layout.blockWidth = layout.width;
        layout.blockHeight = static_cast<std::uint32_t>(std::min<std::uint64_t>(rows, layout.height));
    }
    if (layout.GetBlockCount() >= maxBlocks)
        ThrowDamaged(name, "it claims " + std::to_string(layout.GetBlockCount()) + " strips or tiles a page");
}

std::string GetPhotometricName(unsigned photometric) {
    switch (photometric) {
    case 5:
        return "CMYK";
    case 8:
    case 9:
    case 10:
        return "Lab";
    case 32803:
        return "colour filter array";
    case 32844:
    case 32845:
        return "logarithmic luminance";
    default:
        return "photometric interpretation " + std::to_string(photometric);
    }
}

std::string GetFormatName(unsigned format) {
    constexpr std::array<const char*, 7> names = {"",        "unsigned",        "signed",       "float",
                                                  "unknown", "complex integer", "complex float"};
    return format < names.size() ? names[format] : "sample format " + std::to_string(format);
}

SampleType GetSampleType(const TiffLayout& layout, const std::string& fileName) {
    const unsigned bits = layout.bits;
    const auto wholeBytes = [bits](std::initializer_list<unsigned> sizes) {
        return std::find(sizes.begin(), sizes.end(), bits) != sizes.end();
    };
    switch (layout.format) {
    case 1:
    case 4:
        if (bits >= 1 && bits <= 16)
            return {NumberKind::Unsigned, bits <= 8 ? 1 : 2};
        if (bits == 24 || bits == 32 || bits == 64)
            return {NumberKind::Unsigned, bits == 64 ? 8 : 4};
        break;
    case 2:
        if (wholeBytes({8, 16, 32, 64}))
            return {NumberKind::Signed, static_cast<int>(bits / 8)};
        break;
    case 3:
        if (wholeBytes({16, 32, 64}))
            return {NumberKind::Float, bits == 64 ? 8 : 4};
        break;
    case 5:
        if (wholeBytes({16, 32, 64, 128}))
            return {NumberKind::ComplexSigned, static_cast<int>(bits / 16)};
        break;
    case 6:
        if (wholeBytes({64, 128}))
            return {NumberKind::ComplexFloat, static_cast<int>(bits / 16)};
        break;
    default:
        break;
    }
    ThrowNotSupported(fileName, std::to_string(bits) + "-bit " + GetFormatName(layout.format));
}

} // namespace

TiffLayout TiffLayout::WithAllChannels() const {
    TiffLayout layout = *this;
    if (channels > 1)
        layout.extraSamples = samples - channels;
    return layout;
}

bool TiffLayout::HasSamePicture(const TiffLayout& other) const {
    return width == other.width && height == other.height && bits == other.bits && samples == other.samples &&
           extraSamples == other.extraSamples && format == other.format && photometric == other.photometric;
}

std::uint64_t TiffLayout::GetBlockCount() const {
    return MultiplyUpToLargest({GetBlocksAcross(), GetBlocksDown(), planesApart ? samples : 1});
}

std::uint64_t TiffLayout::GetRowBytes() const {
    return (std::uint64_t{blockWidth} * GetSamplesTogether() * bits + 7) / 8;
}

std::uint32_t TiffLayout::GetBlockRows(std::uint32_t blockDown) const {
    return isTiled ? blockHeight : std::min(blockHeight, height - blockDown * blockHeight);
}

std::uint64_t TiffLayout::GetBlockBytes(std::size_t block) const {
    const auto down = static_cast<std::uint32_t>(block / GetBlocksAcross() % GetBlocksDown());
    return GetRowBytes() * GetBlockRows(down);
}

std::uint64_t TiffLayout::GetPictureBlockCount() const {
    return GetBlockCount() / (planesApart ? samples : 1) * (planesApart ? samples - extraSamples : 1);
}

std::size_t TiffLayout::GetNumberBytes() const {
    if (bits % 8 != 0)
        return 1;
    const bool isComplex = format == 5 || format == 6;
    return isComplex ? bits / 16 : bits / 8;
}

std::uint64_t TiffLayout::GetPageBytes() const {
    if (isTiled)
        return MultiplyUpToLargest({GetBlockCount(), GetRowBytes(), blockHeight});
    return MultiplyUpToLargest({GetRowBytes(), height, planesApart ? samples : 1});
}

bool TiffLayout::IsPlain() const {
    const bool wholeNumbers = bits == 8 || bits == 16 || bits == 32 || bits == 64 || bits == 128;
    const bool half = format == 3 && bits == 16;
    return compression == packedPlain && !isTiled && (!planesApart || samples == 1) && extraSamples == 0 &&
           wholeNumbers && !half && !bitsReversed;
}

TiffLayout ReadTiffLayout(const TiffValues& values, const TiffDirectory& directory) {
    const std::string& name = values.GetFile().GetName();
    TiffLayout layout;
    layout.compression = static_cast<unsigned>(
        std::min<std::uint64_t>(values.ReadNumber(directory.Find(tagCompression), packedPlain), 0xFFFF));
    const Packing* const packing = FindPacking(layout.compression);
    if (packing == nullptr || !packing->isRead)
        ThrowNotSupported(name, "compression " + GetCompressionName(layout.compression));

    layout.width = ReadSize(values, directory, tagWidth, "width");
    layout.height = ReadSize(values, directory, tagHeight, "height");
    const std::uint64_t samples = values.ReadNumber(directory.Find(tagSamples), 1);
    if (samples == 0 || samples > maxChannels)
        ThrowNotSupported(name, std::to_string(samples) + " samples a pixel");
    layout.samples = static_cast<unsigned>(samples);
    layout.bits = ReadOfSamples(values, directory, tagBits, layout.samples, 1, "sizes");
    layout.format = ReadOfSamples(values, directory, tagSampleFormat, layout.samples, 1, "formats");

    const std::uint64_t extra = directory.Find(tagExtraSamples).count;
    layout.extraSamples = static_cast<unsigned>(std::min<std::uint64_t>(extra, layout.samples - 1));
    const std::uint64_t usual = layout.samples - layout.extraSamples >= 3 ? meansRgb : meansMinIsBlack;
    layout.photometric = static_cast<unsigned>(
        std::min<std::uint64_t>(values.ReadNumber(directory.Find(tagPhotometric), usual), 0xFFFF));
    if (layout.photometric == meansRgb || layout.photometric == meansYCbCr) {
        if (layout.samples < 3)
            ThrowDamaged(name, "its colours have " + std::to_string(layout.samples) + " components");
        layout.extraSamples = layout.samples - 3;
    } else if (layout.photometric == meansPalette) {
        layout.extraSamples = layout.samples - 1;
    } else {
        layout.channels = CountChannels(values, directory, layout);
    }
    const bool isTooMuch = layout.samples > maxSamples && (layout.channels == 1 || layout.compression == packedJpeg);
    if (isTooMuch)
        ThrowNotSupported(name, std::to_string(samples) + " samples a pixel");
    layout.planesApart = layout.samples > 1 && values.ReadNumber(directory.Find(tagPlanar), 1) == 2;
    layout.bitsReversed = values.ReadNumber(directory.Find(tagFillOrder), 1) == 2;
    if (packing->predicts)
        layout.predictor = static_cast<unsigned>(
            std::min<std::uint64_t>(values.ReadNumber(directory.Find(tagPredictor), predictsNothing), 0xFFFF));
    if (layout.compression == packedFaxGroup3)
        layout.faxIsMixed = (values.ReadNumber(directory.Find(tagT4Options), 0) & 1U) != 0;
    ReadBlocks(values, directory, layout);
    return layout;
}

bool IsReducedPage(const TiffValues& values, const TiffDirectory& directory) {
    const TiffEntry type = directory.Find(tagSubfileType);
    if (type.IsThere())
        return (values.ReadNumber(type, 0) & 1U) != 0;
    return values.ReadNumber(directory.Find(tagOldSubfileType), 0) == 2;
}

TiffVoxels GetTiffVoxels(const TiffLayout& layout, const std::string& fileName) {
    TiffVoxels voxels;
    switch (layout.photometric) {
    case meansMinIsWhite:
    case meansMinIsBlack:
    case meansMask:
        voxels.components = static_cast<int>(layout.samples - layout.extraSamples);
        voxels.areChannels = voxels.components > 1;
        break;
    case meansYCbCr:
        if (layout.compression != packedJpeg)
            ThrowNotSupported(fileName, "YCbCr that is not JPEG");
        voxels.components = 3;
        break;
    case meansRgb:
        voxels.components = 3;
        break;
    case meansPalette:
        if (layout.bits > 8 && layout.bits != 16)
            ThrowNotSupported(fileName, std::to_string(layout.bits) + "-bit palette");
        break;
    default:
        ThrowNotSupported(fileName, GetPhotometricName(layout.photometric));
    }
    voxels.sample = GetSampleType(layout, fileName);
    if (layout.photometric == meansPalette && voxels.sample.kind != NumberKind::Unsigned)
        ThrowNotSupported(fileName, GetFormatName(layout.format) + " palette");
    if (voxels.components == 3 && !voxels.areChannels && voxels.sample.IsComplex())
        ThrowNotSupported(fileName, "colour of complex numbers");
    return voxels;
}

void CheckTiffPacking(const TiffLayout& layout, const std::string& fileName) {
    const std::string bits = std::to_string(layout.bits) + "-bit ";
    const bool isFax = layout.compression >= packedFaxRuns && layout.compression <= packedFaxGroup4;
    if (isFax && (layout.bits != 1 || layout.GetSamplesTogether() != 1))
        ThrowNotSupported(fileName, std::to_string(layout.GetSamplesTogether()) + " samples of " +
                                        std::to_string(layout.bits) + " bits as " +
                                        GetCompressionName(layout.compression));
    if (layout.compression == packedJpeg && (layout.bits != 8 || layout.format == 3))
        ThrowNotSupported(fileName, bits + "JPEG");
    const bool isWhole = layout.bits == 8 || layout.bits == 16 || layout.bits == 32 || layout.bits == 64;
    const bool isKnown = layout.predictor == predictsNothing || (layout.predictor == predictsSame && isWhole) ||
                         (layout.predictor == predictsFloat && layout.format == 3);
    if (!isKnown)
        ThrowNotSupported(fileName, bits + "samples with predictor " + std::to_string(layout.predictor));
}

std::string GetCompressionName(unsigned compression) {
    const Packing* const packing = FindPacking(compression);
    return packing == nullptr ? std::to_string(compression) : packing->name;
}

std::uint64_t GetExpansion(const TiffLayout& layout) {
    if (layout.compression == packedFaxGroup3 && !layout.faxIsMixed)
        return faxRunsExpansion;
    const Packing* const packing = FindPacking(layout.compression);
    return packing == nullptr ? 1 : packing->expansion;
}

} // namespace kep::detail
