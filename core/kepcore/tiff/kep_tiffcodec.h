#pragma once

// Private to the library: libtiff behind a wall. It has its own look at each page that is not plain, and decodes JPEG;
// it prints nothing, and everything that it complains of arrives as an exception.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/tiff/kep_tiffdecode.h"
#include "core/kepcore/tiff/kep_tifflayout.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct tiff;

namespace kep::detail {

/// A handle of libtiff on a file. Handles on the same file work beside each other, each in its own thread.
class TiffCodec {
public:
    /// @param source        must outlive the codec
    /// @param largestBlock  unpacked bytes; libtiff is held to not much more memory than this and the file's length
    TiffCodec(const InputFile& source, std::uint64_t largestBlock);
    ~TiffCodec();
    TiffCodec(const TiffCodec&) = delete;
    TiffCodec& operator=(const TiffCodec&) = delete;

    /// Goes to a page, at the same cost from everywhere.
    /// @param number       of the directory in the file, counted from 0
    /// @param directoryAt  its position
    /// @throws IOException damaged, or libtiff sees another layout than the given one
    void GoTo(std::size_t number, std::uint64_t directoryAt, const TiffLayout& layout);

    /// Decodes a block of the page that is a JPEG stream: samples together, as colours if it is one of colours.
    /// @param stream  its size was tested; see FindJpegSize
    /// @param block   rows of the block that are wanted; those that the stream has beyond them are left out
    /// @return what libtiff or the library behind it complains of; then the block is of no use
    std::optional<std::string> DecodeJpeg(std::uint32_t number, PackedBytes stream, BlockBytes block);

private:
    class Channel;

    void CheckLayout(const TiffLayout& layout) const;
    [[noreturn]] void Fail(const std::string& what) const;

    std::unique_ptr<Channel> channel; ///< what libtiff's callbacks know
    tiff* handle = nullptr;
    std::size_t page = 0;
};

/// What a JPEG stream says of its picture.
struct JpegSize {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// Finds it ahead of the picture's data; nothing if the stream is none or ends before.
std::optional<JpegSize> FindJpegSize(PackedBytes stream);

} // namespace kep::detail
