#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/pack/kep_deflate.h"
#include "core/kepcore/pack/kep_inorder.h"
#include "core/kepcore/tiff/kep_tiffchannel.h"
#include "core/kepcore/tiff/kep_tifflimits.h"
#include "core/kepcore/tiff/kep_tiffpredictor.h"
#include "core/kepcore/tiff/kep_tifftexts.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <span>
#include <string_view>
#include <tiffio.h>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// From here on places in the file may need more than 32 bits; the rest of 4 GiB is for the directories.
constexpr std::uint64_t bigFrom = 3'900'000'000U;
constexpr std::size_t stripBytes = std::size_t{1} << 20U;
/// What a rational of a TIFF file, two numbers of 32 bits, holds with five digits and more.
constexpr float smallestRational = 2.4e-10F;
constexpr float largestRational = 4.2e9F;

/// libtiff writes through the file that appears when it is whole.
class Channel final : public TiffChannel {
public:
    explicit Channel(AtomicFile& target) : file(target) {}

    /// Closing writes what was left over, and has no result of its own.
    void TestClosed(const std::string& name) const {
        if (GetFailure() || HasFailed())
            Fail(name);
    }

    [[noreturn]] void Fail(const std::string& name) const {
        if (GetFailure())
            std::rethrow_exception(GetFailure());
        ThrowCannotWrite(name, Describe("unknown error"));
    }

protected:
    std::size_t ReadAt(std::uint64_t at, void* to, std::size_t bytes) override { return file.ReadAt(at, to, bytes); }
    void WriteAt(std::uint64_t at, const void* from, std::size_t bytes) override {
        file.WriteAt(at, from, bytes);
        length = std::max(length, at + bytes);
    }
    std::uint64_t GetLength() const override { return length; }
    bool IsComplaint(std::string_view) const override { return false; }

private:
    AtomicFile& file;
    std::uint64_t length = 0;
};

/// Writes pages one behind the other.
class PageWriter {
public:
    PageWriter(const std::string& fileName, const FrameToWrite& toWrite, Channel& target)
        : name(fileName), frame(toWrite), header(toWrite.header), channel(target) {
        const bool isBig = header.GetSliceBytes() * header.size.z > bigFrom;
        handle.reset(channel.Open(name, isBig ? "w8" : "w", 0));
        if (!handle)
            channel.Fail(name);
        hasPredictor = frame.compress && header.sample.kind != NumberKind::Float && !header.sample.IsComplex() &&
                       header.sample.bytes <= 2;
        rowBytes = header.GetSliceBytes() / header.size.y;
        rowsPerStrip = std::clamp<std::size_t>(stripBytes / rowBytes, 1, header.size.y);
        stripsPerSlice = (header.size.y + rowsPerStrip - 1) / rowsPerStrip;
    }

    void WriteAll(const TiffTexts& texts) {
        const std::size_t count = header.size.z * stripsPerSlice;
        if (frame.compress) {
            std::vector<Packer> packers(GetThreadLimit());
            MakeInOrder(
                count, packers.size(),
                [&](std::size_t i, std::size_t lane) { return Pack(FindStrip(i), packers[lane]); },
                [&](std::size_t i, const std::vector<std::byte>& packed) { WriteStrip(i, packed, texts); });
        } else {
            for (std::size_t i = 0; i < count; ++i)
                WriteStrip(i, FindStrip(i), texts);
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

    void SetTexts(const TiffTexts& texts) {
        Set(TIFFTAG_IMAGEDESCRIPTION, texts.description.c_str());
        for (const TiffTextTag& textTag : tiffTextTags) {
            const auto found = texts.tagged.find(textTag.key);
            if (found != texts.tagged.end())
                Set(textTag.tag, found->second.c_str());
        }
    }

    /// The voxels of a strip, counted through all slices.
    std::span<const std::byte> FindStrip(std::size_t i) const {
        const std::size_t row = i % stripsPerSlice * rowsPerStrip;
        const std::byte* const slice = frame.voxels + i / stripsPerSlice * header.GetSliceBytes();
        return {slice + row * rowBytes, std::min(rowsPerStrip, header.size.y - row) * rowBytes};
    }

    /// What a thread needs to pack strips.
    struct Packer {
        Deflater deflater;
        std::vector<std::byte> differences;
    };

    std::vector<std::byte> Pack(std::span<const std::byte> strip, Packer& packer) const {
        if (!hasPredictor)
            return packer.deflater.PackZlib(strip.data(), strip.size());
        packer.differences.resize(strip.size());
        for (std::size_t at = 0; at < strip.size(); at += rowBytes)
            TakeDifferences(strip.subspan(at, rowBytes), static_cast<unsigned>(8 * header.sample.bytes),
                            static_cast<std::size_t>(header.components), packer.differences.data() + at);
        return packer.deflater.PackZlib(packer.differences.data(), strip.size());
    }

    /// Writes a strip as it is, with what comes before the first one of a page and behind the last one.
    void WriteStrip(std::size_t i, std::span<const std::byte> bytes, const TiffTexts& texts) {
        const std::size_t number = i % stripsPerSlice;
        if (number == 0)
            SetLayout();
        if (i == 0)
            SetTexts(texts);
        const auto expected = static_cast<tmsize_t>(bytes.size());
        // libtiff only reads them: its interface knows no const.
        void* const from = const_cast<std::byte*>(bytes.data());
        Test(TIFFWriteRawStrip(handle.get(), static_cast<std::uint32_t>(number), from, expected) == expected);
        if (number + 1 == stripsPerSlice)
            Test(TIFFWriteDirectory(handle.get()) == 1);
    }

    struct Closer {
        void operator()(TIFF* open) const { TIFFClose(open); }
    };

    const std::string& name;
    const FrameToWrite& frame;
    const FrameHeader& header;
    Channel& channel;
    std::unique_ptr<TIFF, Closer> handle;
    std::size_t rowBytes = 0;
    std::size_t rowsPerStrip = 0;
    std::size_t stripsPerSlice = 0;
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
    TiffTexts texts = MakeTiffTexts(frame.header);
    AtomicFile file(fileName);
    Channel channel(file);
    PageWriter(fileName, frame, channel).WriteAll(texts);
    channel.TestClosed(fileName);
    file.Commit();
    return std::move(texts.notice);
}

} // namespace kep::detail
