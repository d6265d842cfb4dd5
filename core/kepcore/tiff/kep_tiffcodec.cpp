#include "core/kepcore/tiff/kep_tiffcodec.h"

#include "core/kepcore/tiff/kep_tiffchannel.h"

#include <algorithm>
#include <string_view>
#include <tiffio.h>

namespace kep::detail {

namespace {

constexpr std::uint64_t spareMemory = std::uint64_t{1} << 20U;
} // namespace

/// libtiff reads through the one descriptor that was checked when the file was opened.
class TiffCodec::Channel final : public TiffChannel {
public:
    explicit Channel(const InputFile& source) : file(source) {}

    const InputFile& GetFile() const { return file; }

protected:
    std::size_t ReadAt(std::uint64_t at, void* to, std::size_t bytes) override { return file.ReadAt(at, to, bytes); }
    void WriteAt(std::uint64_t, const void*, std::size_t) override {
        ThrowDamaged(file.GetName(), "it is not written to"); // libtiff never does where it was asked to read
    }
    std::uint64_t GetLength() const override { return file.GetLength(); }
    /// The JPEG library only warns of data that end too soon or make no sense, and puts grey in their place.
    bool IsComplaint(std::string_view module) const override { return module == "JPEGLib"; }

private:
    const InputFile& file;
};

TiffCodec::TiffCodec(const InputFile& source, std::uint64_t largestBlock) : channel(std::make_unique<Channel>(source)) {
    const std::uint64_t memory = std::max(source.GetLength(), largestBlock) + spareMemory;
    // r: read; m: no memory map, as a file that is cut meanwhile would end the process; c: strips as they are stored;
    // h: no directory before one is asked for.
    handle = channel->Open(source.GetName(), "rmch", memory);
    if (handle == nullptr)
        ThrowDamaged(source.GetName(), channel->Describe("its header is not sound"));
}

TiffCodec::~TiffCodec() {
    TIFFClose(handle);
}

void TiffCodec::Fail(const std::string& what) const {
    ThrowDamaged(channel->GetFile().GetName(), "page " + std::to_string(page + 1) + ": " + what);
}

void TiffCodec::GoTo(std::size_t number, std::uint64_t directoryAt, const TiffLayout& layout) {
    page = number;
    if (TIFFSetSubDirectory(handle, directoryAt) == 0 || channel->HasFailed())
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
    if (result == 1 && !channel->HasFailed())
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
