#include "core/kepcore/tiff/kep_tiffdecode.h"

#include <algorithm>
#include <cstring>
#include <libdeflate.h>
#include <lzma.h>
#include <memory>
#include <new>
#include <zstd.h>
#include <zstd_errors.h>

namespace kep::detail {

namespace {

/// The end of a stream that was sound and gave so many bytes.
StreamEnd JudgeLength(std::size_t got, BlockBytes block) {
    return got == block.size() ? StreamEnd::Exact : StreamEnd::TooEarly;
}

} // namespace

bool IsPadding(PackedBytes rest) {
    return std::all_of(rest.begin(), rest.end(), [](std::byte byte) { return byte == std::byte{0}; });
}

StreamEnd DecodePackBits(PackedBytes stream, BlockBytes block) {
    constexpr unsigned nothing = 128;
    std::size_t at = 0;
    std::size_t done = 0;
    while (at < stream.size()) {
        if (done == block.size() && IsPadding(stream.subspan(at)))
            return StreamEnd::Exact;
        const auto code = std::to_integer<unsigned>(stream[at++]);
        if (code == nothing)
            continue;
        const bool isRun = code > nothing;
        const std::size_t count = isRun ? 257 - code : code + 1;
        if (stream.size() - at < (isRun ? 1 : count))
            return StreamEnd::TooEarly;
        if (block.size() - done < count)
            return StreamEnd::TooLate;
        if (isRun)
            std::memset(&block[done], std::to_integer<int>(stream[at]), count);
        else
            std::memcpy(&block[done], &stream[at], count);
        at += isRun ? 1 : count;
        done += count;
    }
    return JudgeLength(done, block);
}

StreamEnd DecodeDeflate(PackedBytes stream, BlockBytes block) {
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> inflater(
        libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
    if (!inflater)
        throw std::bad_alloc();
    std::size_t used = 0;
    std::size_t got = 0;
    switch (libdeflate_zlib_decompress_ex(inflater.get(), stream.data(), stream.size(), block.data(), block.size(),
                                          &used, &got)) {
    case LIBDEFLATE_SUCCESS:
        return JudgeLength(got, block);
    case LIBDEFLATE_INSUFFICIENT_SPACE:
        return StreamEnd::TooLate;
    default:
        return StreamEnd::Broken;
    }
}

StreamEnd DecodeLzma(PackedBytes stream, BlockBytes block) {
    std::uint64_t memory = std::uint64_t{1} << 27U; // twice of what the strongest level needs
    std::size_t used = 0;
    std::size_t got = 0;
    switch (lzma_stream_buffer_decode(&memory, 0, nullptr, reinterpret_cast<const std::uint8_t*>(stream.data()), &used,
                                      stream.size(), reinterpret_cast<std::uint8_t*>(block.data()), &got,
                                      block.size())) {
    case LZMA_OK:
        return JudgeLength(got, block);
    case LZMA_BUF_ERROR:
        return StreamEnd::TooLate;
    case LZMA_MEM_ERROR:
        throw std::bad_alloc();
    default:
        return StreamEnd::Broken;
    }
}

StreamEnd DecodeZstd(PackedBytes stream, BlockBytes block) {
    const std::size_t frame = ZSTD_findFrameCompressedSize(stream.data(), stream.size());
    if (ZSTD_isError(frame) != 0)
        return StreamEnd::Broken;
    const std::unique_ptr<ZSTD_DCtx, std::size_t (*)(ZSTD_DCtx*)> context(ZSTD_createDCtx(), &ZSTD_freeDCtx);
    if (!context)
        throw std::bad_alloc();
    const std::size_t got = ZSTD_decompressDCtx(context.get(), block.data(), block.size(), stream.data(), frame);
    if (ZSTD_isError(got) == 0)
        return JudgeLength(got, block);
    switch (ZSTD_getErrorCode(got)) {
    case ZSTD_error_dstSize_tooSmall:
        return StreamEnd::TooLate;
    case ZSTD_error_memory_allocation:
        throw std::bad_alloc();
    default:
        return StreamEnd::Broken;
    }
}

} // namespace kep::detail
