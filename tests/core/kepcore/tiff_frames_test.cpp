// TIFF files with several channels and time points, sound and hostile, made byte by byte.

#include "tests/core/kepcore/tiff_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <sstream>
#include <string>
#include <vector>

namespace {

using tifftest::Description;
using tifftest::MakeStack;
using tifftest::PlainTags;
using tifftest::TiffBuilder;
using Tags = std::vector<TiffBuilder::Tag>;
using Bytes = std::vector<std::uint8_t>;
using ::testing::HasSubstr;
using ::testing::Optional;

class TiffFrames : public ::testing::Test {
protected:
    std::unique_ptr<kep::detail::FrameSet> Open(const TiffBuilder& builder) {
        WriteBytes(name, builder.GetFile());
        return kep::detail::OpenTiffFrames(std::make_unique<kep::detail::InputFile>(name));
    }
    std::string FailureOf(const TiffBuilder& builder) {
        try {
            Open(builder);
        } catch (const kep::IOException& failure) {
            return failure.GetText();
        }
        return "";
    }
    std::string Damaged(const std::string& what) const {
        return "ReadImage(): The file '" + name + "' is damaged: " + what;
    }

    ScratchFolder folder;
    std::string name = folder / "image.tif";
};

/// All voxels of a frame.
Bytes ReadAll(kep::detail::FrameSet& frames, std::size_t channel, std::size_t time) {
    const auto source = frames.Open(channel, time);
    Bytes voxels(source->GetHeader().GetSliceBytes() * source->GetHeader().size.z, 0xCD);
    source->ReadSlices(source->GetHeader().size.z, reinterpret_cast<std::byte*>(voxels.data()));
    return voxels;
}

/// The pages of a frame in a file of MakeStack: a tenth of the first voxel of each slice.
std::vector<int> PagesOf(kep::detail::FrameSet& frames, std::size_t channel, std::size_t time) {
    const Bytes voxels = ReadAll(frames, channel, time);
    std::vector<int> pages;
    for (std::size_t i = 0; i < voxels.size(); i += 6)
        pages.push_back(voxels[i] / 10);
    return pages;
}

std::string Ome(const std::string& attributes, const std::string& inside = "", const std::string& root = "") {
    return "<OME " + root + "><Image><Pixels " + attributes + ">" + inside + "</Pixels></Image></OME>";
}

TEST_F(TiffFrames, AnImageJHyperstackRunsOverChannelsThenSlicesThenTimes) {
    // 2 channels, 3 slices, 2 times: page c + 2 (z + 3 t).
    const auto frames = Open(MakeStack(
        12, Description("ImageJ=1.53c\nimages=12\nchannels=2\nslices=3\nframes=2\nhyperstack=true\nfinterval=0.5\n")));
    EXPECT_EQ(frames->GetAxes().channels, 2U);
    EXPECT_EQ(frames->GetAxes().times, 2U);
    EXPECT_THAT(frames->GetAxes().frameInterval, Optional(0.5));
    EXPECT_EQ(frames->GetHeader().size, kep::Vector3d<std::size_t>(3, 2, 3));
    EXPECT_EQ(frames->GetHeader().components, 1);
    EXPECT_EQ(PagesOf(*frames, 0, 0), (std::vector<int>{0, 2, 4}));
    EXPECT_EQ(PagesOf(*frames, 1, 0), (std::vector<int>{1, 3, 5}));
    EXPECT_EQ(PagesOf(*frames, 0, 1), (std::vector<int>{6, 8, 10}));
    EXPECT_EQ(PagesOf(*frames, 1, 1), (std::vector<int>{7, 9, 11}));
    EXPECT_EQ(PagesOf(*frames, 0, 0), (std::vector<int>{0, 2, 4})); // also after the others
}

TEST_F(TiffFrames, SlicesThatAreNotNamedAreCounted) {
    const auto frames = Open(MakeStack(12, Description("ImageJ=1.53c\nimages=12\nchannels=2\nframes=3\n")));
    EXPECT_EQ(frames->GetHeader().size.z, 2U);
    EXPECT_EQ(PagesOf(*frames, 1, 2), (std::vector<int>{9, 11}));
}

TEST_F(TiffFrames, AFileWithoutADescriptionIsOneFrame) {
    const auto frames = Open(MakeStack(4));
    EXPECT_EQ(frames->GetAxes().channels, 1U);
    EXPECT_EQ(frames->GetAxes().times, 1U);
    EXPECT_EQ(PagesOf(*frames, 0, 0), (std::vector<int>{0, 1, 2, 3}));
}

TEST_F(TiffFrames, OmeXmlNamesTheOrderOfAxes) {
    struct Case {
        const char* order;
        int z, c, t; ///< pages from one to the next
    };
    // 2 slices, 3 channels, 2 times.
    for (const Case& axes : {Case{"XYZCT", 1, 2, 6}, Case{"XYZTC", 1, 4, 2}, Case{"XYCZT", 3, 1, 6},
                             Case{"XYCTZ", 6, 1, 3}, Case{"XYTZC", 2, 4, 1}, Case{"XYTCZ", 6, 2, 1}}) {
        const auto frames = Open(MakeStack(
            12, Description(Ome("SizeZ=\"2\" SizeC=\"3\" SizeT=\"2\" TimeIncrement=\"2\" TimeIncrementUnit=\"min\" "
                                "DimensionOrder=\"" +
                                std::string(axes.order) + "\""))));
        EXPECT_THAT(frames->GetAxes().frameInterval, Optional(120.0));
        for (int c = 0; c < 3; ++c) {
            for (int t = 0; t < 2; ++t) {
                const int first = c * axes.c + t * axes.t;
                EXPECT_EQ(PagesOf(*frames, static_cast<std::size_t>(c), static_cast<std::size_t>(t)),
                          (std::vector<int>{first, first + axes.z}))
                    << axes.order;
            }
        }
    }
}

/// A "TiffData" element for one plane.
std::string Plane(int z, int c, int t, int page, const std::string& file = "") {
    std::ostringstream xml;
    xml << "<TiffData FirstZ='" << z << "' FirstC='" << c << "' FirstT='" << t << "' IFD='" << page << "'>";
    if (!file.empty())
        xml << "<UUID FileName='" << file << "'>urn:uuid:" << file << "</UUID>";
    xml << "</TiffData>";
    return xml.str();
}

TEST_F(TiffFrames, OmeXmlMayPutPlanesIntoAnyPages) {
    const std::string sizes = "DimensionOrder=\"XYZCT\" SizeZ=\"2\" SizeC=\"2\" SizeT=\"1\"";
    const std::string channels = "<Channel Name='DAPI' Color='65535'/><Channel Name=' GFP ' Color='-16776961'/>";
    const auto frames = Open(MakeStack(4, Description(Ome(sizes, channels + Plane(0, 0, 0, 3) + Plane(1, 0, 0, 1) +
                                                                     Plane(0, 1, 0, 0) + Plane(1, 1, 0, 2)))));
    EXPECT_EQ(PagesOf(*frames, 0, 0), (std::vector<int>{3, 1}));
    EXPECT_EQ(PagesOf(*frames, 1, 0), (std::vector<int>{0, 2}));
    // 65535 is 0x0000FFFF: blue, opaque. -16776961 is 0xFF0000FF: red.
    const std::vector<kep::ChannelInfo> infos{{"DAPI", kep::RGB_generic<unsigned char>(0, 0, 255)},
                                              {"GFP", kep::RGB_generic<unsigned char>(255, 0, 0)}};
    EXPECT_EQ(frames->GetAxes().channelInfos, infos);

    // From page 1 on, four planes in the order of the dimensions; page 0 belongs to none.
    const auto run = Open(MakeStack(5, Description(Ome(sizes, "<TiffData IFD='1' PlaneCount='4'/>"))));
    EXPECT_EQ(PagesOf(*run, 0, 0), (std::vector<int>{1, 2}));
    EXPECT_EQ(PagesOf(*run, 1, 0), (std::vector<int>{3, 4}));
}

TEST_F(TiffFrames, AFileOfASeriesHoldsItsOwnPlanes) {
    // Times 1 and 2 of three lie here, of channel 1 of two; channel 0 and time 0 elsewhere.
    const std::string sizes = "DimensionOrder=\"XYZCT\" SizeZ=\"2\" SizeC=\"2\" SizeT=\"3\"";
    std::string planes;
    for (int t = 0; t < 3; ++t)
        for (int z = 0; z < 2; ++z)
            planes += Plane(z, 0, t, z + 2 * t, "other.tif") +
                      Plane(z, 1, t, t == 0 ? z : z + 2 * (t - 1), t == 0 ? "third.tif" : "image.tif");
    const auto frames = Open(MakeStack(4, Description(Ome(sizes, "<Channel Name='a'/><Channel Name='b'/>" + planes))));
    EXPECT_EQ(frames->GetAxes().channels, 1U);
    EXPECT_EQ(frames->GetAxes().times, 2U);
    EXPECT_EQ(frames->GetAxes().series, (kep::AxisCounts{2, 2, 3}));
    EXPECT_EQ(frames->GetAxes().channelInfos, (std::vector<kep::ChannelInfo>{{"b", std::nullopt}}));
    EXPECT_EQ(PagesOf(*frames, 0, 0), (std::vector<int>{0, 1}));
    EXPECT_EQ(PagesOf(*frames, 0, 1), (std::vector<int>{2, 3}));
}

TEST_F(TiffFrames, SlicesInOtherFilesAreMissed) {
    const std::string sizes = "DimensionOrder=\"XYZCT\" SizeZ=\"2\" SizeC=\"1\" SizeT=\"2\"";
    const auto frames =
        Open(MakeStack(3, Description(Ome(sizes, Plane(0, 0, 0, 0, "image.tif") + Plane(1, 0, 0, 1, "image.tif") +
                                                     Plane(0, 0, 1, 2, "image.tif") + Plane(1, 0, 1, 0, "b.tif")))));
    EXPECT_EQ(PagesOf(*frames, 0, 0), (std::vector<int>{0, 1}));
    try {
        frames->Open(0, 1);
        ADD_FAILURE() << "a frame with one of two slices was opened";
    } catch (const kep::IOException& failure) {
        EXPECT_EQ(failure.GetText(), "ReadImage(): '" + name +
                                         "' holds 1 of 2 slices of channel 1 at time point 2; the others lie in other "
                                         "files.");
    }
    EXPECT_EQ(FailureOf(MakeStack(1, Description(Ome(sizes, Plane(0, 0, 0, 0, "b.tif"))))),
              Damaged("its description promises 4 pages, and it holds 1; its voxels are said to lie in other files"));
}

TEST_F(TiffFrames, PlanesInPagesThatAreNotThereAreRefused) {
    const std::string sizes = "DimensionOrder=\"XYZCT\" SizeZ=\"1\" SizeC=\"2\" SizeT=\"1\"";
    const auto failure = [&](const std::string& planes) {
        return FailureOf(MakeStack(2, Description(Ome(sizes, planes))));
    };
    EXPECT_EQ(failure(Plane(0, 0, 0, 0) + Plane(0, 1, 0, 2)),
              Damaged("its description puts a plane into page 3, and it holds 2"));
    EXPECT_EQ(failure(Plane(0, 0, 0, 0) + "<TiffData FirstC='1' IFD='18446744073709551615'/>"),
              Damaged("its description puts a plane into page 1000001, and it holds 2"));
    const std::string twice = Damaged("its description puts two planes into one page, or one into two");
    EXPECT_EQ(failure(Plane(0, 0, 0, 0) + Plane(0, 1, 0, 0)), twice);
    EXPECT_EQ(failure(Plane(0, 0, 0, 0) + Plane(0, 1, 0, 1) + Plane(0, 0, 0, 1)), twice);
    // 1500 planes, no two in the same slice, channel or time.
    std::string sparse;
    for (int i = 0; i < 1500; ++i)
        sparse += Plane(i, i, i, i);
    EXPECT_THAT(FailureOf(MakeStack(2, Description(Ome("SizeZ=\"9999\" SizeC=\"9999\" SizeT=\"9999\"", sparse)))),
                HasSubstr("its planes are too few"));
}

TEST_F(TiffFrames, NumbersThatDoNotMakeThePagesAreRefused) {
    const auto failure = [&](const std::string& lines) {
        return FailureOf(MakeStack(6, Description("ImageJ=1.53c\n" + lines)));
    };
    EXPECT_EQ(failure("images=8\nslices=2\nframes=4\n"), Damaged("its description promises 8 pages, and it holds 6"));
    EXPECT_EQ(failure("images=4\nslices=2\nframes=2\n"), Damaged("its description promises 4 pages, and it holds 6"));
    EXPECT_EQ(failure("images=6\nchannels=2\nframes=2\n"),
              Damaged("its 6 pages are not whole slices of 2 channels at 2 time points"));
    EXPECT_EQ(failure("images=6\nchannels=4\n"), Damaged("its 6 pages are not whole slices of 4 channels"));
    const std::string huge = "18446744073709551615";
    EXPECT_EQ(failure("channels=" + huge + "\nframes=" + huge + "\nslices=" + huge + "\n"),
              Damaged("its description promises too many channels"));
    EXPECT_EQ(failure("frames=" + huge + "\nslices=3\n"),
              Damaged("its description promises " + huge + " pages, and it holds 6"));
    EXPECT_THAT(failure("channels=4294967296\nframes=4294967295\n"), HasSubstr("its 6 pages are not whole slices"));
    EXPECT_THAT(FailureOf(MakeStack(6, Description(Ome("SizeZ=\"" + huge + "\" SizeC=\"" + huge + "\"")))),
                HasSubstr("is damaged"));
    EXPECT_THAT(FailureOf(MakeStack(6, Description(Ome("SizeZ=\"" + huge + "\" SizeC=\"2\"", "<TiffData/>")))),
                HasSubstr("is damaged"));
    // Minus numbers and words count as missing.
    const auto one = Open(MakeStack(6, Description("ImageJ=1.53c\nimages=6\nchannels=-2\nframes=two\n")));
    EXPECT_EQ(PagesOf(*one, 0, 0), (std::vector<int>{0, 1, 2, 3, 4, 5}));
}

TEST_F(TiffFrames, ALoopOfPagesIsRefused) {
    TiffBuilder builder = MakeStack(2, Description("ImageJ=1.53c\nimages=2\nframes=2\n"));
    builder.LinkTo(8 + 6); // behind the header and the voxels of the first page
    EXPECT_THAT(FailureOf(builder), HasSubstr("is damaged"));
}

TEST_F(TiffFrames, PicturesOfTheirOwnKindAreNoFrames) {
    EXPECT_EQ(FailureOf(MakeStack(2, Description("<OME><Image><Pixels/></Image><Image><Pixels/></Image></OME>"))),
              "ReadImage(): '" + name + "' holds 2 images; one file must hold one frame.");
}

TEST_F(TiffFrames, VoxelsInOneBlockWithOnePage) {
    // One page of 3 x 2, and the voxels of five more behind its own: 3 times, 2 slices.
    TiffBuilder builder;
    std::vector<std::uint64_t> numbers(36);
    std::iota(numbers.begin(), numbers.end(), 0);
    const std::size_t at = builder.AddNumbers(numbers, 1);
    builder.AddDirectory(PlainTags(3, 2, 8, at) + Description("ImageJ=1.53c\nimages=6\nslices=2\nframes=3\n"));
    const auto frames = Open(builder);
    ASSERT_EQ(frames->GetAxes().times, 3U);
    for (std::size_t t = 0; t < 3; ++t) {
        Bytes expected(12);
        std::iota(expected.begin(), expected.end(), static_cast<std::uint8_t>(12 * t));
        EXPECT_EQ(ReadAll(*frames, 0, t), expected);
    }
}

/// One page of 2 x 1 pixels; sample s of pixel i is 10 s + i.
TiffBuilder MakePixels(unsigned samples, bool planesApart, const Tags& more) {
    TiffBuilder builder;
    std::vector<std::uint64_t> numbers;
    for (unsigned k = 0; k < 2 * samples; ++k)
        numbers.push_back(planesApart ? k / 2 * 10 + k % 2 : k % samples * 10 + k / samples);
    const std::size_t at = builder.AddNumbers(numbers, 1);
    Tags tags = PlainTags(2, 1, 8, at);
    tags[2].values.assign(samples, 8);
    tags[6].values = {samples};
    tags[8].values = {samples * 2};
    if (planesApart) {
        tags[5].values.clear();
        for (unsigned s = 0; s < samples; ++s)
            tags[5].values.push_back(at + 2 * s);
        tags[8].values.assign(samples, 2);
        tags.push_back({284, 3, {2}});
    }
    builder.AddDirectory(tags + more);
    return builder;
}

TEST_F(TiffFrames, SamplesWithoutAMeaningAreChannels) {
    for (const bool planesApart : {false, true}) {
        for (const unsigned samples : {2U, 3U, 5U, 9U}) {
            const std::vector<std::uint64_t> unspecified(samples - 1, 0);
            for (const Tags& extra : {Tags{}, Tags{{338, 3, unspecified}}}) {
                const auto frames = Open(MakePixels(samples, planesApart, extra));
                ASSERT_EQ(frames->GetAxes().channels, samples);
                EXPECT_EQ(frames->GetHeader().components, 1);
                for (unsigned c = 0; c < samples; ++c)
                    EXPECT_EQ(ReadAll(*frames, c, 0),
                              (Bytes{static_cast<std::uint8_t>(10 * c), static_cast<std::uint8_t>(10 * c + 1)}));
            }
        }
        // Two channels and alpha.
        const auto alpha = Open(MakePixels(3, planesApart, {{338, 3, {0, 2}}}));
        ASSERT_EQ(alpha->GetAxes().channels, 2U);
        EXPECT_EQ(ReadAll(*alpha, 1, 0), (Bytes{10, 11}));
    }
}

TEST_F(TiffFrames, ColourIsOneChannel) {
    TiffBuilder builder;
    Tags tags = PlainTags(2, 1, 8, builder.AddNumbers({1, 2, 3, 4, 5, 6}, 1));
    tags[2].values = {8, 8, 8};
    tags[4].values = {2};
    tags[6].values = {3};
    tags[8].values = {6};
    builder.AddDirectory(tags + Description(Ome("SizeC=\"3\"")));
    const auto frames = Open(builder);
    EXPECT_EQ(frames->GetAxes().channels, 1U);
    EXPECT_EQ(frames->GetHeader().components, 3);
    EXPECT_EQ(ReadAll(*frames, 0, 0), (Bytes{1, 2, 3, 4, 5, 6}));
}

} // namespace
