#include "core/kepcore/tiff/kep_tiffframe.h"

#include "core/kepcore/convert/kep_bytes.h"
#include "core/kepcore/tiff/kep_tiffblocks.h"
#include "core/kepcore/tiff/kep_tiffplain.h"
#include "core/kepcore/tiff/kep_tiffqueue.h"
#include "core/kepcore/tiff/kep_tiffunpack.h"

#include <algorithm>
#include <array>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// Below this a second thread costs more than it saves.
constexpr std::uint64_t bytesForTwoThreads = std::uint64_t{1} << 19U;

class TiffSource final : public FrameSource {
public:
    TiffSource(std::shared_ptr<const TiffContents> file, FrameHeader&& frame, TiffArrangement&& order)
        : contents(std::move(file)), arrangement(std::move(order)), header(std::move(frame)) {
        const auto isPlainPage = [this](const TiffLayout& layout) {
            return layout.IsPlain() && layout.samples == arrangement.samples;
        };
        const auto& layouts = contents->found.layouts;
        isPlain = arrangement.isOneBlock || std::all_of(layouts.begin(), layouts.end(), isPlainPage);
    }

    const FrameHeader& GetHeader() const override { return header; }
    void ReadSlices(std::size_t count, std::byte* to) override;

private:
    /// @param place  of a page among those of the frame
    std::size_t GetPage(std::size_t place) const { return arrangement.GetPage(place); }
    const TiffLayout& GetLayout(std::size_t place) const {
        return contents->found.layouts[contents->found.pages[GetPage(place)].layout];
    }
    std::size_t GetPageBytes() const { return header.GetSliceBytes() / arrangement.pagesOfSlice; }
    /// The page's blocks that hold something of the frame. They follow each other.
    std::uint32_t CountBlocks(const TiffLayout& layout) const {
        return layout.GetBlocksAcross() * layout.GetBlocksDown() * (layout.planesApart ? arrangement.samples : 1);
    }

    void ReadPages(std::size_t first, std::size_t count, std::byte* to);
    void ReadPlainPages(std::size_t first, std::size_t count, std::byte* to) const;
    void DecodePages(std::size_t first, std::size_t count, std::byte* to);
    TiffBlockReader& GetReader(std::size_t i);
    void DecodeBlock(TiffBlockReader& reader, std::size_t place, std::uint32_t block, std::vector<std::byte>& scratch,
                     std::byte* to) const;

    std::shared_ptr<const TiffContents> contents;
    TiffArrangement arrangement;
    FrameHeader header;
    bool isPlain = false; ///< all pages are
    std::size_t nextSlice = 0;
    std::array<std::unique_ptr<TiffBlockReader>, 2> readers;
};

void TiffSource::ReadSlices(std::size_t count, std::byte* to) {
    const std::size_t channels = arrangement.pagesOfSlice;
    if (channels == 1) {
        ReadPages(nextSlice, count, to);
        nextSlice += count;
        return;
    }
    const std::size_t pageBytes = GetPageBytes();
    const std::size_t sampleBytes = header.sample.GetSampleBytes();
    const PackedSamples samples{static_cast<unsigned>(sampleBytes * 8), false};
    std::vector<std::byte> page(pageBytes);
    for (std::size_t i = 0; i < count; ++i, ++nextSlice) {
        for (std::size_t c = 0; c < channels; ++c) {
            ReadPages(nextSlice * channels + c, 1, page.data());
            UnpackSamples(page.data(), 0, 1, pageBytes / sampleBytes, samples,
                          to + i * header.GetSliceBytes() + c * sampleBytes, channels);
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
    const TiffValues& values = contents->values;
    PlainReader reader(*contents->file, to, values.IsBigEndian() == isMachineBigEndian ? 1 : partBytes);
    const std::size_t bytes = GetPageBytes();
    for (std::size_t i = first; i < first + count; ++i) {
        if (arrangement.isOneBlock) {
            reader.Add(arrangement.blockAt + GetPage(i) * bytes, bytes);
            continue;
        }
        for (const TiffBlock& strip : FindBlocks(values, contents->found, GetPage(i)))
            reader.Add(strip.at, strip.bytes);
    }
    reader.Finish();
}

void TiffSource::DecodePages(std::size_t first, std::size_t count, std::byte* to) {
    std::vector<std::size_t> blocksOfPages(count);
    for (std::size_t i = 0; i < count; ++i)
        blocksOfPages[i] = CountBlocks(GetLayout(first + i));
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
        readers[i] = std::make_unique<TiffBlockReader>(contents->values, contents->found);
    return *readers[i];
}

void TiffSource::DecodeBlock(TiffBlockReader& reader, std::size_t place, std::uint32_t block,
                             std::vector<std::byte>& scratch, std::byte* to) const {
    const std::size_t page = GetPage(place);
    const TiffLayout& layout = GetLayout(place);
    const std::uint32_t across = layout.GetBlocksAcross();
    const std::uint32_t down = layout.GetBlocksDown();
    const std::uint32_t plane = block / (across * down); // of those that are read
    const std::uint32_t row = block / across % down;
    const std::uint64_t x = std::uint64_t{block % across} * layout.blockWidth;
    const std::uint64_t y = std::uint64_t{row} * layout.blockHeight;
    const std::size_t rowBytes = layout.GetRowBytes();

    if (layout.planesApart)
        block += arrangement.firstSample * across * down;

    // Of this page's pixels: one in pages that are channels.
    const unsigned components = arrangement.samples;
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
        if (layout.planesApart) {
            UnpackSamples(from, 0, 1, width, packed, at + plane * sampleBytes, components);
            continue;
        }
        for (unsigned c = 0; c < components; ++c)
            UnpackSamples(from, arrangement.firstSample + c, together, width, packed, at + c * sampleBytes, components);
    }
}

} // namespace

std::unique_ptr<FrameSource> MakeTiffFrame(std::shared_ptr<const TiffContents> contents, FrameHeader&& header,
                                           TiffArrangement&& arrangement) {
    return std::make_unique<TiffSource>(std::move(contents), std::move(header), std::move(arrangement));
}

} // namespace kep::detail
