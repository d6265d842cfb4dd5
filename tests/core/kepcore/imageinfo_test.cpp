#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tiffio.h>
#include <tuple>
#include <vector>

namespace {

using kep::Image3d;
using kep::ImageInfo;
using kep::ReadImageInfo;
using kep::VoxelType;

class Info : public testing::Test {
protected:
    ScratchFolder folder;

    template <typename T>
    ImageInfo SaveAndAsk(const std::string& name, bool compress) {
        Image3d<T> frame;
        frame.MakeRoom(5, 4, 3);
        frame.SaveImage((folder / name).c_str(), kep::FF_BY_NAME, compress, nullptr);
        return ReadImageInfo((folder / name).c_str());
    }

    /// One page of zeros, as other programs write it.
    ImageInfo AskTiff(int bits, int format, int samples = 1, bool palette = false) {
        const std::string name = folder / "plain.tif";
        TIFF* const tiff = TIFFOpen(name.c_str(), "w");
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 8U);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1U);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
        TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, format);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
        TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                     palette        ? PHOTOMETRIC_PALETTE
                     : samples == 3 ? PHOTOMETRIC_RGB
                                    : PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 1U);
        std::vector<unsigned short> colours(std::size_t{1} << static_cast<unsigned>(bits % 32));
        if (palette)
            TIFFSetField(tiff, TIFFTAG_COLORMAP, colours.data(), colours.data(), colours.data());
        std::vector<unsigned char> row(static_cast<std::size_t>(bits * samples));
        EXPECT_NE(TIFFWriteEncodedStrip(tiff, 0, row.data(), static_cast<tmsize_t>(row.size())), -1);
        TIFFClose(tiff);
        return ReadImageInfo(name.c_str());
    }
};

TEST_F(Info, TellsWhatASavedFrameIs) {
    Image3d<unsigned short> frame;
    frame.MakeRoom(5, 4, 3);
    frame.SetResolution(kep::Resolution(2.0F, 4.0F, 0.5F));
    frame.SetOffset({1.0F, -2.0F, 3.0F});
    frame.SetDescription({{"author", "somebody"}});
    for (const auto& [name, format, compress, compression] :
         {std::tuple{"a.tif", kep::FF_TIFF, true, "deflate"}, std::tuple{"b.tif", kep::FF_TIFF, false, "none"},
          std::tuple{"a.ics", kep::FF_ICS, true, "gzip"}, std::tuple{"b.ics", kep::FF_ICS, false, "none"}}) {
        frame.SaveImage((folder / name).c_str(), kep::FF_BY_NAME, compress, nullptr);
        const ImageInfo info = ReadImageInfo((folder / name).c_str());
        EXPECT_EQ(info.format, format) << name;
        EXPECT_EQ(info.size, kep::Vector3d<std::size_t>(5, 4, 3));
        EXPECT_EQ(info.voxelType, VoxelType::Gray16);
        EXPECT_EQ(info.storedType, "16-bit unsigned");
        EXPECT_EQ(info.compression, compression) << name;
        EXPECT_EQ(info.resolution, frame.GetResolution());
        EXPECT_EQ(info.offset, frame.GetOffset());
        EXPECT_EQ(info.description, frame.GetDescription());
        EXPECT_EQ(info.fileSize, std::filesystem::file_size(folder / name));
        EXPECT_EQ(info.dataFile, "");
    }
}

TEST_F(Info, NamesTheFileOfTheVoxelsIfItIsAnotherOne) {
    const std::string layout = "filename\tx\nlayout\tparameters\t4\nlayout\torder\tbits\tx\ty\tz\n"
                               "layout\tsizes\t8\t2\t1\t1\nrepresentation\tformat\tinteger\n"
                               "representation\tsign\tunsigned\n";
    for (const char* data : {"a.IDS", "voxels"})
        WriteBytes(folder / data, "vv");
    WriteBytes(folder / "a.ics", "\t\nics_version\t1.0\n" + layout + "end\n");
    WriteBytes(folder / "b.ics", "\t\nics_version\t2.0\n" + layout + "source\tfile\tvoxels\nsource\toffset\t0\nend\n");
    EXPECT_EQ(ReadImageInfo((folder / "a.ics").c_str()).dataFile, folder / "a.IDS");
    EXPECT_EQ(ReadImageInfo((folder / "b.ics").c_str()).dataFile, folder / "voxels");
    EXPECT_EQ(ReadImageInfo((folder / "b.ics").c_str()).fileSize,
              std::filesystem::file_size(folder / "b.ics") + std::filesystem::file_size(folder / "voxels"));
}

TEST_F(Info, NamesTheTypeOfEverySavedFrame) {
    for (const char* name : {"a.tif", "a.ics"}) {
        EXPECT_EQ(SaveAndAsk<unsigned char>(name, false).voxelType, VoxelType::Gray8);
        EXPECT_EQ(SaveAndAsk<unsigned short>(name, false).voxelType, VoxelType::Gray16);
        EXPECT_EQ(SaveAndAsk<int>(name, false).voxelType, VoxelType::Int);
        EXPECT_EQ(SaveAndAsk<unsigned long long>(name, false).voxelType, VoxelType::UInt64);
        EXPECT_EQ(SaveAndAsk<float>(name, false).voxelType, VoxelType::Float);
        EXPECT_EQ(SaveAndAsk<double>(name, false).voxelType, VoxelType::Double);
        EXPECT_EQ(SaveAndAsk<kep::RGB_generic<unsigned char>>(name, false).voxelType, VoxelType::RGB8);
        EXPECT_EQ(SaveAndAsk<kep::RGB_generic<unsigned short>>(name, false).voxelType, VoxelType::RGB16);
        EXPECT_EQ(SaveAndAsk<std::complex<float>>(name, false).voxelType, VoxelType::Complex);
        EXPECT_EQ(SaveAndAsk<std::complex<double>>(name, false).voxelType, VoxelType::DoubleComplex);
        EXPECT_EQ(SaveAndAsk<bool>(name, false).voxelType, VoxelType::Gray8); // black and white bytes
    }
}

TEST_F(Info, NamesWhatIsStored) {
    for (const char* name : {"a.tif", "a.ics"}) {
        EXPECT_EQ(SaveAndAsk<unsigned char>(name, true).storedType, "8-bit unsigned");
        EXPECT_EQ(SaveAndAsk<int>(name, true).storedType, "32-bit signed");
        EXPECT_EQ(SaveAndAsk<float>(name, true).storedType, "32-bit float");
        EXPECT_EQ(SaveAndAsk<kep::RGB_generic<unsigned short>>(name, true).storedType, "RGB 16-bit");
        EXPECT_EQ(SaveAndAsk<std::complex<float>>(name, true).storedType, "complex 32-bit float");
        EXPECT_EQ(SaveAndAsk<std::complex<double>>(name, true).storedType, "complex 64-bit float");
    }
}

TEST_F(Info, TakesTheSmallestTypeThatHoldsAll) {
    struct Case {
        int bits;
        int format;
        VoxelType type;
        const char* stored;
    };
    for (const Case& c : {Case{1, SAMPLEFORMAT_UINT, VoxelType::Binary, "1-bit"},
                          Case{4, SAMPLEFORMAT_UINT, VoxelType::Gray8, "4-bit unsigned"},
                          Case{12, SAMPLEFORMAT_UINT, VoxelType::Gray16, "12-bit unsigned"},
                          Case{24, SAMPLEFORMAT_UINT, VoxelType::Int, "24-bit unsigned"},
                          Case{32, SAMPLEFORMAT_UINT, VoxelType::UInt64, "32-bit unsigned"},
                          Case{64, SAMPLEFORMAT_UINT, VoxelType::UInt64, "64-bit unsigned"},
                          Case{8, SAMPLEFORMAT_INT, VoxelType::Int, "8-bit signed"},
                          Case{16, SAMPLEFORMAT_INT, VoxelType::Int, "16-bit signed"},
                          Case{64, SAMPLEFORMAT_INT, VoxelType::Other, "64-bit signed"},
                          Case{16, SAMPLEFORMAT_IEEEFP, VoxelType::Float, "16-bit float"},
                          Case{64, SAMPLEFORMAT_IEEEFP, VoxelType::Double, "64-bit float"},
                          Case{32, SAMPLEFORMAT_COMPLEXINT, VoxelType::Complex, "complex 16-bit signed"},
                          Case{64, SAMPLEFORMAT_COMPLEXINT, VoxelType::DoubleComplex, "complex 32-bit signed"}}) {
        const ImageInfo info = AskTiff(c.bits, c.format);
        EXPECT_EQ(info.voxelType, c.type) << c.stored;
        EXPECT_EQ(info.storedType, c.stored);
    }
    EXPECT_EQ(AskTiff(8, SAMPLEFORMAT_UINT, 1, true).voxelType, VoxelType::Gray8);
    EXPECT_EQ(AskTiff(8, SAMPLEFORMAT_UINT, 1, true).storedType, "8-bit palette");
    EXPECT_EQ(AskTiff(16, SAMPLEFORMAT_UINT, 1, true).voxelType, VoxelType::Gray16);
    EXPECT_EQ(AskTiff(8, SAMPLEFORMAT_UINT, 3).storedType, "RGB 8-bit");
    EXPECT_EQ(AskTiff(32, SAMPLEFORMAT_IEEEFP, 3).voxelType, VoxelType::Other);
    EXPECT_EQ(AskTiff(32, SAMPLEFORMAT_IEEEFP, 3).storedType, "RGB 32-bit float");
}

TEST_F(Info, RefusesAsReadingDoes) {
    const auto refusal = [](const std::string& name) {
        try {
            ReadImageInfo(name.c_str());
        } catch (const kep::IOException& failure) {
            return failure.GetText();
        }
        return std::string();
    };
    EXPECT_EQ(refusal(folder / "a.tif"), "ReadImage(): There is no such file as '" + folder / "a.tif" + "'.");
    WriteBytes(folder / "a.tif", "text");
    EXPECT_EQ(refusal(folder / "a.tif"), "ReadImage(): '" + folder / "a.tif" + "' is not an ICS or TIFF image.");
    EXPECT_THROW(ReadImageInfo(nullptr), kep::IOException);
}

} // namespace
