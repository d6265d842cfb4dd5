#include "core/kepcore/kep_tiffcodec.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <tiffio.h>

namespace kep::detail {

namespace {

constexpr std::uint64_t spareMemory = std::uint64_t{1} << 20U;
constexpr std::size_t longestMessage = 200;

} // namespace

/// libtiff reads through the one descriptor that was checked when the file was opened. Each handle has a position of
/// its own, and exceptions stop here, as libtiff's frames know none.
struct TiffCodec::Channel {
    const InputFile& file;
    std::uint64_t position = 0;
    std::string message; ///< the first error

    explicit Channel(const InputFile& source) : file(source) {}

    static tmsize_t Read(thandle_t self, void* to, tmsize_t bytes) noexcept {
        auto& channel = *static_cast<Channel*>(self);
        try {
            const std::size_t got = channel.file.ReadAt(channel.position, to, static_cast<std::size_t>(bytes));
            channel.position += got;
            return static_cast<tmsize_t>(got);
        } catch (...) {
            return -1;
        }
    }
    static tmsize_t Write(thandle_t, void*, tmsize_t) noexcept { return -1; }
    static toff_t Seek(thandle_t self, toff_t to, int whence) noexcept {
        auto& channel = *static_cast<Channel*>(self);
        const toff_t from = whence == SEEK_CUR ? channel.position : whence == SEEK_END ? channel.file.GetLength() : 0;
        channel.position = std::min<toff_t>(from + to, INT64_MAX);
        return channel.position;
    }
    static int Close(thandle_t) noexcept { return 0; }
    static toff_t GetSize(thandle_t self) noexcept { return static_cast<Channel*>(self)->file.GetLength(); }

    static int TakeError(TIFF*, void* self, const char*, const char* format, std::va_list values) noexcept {
        auto& channel = *static_cast<Channel*>(self);
        std::array<char, longestMessage + 1> text{};
        std::vsnprintf(text.data(), text.size(), format, values);
        try {
            if (channel.message.empty()) {
                channel.message = text.data();
                for (char& c : channel.message) {
                    if (c < ' ' || c > '~')
                        c = '?';
                }
                if (channel.message.empty())
                    channel.message = "unknown error";
            }
        } catch (...) {
            return 1; // the call's result still tells of the failure
        }
        return 1; // handled: libtiff's own handler, which prints, is not called
    }
    static int IgnoreWarning(TIFF*, void*, const char*, const char*, std::va_list) noexcept { return 1; }
};

TiffCodec::TiffCodec(const InputFile& source, std::uint64_t largestBlock) : channel(std::make_unique<Channel>(source)) {
    const std::uint64_t memory = std::max(source.GetLength(), largestBlock) + spareMemory;
    TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
    if (options == nullptr)
        throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, &Channel::TakeError, channel.get());
    TIFFOpenOptionsSetWarningHandlerExtR(options, &Channel::IgnoreWarning, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, static_cast<tmsize_t>(memory));
    // r: read; m: no memory map, as a file that is cut meanwhile would end the process; c: strips as they are stored;
    // h: no directory before one is asked for.
    handle = TIFFClientOpenExt(source.GetName().c_str(), "rmch", channel.get(), &Channel::Read, &Channel::Write,
                               &Channel::Seek, &Channel::Close, &Channel::GetSize, nullptr, nullptr, options);
    TIFFOpenOptionsFree(options);
    if (handle == nullptr)
        ThrowDamaged(source.GetName(), channel->message.empty() ? "its header is not sound" : channel->message);
}

TiffCodec::~TiffCodec() {
    TIFFClose(handle);
}

void TiffCodec::Fail(const std::string& where, const std::string& what) const {
    ThrowDamaged(channel->file.GetName(), "page " + std::to_string(page + 1) + where + ": " + what);
}

void TiffCodec::GoTo(std::size_t number, std::uint64_t directoryAt, const TiffLayout& pageLayout) {
    if (isOnPage && page == number)
        return;
    page = number;
    isOnPage = false;
    if (TIFFSetSubDirectory(handle, directoryAt) == 0 || !channel->message.empty())
        Fail("", channel->message.empty() ? "its directory is not sound" : channel->message);
    if (pageLayout.photometric == meansYCbCr)
        TIFFSetField(handle, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    layout = pageLayout;
    CheckLayout();
    isOnPage = true;
}

void TiffCodec::CheckLayout() const {
    const std::uint64_t blockBytes = layout.GetRowBytes() * layout.blockHeight;
    const bool isTiled = TIFFIsTiled(handle) != 0;
    const auto blocks = static_cast<std::uint64_t>(isTiled ? TIFFNumberOfTiles(handle) : TIFFNumberOfStrips(handle));
    const auto bytes = static_cast<std::uint64_t>(isTiled ? TIFFTileSize64(handle) : TIFFStripSize64(handle));
    if (isTiled != layout.isTiled || blocks != layout.GetBlockCount() || bytes != blockBytes)
        Fail("", "its directory contradicts itself");
}

void TiffCodec::ReadBlock(std::uint32_t block, std::byte* to, std::size_t bytes) {
    const auto wanted = static_cast<tmsize_t>(bytes);
    const tmsize_t got = layout.isTiled ? TIFFReadEncodedTile(handle, block, to, wanted)
                                        : TIFFReadEncodedStrip(handle, block, to, wanted);
    if (got == wanted && channel->message.empty())
        return;
    const std::uint32_t blocksOfPlane = layout.GetBlocksAcross() * layout.GetBlocksDown();
    const std::uint64_t row = std::uint64_t{block % blocksOfPlane / layout.GetBlocksAcross()} * layout.blockHeight;
    Fail(", row " + std::to_string(row),
         channel->message.empty() ? "its voxels end before they should" : channel->message);
}

} // namespace kep::detail
