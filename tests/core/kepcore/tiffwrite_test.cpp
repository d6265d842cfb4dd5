#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <tiffio.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

// The files as libtiff, which most programs read by, sees them.

namespace {

using kep::Image3d;
using kep::Resolution;

int complaints = 0;

int CountComplaint(TIFF*, void*, const char*, const char* format, std::va_list values) {
    std::vprintf(format, values);
    ++complaints;
    return 1;
}

/// A file opened by libtiff alone, which must find nothing to complain of.
class PlainTiff {
public:
    explicit PlainTiff(const std::string& name) {
        complaints = 0;
        TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
        TIFFOpenOptionsSetErrorHandlerExtR(options, &CountComplaint, nullptr);
        TIFFOpenOptionsSetWarningHandlerExtR(options, &CountComplaint, nullptr);
        handle = TIFFOpenExt(name.c_str(), "r", options);
        TIFFOpenOptionsFree(options);
        EXPECT_NE(handle, nullptr) << name;
    }
    ~PlainTiff() {
        TIFFClose(handle);
        EXPECT_EQ(complaints, 0);
    }
    PlainTiff(const PlainTiff&) = delete;
    PlainTiff& operator=(const PlainTiff&) = delete;

    template <typename Value>
    Value Get(ttag_t tag) {
        Value value{};
        EXPECT_EQ(TIFFGetField(handle, tag, &value), 1) << tag;
        return value;
    }
    bool Has(ttag_t tag) {
        void* unused[2] = {};
        return TIFFGetField(handle, tag, &unused[0], &unused[1]) == 1;
    }
    bool NextPage() { return TIFFReadDirectory(handle) == 1; }

    std::vector<unsigned char> ReadPage() {
        const auto row = static_cast<std::size_t>(TIFFScanlineSize(handle));
        const auto rows = Get<std::uint32_t>(TIFFTAG_IMAGELENGTH);
        std::vector<unsigned char> bytes(row * rows);
        for (std::uint32_t y = 0; y < rows; ++y)
            EXPECT_EQ(TIFFReadScanline(handle, bytes.data() + y * row, y), 1);
        return bytes;
    }

private:
    TIFF* handle = nullptr;
};

template <typename T>
Image3d<T> MakeCounting(std::size_t x, std::size_t y, std::size_t z) {
    Image3d<T> frame;
    frame.MakeRoom(x, y, z);
    auto* bytes = reinterpret_cast<unsigned char*>(frame.begin());
    for (std::size_t i = 0; i < frame.GetNumVoxels() * sizeof(T); ++i)
        bytes[i] = static_cast<unsigned char>(std::is_same_v<T, bool> ? i % 3 == 0 : i * 31 % 251);
    return frame;
}

struct Layout {
    int bits;
    int samples;
    int format;
    int photometric;
    bool predictor;
};

template <typename T>
constexpr Layout layoutOf{};
template <>
constexpr Layout layoutOf<unsigned char>{8, 1, SAMPLEFORMAT_UINT, PHOTOMETRIC_MINISBLACK, true};
template <>
constexpr Layout layoutOf<unsigned short>{16, 1, SAMPLEFORMAT_UINT, PHOTOMETRIC_MINISBLACK, true};
template <>
constexpr Layout layoutOf<int>{32, 1, SAMPLEFORMAT_INT, PHOTOMETRIC_MINISBLACK, false};
template <>
constexpr Layout layoutOf<unsigned long long>{64, 1, SAMPLEFORMAT_UINT, PHOTOMETRIC_MINISBLACK, false};
template <>
constexpr Layout layoutOf<float>{32, 1, SAMPLEFORMAT_IEEEFP, PHOTOMETRIC_MINISBLACK, false};
template <>
constexpr Layout layoutOf<double>{64, 1, SAMPLEFORMAT_IEEEFP, PHOTOMETRIC_MINISBLACK, false};
template <>
constexpr Layout layoutOf<kep::RGB_generic<unsigned char>>{8, 3, SAMPLEFORMAT_UINT, PHOTOMETRIC_RGB, true};
template <>
constexpr Layout layoutOf<kep::RGB_generic<unsigned short>>{16, 3, SAMPLEFORMAT_UINT, PHOTOMETRIC_RGB, true};
template <>
constexpr Layout layoutOf<std::complex<float>>{64, 1, SAMPLEFORMAT_COMPLEXIEEEFP, PHOTOMETRIC_MINISBLACK, false};
template <>
constexpr Layout layoutOf<std::complex<double>>{128, 1, SAMPLEFORMAT_COMPLEXIEEEFP, PHOTOMETRIC_MINISBLACK, false};
template <>
constexpr Layout layoutOf<bool>{8, 1, SAMPLEFORMAT_UINT, PHOTOMETRIC_MINISBLACK, true};

template <typename T>
class WrittenTiff : public testing::Test {
protected:
    ScratchFolder folder;
};
using FrameTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double,
                                  kep::RGB_generic<unsigned char>, kep::RGB_generic<unsigned short>,
                                  std::complex<float>, std::complex<double>, bool>;
TYPED_TEST_SUITE(WrittenTiff, FrameTypes, );

TYPED_TEST(WrittenTiff, ReadsByLibtiffAlone) {
    const Image3d<TypeParam> frame = MakeCounting<TypeParam>(37, 23, 3);
    const Layout& layout = layoutOf<TypeParam>;
    for (const bool compress : {false, true}) {
        frame.SaveImage((this->folder / "a.tif").c_str(), kep::FF_TIFF, compress, nullptr);
        PlainTiff tiff(this->folder / "a.tif");
        for (std::size_t z = 0; z < 3; ++z) {
            EXPECT_EQ(tiff.Get<std::uint32_t>(TIFFTAG_IMAGEWIDTH), 37U);
            EXPECT_EQ(tiff.Get<std::uint32_t>(TIFFTAG_IMAGELENGTH), 23U);
            EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_BITSPERSAMPLE), layout.bits);
            EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL), layout.samples);
            EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_SAMPLEFORMAT), layout.format);
            EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_PHOTOMETRIC), layout.photometric);
            EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_PLANARCONFIG), PLANARCONFIG_CONTIG);
            EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_COMPRESSION),
                      compress ? COMPRESSION_ADOBE_DEFLATE : COMPRESSION_NONE);
            EXPECT_EQ(tiff.Has(TIFFTAG_PREDICTOR), compress && layout.predictor);
            const std::vector<unsigned char> page = tiff.ReadPage();
            ASSERT_EQ(page.size(), 37 * 23 * sizeof(TypeParam));
            const auto* expected = reinterpret_cast<const unsigned char*>(frame.GetVoxelAddr(0, 0, z));
            for (std::size_t i = 0; i < page.size(); ++i)
                ASSERT_EQ(page[i], (std::is_same_v<TypeParam, bool> ? 255 * expected[i] : expected[i])) << i;
            EXPECT_EQ(tiff.NextPage(), z < 2);
        }
    }
}

TYPED_TEST(WrittenTiff, LeavesTheVoxelsAlone) {
    const Image3d<TypeParam> frame = MakeCounting<TypeParam>(37, 23, 3);
    const Image3d<TypeParam> before = frame;
    for (const bool compress : {false, true})
        frame.SaveImage((this->folder / "a.tif").c_str(), kep::FF_TIFF, compress, nullptr);
    EXPECT_EQ(std::memcmp(frame.begin(), before.begin(), frame.GetNumVoxels() * sizeof(TypeParam)), 0);
}

class WrittenTags : public testing::Test {
protected:
    ScratchFolder folder;
    Image3d<unsigned char> frame = MakeCounting<unsigned char>(4, 3, 2);

    void Save() { frame.SaveImage((folder / "a.tif").c_str(), kep::FF_TIFF, true, nullptr); }
};

TEST_F(WrittenTags, SaySizeAndPlaceAsImageJDoes) {
    frame.SetResolution(Resolution(8.0F, 4.0F, 0.5F));
    frame.SetOffset({2.0F, -3.0F, 10.0F});
    Save();
    PlainTiff tiff(folder / "a.tif");
    // Origin in pixels: -2 * 8, 3 * 4, -10 * 0.5; slices are 1 / 0.5 microns apart.
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_IMAGEDESCRIPTION), "ImageJ=1.11a\n"
                                                                  "images=2\n"
                                                                  "slices=2\n"
                                                                  "unit=micrometers\n"
                                                                  "spacing=2\n"
                                                                  "xorigin=-16\n"
                                                                  "yorigin=12\n"
                                                                  "zorigin=-5\n"
                                                                  "kep resolution=8 4 0.5\n"
                                                                  "kep offset=2 -3 10\n");
    EXPECT_EQ(tiff.Get<float>(TIFFTAG_XRESOLUTION), 8.0F);
    EXPECT_EQ(tiff.Get<float>(TIFFTAG_YRESOLUTION), 4.0F);
    EXPECT_EQ(tiff.Get<std::uint16_t>(TIFFTAG_RESOLUTIONUNIT), RESUNIT_NONE);
    EXPECT_FALSE(tiff.Has(TIFFTAG_XPOSITION));
    EXPECT_FALSE(tiff.Has(TIFFTAG_YPOSITION));
    ASSERT_TRUE(tiff.NextPage());
    EXPECT_FALSE(tiff.Has(TIFFTAG_IMAGEDESCRIPTION));
    EXPECT_EQ(tiff.Get<float>(TIFFTAG_XRESOLUTION), 8.0F);
}

TEST_F(WrittenTags, SayNothingOfASizeThatIsNotKnown) {
    Save();
    PlainTiff tiff(folder / "a.tif");
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_IMAGEDESCRIPTION), "ImageJ=1.11a\n"
                                                                  "images=2\n"
                                                                  "slices=2\n"
                                                                  "unit=pixel\n"
                                                                  "kep resolution=0 0 0\n"
                                                                  "kep offset=0 0 0\n");
    EXPECT_FALSE(tiff.Has(TIFFTAG_XRESOLUTION));
    EXPECT_FALSE(tiff.Has(TIFFTAG_YRESOLUTION));
    EXPECT_FALSE(tiff.Has(TIFFTAG_RESOLUTIONUNIT));
}

TEST_F(WrittenTags, TakeTextsOfTheirOwn) {
    frame.SetDescription({{"Artist", "A. Author"},
                          {"Software", "a program"},
                          {"Make", "M"},
                          {"Model", "m 1"},
                          {"DateTime", "2024:01:31 12:34:56"},
                          {"other", "two\nlines"}});
    Save();
    PlainTiff tiff(folder / "a.tif");
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_ARTIST), "A. Author");
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_SOFTWARE), "a program");
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_MAKE), "M");
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_MODEL), "m 1");
    EXPECT_STREQ(tiff.Get<const char*>(TIFFTAG_DATETIME), "2024:01:31 12:34:56");
    const std::string description = tiff.Get<const char*>(TIFFTAG_IMAGEDESCRIPTION);
    EXPECT_TRUE(description.ends_with("kep offset=0 0 0\nkep entry=other=two\\nlines\n")) << description;
}

TEST_F(WrittenTags, CanBeThoseOfManyPages) {
    frame = MakeCounting<unsigned char>(1, 1, 3000);
    Save();
    PlainTiff tiff(folder / "a.tif");
    int pages = 1;
    while (tiff.NextPage())
        ++pages;
    EXPECT_EQ(pages, 3000);
}

TEST_F(WrittenTags, RefuseWhatTheyCannotHold) {
    const auto refusal = [this] {
        try {
            Save();
        } catch (const kep::IOException& failure) {
            return failure.GetText();
        }
        return std::string();
    };
    const std::string start = "SaveImage(): Cannot write the file '" + folder / "a.tif" + "': ";
    frame.SetResolution(Resolution(1e10F, 1.0F, 1.0F));
    EXPECT_EQ(refusal(), start + "a TIFF file cannot hold a resolution of 1e+10 pixels per micron");
    frame.SetResolution(Resolution(1.0F, 1e-12F, 1.0F));
    EXPECT_EQ(refusal(), start + "a TIFF file cannot hold a resolution of 9.99999996e-13 pixels per micron");
    frame.SetResolution(Resolution());
    frame.SetOffset({0.0F, std::numeric_limits<float>::quiet_NaN(), 0.0F});
    EXPECT_EQ(refusal(), start + "a TIFF file cannot hold an offset that is not a finite number");
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(WrittenTags, AreWrittenWholeOrNotAtAll) {
    Save();
    const std::string before = ReadBytes(folder / "a.tif");
    const Image3d<unsigned char> large = MakeCounting<unsigned char>(300, 300, 20); // 1.8 MB
    for (const bool compress : {false, true}) {
        for (const rlim_t limit : {0U, 10U, 500U, 40'000U}) {
            // The limit would stay with the process, so a child tries.
            const pid_t child = ::fork();
            if (child == 0) {
                std::signal(SIGXFSZ, SIG_IGN);
                const rlimit full{limit, limit};
                ::setrlimit(RLIMIT_FSIZE, &full);
                try {
                    large.SaveImage((folder / "a.tif").c_str(), kep::FF_TIFF, compress, nullptr);
                } catch (const kep::IOException& failure) {
                    ::_exit(failure.GetText().ends_with("': File too large") ? 7 : 8);
                }
                ::_exit(9);
            }
            int status = 0;
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFEXITED(status));
            EXPECT_EQ(WEXITSTATUS(status), 7) << limit;
            EXPECT_EQ(ReadBytes(folder / "a.tif"), before);
            EXPECT_EQ(folder.List(), std::vector<std::string>{"a.tif"});
        }
    }
}

} // namespace
