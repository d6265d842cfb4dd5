#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "tests/support/comma_locale.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using kep::Image3d;
using kep::Resolution;
using kep::Vector3d;

/// Voxels of all bits, so that nothing is lost by chance; two-valued ones are 0 and 1.
template <typename T>
Image3d<T> MakeRandom(std::size_t x, std::size_t y, std::size_t z, unsigned seed) {
    Image3d<T> frame;
    frame.MakeRoom(x, y, z);
    std::mt19937 random(seed);
    auto* bytes = reinterpret_cast<unsigned char*>(frame.begin());
    for (std::size_t i = 0; i < frame.GetNumVoxels() * sizeof(T); ++i)
        bytes[i] = static_cast<unsigned char>(std::is_same_v<T, bool> ? random() & 1U : random() & 0xFFU);
    return frame;
}

template <typename T>
void ExpectSameVoxels(const Image3d<T>& a, const Image3d<T>& b) {
    ASSERT_EQ(a.GetSize(), b.GetSize());
    EXPECT_EQ(std::memcmp(a.begin(), b.begin(), a.GetNumVoxels() * sizeof(T)), 0);
}

template <typename T>
void ExpectSameFrames(const Image3d<T>& a, const Image3d<T>& b) {
    ExpectSameVoxels(a, b);
    EXPECT_EQ(a.GetOffset(), b.GetOffset());
    EXPECT_EQ(a.GetResolution(), b.GetResolution())
        << a.GetResolution().GetRes().x << " " << b.GetResolution().GetRes().x;
    EXPECT_EQ(a.GetDescription(), b.GetDescription());
}

template <typename T>
void ExpectRoundTrip(const Image3d<T>& frame, const std::string& fileName, bool compress) {
    SCOPED_TRACE(fileName + (compress ? " compressed" : ""));
    frame.SaveImage(fileName.c_str(), kep::FF_BY_NAME, compress, nullptr);
    const Image3d<T> back(fileName.c_str(), nullptr, false, -1, nullptr, nullptr);
    ExpectSameFrames(frame, back);
}

template <typename T>
class RoundTrip : public testing::Test {
protected:
    ScratchFolder folder;
};
using FrameTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double,
                                  kep::RGB_generic<unsigned char>, kep::RGB_generic<unsigned short>,
                                  std::complex<float>, std::complex<double>, bool>;
TYPED_TEST_SUITE(RoundTrip, FrameTypes, );

struct Geometry {
    Resolution resolution;
    Vector3d<float> offset;
};
const Geometry geometries[] = {
    {Resolution(1.0F / 0.0645F, 1.0F / 0.0645F, 1.0F / 0.2F), {0.0F, 0.0F, 0.0F}},
    {Resolution(1.0F / 0.103F, 11.2994F, 1.0F / 3.0F), {-1234.567F, 0.1F, 25000.33F}},
    {Resolution(1.0F / 0.3F, 7.7F, 0.001F), {1e-5F, -0.3F, -7.0F / 9.0F}},
    {Resolution(123456.7F, 3.1e-5F, 1.0F), {1e7F, -1e-7F, 0.0F}},
    {Resolution(), {0.0F, 0.0F, 0.0F}},
    {Resolution(), {1.5F, -2.25F, 1e5F}},
    {Resolution(-1.0F, 0.0F, -3.5F), {0.1F, -33.3F, 0.0F}},
    {Resolution(0.0F, 4.0F, -1.0F), {0.1F, -33.3F, 7.0F}},
    {Resolution(9.0F, 0.0F, 0.0F), {0.0F, 0.0F, 7.0F}},
};

TYPED_TEST(RoundTrip, BringsVoxelsGeometryAndDescriptionBack) {
    const std::map<std::string, std::string> description{{"author", "somebody"},
                                                         {"history", "first line\nsecond line"},
                                                         {"Software", "a program"},
                                                         {"µ", "Größe = 1 µm"}};
    unsigned seed = 0;
    for (const Geometry& geometry : geometries) {
        for (const std::size_t slices : {1U, 5U}) {
            Image3d<TypeParam> frame = MakeRandom<TypeParam>(13, 7, slices, ++seed);
            frame.SetResolution(geometry.resolution);
            frame.SetOffset(geometry.offset);
            frame.SetDescription(description);
            for (const char* name : {"a.tif", "a.ics"}) {
                ExpectRoundTrip(frame, this->folder / name, false);
                ExpectRoundTrip(frame, this->folder / name, true);
            }
        }
    }
}

TYPED_TEST(RoundTrip, TakesOddSizes) {
    unsigned seed = 100;
    for (const Vector3d<std::size_t>& size :
         {Vector3d<std::size_t>(1, 1, 1), Vector3d<std::size_t>(1, 300, 2), Vector3d<std::size_t>(300, 1, 3),
          Vector3d<std::size_t>(2, 2, 70), Vector3d<std::size_t>(1030, 517, 2)}) {
        const Image3d<TypeParam> frame = MakeRandom<TypeParam>(size.x, size.y, size.z, ++seed);
        for (const char* name : {"a.tif", "a.ics"}) {
            ExpectRoundTrip(frame, this->folder / name, false);
            ExpectRoundTrip(frame, this->folder / name, true);
        }
    }
}

TYPED_TEST(RoundTrip, FormatIsSetByValueOrSuffix) {
    const Image3d<TypeParam> frame = MakeRandom<TypeParam>(5, 4, 3, 1);
    const auto begin = [&](const std::string& name, int format) {
        frame.SaveImage((this->folder / name).c_str(), static_cast<kep::FileFormat>(format), true, nullptr);
        const Image3d<TypeParam> back((this->folder / name).c_str(), nullptr, false, -1, nullptr, nullptr);
        ExpectSameVoxels(frame, back);
        return ReadBytes(this->folder / name).substr(0, 4);
    };
    const std::string tiff("II*\0", 4);
    const std::string ics = "\t\nic";
    EXPECT_EQ(begin("a.tif", 0), tiff);
    EXPECT_EQ(begin("a.TIFF", 0), tiff);
    EXPECT_EQ(begin("b.Ics", 0), ics);
    EXPECT_EQ(begin("b.ics", 8), ics);
    EXPECT_EQ(begin("b.tiff", 8), tiff);
    EXPECT_EQ(begin("c.tif", 1), ics);
    EXPECT_EQ(begin("c.ics", 2), tiff);
    EXPECT_EQ(begin("c", 2), tiff);
}

class Files : public testing::Test {
protected:
    ScratchFolder folder;
};

TEST_F(Files, DescriptionsInLatin1AreReadAsUtf8AndSaved) {
    const std::string header = "\t\nics_version\t2.0\nfilename\ta\nlayout\tparameters\t3\nlayout\torder\tbits\tx\ty\n"
                               "layout\tsizes\t8\t2\t1\nrepresentation\tformat\tinteger\n"
                               "representation\tsign\tunsigned\nhistory\tSoftware\t\xB5Manager\n"
                               "history\tGr\xF6\xDF"
                               "e\t5 \xB5m\nhistory\tGr\xC3\xB6\xC3\x9F"
                               "e\t6 \xC2\xB5m\nend\n";
    const std::map<std::string, std::string> description{{"Software", "µManager"}, {"Größe", "5 µm\n6 µm"}};
    WriteBytes(folder / "a.ics", header + "xy");
    const Image3d<unsigned char> frame((folder / "a.ics").c_str(), nullptr, false, -1, nullptr, nullptr);
    EXPECT_EQ(frame.GetDescription(), description);
    for (const char* name : {"b.tif", "b.ics"})
        ExpectRoundTrip(frame, folder / name, false);
}

TEST_F(Files, NamesMayHoldBlanksAndLettersOfAllKinds) {
    const Image3d<unsigned char> frame = MakeRandom<unsigned char>(5, 4, 3, 1);
    for (const char* name :
         {"with blanks .tif", "Zellkörper 細胞 100%d.tif", "'quoted'.ics", "細胞.v2.ics", ".tif.tif"})
        ExpectRoundTrip(frame, folder / name, true);
}

TEST_F(Files, UnfriendlyDescriptionsComeBackFromTiff) {
    Image3d<unsigned char> frame = MakeRandom<unsigned char>(2, 2, 1, 1);
    frame.SetDescription({{"ImageDescription", "ImageJ=1.53\nunit=nm\nspacing=7\nchannels=3\n"},
                          {"DateTime", "2024:01:31 12:34:56"},
                          {"Artist", "Jürgen"},
                          {"Make", ""},
                          {"Model", std::string("zero\0byte", 9)},
                          {"unit", "inch"},
                          {"kep offset", "1 2 3"},
                          {"back\\slash=", "\\n"}});
    ExpectRoundTrip(frame, folder / "a.tif", false);
    frame.SetDescription({{"DateTime", "yesterday"}});
    ExpectRoundTrip(frame, folder / "a.tif", false);
}

struct CommaForPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(Files, LocaleOfTheProcessChangesNothing) {
    Image3d<float> frame = MakeRandom<float>(1234, 2, 2, 1);
    frame.SetResolution(Resolution(1.5F, 2.25F, 0.3F));
    frame.SetOffset({1234567.5F, -0.25F, 1e-3F});
    const CommaLocale comma;
    const std::locale old = std::locale::global(std::locale(std::locale::classic(), new CommaForPoint));
    for (const char* name : {"a.tif", "a.ics"})
        ExpectRoundTrip(frame, folder / name, true);
    EXPECT_TRUE(comma.IsStillSet());
    EXPECT_EQ(std::use_facet<std::numpunct<char>>(std::locale()).decimal_point(), ',');
    std::locale::global(old);
}

TEST_F(Files, BoxesAreWrittenAsTheirCopies) {
    Image3d<unsigned short> frame = MakeRandom<unsigned short>(9, 8, 7, 1);
    frame.SetResolution(Resolution(2.0F, 2.0F, 0.5F));
    frame.SetOffset({10.0F, 0.0F, 0.0F});
    const Image3d<unsigned short>::PixelBox box(-1, 3, 2, 4, 5, 6);
    for (const char* name : {"a.tif", "a.ics"}) {
        frame.SaveImage((folder / name).c_str(), kep::FF_BY_NAME, true, &box);
        ExpectSameFrames(Image3d<unsigned short>(frame, &box),
                         Image3d<unsigned short>((folder / name).c_str(), nullptr, false, -1, nullptr, nullptr));
    }
}

TEST_F(Files, BoxesAreReadAsCopiesOfTheWhole) {
    Image3d<unsigned short> frame = MakeRandom<unsigned short>(9, 8, 7, 1);
    frame.SetResolution(Resolution(2.0F, 2.0F, 0.5F));
    frame.SetOffset({10.0F, 0.0F, 0.0F});
    for (const char* name : {"a.tif", "a.ics"}) {
        frame.SaveImage((folder / name).c_str(), kep::FF_BY_NAME, true, nullptr);
        for (const Image3d<unsigned short>::PixelBox& box :
             {Image3d<unsigned short>::PixelBox(2, 3, 1, 4, 5, 6),
              Image3d<unsigned short>::PixelBox(-2, -1, 5, 4, 20, 4),
              Image3d<unsigned short>::PixelBox(9, 0, 0, 2, 2, 2), Image3d<unsigned short>::PixelBox(0, 0, 0, 9, 8, 7),
              Image3d<unsigned short>::PixelBox(0, 0, 0, 0, 8, 7)}) {
            const Image3d<unsigned short> read((folder / name).c_str(), &box, false, -1, nullptr, nullptr);
            const Image3d<unsigned short> copy(frame, &box);
            ASSERT_EQ(read.GetSize(), copy.GetSize());
            EXPECT_TRUE(std::equal(read.begin(), read.end(), copy.begin(), copy.end()));
            EXPECT_EQ(read.GetOffset(), copy.GetOffset());
            EXPECT_EQ(read.GetResolution(), copy.GetResolution());
        }
    }
}

TEST_F(Files, BoxesAreConvertedToo) {
    Image3d<unsigned short> frame = MakeRandom<unsigned short>(9, 8, 7, 1);
    frame.SaveImage((folder / "a.tif").c_str(), kep::FF_BY_NAME, false, nullptr);
    const Image3d<float>::PixelBox box(-2, 3, 1, 7, 9, 4);
    const Image3d<float> read((folder / "a.tif").c_str(), &box, false, -1, nullptr, nullptr);
    const Image3d<unsigned short> copy(frame, &box);
    ASSERT_EQ(read.GetSize(), copy.GetSize());
    for (std::size_t i = 0; i < read.GetNumVoxels(); ++i)
        ASSERT_EQ(read.GetVoxel(i), static_cast<float>(copy.GetVoxel(i)));
}

TEST_F(Files, GivenGeometryReplacesThatOfTheFile) {
    Image3d<unsigned char> frame = MakeRandom<unsigned char>(9, 8, 7, 1);
    frame.SetResolution(Resolution(2.0F, 2.0F, 0.5F));
    frame.SetOffset({10.0F, 0.0F, 0.0F});
    frame.SaveImage((folder / "a.tif").c_str(), kep::FF_BY_NAME, false, nullptr);
    const Vector3d<float> offset(1.0F, 2.0F, 3.0F);
    const Resolution resolution(4.0F, 4.0F, 4.0F);
    Image3d<unsigned char> read;
    read.ReadImage((folder / "a.tif").c_str(), nullptr, false, -1, &offset, nullptr);
    EXPECT_EQ(read.GetOffset(), offset);
    EXPECT_EQ(read.GetResolution(), frame.GetResolution());
    read.ReadImage((folder / "a.tif").c_str(), nullptr, false, -1, nullptr, &resolution);
    EXPECT_EQ(read.GetOffset(), frame.GetOffset());
    EXPECT_EQ(read.GetResolution(), resolution);
    const Image3d<unsigned char>::PixelBox box(2, 4, 1, 2, 2, 2);
    read.ReadImage((folder / "a.tif").c_str(), &box, false, -1, &offset, &resolution);
    EXPECT_EQ(read.GetOffset(), Vector3d<float>(1.5F, 3.0F, 3.25F)); // 1 + 2/4, 2 + 4/4, 3 + 1/4
}

// What cannot be read or written.

template <typename Action>
std::string RefusalOf(Action action) {
    try {
        action();
    } catch (const kep::IOException& refusal) {
        return refusal.GetText();
    }
    return "";
}

TEST_F(Files, FailedReadingChangesNothing) {
    Image3d<unsigned short> wide = MakeRandom<unsigned short>(9, 8, 7, 1);
    wide.SaveImage((folder / "wide.tif").c_str(), kep::FF_BY_NAME, true, nullptr);
    const std::string whole = ReadBytes(folder / "wide.tif");
    WriteBytes(folder / "cut.tif", whole.substr(0, whole.size() / 2));
    WriteBytes(folder / "text.tif", "Nothing of the kind.");

    Image3d<unsigned char> frame = MakeRandom<unsigned char>(9, 8, 7, 2);
    frame.SetOffset({1.0F, 2.0F, 3.0F});
    frame.SetResolution(Resolution(4.0F, 5.0F, 6.0F));
    frame.SetDescription({{"a", "b"}});
    const Image3d<unsigned char> before = frame;
    const unsigned char* const block = frame.begin();
    for (const char* name : {"wide.tif", "cut.tif", "text.tif", "missing.tif", ""}) {
        EXPECT_NE(RefusalOf([&] { frame.ReadImage((folder / name).c_str(), nullptr, false, -1, nullptr, nullptr); }),
                  "")
            << name;
        ExpectSameFrames(frame, before);
        EXPECT_EQ(frame.begin(), block);
    }
}

TEST_F(Files, RefusalsNameTheFileAndTheReason) {
    const std::string missing = folder / "missing.tif";
    Image3d<unsigned char> frame = MakeRandom<unsigned char>(2, 2, 2, 2);
    const auto read = [&](const std::string& name) {
        return RefusalOf([&] { frame.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr); });
    };
    EXPECT_EQ(read(missing), "ReadImage(): There is no such file as '" + missing + "'.");
    EXPECT_EQ(read(folder.GetPath()), "ReadImage(): '" + folder.GetPath() + "' is a folder, not a file.");
    WriteBytes(folder / "text.tif", "Nothing of the kind.");
    EXPECT_EQ(read(folder / "text.tif"), "ReadImage(): '" + folder / "text.tif" + "' is not an ICS or TIFF image.");

    Image3d<float> halves;
    halves.MakeRoom(3, 2, 2);
    halves.SetVoxel(2, 1, 1, 0.5F);
    halves.SaveImage((folder / "halves.ics").c_str(), kep::FF_BY_NAME, false, nullptr);
    EXPECT_EQ(read(folder / "halves.ics"), "ReadImage(): The value 0.5 at (2, 1, 1) in '" + folder / "halves.ics" +
                                               "' is not a whole number and cannot be converted to 8-bit gray.");
    const Image3d<std::complex<float>> complex = MakeRandom<std::complex<float>>(2, 2, 2, 3);
    complex.SaveImage((folder / "c.tif").c_str(), kep::FF_BY_NAME, false, nullptr);
    EXPECT_EQ(read(folder / "c.tif"),
              "ReadImage(): '" + folder / "c.tif" + "' holds complex voxels, which cannot be converted to 8-bit gray.");
    const auto colours = MakeRandom<kep::RGB_generic<unsigned char>>(2, 2, 2, 3);
    colours.SaveImage((folder / "rgb.tif").c_str(), kep::FF_BY_NAME, false, nullptr);
    EXPECT_EQ(read(folder / "rgb.tif"), "ReadImage(): '" + folder / "rgb.tif" +
                                            "' holds colour voxels, which cannot be converted to 8-bit gray.");
}

TEST_F(Files, ReservedArgumentsAreRefused) {
    Image3d<unsigned char> frame = MakeRandom<unsigned char>(2, 2, 2, 2);
    const std::string name = folder / "a.tif";
    frame.SaveImage(name.c_str(), kep::FF_BY_NAME, false, nullptr);
    const std::string refusal = "ReadImage(): These arguments are not supported.";
    EXPECT_EQ(RefusalOf([&] { frame.ReadImage(name.c_str(), nullptr, true, -1, nullptr, nullptr); }), refusal);
    EXPECT_EQ(RefusalOf([&] { frame.ReadImage(name.c_str(), nullptr, false, 0, nullptr, nullptr); }), refusal);
}

TEST_F(Files, BoxesWithoutEndAreALackOfMemory) {
    Image3d<unsigned char> frame = MakeRandom<unsigned char>(2, 2, 2, 2);
    const std::string name = folder / "a.tif";
    frame.SaveImage(name.c_str(), kep::FF_BY_NAME, false, nullptr);
    std::vector<std::size_t> sides{std::numeric_limits<std::size_t>::max(), std::size_t{1} << 40U};
#if !defined(__SANITIZE_ADDRESS__) &&                                                                                  \
    !defined(__SANITIZE_THREAD__) // which ends the process where memory that could be addressed lacks
    sides.push_back(std::size_t{1} << 20U);
#endif
    for (const std::size_t side : sides) {
        const Image3d<unsigned char>::PixelBox box(0, 0, 0, side, side, side);
        EXPECT_EQ(RefusalOf([&] { frame.ReadImage(name.c_str(), &box, false, -1, nullptr, nullptr); }),
                  "ReadImage(): Not enough memory for '" + name + "'.");
    }
}

TEST_F(Files, FramesWithoutVoxelsAreNotWritten) {
    const std::string name = folder / "a.tif";
    const std::string refusal = "SaveImage(): The image has no voxels.";
    EXPECT_EQ(RefusalOf([&] { Image3d<float>().SaveImage(name.c_str(), kep::FF_BY_NAME, true, nullptr); }), refusal);
    const Image3d<float>::PixelBox box(0, 0, 0, 0, 2, 2);
    EXPECT_EQ(RefusalOf([&] { MakeRandom<float>(2, 2, 2, 1).SaveImage(name.c_str(), kep::FF_BY_NAME, true, &box); }),
              refusal);
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(Files, UnknownFormatsAreNotWritten) {
    const Image3d<float> frame = MakeRandom<float>(2, 2, 2, 1);
    const auto save = [&](const std::string& name, int format) {
        return RefusalOf([&] { frame.SaveImage(name.c_str(), static_cast<kep::FileFormat>(format), true, nullptr); });
    };
    for (const char* suffix : {"a.png", "a", "a.tif.gz", "tif", "a.ics "}) {
        const std::string name = folder / suffix;
        EXPECT_EQ(save(name, 0),
                  "SaveImage(): The format of '" + name + "' cannot be told from its suffix; use .ics or .tif.");
    }
    EXPECT_EQ(save(folder / "a.tif", 3),
              "SaveImage(): The format value 3 for '" + folder / "a.tif" + "' is not supported.");
    EXPECT_NE(save(folder / "a.tif", -1), "");
    EXPECT_EQ(
        save(folder / "no" + "/a.tif", 0).find("SaveImage(): Cannot write the file '" + folder / "no" + "/a.tif': "),
        0U);
    EXPECT_TRUE(folder.List().empty());
}

} // namespace
