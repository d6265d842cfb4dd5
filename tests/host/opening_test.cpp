#include "host/message.h"
#include "host/opening.h"
#include "tests/host/ics_frames.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace zelviewer {
namespace {

using testing::HasSubstr;

class Opening : public testing::Test {
protected:
    /// Writes a frame of 3 x 2 x 2 voxels, the first of which is `first` and the rest T(). @return its name
    template <typename T>
    std::string Write(const std::string& name, T first, const kep::Resolution& resolution = {}) {
        kep::Image3d<T> frame(nullptr, &resolution);
        frame.MakeRoom(3, 2, 2);
        frame.Fill(T());
        frame.SetVoxel(0, first);
        return Save(frame, folder / name);
    }
    static Options For(const std::vector<std::string>& files) {
        Options options;
        options.files = files;
        options.screenshot = "unused.png"; // no dialog
        return options;
    }
    template <typename T>
    static std::unique_ptr<mor::Image4d<T>> Read(const Options& options) {
        return ReadFiles<T>(options, PlanOpening(options)).image;
    }
    template <typename T>
    static std::string FailureOf(const Options& options) {
        try {
            Read<T>(options);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "no failure";
    }

    /// An ICS file of 2 voxels of 8 bits a frame: the letters from `first` on, channel after channel, then times.
    std::string WriteFrames(const std::string& name, int channels, int times, char first = 'a') {
        std::string voxels;
        for (int i = 0; i < 2 * channels * times; ++i)
            voxels += static_cast<char>(first + i);
        WriteBytes(folder / name, test::IcsOfFrames(channels, times, voxels));
        return folder / name;
    }

    using Colour = kep::RGB_generic<unsigned char>;
    ScratchFolder folder;
};

TEST_F(Opening, TimePointsOfAFileAreTheSequence) {
    const Options options = For({WriteFrames("a.ics", 1, 3), WriteFrames("b.ics", 1, 1, 'x')});
    EXPECT_EQ(PlanOpening(options).frames, 4U);
    EXPECT_EQ(PlanOpening(options).bytes, 8U);
    const auto image = Read<unsigned char>(options);
    ASSERT_EQ(image->GetNumFrames(), 4U);
    EXPECT_EQ(image->GetVoxel(1, 0), 'b');
    EXPECT_EQ(image->GetVoxel(1, 2), 'f');
    EXPECT_EQ(image->GetVoxel(0, 3), 'x');
    EXPECT_EQ(image->GetImageName(1), wxString(folder / "a.ics, 2 of 3"));
    EXPECT_EQ(image->GetImageName(3), wxString(folder / "b.ics"));
    EXPECT_EQ(image->TestConsistency(), 0);
    EXPECT_EQ(image->GetCachedMaxValue(), 'y');
}

TEST_F(Opening, TwoChannelsAreRedAndGreen) {
    const Options options = For({WriteFrames("a.ics", 2, 2)});
    EXPECT_EQ(PlanOpening(options).type, DisplayType::RGB8);
    EXPECT_EQ(PlanOpening(options).bytes, 12U);
    const auto image = Read<Colour>(options);
    ASSERT_EQ(image->GetNumFrames(), 2U);
    EXPECT_EQ(image->GetVoxel(0, 0), (Colour{'a', 'c', 0}));
    EXPECT_EQ(image->GetVoxel(1, 1), (Colour{'f', 'h', 0}));
}

TEST_F(Opening, ChannelsBecomeTheColoursThatTheUserNames) {
    Options options = For({WriteFrames("a.ics", 5, 1)});
    options.channels = {4, 0, 2};
    EXPECT_EQ(PlanOpening(options).type, DisplayType::RGB8);
    EXPECT_EQ(Read<Colour>(options)->GetVoxel(1, 0), (Colour{'j', 'b', 'f'}));
    options.channels = {3};
    ASSERT_EQ(PlanOpening(options).type, DisplayType::Gray8);
    EXPECT_EQ(Read<unsigned char>(options)->GetVoxel(0, 0), 'g');
    options.binary = true;
    EXPECT_EQ(Read<unsigned char>(options)->GetVoxel(0, 0), 255);
    options.channels = {5};
    EXPECT_EQ(FailureOf<unsigned char>(options), folder / "a.ics: There is no channel 6, it has 5 channels.");
}

TEST_F(Opening, SeveralFilesWithChannelsAreASequenceOfColours) {
    const Options options = For({WriteFrames("a.ics", 3, 1), WriteFrames("b.ics", 3, 1, 'p')});
    ASSERT_EQ(PlanOpening(options).type, DisplayType::RGB8);
    const auto image = Read<Colour>(options);
    ASSERT_EQ(image->GetNumFrames(), 2U);
    EXPECT_EQ(image->GetVoxel(0, 0), (Colour{'a', 'c', 'e'}));
    EXPECT_EQ(image->GetVoxel(0, 1), (Colour{'p', 'r', 't'}));
    EXPECT_EQ(FailureOf<Colour>(For({folder / "a.ics", WriteFrames("d.ics", 2, 1)})),
              folder / "d.ics: It has 2 channels to show, and " + folder / "a.ics has 3.");
}

TEST_F(Opening, WhereTheChannelIsOpenThereIsAQuestion) {
    const OpeningPlan plan = PlanOpening(For({WriteFrames("a.ics", 4, 1)}));
    ASSERT_TRUE(plan.question);
    EXPECT_EQ(plan.question->file, folder / "a.ics");
    EXPECT_EQ(plan.question->most, 3U);
    EXPECT_THAT(plan.question->channels, testing::ElementsAre("Channel 1", "Channel 2", "Channel 3", "Channel 4"));
    try {
        Refuse(*plan.question);
        ADD_FAILURE();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.what(), folder / "a.ics: It has 4 channels: name the one to show by --channel, or two or "
                                           "three by --channels.");
    }
    EXPECT_FALSE(PlanOpening(For({WriteFrames("b.ics", 3, 1)})).question);
}

TEST_F(Opening, LabelsAreOneFileForEachFrame) {
    Options options = For({WriteFrames("a.ics", 1, 2)});
    options.labels = {Save(FrameOf<unsigned char>({1, 0}), folder / "l1.tif"),
                      Save(FrameOf<unsigned char>({2, 2}), folder / "l2.tif")};
    const auto image = Read<unsigned char>(options);
    EXPECT_EQ(ReadLabels(options, *image)->GetNumFrames(), 2U);
    options.labels.pop_back();
    EXPECT_THROW(ReadLabels(options, *image), Failure);
}

TEST_F(Opening, EveryTypeOfFileHasATypeThatIsShown) {
    using Short = unsigned short;
    EXPECT_EQ(PlanOpening(For({Write<unsigned char>("a.tif", 7)})).type, DisplayType::Gray8);
    EXPECT_EQ(PlanOpening(For({Write<unsigned short>("b.tif", 7)})).type, DisplayType::Gray16);
    EXPECT_EQ(PlanOpening(For({Write<int>("c.tif", -7)})).type, DisplayType::Int);
    EXPECT_EQ(PlanOpening(For({Write<unsigned long long>("d.tif", 7)})).type, DisplayType::Int);
    EXPECT_EQ(PlanOpening(For({Write<float>("e.tif", 7)})).type, DisplayType::Float);
    EXPECT_EQ(PlanOpening(For({Write<double>("f.tif", 7)})).type, DisplayType::Float);
    EXPECT_EQ(PlanOpening(For({Write<kep::RGB_generic<unsigned char>>("g.tif", {1, 2, 3})})).type, DisplayType::RGB8);
    EXPECT_EQ(PlanOpening(For({Write<kep::RGB_generic<Short>>("h.tif", {1, 2, 3})})).type, DisplayType::RGB16);
    EXPECT_EQ(PlanOpening(For({Write<std::complex<float>>("i.ics", {1, 2})})).type, DisplayType::Complex);
    EXPECT_EQ(PlanOpening(For({Write<std::complex<double>>("j.ics", {1, 2})})).type, DisplayType::Complex);
    EXPECT_EQ(PlanOpening(For({Write<bool>("k.tif", true)})).type, DisplayType::Gray8);
}

TEST_F(Opening, TheWantedTypeWinsAndTheBytesAreThoseInMemory) {
    Options options = For({Write<unsigned char>("a.tif", 7), Write<unsigned char>("b.tif", 8)});
    EXPECT_EQ(PlanOpening(options).bytes, 2U * 12U);
    options.type = DisplayType::Complex;
    EXPECT_EQ(PlanOpening(options).type, DisplayType::Complex);
    EXPECT_EQ(PlanOpening(options).bytes, 2U * 12U * 8U);
}

TEST_F(Opening, FilesOfDifferentTypesAreReadInOneThatHoldsBoth) {
    const std::string narrow = Write<unsigned char>("a.tif", 7), wide = Write<unsigned short>("b.tif", 700);
    const Options options = For({narrow, wide});
    ASSERT_EQ(PlanOpening(options).type, DisplayType::Gray16);
    const auto image = Read<unsigned short>(options);
    ASSERT_EQ(image->GetNumFrames(), 2U);
    EXPECT_EQ(image->GetVoxel(0, 0), 7);
    EXPECT_EQ(image->GetVoxel(0, 1), 700);
    EXPECT_EQ(image->GetImageName(1), wxString(wide));
}

TEST_F(Opening, WiderTypes) {
    EXPECT_EQ(WiderType(DisplayType::Int, DisplayType::Gray8), DisplayType::Int);
    EXPECT_EQ(WiderType(DisplayType::Float, DisplayType::Complex), DisplayType::Complex);
    EXPECT_EQ(WiderType(DisplayType::RGB8, DisplayType::RGB16), DisplayType::RGB16);
    EXPECT_EQ(WiderType(DisplayType::RGB8, DisplayType::Gray8), DisplayType::RGB8);
    EXPECT_EQ(WiderType(DisplayType::Gray16, DisplayType::RGB8), DisplayType::RGB16);
}

TEST_F(Opening, ValuesAreKeptOrTheFileIsRefused) {
    EXPECT_EQ(Read<int>(For({Write<unsigned long long>("a.tif", 2'147'483'647ULL)}))->GetVoxel(0, 0), 2'147'483'647);
    const std::string large = Write<unsigned long long>("b.tif", 2'147'483'648ULL);
    EXPECT_EQ(FailureOf<int>(For({large})),
              large + ": The value 2147483648 at (0, 0, 0) does not fit into 32-bit integer.");
}

TEST_F(Opening, BinaryFilesBecome0And255) {
    Options options = For({Write<unsigned short>("a.tif", 3)});
    options.binary = true;
    ASSERT_EQ(PlanOpening(options).type, DisplayType::Gray8);
    const auto image = Read<unsigned char>(options);
    EXPECT_EQ(image->GetVoxel(0, 0), 255);
    EXPECT_EQ(image->GetVoxel(1, 0), 0);
}

TEST_F(Opening, AMissingFileIsFoundBeforeAnyIsRead) {
    const std::string good = Write<unsigned char>("a.tif", 7), missing = folder / "b.tif";
    EXPECT_EQ(FailureOf<unsigned char>(For({good, missing})), missing + ": There is no such file.");
}

TEST_F(Opening, AFileThatDoesNotBelongToTheSequenceIsNamed) {
    const std::string first = Write<unsigned char>("a.tif", 7, {1, 1, 1});
    const std::string second = Write<unsigned char>("b.tif", 7, {2, 2, 2});
    EXPECT_EQ(FailureOf<unsigned char>(For({first, second})),
              second + ": Its voxel size differs from that of " + first + ".");
    const std::string third = Save(FrameOf<unsigned char>({1, 2}), folder / "c.tif");
    EXPECT_EQ(FailureOf<unsigned char>(For({first, third})),
              third + ": It has 2 x 1 x 1 voxels, and " + first + " has 3 x 2 x 2.");
}

TEST_F(Opening, TheResolutionIsSetOnlyWhereTheFileHasNone) {
    Options options = For({Write<unsigned char>("a.tif", 7), Write<unsigned char>("b.tif", 7)});
    options.resolution = kep::Vector3d<float>(5, 6, 7);
    const auto image = Read<unsigned char>(options);
    EXPECT_EQ(image->GetResolution(), kep::Resolution(5, 6, 7));
    EXPECT_EQ(image->TestConsistency(), 0);
    options.files = {Write<unsigned char>("c.ics", 7, {1, 2, 3})};
    EXPECT_EQ(Read<unsigned char>(options)->GetResolution(), kep::Resolution(1, 2, 3));
}

TEST_F(Opening, LabelsAreReadBesideTheirImage) {
    Options options = For({Write<float>("a.tif", 7, {1, 2, 3}), Write<float>("b.tif", 7, {1, 2, 3})});
    options.labels = {Write<unsigned char>("la.tif", 9, {1, 2, 3}), Write<int>("lb.tif", 300, {1, 2, 3})};
    const auto image = Read<float>(options);
    for (const bool components : {false, true}) {
        options.components = components;
        const auto labels = ReadLabels<float>(options, *image);
        EXPECT_EQ(labels->TestConsistency(), 0);
        ASSERT_EQ(labels->GetNumFrames(), 2U);
        EXPECT_EQ(labels->GetVoxel(0, 0), components ? 1 : 9);
        EXPECT_EQ(labels->GetVoxel(0, 1), components ? 1 : 300);
        EXPECT_EQ(labels->GetVoxel(1, 1), 0);
    }
}

TEST_F(Opening, LabelsWithoutAVoxelSizeTakeTheImages) {
    Options options = For({Write<unsigned char>("a.tif", 7, {1, 2, 3})});
    options.labels = {Write<unsigned char>("la.tif", 9)};
    const auto image = Read<unsigned char>(options);
    EXPECT_EQ(ReadLabels(options, *image)->GetResolution(), kep::Resolution(1, 2, 3));
}

TEST_F(Opening, LabelsThatDoNotBelongToTheImageAreRefused) {
    Options options = For({Write<unsigned char>("a.tif", 7, {1, 2, 3})});
    const auto image = Read<unsigned char>(options);
    const auto failureOf = [&](const std::string& labels) -> std::string {
        options.labels = {labels};
        try {
            ReadLabels(options, *image);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "no failure";
    };
    const std::string other = Write<unsigned char>("la.tif", 9, {1, 2, 4});
    EXPECT_EQ(failureOf(other), other + ": The labels differ from the image in size, voxel size or offset.");
    const std::string missing = folder / "missing.tif";
    EXPECT_EQ(failureOf(missing), missing + ": There is no such file.");
    EXPECT_THAT(failureOf(Write<int>("lb.tif", 65536, {1, 2, 3})), HasSubstr("65536"));
}

TEST_F(Opening, TheSyntheticSequenceIsConsistent) {
    const auto [image, labels] = OpenSyntheticCells();
    EXPECT_EQ(image->TestConsistency(), 0);
    EXPECT_EQ(image->GetNumFrames(), 10U);
    EXPECT_GT(image->GetCachedMaxValue(), 500);
    EXPECT_LT(image->GetCachedMinValue(), 150);
    EXPECT_EQ(labels->TestConsistency(), 0);
    EXPECT_EQ(labels->GetNumFrames(), 10U);
    EXPECT_EQ(labels->GetSize(), image->GetSize());
    EXPECT_EQ(labels->GetOffset(), image->GetOffset());
    EXPECT_EQ(labels->GetResolution(), image->GetResolution());
    EXPECT_EQ(labels->GetImage(0)->components.size(), 12U) << "cells of the first frame";
    EXPECT_GT(labels->GetImage(9)->components.size(), 12U) << "some have divided";
}

} // namespace
} // namespace zelviewer
