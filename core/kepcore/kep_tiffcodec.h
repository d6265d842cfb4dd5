#pragma once

// Private to the library: libtiff behind a wall. It decodes one block at a time, prints nothing, and everything that
// it complains of arrives as an exception.

#include "core/kepcore/kep_file.h"
#include "core/kepcore/kep_tifflayout.h"

#include <cstddef>
#include <cstdint>
#include <memory>
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

    /// Goes to a page, at the same cost from everywhere; to the present one at none.
    /// @param number       of the directory in the file, counted from 0
    /// @param directoryAt  its position
    /// @throws IOException damaged, or libtiff sees another layout than the given one
    void GoTo(std::size_t number, std::uint64_t directoryAt, const TiffLayout& pageLayout);

    /// Decodes a block of the page: unpacked, in the machine's byte order, samples as they are stored.
    /// @param bytes  of the whole block
    /// @throws IOException damaged, when there are less
    void ReadBlock(std::uint32_t block, std::byte* to, std::size_t bytes);

private:
    struct Channel;

    void CheckLayout() const;
    [[noreturn]] void Fail(const std::string& where, const std::string& what) const;

    std::unique_ptr<Channel> channel; ///< what libtiff's callbacks know
    tiff* handle = nullptr;
    std::size_t page = 0;
    bool isOnPage = false;
    TiffLayout layout;
};

} // namespace kep::detail
