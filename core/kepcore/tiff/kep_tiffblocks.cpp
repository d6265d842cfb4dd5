#include "core/kepcore/tiff/kep_tiffblocks.h"

#include "core/kepcore/convert/kep_bytes.h"
#include "core/kepcore/tiff/kep_tifffax.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace kep::detail {

namespace {

std::uint64_t FindLargestBlock(const TiffPages& pages) {
    std::uint64_t largest = 0;
    for (const TiffLayout& layout : pages.layouts)
        largest = std::max(largest, layout.GetRowBytes() * layout.blockHeight);
    return largest;
}

void ReverseBits(std::span<std::byte> bytes) {
    for (std::byte& byte : bytes) {
        const auto bits = std::to_integer<std::uint64_t>(byte);
        byte = static_cast<std::byte>((bits * 0x80200802U & 0x0884422110U) * 0x0101010101U >> 32U & 0xFFU);
    }
}

} // namespace

TiffBlockReader::TiffBlockReader(const TiffValues& source, const TiffPages& all)
    : values(source), pages(all), codec(source.GetFile(), FindLargestBlock(all)), current(all.pages.size()) {}

void TiffBlockReader::Fail(std::uint32_t block, const std::string& what) const {
    const TiffPage& page = pages.pages[current];
    ThrowDamaged(values.GetFile().GetName(), NameTiffBlock(page, pages.layouts[page.layout], block) + ": " + what);
}

void TiffBlockReader::GoTo(std::size_t page) {
    if (page == current)
        return;
    current = pages.pages.size();
    codec.GoTo(pages.pages[page].number, pages.pages[page].at, pages.layouts[pages.pages[page].layout]);
    blocks = FindBlocks(values, pages, page);
    current = page;
}

void TiffBlockReader::Read(std::size_t page, std::uint32_t number, std::byte* to) {
    GoTo(page);
    const TiffLayout& layout = GetLayout();
    const BlockBytes block(to, layout.GetBlockBytes(number));
    if (layout.compression == packedPlain) {
        values.GetFile().ReadVoxels(blocks[number].at, to, block.size());
        if (layout.bitsReversed)
            ReverseBits(block);
    } else {
        Unpack(number, ReadPacked(number), block);
    }
    PutInOrder(block);
}

PackedBytes TiffBlockReader::ReadPacked(std::uint32_t number) {
    // No way to pack makes more than ten times as much of anything. A file that claims it, of each of its blocks, would
    // take time without end.
    const std::uint64_t most =
        std::max<std::uint64_t>(10 * std::uint64_t{GetFullBytes(number)} + 4096, std::uint64_t{1} << 20U);
    const TiffBlock& block = blocks[number];
    packed.resize(static_cast<std::size_t>(std::min(block.bytes, most)));
    values.GetFile().ReadExactly(block.at, packed.data(), packed.size());
    if (GetLayout().bitsReversed && GetLayout().compression != packedJpeg)
        ReverseBits(packed);
    return packed;
}

void TiffBlockReader::Unpack(std::uint32_t number, PackedBytes stream, BlockBytes block) {
    const TiffLayout& layout = GetLayout();
    if (layout.compression == packedJpeg)
        return DecodeJpeg(number, stream, block);
    StreamEnd end = Decode(stream, block);
    if (end == StreamEnd::TooLate && GetFullBytes(number) > block.size()) {
        std::vector<std::byte> full(GetFullBytes(number));
        end = Decode(stream, full);
        std::memcpy(block.data(), full.data(), block.size());
    }
    switch (end) {
    case StreamEnd::Exact:
        return;
    case StreamEnd::TooEarly:
        Fail(number, "its voxels end before they should");
    case StreamEnd::TooLate:
        Fail(number, "its packed data go on behind the last voxel");
    case StreamEnd::Broken:
        Fail(number, "its " + GetCompressionName(layout.compression) + " data are not sound");
    }
}

StreamEnd TiffBlockReader::Decode(PackedBytes stream, BlockBytes block) const {
    const TiffLayout& layout = GetLayout();
    switch (layout.compression) {
    case packedFaxRuns:
        return DecodeFax(FaxCode::Runs, stream, layout.blockWidth, block);
    case packedFaxGroup3:
        return DecodeFax(layout.faxIsMixed ? FaxCode::MixedWithMarks : FaxCode::RunsWithMarks, stream,
                         layout.blockWidth, block);
    case packedFaxGroup4:
        return DecodeFax(FaxCode::Differences, stream, layout.blockWidth, block);
    case packedLzw:
        return DecodeLzw(stream, block);
    case packedPackBits:
        return DecodePackBits(stream, block);
    case packedLzma:
        return DecodeLzma(stream, block);
    case packedZstd:
        return DecodeZstd(stream, block);
    default:
        return DecodeDeflate(stream, block);
    }
}

void TiffBlockReader::DecodeJpeg(std::uint32_t number, PackedBytes stream, BlockBytes block) {
    const TiffLayout& layout = GetLayout();
    const auto size = FindJpegSize(stream);
    if (!size)
        Fail(number, "its JPEG data are not sound");
    const std::uint64_t bytes = size->height * layout.GetRowBytes();
    if (size->width != layout.blockWidth || (bytes != block.size() && bytes != GetFullBytes(number)))
        Fail(number, "its JPEG data are a picture of " + std::to_string(size->width) + " x " +
                         std::to_string(size->height) + " pixels");
    if (const auto complaint = codec.DecodeJpeg(number, stream, block))
        Fail(number, *complaint);
}

std::size_t TiffBlockReader::GetFullBytes(std::uint32_t number) const {
    const TiffLayout& layout = GetLayout();
    const bool isOneOfMany = layout.GetBlocksDown() > 1;
    return isOneOfMany ? layout.GetRowBytes() * layout.blockHeight : layout.GetBlockBytes(number);
}

void TiffBlockReader::PutInOrder(BlockBytes samples) const {
    const TiffLayout& layout = GetLayout();
    const bool swap = values.IsBigEndian() != isMachineBigEndian;
    if (layout.predictor == predictsNothing) {
        if (swap)
            SwapBytes(samples.data(), samples.size(), layout.GetNumberBytes());
        return;
    }
    const std::size_t rowBytes = layout.GetRowBytes();
    for (std::size_t at = 0; at < samples.size(); at += rowBytes) {
        const BlockBytes row = samples.subspan(at, rowBytes);
        if (layout.predictor == predictsFloat)
            AddUpFloats(row, layout.bits, layout.GetSamplesTogether());
        else
            AddUpDifferences(row, layout.bits, layout.GetSamplesTogether(), swap);
    }
}

} // namespace kep::detail
