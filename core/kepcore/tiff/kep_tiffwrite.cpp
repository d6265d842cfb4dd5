#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/tiff/kep_tifflimits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <tiffio.h>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// From here on places in the file may need more than 32 bits; the rest of 4 GiB is for the directories.
constexpr std::uint64_t bigFrom = 3'900'000'000U;
constexpr std::size_t stripBytes = std::size_t{1} << 20U;
/// Against level 6: a third of the time, and files of the same size, as the noise of a detector does not compress.
constexpr int deflateLevel = 1;
/// What a rational of a TIFF file, two numbers of 32 bits, holds with five digits and more.
constexpr float smallestRational = 2.4e-10F;
constexpr float largestRational = 4.2e9F;

/// libtiff writes through the file that appears when it is whole. Exceptions stop here, as libtiff's frames know
/// none, and are thrown again behind it.
class Channel {
public:
    explicit Channel(AtomicFile& target) : file(target) {}

    TIFF* Open(const std::string& name, const char* mode) {
        const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                       &TIFFOpenOptionsFree);
        if (!options)
            throw std::bad_alloc();
        TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &TakeError, this);
        TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &IgnoreWarning, nullptr);
        return TIFFClientOpenExt(name.c_str(), mode, this, &Read, &Write, &Seek, &Close, &GetSize, nullptr, nullptr,
                                 options.get());
    }

    /// Closing writes what was left over, and has no result of its own.
    void TestClosed(const std::string& name) const {
        if (failure || message[0] != 0)
            Fail(name);
    }

    [[noreturn]] void Fail(const std::string& name) const {
        if (failure)
            std::rethrow_exception(failure);
        ThrowCannotWrite(name, message[0] != 0 ? message.data() : "unknown error");
    }

private:
    static tmsize_t Read(thandle_t self, void* to, tmsize_t bytes) noexcept {
        auto& channel = *static_cast<Channel*>(self);
        try {
            const std::size_t got = channel.file.ReadAt(channel.position, to, static_cast<std::size_t>(bytes));
            channel.position += got;
            return static_cast<tmsize_t>(got);
        } catch (...) {
            channel.NoteFailure();
            return -1;
        }
    }
    static tmsize_t Write(thandle_t self, void* from, tmsize_t bytes) noexcept {
        auto& channel = *static_cast<Channel*>(self);
        try {
            channel.file.WriteAt(channel.position, from, static_cast<std::size_t>(bytes));
        } catch (...) {
            channel.NoteFailure();
            return -1;
        }
        channel.position += static_cast<std::uint64_t>(bytes);
        channel.length = std::max(channel.length, channel.position);
        return bytes;
    }
    static toff_t Seek(thandle_t self, toff_t to, int whence) noexcept {
        auto& channel = *static_cast<Channel*>(self);
        const toff_t from = whence == SEEK_CUR ? channel.position : whence == SEEK_END ? channel.length : 0;
        return channel.position = from + to;
    }
    static int Close(thandle_t) noexcept { return 0; }
    static toff_t GetSize(thandle_t self) noexcept { return static_cast<Channel*>(self)->length; }

    /// Keeps the exception that is being handled, if it is the first.
    void NoteFailure() noexcept {
        if (!failure)
            failure = std::current_exception();
    }

    static int TakeError(TIFF*, void* self, const char*, const char* format, std::va_list values) noexcept {
        auto& text = static_cast<Channel*>(self)->message;
        if (text[0] == 0)
            std::vsnprintf(text.data(), text.size(), format, values);
        text[0] = text[0] == 0 ? '?' : text[0];
        return 1; // handled: libtiff's own handler, which prints, is not called
    }
    static int IgnoreWarning(TIFF*, void*, const char*, const char*, std::va_list) noexcept { return 1; }

    AtomicFile& file;
    std::uint64_t position = 0;
    std::uint64_t length = 0;
    std::exception_ptr failure;
    std::array<char, 201> message{}; // the first error
};

bool HasTag(const TiffTextTag& textTag, const std::string& value) {
    constexpr std::size_t dateTimeLength = 19; // "YYYY:MM:DD HH:MM:SS", nothing else stands in this tag
    return !value.empty() && value.size() < longestTiffText && value.find('\0') == std::string::npos &&
           (textTag.tag != tagDateTime || value.size() == dateTimeLength);
}

using Entries = std::map<std::string, std::string>;

/// Splits a description into what goes into tags and what goes into the first page's description.
std::pair<Entries, Entries> SplitByTag(Entries entries) {
    Entries tagged;
    for (const TiffTextTag& textTag : tiffTextTags) {
        const auto found = entries.find(textTag.key);
        if (found != entries.end() && HasTag(textTag, found->second))
            tagged.insert(entries.extract(found));
    }
    return {std::move(tagged), std::move(entries)};
}

/// The text of the first page's description. ImageJ and others take slices, voxel size and origin from it.
std::string MakeDescription(const FrameHeader& header, const Entries& entries) {
    const Vector3d<float> res = header.resolution.GetRes();
    const std::string slices = std::to_string(header.size.z);
    std::string text = "ImageJ=1.11a\nimages=" + slices + "\nslices=" + slices + "\n";
    text += IsGoodResolution(res.x) || IsGoodResolution(res.y) || IsGoodResolution(res.z) ? "unit=micrometers\n"
                                                                                          : "unit=pixel\n";
    if (IsGoodResolution(res.z))
        text += "spacing=" + FormatNineDigits(1.0 / static_cast<double>(res.z)) + "\n";
    if (!(header.offset == Vector3d<float>())) {
        const Vector3d<float> usable = header.resolution.GetUsable().GetRes();
        const auto origin = [](float microns, float perMicron) {
            return FormatNineDigits(-static_cast<double>(microns) * static_cast<double>(perMicron)) + "\n";
        };
        text += "xorigin=" + origin(header.offset.x, usable.x) + "yorigin=" + origin(header.offset.y, usable.y) +
                "zorigin=" + origin(header.offset.z, usable.z);
    }
    return text + FormatOwnLines(res, header.offset, entries);
}

/// The texts of the first page.
struct Texts {
    std::string description;
    Entries tagged;     ///< by the description's keys
    std::string notice; ///< what is missing
};

Texts MakeTexts(const FrameHeader& header) {
    auto [tagged, others] = SplitByTag(header.description);
    DescriptionRoom room;
    room.file = "a TIFF file";
    room.bytes = longestTiffDescription - 1 - MakeDescription(header, {}).size(); // a zero byte ends it
    room.longestValue = longestTiffText;
    room.getBytes = &GetOwnLineBytes;
    FittedDescription fitted = FitDescription(others, room);
    return {MakeDescription(header, fitted.entries), std::move(tagged), std::move(fitted.notice)};
}

/// Writes pages one behind the other.
class PageWriter {
public:
    PageWriter(const std::string& fileName, const FrameToWrite& toWrite, Channel& target)
        : name(fileName), frame(toWrite), header(toWrite.header), channel(target) {
        const bool isBig = header.GetSliceBytes() * header.size.z > bigFrom;
        handle.reset(channel.Open(name, isBig ? "w8" : "w"));
        if (!handle)
            channel.Fail(name);
        hasPredictor = frame.compress && header.sample.kind != NumberKind::Float && !header.sample.IsComplex() &&
                       header.sample.bytes <= 2;
        rowBytes = header.GetSliceBytes() / header.size.y;
        rowsPerStrip = std::clamp<std::size_t>(stripBytes / rowBytes, 1, header.size.y);
        if (frame.compress)
            strip.resize(rowsPerStrip * rowBytes);
    }

    void WriteAll(const Texts& texts) {
        for (std::size_t z = 0; z < header.size.z; ++z) {
            SetLayout();
            if (z == 0)
                SetTexts(texts);
            WriteStrips(frame.voxels + z * header.GetSliceBytes());
            Test(TIFFWriteDirectory(handle.get()) == 1);
        }
    }

private:
    void Test(bool worked) const {
        if (!worked)
            channel.Fail(name);
    }

    template <typename Value>
    void Set(ttag_t tag, Value value) {
        Test(TIFFSetField(handle.get(), tag, value) == 1);
    }

    void SetLayout() {
        Set(TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(header.size.x));
        Set(TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(header.size.y));
        Set(TIFFTAG_BITSPERSAMPLE, static_cast<int>(8 * header.sample.GetSampleBytes()));
        Set(TIFFTAG_SAMPLESPERPIXEL, header.components);
        Set(TIFFTAG_SAMPLEFORMAT, GetSampleFormat());
        Set(TIFFTAG_PHOTOMETRIC, header.components == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
        Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        Set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
        Set(TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rowsPerStrip));
        Set(TIFFTAG_COMPRESSION, frame.compress ? COMPRESSION_ADOBE_DEFLATE : COMPRESSION_NONE);
        if (frame.compress)
            Set(TIFFTAG_ZIPQUALITY, deflateLevel);
        if (hasPredictor)
            Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);

        // Pixels per unit of the description, as ImageJ has it.
        const Vector3d<float> res = header.resolution.GetRes();
        if (IsGoodResolution(res.x))
            Set(TIFFTAG_XRESOLUTION, static_cast<double>(res.x));
        if (IsGoodResolution(res.y))
            Set(TIFFTAG_YRESOLUTION, static_cast<double>(res.y));
        if (IsGoodResolution(res.x) || IsGoodResolution(res.y))
            Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    }

    int GetSampleFormat() const {
        switch (header.sample.kind) {
        case NumberKind::Unsigned:
            return SAMPLEFORMAT_UINT;
        case NumberKind::Signed:
            return SAMPLEFORMAT_INT;
        case NumberKind::Float:
            return SAMPLEFORMAT_IEEEFP;
        case NumberKind::ComplexSigned:
            return SAMPLEFORMAT_COMPLEXINT;
        case NumberKind::ComplexFloat:
            break;
        }
        return SAMPLEFORMAT_COMPLEXIEEEFP;
    }

    void SetTexts(const Texts& texts) {
        Set(TIFFTAG_IMAGEDESCRIPTION, texts.description.c_str());
        for (const TiffTextTag& textTag : tiffTextTags) {
            const auto found = texts.tagged.find(textTag.key);
            if (found != texts.tagged.end())
                Set(textTag.tag, found->second.c_str());
        }
    }

    void WriteStrips(const std::byte* slice) {
        std::uint32_t number = 0;
        for (std::size_t row = 0; row < header.size.y; row += rowsPerStrip, ++number) {
            const std::size_t bytes = std::min(rowsPerStrip, header.size.y - row) * rowBytes;
            const std::byte* const from = slice + row * rowBytes;
            const auto expected = static_cast<tmsize_t>(bytes);
            if (frame.compress) {
                // A copy, as the predictor takes differences in place.
                std::copy_n(from, bytes, strip.data());
                Test(TIFFWriteEncodedStrip(handle.get(), number, strip.data(), expected) == expected);
            } else {
                // The voxels are in the file's byte order already, and libtiff only reads them.
                Test(TIFFWriteRawStrip(handle.get(), number, const_cast<std::byte*>(from), expected) == expected);
            }
        }
    }

    struct Closer {
        void operator()(TIFF* open) const { TIFFClose(open); }
    };

    const std::string& name;
    const FrameToWrite& frame;
    const FrameHeader& header;
    Channel& channel;
    std::unique_ptr<TIFF, Closer> handle;
    std::vector<std::byte> strip;
    std::size_t rowBytes = 0;
    std::size_t rowsPerStrip = 0;
    bool hasPredictor = false;
};

/// Refuses what would not come back as it was.
void TestLimits(const std::string& name, const FrameHeader& header) {
    if (std::max(header.size.x, header.size.y) > longestTiffSide || header.size.z > mostTiffPages)
        ThrowCannotWrite(name, "the image has more voxels along an axis than a TIFF file holds");
    const Vector3d<float> res = header.resolution.GetRes();
    for (const float r : {res.x, res.y}) {
        if (IsGoodResolution(r) && (r < smallestRational || r > largestRational))
            ThrowCannotWrite(name, "a TIFF file cannot hold a resolution of " +
                                       FormatNineDigits(static_cast<double>(r)) + " pixels per micron");
    }
    for (const float microns : {header.offset.x, header.offset.y, header.offset.z}) {
        if (!std::isfinite(microns))
            ThrowCannotWrite(name, "a TIFF file cannot hold an offset that is not a finite number");
    }
}

} // namespace

std::string WriteTiffFrame(const std::string& fileName, const FrameToWrite& frame) {
    TestLimits(fileName, frame.header);
    Texts texts = MakeTexts(frame.header);
    AtomicFile file(fileName);
    Channel channel(file);
    PageWriter(fileName, frame, channel).WriteAll(texts);
    channel.TestClosed(fileName);
    file.Commit();
    return std::move(texts.notice);
}

} // namespace kep::detail
