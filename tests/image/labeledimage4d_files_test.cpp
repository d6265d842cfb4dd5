#include "image/zel_labeledimage4d.h"
#include "tests/image/sequence_folder.h"
#include "tests/support/frames.h"
#include "tests/support/text_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using kep::Resolution;
using kep::Vector3d;
using mor::Image4d;
using testing::ElementsAre;
using Size = Vector3d<std::size_t>;
using Box = kep::VOI<kep::T_pair<std::size_t, std::size_t>>;
using Labels = mor::LabeledImage4d<unsigned short, unsigned char>;
using Labels16 = mor::LabeledImage4d<unsigned short, unsigned short>;
using Component = kep::ComponentInfo<unsigned short, unsigned char>;

constexpr const char* noNames = "ReadSequence(): array Names cannot be empty!";
constexpr const char* otherGeometry = "ReadSequence(): The frame metadata differs from the sequence metadata!";
constexpr const char* otherReference = "ReadSequence(): The frame metadata differs from the reference metadata!";

constexpr const Image4d<unsigned char>* noReference = nullptr;

class LabelFiles : public SequenceFolder {
protected:
    /// A file with these voxels, 5 to a row.
    template <typename V>
    void Write(const std::string& file, const std::vector<V>& voxels, const Vector3d<float>& offset = {1, 2, 3},
               const Resolution& resolution = {4, 5, 6}) const {
        kep::Image3d<V> image = FrameOf(voxels, 5);
        image.SetOffset(offset);
        image.SetResolution(resolution);
        image.SaveImage((folder / file).c_str(), kep::FF_BY_NAME, true, nullptr);
    }
    static std::vector<unsigned short> LabelsOf(const kep::Image3d<unsigned short>& frame) {
        return {frame.begin(), frame.end()};
    }
};

// --- ReadSequence ---

TEST_F(LabelFiles, AreLabelsAsStoredOrConnectedComponents) {
    Write<unsigned char>("blobs.tif", {7, 7, 0, 0, 7});
    Labels stored;
    stored.ReadSequence(Names({"blobs.tif"}), noReference);
    EXPECT_THAT(LabelsOf(*stored[0]), ElementsAre(7, 7, 0, 0, 7));
    ASSERT_EQ(stored[0]->components.size(), 1U);
    EXPECT_EQ(stored[0]->components.at(7), Component(Box({0, 0, 0}, {5, 1, 1}), 3, 7, true));

    Labels connected(true);
    connected.ReadSequence(Names({"blobs.tif"}), noReference);
    EXPECT_THAT(LabelsOf(*connected[0]), ElementsAre(1, 1, 0, 0, 2));
    ASSERT_EQ(connected[0]->components.size(), 2U);
    EXPECT_EQ(connected[0]->components.at(1), Component(Box({0, 0, 0}, {2, 1, 1}), 2, 7, true));
    EXPECT_EQ(connected[0]->components.at(2), Component(Box({4, 0, 0}, {1, 1, 1}), 1, 7, true));
}

TEST_F(LabelFiles, OfBackgroundAloneHaveAnEmptyTable) {
    Write<unsigned char>("none.tif", std::vector<unsigned char>(15));
    Labels labels;
    labels.ReadSequence(Names({"none.tif"}), noReference);
    EXPECT_EQ(labels.GetNumFrames(), 1U);
    EXPECT_TRUE(labels[0]->components.empty());
    EXPECT_EQ(labels.GetFrameSize(), 15U);
}

TEST_F(LabelFiles, AreReadOneFileAFrame) {
    Write<unsigned char>("a.tif", {1, 0, 0, 0, 0});
    Write<unsigned char>("b.ics", {0, 2, 0, 0, 0});
    Labels labels(false, nullptr, nullptr, 0.5F);
    labels.MakeRoom(3, 3, 3, 3); // goes
    const wxArrayString names = Names({"a.tif", "b.ics"});
    labels.ReadSequence(names, noReference);
    EXPECT_EQ(labels.TestConsistency(), 0);
    EXPECT_EQ(labels.GetNumFrames(), 2U);
    EXPECT_EQ(labels.GetSize(), Size(5, 1, 1));
    EXPECT_EQ(labels.GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(labels.GetResolution(), Resolution(4, 5, 6));
    EXPECT_EQ(labels.GetTimeStep(), 0.5F); // not the files' business
    EXPECT_EQ(labels.GetImageNames(), names);
    EXPECT_EQ(labels.GetVoxel(1, 1), 2);
    EXPECT_THAT(log.texts, ElementsAre("L_Reading: " + folder / "a.tif", "L_Reading: " + folder / "b.ics"));
    labels.ReadSequence(labels.GetImageNames(), noReference); // by its own names
    EXPECT_EQ(labels.GetNumFrames(), 2U);
}

TEST_F(LabelFiles, AreReadByTheTypeOfTheContainer) {
    Write<unsigned short>("wide.tif", {0, 300, 0, 65535, 0});
    Labels16 wide;
    wide.ReadSequence(Names({"wide.tif"}), noReference);
    EXPECT_THAT(LabelsOf(*wide[0]), ElementsAre(0, 300, 0, 65535, 0));
    Labels narrow;
    EXPECT_THROW(narrow.ReadSequence(Names({"wide.tif"}), noReference), kep::IOException);
    EXPECT_EQ(narrow.GetNumFrames(), 0U);

    Write<bool>("two.tif", {false, true, true, false, true});
    mor::LabeledImage4d<unsigned short, bool> twoValued;
    twoValued.ReadSequence(Names({"two.tif"}), noReference);
    EXPECT_THAT(LabelsOf(*twoValued[0]), ElementsAre(0, 1, 1, 0, 1));
    EXPECT_EQ(twoValued[0]->components.at(1).volume, 3U);
}

TEST_F(LabelFiles, WithoutNamesAreRefusedAndTheOldContentsStay) {
    Labels labels;
    labels.MakeRoom(2, 2, 2, 2);
    const wxArrayString none;
    EXPECT_EQ(TextOf([&] { labels.ReadSequence(none, noReference); }), noNames);
    EXPECT_EQ(TextOf([&] { labels.ReadSequence_First(none, noReference); }), noNames);
    EXPECT_EQ(TextOf([&] { labels.ReadSequence_Next(none); }), noNames);
    EXPECT_EQ(labels.GetNumFrames(), 2U);
    EXPECT_EQ(labels.GetSize(), Size(2, 2, 2));
    EXPECT_TRUE(log.texts.empty());
}

TEST_F(LabelFiles, AreReadStepByStep) {
    Write<unsigned char>("a.tif", {1, 0, 0, 0, 0});
    Write<unsigned char>("b.tif", {0, 2, 0, 0, 0});
    const wxArrayString names = Names({"a.tif", "b.tif"});
    Labels labels;
    labels.ReadSequence_First(names, noReference);
    EXPECT_EQ(labels.GetNumFrames(), 1U);
    labels.ReadSequence_Next(names);
    EXPECT_EQ(labels.GetNumFrames(), 2U);
    EXPECT_EQ(labels.GetImageName(1), names[1]);
    EXPECT_EQ(labels.TestConsistency(), 0);
}

TEST_F(LabelFiles, MustAgreeInGeometryExactly) {
    Write<unsigned char>("first.tif", {1, 0, 0, 0, 0});
    Write<unsigned char>("offset.tif", {1, 0, 0, 0, 0}, {1, 2, std::nextafter(3.0F, 4.0F)});
    Write<unsigned char>("resolution.tif", {1, 0, 0, 0, 0}, {1, 2, 3}, {std::nextafter(4.0F, 5.0F), 5, 6});
    Write<unsigned char>("size.tif", std::vector<unsigned char>(10));
    for (const std::string second : {"offset.tif", "resolution.tif", "size.tif"}) {
        Labels labels;
        EXPECT_EQ(TextOf([&] {
                      labels.ReadSequence(Names({"first.tif", second}), noReference);
                  }),
                  otherGeometry)
            << second;
        EXPECT_EQ(labels.GetNumFrames(), 1U);
        EXPECT_EQ(labels.TestConsistency(), 0);
    }
}

template <typename T>
void ExpectReferenceIsCompared(const wxArrayString& names) {
    const Vector3d<float> offset(1, 2, 3);
    const Resolution resolution(4, 5, 6);
    Image4d<T> reference(&offset, &resolution);
    reference.MakeRoom(5, 1, 1, 3); // its number of frames does not count
    Labels labels;
    labels.ReadSequence(names, &reference);
    EXPECT_EQ(labels.GetNumFrames(), 1U);

    const auto expectRefusal = [&] {
        Labels refused;
        refused.MakeRoom(2, 2, 2, 2);
        EXPECT_EQ(TextOf([&] { refused.ReadSequence_First(names, &reference); }), otherReference);
        EXPECT_TRUE(refused.IsEmpty());
        EXPECT_EQ(refused.GetNumFrames(), 0U);
        EXPECT_EQ(refused.TestConsistency(), 0);
    };
    reference.SetResolution({4, 5, 7});
    expectRefusal();
    reference.SetResolution(resolution);
    reference.SetOffset({1, 2, std::nextafter(3.0F, 4.0F)});
    expectRefusal();
    reference.SetOffset(offset);
    reference.MakeRoom(5, 1, 2, 1);
    expectRefusal();
}

TEST_F(LabelFiles, AreComparedWithTheImageThatTheyBelongTo) {
    Write<unsigned char>("a.tif", {1, 0, 0, 0, 0});
    const wxArrayString names = Names({"a.tif"});
    ExpectReferenceIsCompared<unsigned char>(names);
    ExpectReferenceIsCompared<unsigned short>(names);
    ExpectReferenceIsCompared<float>(names);
    ExpectReferenceIsCompared<std::complex<float>>(names);
}

TEST_F(LabelFiles, ThatCannotBeReadLeaveTheWholeFrames) {
    Write<unsigned char>("a.tif", {1, 0, 0, 0, 0});
    WriteBytes(folder / "broken.tif", "no image");
    for (const std::string bad : {"missing.tif", "broken.tif"}) {
        Labels labels;
        EXPECT_THROW(labels.ReadSequence(Names({"a.tif", bad}), noReference), kep::IOException);
        EXPECT_EQ(labels.GetNumFrames(), 1U);
        EXPECT_EQ(labels.TestConsistency(), 0);
        EXPECT_THROW(labels.ReadSequence(Names({bad, "a.tif"}), noReference), kep::IOException);
        EXPECT_EQ(labels.GetNumFrames(), 0U);
        EXPECT_EQ(labels.TestConsistency(), 0);
    }
}

TEST_F(LabelFiles, WithTooManyComponentsAreRefused) {
    // 65541 voxels by themselves: three in every other one of 43694 rows.
    std::vector<unsigned char> voxels(5 * 2 * 21847, 0);
    for (std::size_t row = 0; row < 2 * 21847; row += 2)
        for (const std::size_t x : {0U, 2U, 4U})
            voxels[row * 5 + x] = 1;
    Write("dust.tif", voxels);
    Labels labels(true);
    EXPECT_EQ(TextOf<kep::LibException>([&] { labels.ReadSequence(Names({"dust.tif"}), noReference); }),
              "CreateForegroundRegionsFF(): More than 65535 components.");
    EXPECT_EQ(labels.GetNumFrames(), 0U);
    EXPECT_EQ(labels.TestConsistency(), 0);
}

// --- SaveSequence ---

TEST_F(LabelFiles, AreWrittenWithNumbersInTheirNames) {
    Write<unsigned short>("a.tif", {0, 300, 0, 65535, 0});
    Write<unsigned short>("b.tif", {1, 0, 0, 0, 0});
    Labels16 labels;
    labels.ReadSequence(Names({"a.tif", "b.tif"}), noReference);
    log.texts.clear();
    const std::string prefix = folder / "out";
    labels.SaveSequence(prefix.c_str(), 3, ".tif", 0, 1);
    EXPECT_THAT(log.texts, ElementsAre("Saving: " + prefix + "000.tif", "Saving: " + prefix + "001.tif"));
    Labels16 again;
    again.ReadSequence(Names({"out000.tif", "out001.tif"}), noReference);
    EXPECT_THAT(LabelsOf(*again[0]), ElementsAre(0, 300, 0, 65535, 0));
    EXPECT_EQ(again[0]->components, labels[0]->components);
    EXPECT_EQ(again.GetOffset(), labels.GetOffset());
    EXPECT_EQ(again.GetResolution(), labels.GetResolution());
    const kep::ImageInfo info = kep::ReadImageInfo((prefix + "000.tif").c_str());
    EXPECT_EQ(info.voxelType, kep::VoxelType::Gray16);
}

TEST_F(LabelFiles, AreNotWrittenAgainstTheRules) {
    Labels labels;
    labels.MakeRoom(2, 1, 1, 2);
    const std::string prefix = folder / "out";
    EXPECT_EQ(TextOf([&] { labels.SaveSequence(prefix.c_str(), 3, ".tif", 1, 0); }),
              "SaveSequence(): StopIndex cannot be smaller than StartIndex!");
    labels[1]->offset.x = 1;
    EXPECT_EQ(TextOf([&] { labels.SaveSequence(prefix.c_str(), 3, ".tif", 0, 1); }),
              "SaveSequence(): The image is not consistent!");
    EXPECT_TRUE(folder.List().empty());
}

// --- real label volumes ---

TEST_F(LabelFiles, OfRealVolumesHaveTablesThatAddUp) {
    const std::string name = std::string(ZEL_TEST_DATA) + "/tiff/labels-3d/label-spots-3d.tif";
    if (!std::filesystem::exists(name))
        GTEST_SKIP() << "no file " << name;
    wxArrayString names;
    names.Add(wxString::FromUTF8(name));
    for (const bool connected : {false, true}) {
        Labels16 labels(connected);
        labels.ReadSequence(names, noReference);
        const auto& frame = *labels[0];
        std::size_t volume = 0;
        for (const auto& [label, component] : frame.components) {
            volume += component.volume;
            EXPECT_EQ(frame.components.at(label).volume,
                      static_cast<std::size_t>(std::count(frame.begin(), frame.end(), label)));
        }
        EXPECT_GT(volume, 0U);
        EXPECT_EQ(volume, frame.GetNumVoxels() - static_cast<std::size_t>(std::count(frame.begin(), frame.end(), 0)));
    }
}

} // namespace
