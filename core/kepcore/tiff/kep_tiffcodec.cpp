#include "core/kepcore/tiff/kep_tiffcodec.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <string_view>
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
    bool hasFailed = false;
    std::string message; ///< of the first failure

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

    void TakeMessage(const char* format, std::va_list values) noexcept {
        std::array<char, longestMessage + 1> text{};
        std::vsnprintf(text.data(), text.size(), format, values);
        try {
            if (message.empty()) {
                message = text.data();
                for (char& c : message) {
                    if (c < ' ' || c > '~')
                        c = '?';
                }
            }
        } catch (...) { // then it has no words
        }
        hasFailed = true;
    }

    // Both return 1 for "handled", so that libtiff's own handlers, which print, are not called.
    static int TakeError(TIFF*, void* self, const char*, const char* format, std::va_list values) noexcept {
        static_cast<Channel*>(self)->TakeMessage(format, values);
        return 1;
    }
    /// The JPEG library only warns of data that end too soon or make no sense, and puts grey in their place.
    static int TakeWarning(TIFF*, void* self, const char* module, const char* format, std::va_list values) noexcept {
        if (module != nullptr && std::string_view(module) == "JPEGLib")
            static_cast<Channel*>(self)->TakeMessage(format, values);
        return 1;
    }

    /// What was wrong, or some words where libtiff had none.
    std::string Describe(const char* otherwise) const { return message.empty() ? otherwise : message; }
};

TiffCodec::TiffCodec(const InputFile& source, std::uint64_t largestBlock) : channel(std::make_unique<Channel>(source)) {
    const std::uint64_t memory = std::max(source.GetLength(), largestBlock) + spareMemory;
    TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
    if (options == nullptr)
        throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, &Channel::TakeError, channel.get());
    TIFFOpenOptionsSetWarningHandlerExtR(options, &Channel::TakeWarning, channel.get());
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, static_cast<tmsize_t>(memory));
    // r: read; m: no memory map, as a file that is cut meanwhile would end the process; c: strips as they are stored;
    // h: no directory before one is asked for.
    handle = TIFFClientOpenExt(source.GetName().c_str(), "rmch", channel.get(), &Channel::Read, &Channel::Write,
                               &Channel::Seek, &Channel::Close, &Channel::GetSize, nullptr, nullptr, options);
    TIFFOpenOptionsFree(options);
    if (handle == nullptr)
        ThrowDamaged(source.GetName(), channel->Describe("its header is not sound"));
}

TiffCodec::~TiffCodec() {
    TIFFClose(handle);
}

void TiffCodec::Fail(const std::string& what) const {
    ThrowDamaged(channel->file.GetName(), "page " + std::to_string(page + 1) + ": " + what);
}

void TiffCodec::GoTo(std::size_t number, std::uint64_t directoryAt, const TiffLayout& layout) {
    page = number;
    if (TIFFSetSubDirectory(handle, directoryAt) == 0 || channel->hasFailed)
        Fail(channel->Describe("its directory is not sound"));
    if (layout.photometric == meansYCbCr)
        TIFFSetField(handle, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    CheckLayout(layout);
}

void TiffCodec::CheckLayout(const TiffLayout& layout) const {
    const std::uint64_t blockBytes = layout.GetRowBytes() * layout.blockHeight;
    const bool isTiled = TIFFIsTiled(handle) != 0;
    const auto blocks = static_cast<std::uint64_t>(isTiled ? TIFFNumberOfTiles(handle) : TIFFNumberOfStrips(handle));
    const auto bytes = static_cast<std::uint64_t>(isTiled ? TIFFTileSize64(handle) : TIFFStripSize64(handle));
    if (isTiled != layout.isTiled || blocks != layout.GetBlockCount() || bytes != blockBytes)
        Fail("its directory contradicts itself");
}

std::optional<std::string> TiffCodec::DecodeJpeg(std::uint32_t number, PackedBytes stream, BlockBytes block) {
    // libtiff takes the stream as one that it might change, which it does not do with JPEG.
    void* const from = const_cast<std::byte*>(stream.data());
    std::fill(block.begin(), block.end(), std::byte{0});
    const int result = TIFFReadFromUserBuffer(handle, number, from, static_cast<tmsize_t>(stream.size()), block.data(),
                                              static_cast<tmsize_t>(block.size()));
    if (result == 1 && !channel->hasFailed)
        return std::nullopt;
    return channel->Describe("its voxels end before they should");
}

std::optional<JpegSize> FindJpegSize(PackedBytes stream) {
    const auto at = [&](std::size_t i) { return std::to_integer<std::uint32_t>(stream[i]); };
    const auto number = [&](std::size_t i) { return at(i) << 8U | at(i + 1); };
    if (stream.size() < 2 || number(0) != 0xFFD8)
        return std::nullopt;
    std::size_t place = 2;
    while (stream.size() - place >= 9) { // of a marker and what is wanted of a frame's header
        if (at(place) != 0xFF)
            return std::nullopt;
        const std::uint32_t marker = at(place + 1);
        if (marker == 0xFF) { // a byte of filling
            ++place;
            continue;
        }
        const bool isFrame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame)
            return JpegSize{number(place + 7), number(place + 5)};
        const std::size_t bytes = number(place + 2); // with themselves
        if (marker == 0xDA || bytes < 2 || bytes > stream.size() - place - 2)
            return std::nullopt;
        place += 2 + bytes;
    }
    return std::nullopt;
}

} // namespace kep::detail
