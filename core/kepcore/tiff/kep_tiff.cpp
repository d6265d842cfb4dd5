#include "core/kepcore/convert/kep_bytes.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_path.h"
#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/tiff/kep_tiffblocks.h"
#include "core/kepcore/tiff/kep_tifflayout.h"
#include "core/kepcore/tiff/kep_tifflimits.h"
#include "core/kepcore/tiff/kep_tiffmeta.h"
#include "core/kepcore/tiff/kep_tiffpages.h"
#include "core/kepcore/tiff/kep_tiffplain.h"
#include "core/kepcore/tiff/kep_tiffqueue.h"
#include "core/kepcore/tiff/kep_tiffunpack.h"
#include "core/kepcore/tiff/kep_tiffwalk.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// Below this a second thread costs more than it saves.
constexpr std::uint64_t bytesForTwoThreads = std::uint64_t{1} << 19U;

TiffScaleTags ReadScaleTags(const TiffValues& values, const TiffDirectory& directory) {
    TiffScaleTags tags;
    tags.xResolution = values.ReadFraction(directory.Find(tagXResolution));
    tags.yResolution = values.ReadFraction(directory.Find(tagYResolution));
    tags.xPosition = values.ReadFraction(directory.Find(tagXPosition));
    tags.yPosition = values.ReadFraction(directory.Find(tagYPosition));
    const std::uint64_t unit = values.ReadNumber(directory.Find(tagResolutionUnit), 0);
    tags.unit = unit <= 3 ? static_cast<int>(unit) : 0;
    return tags;
}

/// The tags that are words, and those that tell how the picture is meant where that is not the common way.
void DescribeTags(const TiffValues& values, const TiffDirectory& directory, const TiffLayout& layout,
                  std::map<std::string, std::string>& description) {
    for (const auto& [key, tag] : tiffTextTags) {
        const std::string text = ToUtf8(values.ReadText(directory.Find(tag), longestTiffText));
        if (!text.empty())
            description.insert_or_assign(key, text);
    }
    if (layout.photometric == meansMinIsWhite)
        description.insert_or_assign("photometric", "min-is-white");
    if (layout.photometric == meansMask)
        description.insert_or_assign("photometric", "mask");
    const std::uint64_t orientation = values.ReadNumber(directory.Find(tagOrientation), 1);
    if (orientation != 1)
        description.insert_or_assign("orientation", std::to_string(orientation));
}

std::vector<RGB_generic<unsigned short>> ReadPalette(const TiffValues& values, const TiffDirectory& directory,
                                                     const TiffLayout& layout) {
    if (layout.photometric != meansPalette || layout.bits > 16)
        return {};
    const std::size_t colours = std::size_t{1} << layout.bits;
    const TiffEntry entry = directory.Find(tagColourMap);
    if (entry.count < 3 * colours)
        return {};
    const std::vector<std::uint64_t> numbers = values.ReadNumbers(entry, 3 * colours);
    std::vector<RGB_generic<unsigned short>> palette(colours);
    const auto at = [&](std::size_t i) { return static_cast<unsigned short>(numbers[i]); };
    for (std::size_t i = 0; i < colours; ++i)
        palette[i] = {at(i), at(colours + i), at(2 * colours + i)};
    return palette;
}

class TiffSource final : public FrameSource {
public:
    explicit TiffSource(std::unique_ptr<InputFile> input);

    const FrameHeader& GetHeader() const override { return header; }
    void ReadSlices(std::size_t count, std::byte* to) override;

private:
    void ReadHeader();
    const TiffLayout& GetLayout(std::size_t page) const { return found.layouts[found.pages[page].layout]; }
    std::size_t GetPageBytes() const { return header.GetSliceBytes() / arrangement.channels; }

    void ReadPages(std::size_t first, std::size_t count, std::byte* to);
    void ReadPlainPages(std::size_t first, std::size_t count, std::byte* to) const;
    void DecodePages(std::size_t first, std::size_t count, std::byte* to);
    TiffBlockReader& GetReader(std::size_t i);
    void DecodeBlock(TiffBlockReader& reader, std::size_t page, std::uint32_t block, std::vector<std::byte>& scratch,
                     std::byte* to) const;

    std::unique_ptr<InputFile> file;
    TiffValues values;
    TiffPages found;
    TiffArrangement arrangement;
    FrameHeader header;
    bool isPlain = false; ///< all pages are
    std::size_t nextSlice = 0;
    std::array<std::unique_ptr<TiffBlockReader>, 2> readers;
};

TiffSource::TiffSource(std::unique_ptr<InputFile> input)
    : file(std::move(input)), values(*file), found(FindTiffPages(values)) {
    ReadHeader();
}

void TiffSource::ReadHeader() {
    const TiffLayout& layout = found.layouts.front();
    const TiffVoxels voxels = GetTiffVoxels(layout, file->GetName());
    const std::string text = values.ReadText(found.first.Find(tagDescription), longestTiffDescription);
    const TiffDescription description = ParseTiffDescription(text, GetBaseName(file->GetName()));
    arrangement = ArrangeTiffPages(values, found, voxels, description);
    isPlain = arrangement.isOneBlock || std::all_of(found.layouts.begin(), found.layouts.end(),
                                                    [](const TiffLayout& each) { return each.IsPlain(); });

    header.format = FF_TIFF;
    header.size = {layout.width, layout.height, arrangement.slices};
    header.sample = voxels.sample;
    header.components = arrangement.channels == 3 ? 3 : voxels.components;
    header.componentsAreChannels = arrangement.channels == 3 || voxels.areChannels;
    header.storedBits = static_cast<int>(layout.bits);
    header.halfFloat = layout.format == 3 && layout.bits == 16;
    header.compression = GetCompressionName(layout.compression);
    header.fileSize = file->GetLength();
    const std::uint64_t voxelBytes = header.sample.GetSampleBytes() * static_cast<unsigned>(header.components);
    const auto bytes = Multiply({layout.width, layout.height, voxelBytes, arrangement.slices});
    if (!bytes || *bytes > mostVoxelBytes)
        ThrowDamaged(file->GetName(), "it promises more than 2^40 bytes of voxels");

    const TiffPlace place = FindTiffPlace(ReadScaleTags(values, found.first), description, arrangement.slices);
    header.resolution = place.resolution;
    header.offset = place.offset;
    header.description = description.entries;
    for (auto& [key, value] : header.description)
        value.resize(FindUtf8Cut(value, longestTiffText));
    DescribeTags(values, found.first, layout, header.description);
    if (header.components == 1)
        header.palette = ReadPalette(values, found.first, layout);
}

void TiffSource::ReadSlices(std::size_t count, std::byte* to) {
    if (arrangement.channels == 1) {
        ReadPages(nextSlice, count, to);
        nextSlice += count;
        return;
    }
    const std::size_t pageBytes = GetPageBytes();
    const std::size_t sampleBytes = header.sample.GetSampleBytes();
    const PackedSamples samples{static_cast<unsigned>(sampleBytes * 8), false};
    std::vector<std::byte> page(pageBytes);
    for (std::size_t i = 0; i < count; ++i, ++nextSlice) {
        for (std::size_t c = 0; c < arrangement.channels; ++c) {
            ReadPages(arrangement.channelsTogether ? nextSlice * arrangement.channels + c
                                                   : c * arrangement.slices + nextSlice,
                      1, page.data());
            UnpackSamples(page.data(), 0, 1, pageBytes / sampleBytes, samples,
                          to + i * header.GetSliceBytes() + c * sampleBytes, arrangement.channels);
        }
    }
}

void TiffSource::ReadPages(std::size_t first, std::size_t count, std::byte* to) {
    if (isPlain)
        ReadPlainPages(first, count, to);
    else
        DecodePages(first, count, to);
}

void TiffSource::ReadPlainPages(std::size_t first, std::size_t count, std::byte* to) const {
    const std::size_t partBytes = static_cast<std::size_t>(header.sample.bytes);
    PlainReader reader(*file, to, values.IsBigEndian() == isMachineBigEndian ? 1 : partBytes);
    if (arrangement.isOneBlock) {
        reader.Add(arrangement.blockAt + first * GetPageBytes(), count * GetPageBytes());
    } else {
        for (std::size_t i = first; i < first + count; ++i) {
            for (const TiffBlock& strip : FindBlocks(values, found, i))
                reader.Add(strip.at, strip.bytes);
        }
    }
    reader.Finish();
}

void TiffSource::DecodePages(std::size_t first, std::size_t count, std::byte* to) {
    std::vector<std::size_t> blocksOfPages(count);
    for (std::size_t i = 0; i < count; ++i)
        blocksOfPages[i] = GetLayout(first + i).GetPictureBlockCount();
    BlockQueue queue(std::move(blocksOfPages));

    const auto decode = [&](TiffBlockReader& reader, BlockQueue::End end) {
        std::vector<std::byte> scratch;
        while (const auto place = queue.Take(end))
            DecodeBlock(reader, first + place->page, place->block, scratch, to + place->page * GetPageBytes());
    };
    TiffBlockReader& reader = GetReader(0);
    const bool isPacked = GetLayout(first).compression != packedPlain;
    if (!isPacked || queue.GetCount() < 2 || GetPageBytes() * count < bytesForTwoThreads)
        return decode(reader, BlockQueue::End::Front);

    // A second thread with a handle of its own comes from the other end. It ends with this call, whatever happens.
    // Where it fails, this one goes on: a file with damage in several places is always refused for the first of them.
    TiffBlockReader& other = GetReader(1);
    std::exception_ptr failure;
    {
        std::jthread helper;
        try {
            helper = std::jthread([&] {
                try {
                    decode(other, BlockQueue::End::Back);
                } catch (...) {
                    failure = std::current_exception();
                }
            });
        } catch (const std::system_error&) { // no more threads to be had: this one does it all
        }
        try {
            decode(reader, BlockQueue::End::Front);
        } catch (...) {
            queue.Close();
            throw;
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

TiffBlockReader& TiffSource::GetReader(std::size_t i) {
    if (!readers[i])
        readers[i] = std::make_unique<TiffBlockReader>(values, found);
    return *readers[i];
}

void TiffSource::DecodeBlock(TiffBlockReader& reader, std::size_t page, std::uint32_t block,
                             std::vector<std::byte>& scratch, std::byte* to) const {
    const TiffLayout& layout = GetLayout(page);
    const std::uint32_t across = layout.GetBlocksAcross();
    const std::uint32_t down = layout.GetBlocksDown();
    const std::uint32_t plane = block / (across * down);
    const std::uint32_t row = block / across % down;
    const std::uint64_t x = std::uint64_t{block % across} * layout.blockWidth;
    const std::uint64_t y = std::uint64_t{row} * layout.blockHeight;
    const std::size_t rowBytes = layout.GetRowBytes();

    // Components of this page's pixels: one in pages that are channels.
    const unsigned components = layout.samples - layout.extraSamples;
    const std::size_t sampleBytes = header.sample.GetSampleBytes();
    const std::size_t pageRow = std::size_t{layout.width} * components * sampleBytes;
    const PackedSamples packed{layout.bits, header.halfFloat};
    const bool isCopy = packed.GetUnpackedBytes() * 8 == layout.bits && layout.GetSamplesTogether() == components;
    if (isCopy && !layout.isTiled && !layout.planesApart)
        return reader.Read(page, block, to + y * pageRow);

    scratch.resize(layout.GetBlockBytes(block));
    reader.Read(page, block, scratch.data());
    const std::size_t width = std::min<std::uint64_t>(layout.blockWidth, layout.width - x);
    const std::size_t height = std::min<std::uint64_t>(layout.GetBlockRows(row), layout.height - y);
    const unsigned together = layout.GetSamplesTogether();
    for (std::size_t r = 0; r < height; ++r) {
        const std::byte* const from = scratch.data() + r * rowBytes;
        std::byte* const at = to + (y + r) * pageRow + x * components * sampleBytes;
        if (isCopy) {
            UnpackSamples(from, 0, 1, width * components, packed, at, 1);
            continue;
        }
        const unsigned firstComponent = layout.planesApart ? plane : 0;
        const unsigned endComponent = layout.planesApart ? plane + 1 : components;
        for (unsigned c = firstComponent; c < endComponent; ++c)
            UnpackSamples(from, c - firstComponent, together, width, packed, at + c * sampleBytes, components);
    }
}

} // namespace

bool LooksLikeTiff(const unsigned char* head, std::size_t bytes) {
    constexpr std::array<std::array<unsigned char, 4>, 4> marks{
        {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}}};
    return bytes >= 4 && std::any_of(marks.begin(), marks.end(),
                                     [head](const auto& mark) { return std::memcmp(mark.data(), head, 4) == 0; });
}

std::unique_ptr<FrameSource> OpenTiffFrame(std::unique_ptr<InputFile> file) {
    return std::make_unique<TiffSource>(std::move(file));
}

} // namespace kep::detail
