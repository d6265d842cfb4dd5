// Reading under a watch: what it is told, and that it can stop it.

#include "core/kepcore/kep_colourreader.h"
#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_readingwatch.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <tiffio.h>
#include <vector>

namespace {

using kep::Image3d;
using kep::ReadingState;
using kep::ReadingWatch;
using testing::ElementsAre;

constexpr std::size_t megabyte = std::size_t{1} << 20;

class Watch : public testing::Test {
protected:
    /// Writes a frame of bytes. @return its name
    std::string Write(std::size_t x, std::size_t y, std::size_t z, const char* file = "a.ics") {
        Image3d<unsigned char> frame;
        frame.MakeRoom(x, y, z);
        for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
            frame.SetVoxel(i, static_cast<unsigned char>(i % 251));
        frame.SaveImage((folder / file).c_str(), kep::FF_BY_NAME, false, nullptr);
        return folder / file;
    }
    template <typename T>
    static void Read(const std::string& name, Image3d<T>& frame) {
        frame.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    }
    /// Notes what is told, and goes on.
    ReadingWatch::Report Note() {
        return [this](const ReadingState& state) {
            told.push_back(state);
            return true;
        };
    }
    /// The numbers of slices that were told, each once.
    std::vector<std::size_t> GetSlices() const {
        std::vector<std::size_t> slices;
        for (const ReadingState& state : told)
            if (slices.empty() || slices.back() != state.slices)
                slices.push_back(state.slices);
        return slices;
    }

    ScratchFolder folder;
    std::vector<ReadingState> told;
};

TEST_F(Watch, IsToldEachSliceThatIsConverted) {
    const std::string name = Write(20, 10, 4);
    Image3d<int> frame;
    {
        const ReadingWatch watch(Note());
        Read(name, frame);
    }
    EXPECT_THAT(GetSlices(), ElementsAre(0U, 1U, 2U, 3U, 4U));
    EXPECT_EQ(told.back().allSlices, 4U);
    EXPECT_EQ(told.back().bytes, 800U);
    EXPECT_EQ(frame.GetVoxel(799), 799 % 251);
}

TEST_F(Watch, IsToldGroupsOfSlicesThatNeedNoConversion) {
    const std::string name = Write(1024, 1024, 40); // a megabyte each
    Image3d<unsigned char> frame;
    {
        const ReadingWatch watch(Note());
        Read(name, frame);
    }
    EXPECT_THAT(GetSlices(), ElementsAre(0U, 8U, 16U, 24U, 32U, 40U));
    EXPECT_EQ(told.back().bytes, 40 * megabyte);
    Image3d<unsigned char> unwatched;
    Read(name, unwatched);
    EXPECT_TRUE(std::equal(frame.begin(), frame.end(), unwatched.begin(), unwatched.end()));
}

TEST_F(Watch, IsToldPiecesOfASingleSlice) {
    const std::string name = Write(1024, 3 * 1024 + 512, 1); // too little for a second thread
    Image3d<unsigned char> frame;
    {
        const ReadingWatch watch(Note());
        Read(name, frame);
    }
    std::vector<std::uint64_t> bytes;
    for (const ReadingState& state : told)
        if (state.allSlices == 1 && state.slices == 0)
            bytes.push_back(state.bytes);
    // The header is read before. The first bytes may be read in smaller pieces.
    ASSERT_GE(bytes.size(), 4U);
    for (std::size_t i = 1; i < bytes.size(); ++i)
        EXPECT_LE(bytes[i] - bytes[i - 1], megabyte);
    EXPECT_EQ(bytes.back(), 3 * megabyte + megabyte / 2);
}

TEST_F(Watch, IsToldEachStripOfACompressedSlice) {
    const std::string name = folder / "a.tif";
    constexpr std::uint32_t strips = 8, rows = 16, width = 256; // small: one thread unpacks it
    {
        const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFOpen(name.c_str(), "w"), &TIFFClose);
        TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, strips * rows);
        TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
        TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, rows);
        std::vector<unsigned char> voxels(width * rows, 7);
        for (std::uint32_t strip = 0; strip < strips; ++strip)
            ASSERT_GT(TIFFWriteEncodedStrip(tiff.get(), strip, voxels.data(), width * rows), 0);
    }
    Image3d<unsigned char> frame;
    const ReadingWatch watch(Note());
    Read(name, frame);
    const auto isWithin = [](const ReadingState& state) { return state.allSlices == 1 && state.slices == 0; };
    EXPECT_GE(std::count_if(told.begin(), told.end(), isWithin), strips);
}

TEST_F(Watch, StopsAndNothingHasChanged) {
    const std::string name = Write(1024, 1024, 64);
    Image3d<unsigned char> frame;
    frame.MakeRoom(1, 1, 1);
    frame.Fill(5);
    std::size_t calls = 0;
    const ReadingWatch watch([&](const ReadingState& state) {
        ++calls;
        return state.slices < 16;
    });
    EXPECT_THROW(Read(name, frame), kep::ReadingStopped);
    EXPECT_EQ(frame.GetNumVoxels(), 1U);
    EXPECT_EQ(frame.GetVoxel(0), 5);
    const std::size_t callsUntilStop = calls;
    kep::FrameReader* reader = nullptr;
    EXPECT_THROW(reader = new kep::FrameReader(name.c_str()), kep::ReadingStopped); // and so it stays
    EXPECT_EQ(reader, nullptr);
    EXPECT_EQ(calls, callsUntilStop);
}

TEST_F(Watch, StopsWithinAPieceWhereOneSliceIsLarge) {
    const std::string name = Write(8192, 8192, 1); // 64 megabytes, which two threads read
    Image3d<unsigned char> frame;
    std::uint64_t atStop = 0;
    const ReadingWatch watch([&](const ReadingState& state) {
        atStop = state.bytes;
        return state.allSlices == 0 || state.bytes < 2 * megabyte;
    });
    EXPECT_THROW(Read(name, frame), kep::ReadingStopped);
    EXPECT_TRUE(frame.IsEmpty());
    EXPECT_GE(atStop, 2 * megabyte);
    EXPECT_LT(atStop, 48 * megabyte); // the other thread may have been quicker
}

TEST_F(Watch, IsToldNothingOfFilesBesideItsLife) {
    const std::string name = Write(20, 10, 4);
    Image3d<int> frame;
    kep::FrameReader before(name.c_str());
    auto watch = std::make_unique<ReadingWatch>(Note());
    kep::FrameReader within(name.c_str());
    const std::size_t opened = told.size();
    EXPECT_GT(opened, 0U);
    {
        std::size_t inner = 0;
        const ReadingWatch other([&inner](const ReadingState&) { return ++inner > 0; });
        Read(name, frame);
        EXPECT_GT(inner, 4U);
    }
    EXPECT_EQ(told.size(), opened);
    Read(name, frame); // the outer watch is back
    const std::size_t last = told.size();
    EXPECT_GT(last, opened);
    watch.reset();
    within.ReadFrame(0, 0, frame);
    before.ReadFrame(0, 0, frame);
    Read(name, frame);
    EXPECT_EQ(told.size(), last);
}

TEST_F(Watch, MayThrowWhatItLikes) {
    const std::string name = Write(8192, 1024, 1);
    Image3d<unsigned char> frame;
    const ReadingWatch watch([](const ReadingState& state) -> bool {
        if (state.allSlices > 0)
            throw std::string("enough");
        return true;
    });
    EXPECT_THROW(Read(name, frame), std::string);
    EXPECT_TRUE(frame.IsEmpty());
}

class Colours : public Watch {
protected:
    /// x: 2, channels: 4, time points: 2, slices: 2; the voxels are the letters a to z and on.
    void SetUp() override {
        std::string voxels;
        for (int i = 0; i < 32; ++i)
            voxels += static_cast<char>('a' + i);
        WriteBytes(name, "\t\nics_version\t2.0\nfilename\tx\nlayout\tparameters\t5\n"
                         "layout\torder\tbits\tx\tz\tch\tt\nlayout\tsizes\t8\t2\t2\t4\t2\n"
                         "representation\tformat\tinteger\nrepresentation\tsign\tunsigned\n"
                         "representation\tcompression\tuncompressed\nrepresentation\tbyte_order\t1\nend\n" +
                             voxels);
    }
    template <typename C>
    static std::vector<int> NumbersOf(const Image3d<kep::RGB_generic<C>>& frame) {
        std::vector<int> numbers;
        for (const kep::RGB_generic<C>& voxel : frame)
            for (const C colour : {voxel.red, voxel.green, voxel.blue})
                numbers.push_back(colour);
        return numbers;
    }
    std::string RefusalOf(std::vector<std::size_t> channels, std::size_t time) {
        Image3d<kep::RGB_generic<unsigned char>> frame;
        try {
            kep::ColourReader(name.c_str(), std::move(channels)).ReadFrame(time, frame);
        } catch (const kep::IOException& failure) {
            EXPECT_TRUE(frame.IsEmpty());
            return failure.GetText();
        }
        return "";
    }

    std::string name = folder / "c.ics";
};

TEST_F(Colours, AreTheChannelsInTheOrderGiven) {
    // Channel c at time t begins at 'a' + 4 c + 16 t.
    Image3d<kep::RGB_generic<unsigned char>> frame;
    kep::ColourReader reader(name.c_str(), {2, 0, 1});
    reader.ReadFrame(1, frame);
    EXPECT_EQ(frame.GetSize(), kep::Vector3d<std::size_t>(2, 1, 2));
    EXPECT_THAT(NumbersOf(frame), ElementsAre(121, 113, 117, 122, 114, 118, 123, 115, 119, 124, 116, 120));
    reader.ReadFrame(0, frame);
    EXPECT_EQ(frame.GetVoxel(0), (kep::RGB_generic<unsigned char>{'i', 'a', 'e'}));
}

TEST_F(Colours, WithoutAChannelAreZero) {
    Image3d<kep::RGB_generic<unsigned short>> frame;
    kep::ColourReader reader(name.c_str(), {3, 3});
    kep::ColourReader moved(std::move(reader));
    moved.ReadFrame(0, frame);
    EXPECT_THAT(NumbersOf(frame), ElementsAre(109, 109, 0, 110, 110, 0, 111, 111, 0, 112, 112, 0));
}

TEST_F(Colours, ThatAreNotThereAreRefused) {
    EXPECT_EQ(RefusalOf({0, 4}, 0),
              "ReadImage(): '" + name + "' has no channel 5 at time point 1; it holds 4 channels and 2 time points.");
    EXPECT_EQ(RefusalOf({0, 1}, 2),
              "ReadImage(): '" + name + "' has no channel 1 at time point 3; it holds 4 channels and 2 time points.");
}

TEST_F(Colours, AreWatchedThroughAllTheirChannels) {
    Image3d<kep::RGB_generic<unsigned char>> frame;
    const ReadingWatch watch(Note());
    kep::ColourReader(name.c_str(), {0, 1, 2}).ReadFrame(0, frame);
    EXPECT_THAT(GetSlices(), ElementsAre(0U, 1U, 2U, 3U, 4U, 5U, 6U));
    EXPECT_EQ(told.back().allSlices, 6U);
}

} // namespace
