#include "core/kepalgo/kep_labeledimage3d.h"
#include "core/kepcore/kep_exceptions.h"
#include "tests/core/kepalgo/labelled_twins.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/text_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using kep::nb3D_6;
using testing::Each;
using testing::ElementsAre;
using Size = kep::Vector3d<std::size_t>;
using Box = kep::VOI<kep::T_pair<std::size_t, std::size_t>>;
using Labels8 = kep::LabeledImage3d<unsigned short, unsigned char>;
using Labels16 = kep::LabeledImage3d<unsigned short, unsigned short>;
using LabelsBool = kep::LabeledImage3d<unsigned short, bool>;
using Info8 = kep::ComponentInfo<unsigned short, unsigned char>;

template <typename V>
kep::Image3d<V> MakeImage(const Size& size, const std::vector<V>& voxels) {
    kep::Image3d<V> image;
    image.MakeRoom(size.x, size.y, size.z);
    std::copy(voxels.begin(), voxels.end(), image.begin());
    return image;
}

std::vector<unsigned short> GetLabels(const kep::Image3d<unsigned short>& frame) {
    return {frame.begin(), frame.end()};
}

template <typename V>
void ExpectSameLabels(const kep::LabeledImage3d<unsigned short, V>& got,
                      const kep::LabeledImage3d<unsigned short, V>& expected) {
    ASSERT_EQ(got.size, expected.size);
    ASSERT_TRUE(std::equal(got.begin(), got.end(), expected.begin(), expected.end()));
    ASSERT_EQ(got.components, expected.components);
}

// --- the frame and its table ---

TEST(LabelledFrame, IsLeftEmptyWhenItIsMovedFrom) {
    static_assert(std::is_nothrow_move_constructible_v<Labels8> && std::is_nothrow_move_assignable_v<Labels8>);
    Labels8 labels;
    labels.CreateForegroundRegionsFF(MakeImage<unsigned char>({3, 1, 1}, {5, 0, 7}), nb3D_6);
    const unsigned short* const block = labels.begin();
    Labels8 moved(std::move(labels));
    EXPECT_EQ(moved.begin(), block);
    EXPECT_EQ(moved.components.size(), 2U);
    EXPECT_TRUE(labels.IsEmpty());
    EXPECT_TRUE(labels.components.empty());
    labels.CreateForegroundRegionsFF(MakeImage<unsigned char>({1, 1, 1}, {1}), nb3D_6);
    labels = std::move(moved);
    EXPECT_EQ(labels.begin(), block);
    EXPECT_EQ(labels.components.size(), 2U);
    EXPECT_TRUE(moved.IsEmpty());
    EXPECT_TRUE(moved.components.empty());
}

TEST(LabelledFrame, IsEmptyAtFirst) {
    const Labels8 plain;
    EXPECT_TRUE(plain.IsEmpty());
    EXPECT_TRUE(plain.components.empty());
    EXPECT_EQ(plain.resolution, kep::Resolution());
    const kep::Vector3d<float> offset(1, 2, 3);
    const kep::Resolution resolution(4, 5, 6);
    const Labels8 placed(&offset, &resolution);
    EXPECT_EQ(placed.offset, offset);
    EXPECT_EQ(placed.resolution, resolution);
    EXPECT_EQ(Info8().volume, 0U);
    EXPECT_FALSE(Info8().border);
}

TEST(LabelledFrame, CanBeDeletedAsAFrame) {
    static_assert(std::is_base_of_v<kep::Image3d<unsigned short>, Labels8>);
    static_assert(std::has_virtual_destructor_v<Labels8>);
    kep::Image3d<unsigned short>* const frame = new Labels8;
    delete frame; // the sanitizer tells if the table stays
}

TEST(LabelledFrame, IsCopiedWithItsTable) {
    Labels8 frame;
    frame.CreateRegionsOfLabels(MakeImage<unsigned char>({2, 1, 1}, {7, 0}));
    const Labels8 copy(frame);
    Labels8 assigned;
    assigned = frame;
    frame.SetVoxel(0, 9);
    frame.components.clear();
    for (const Labels8* const other : {&copy, static_cast<const Labels8*>(&assigned)}) {
        EXPECT_EQ(other->GetVoxel(0), 7);
        EXPECT_EQ(other->components.at(7), Info8(Box({0, 0, 0}, {1, 1, 1}), 1, 7, true));
    }
}

TEST(LabelledFrame, LosesItsTableWithItsVoxels) {
    Labels8 frame;
    frame.CreateRegionsOfLabels(MakeImage<unsigned char>({2, 1, 1}, {7, 0}));
    frame.MakeRoom(2, 1, 1); // it has this size: the voxels stay
    EXPECT_EQ(frame.components.size(), 1U);
    frame.MakeRoom(1, 2, 1);
    EXPECT_TRUE(frame.components.empty());
    frame.CreateRegionsOfLabels(MakeImage<unsigned char>({2, 1, 1}, {7, 0}));
    frame.DisposeData();
    EXPECT_TRUE(frame.components.empty());
    EXPECT_EQ(frame.size, Size());
}

// --- flood fill ---

TEST(FloodFill, NumbersComponentsByTheirFirstVoxels) {
    // The U on the left is met as two pieces at first; it keeps the lower number, and what began in between moves up.
    const auto image = MakeImage<unsigned char>({5, 3, 1}, {9, 0, 8, 0, 5, //
                                                            9, 0, 9, 0, 0, //
                                                            9, 9, 9, 0, 6});
    Labels8 labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_THAT(GetLabels(labels), ElementsAre(1, 0, 1, 0, 2, 1, 0, 1, 0, 0, 1, 1, 1, 0, 3));
    EXPECT_EQ(labels.components.size(), 3U);
    // A single slice has no border along z, but its four sides are one.
    EXPECT_EQ(labels.components.at(1), Info8(Box({0, 0, 0}, {3, 3, 1}), 7, 9, true));
    EXPECT_EQ(labels.components.at(2), Info8(Box({4, 0, 0}, {1, 1, 1}), 1, 5, true));
    EXPECT_EQ(labels.components.at(3), Info8(Box({4, 2, 0}, {1, 1, 1}), 1, 6, true));
}

TEST(FloodFill, JoinsVoxelsThatShareAFaceAlone) {
    const auto diagonal =
        MakeImage<bool>({2, 2, 2}, {true, false, false, true, /*next slice*/ false, true, true, false});
    LabelsBool labels;
    labels.CreateForegroundRegionsFF(diagonal, nb3D_6);
    EXPECT_THAT(GetLabels(labels), ElementsAre(1, 0, 0, 2, 0, 3, 4, 0));
    const auto overZ = MakeImage<bool>({1, 2, 2}, {true, false, true, false});
    labels.CreateForegroundRegionsFF(overZ, nb3D_6);
    EXPECT_THAT(GetLabels(labels), ElementsAre(1, 0, 1, 0));
}

TEST(FloodFill, JoinsDifferentValuesAndKeepsTheFirst) {
    const auto image = MakeImage<unsigned short>({3, 1, 1}, {700, 3, 65535});
    Labels16 labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_THAT(GetLabels(labels), ElementsAre(1, 1, 1));
    EXPECT_EQ(labels.components.at(1).voxel_value, 700);
}

TEST(FloodFill, TellsTheBorderByAnyVoxel) {
    // 3 x 3 x 3: only the middle voxel lies on no border.
    auto image = MakeImage<unsigned char>({3, 3, 3}, std::vector<unsigned char>(27));
    image.SetVoxel(1, 1, 1, 4);
    Labels8 labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_EQ(labels.components.at(1), Info8(Box({1, 1, 1}, {1, 1, 1}), 1, 4, false));
    image.SetVoxel(1, 1, 2, 4);
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_EQ(labels.components.at(1), Info8(Box({1, 1, 1}, {1, 1, 2}), 2, 4, true));
}

TEST(FloodFill, TakesPlaceAndDescriptionAndDropsWhatWasThere) {
    auto image = MakeImage<unsigned char>({2, 1, 1}, {0, 3});
    image.SetOffset({1.5F, 2.5F, 3.5F});
    image.SetResolution({4, 5, 6});
    image.SetDescription({{"stain", "DAPI"}});
    Labels8 labels;
    labels.CreateForegroundRegionsFF(MakeImage<unsigned char>({2, 2, 1}, {1, 0, 0, 1}), nb3D_6);
    EXPECT_EQ(labels.components.size(), 2U);
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_EQ(labels.size, Size(2, 1, 1));
    EXPECT_EQ(labels.offset, image.offset);
    EXPECT_EQ(labels.resolution, image.resolution);
    EXPECT_EQ(labels.description, image.description);
    EXPECT_THAT(GetLabels(labels), ElementsAre(0, 1));
    EXPECT_EQ(labels.components.size(), 1U);
    // A frame that keeps its block is cleared too.
    labels.CreateForegroundRegionsFF(MakeImage<unsigned char>({2, 1, 1}, {0, 0}), nb3D_6);
    EXPECT_THAT(GetLabels(labels), ElementsAre(0, 0));
    EXPECT_TRUE(labels.components.empty());
}

TEST(FloodFill, OfAnImageWithoutVoxelsHasNoComponents) {
    Labels8 labels;
    labels.CreateForegroundRegionsFF(MakeImage<unsigned char>({2, 2, 1}, {1, 0, 0, 1}), nb3D_6);
    kep::Image3d<unsigned char> image;
    image.SetResolution({1, 2, 3});
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_TRUE(labels.IsEmpty());
    EXPECT_TRUE(labels.components.empty());
    EXPECT_EQ(labels.resolution, kep::Resolution(1, 2, 3));
    image.MakeRoom(0, 5, 3);
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_EQ(labels.size, Size(0, 5, 3));
    image.MakeRoom(5, 0, 3);
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_EQ(labels.size, Size(5, 0, 3));
}

TEST(FloodFill, GivesUpBehindTheLastLabel) {
    // Every other voxel of a line is a component of its own.
    const auto makeLine = [](std::size_t components) {
        kep::Image3d<unsigned char> image;
        image.MakeRoom(2 * components, 1, 1);
        for (std::size_t i = 0; i < components; ++i)
            image.SetVoxel(2 * i, 1);
        return image;
    };
    Labels8 labels;
    labels.CreateForegroundRegionsFF(makeLine(65535), nb3D_6);
    EXPECT_EQ(labels.components.size(), 65535U);
    EXPECT_EQ(labels.GetVoxel(2 * 65534), 65535);
    EXPECT_EQ(TextOf<kep::LibException>([&] { labels.CreateForegroundRegionsFF(makeLine(65536), nb3D_6); }),
              "CreateForegroundRegionsFF(): More than 65535 components.");
    EXPECT_TRUE(labels.IsEmpty());
    EXPECT_EQ(labels.size, Size());
    EXPECT_TRUE(labels.components.empty());
}

TEST(FloodFill, CountsComponentsAndNotPieces) {
    // A comb of 70000 teeth is found as 70000 pieces, and is one component.
    kep::Image3d<bool> image;
    image.MakeRoom(140000, 2, 1);
    for (std::size_t x = 0; x < 140000; ++x) {
        image.SetVoxel(x, 0, 0, x % 2 == 0);
        image.SetVoxel(x, 1, 0, true);
    }
    LabelsBool labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    ASSERT_EQ(labels.components.size(), 1U);
    EXPECT_EQ(labels.components.at(1).volume, 210000U);
    EXPECT_EQ(labels.GetVoxel(139998), 1);
}

TEST(FloodFill, MayLabelItsOwnImage) {
    Labels16 frame;
    frame.CreateRegionsOfLabels(MakeImage<unsigned short>({5, 1, 1}, {800, 700, 0, 0, 800}));
    frame.CreateForegroundRegionsFF(frame, nb3D_6);
    EXPECT_THAT(GetLabels(frame), ElementsAre(1, 1, 0, 0, 2));
    EXPECT_EQ(frame.components.at(1).voxel_value, 800);
    EXPECT_EQ(frame.components.at(2).voxel_value, 800);
}

// --- labels as they stand ---

TEST(LabelsAsStored, MayLieInPieces) {
    const auto image = MakeImage<unsigned char>({5, 3, 1}, {7, 7, 0, 0, 0, //
                                                            0, 2, 0, 2, 3, //
                                                            0, 0, 0, 7, 0});
    Labels8 labels;
    labels.CreateRegionsOfLabels(image);
    EXPECT_THAT(GetLabels(labels), ElementsAre(7, 7, 0, 0, 0, 0, 2, 0, 2, 3, 0, 0, 0, 7, 0));
    EXPECT_EQ(labels.components.size(), 3U);
    EXPECT_EQ(labels.components.at(7), Info8(Box({0, 0, 0}, {4, 3, 1}), 3, 7, true));
    EXPECT_EQ(labels.components.at(2), Info8(Box({1, 1, 0}, {3, 1, 1}), 2, 2, false));
    EXPECT_EQ(labels.components.at(3), Info8(Box({4, 1, 0}, {1, 1, 1}), 1, 3, true));
}

TEST(LabelsAsStored, OfBackgroundAloneHaveAnEmptyTable) {
    Labels8 labels;
    labels.CreateRegionsOfLabels(MakeImage<unsigned char>({4, 1, 1}, {0, 0, 0, 0}));
    EXPECT_TRUE(labels.components.empty());
    EXPECT_THAT(GetLabels(labels), Each(0));
    EXPECT_EQ(labels.GetNumVoxels(), 4U);
}

TEST(LabelsAsStored, OfTwoValuesAreOne) {
    LabelsBool labels;
    labels.CreateRegionsOfLabels(MakeImage<bool>({3, 1, 1}, {true, false, true}));
    EXPECT_THAT(GetLabels(labels), ElementsAre(1, 0, 1));
    EXPECT_EQ(labels.components.at(1),
              (kep::ComponentInfo<unsigned short, bool>(Box({0, 0, 0}, {3, 1, 1}), 2, true, true)));
}

TEST(LabelsAsStored, ReachToTheLargest) {
    Labels16 labels;
    labels.CreateRegionsOfLabels(MakeImage<unsigned short>({3, 1, 1}, {65535, 1, 65535}));
    ASSERT_EQ(labels.components.size(), 2U);
    EXPECT_EQ(labels.components.at(65535).volume, 2U);
    EXPECT_EQ(labels.components.at(65535).voi, Box({0, 0, 0}, {3, 1, 1}));
}

TEST(LabelsAsStored, TakePlaceAndDescription) {
    auto image = MakeImage<unsigned char>({2, 1, 1}, {0, 3});
    image.SetOffset({1.5F, 2.5F, 3.5F});
    image.SetResolution({4, 5, 6});
    image.SetDescription({{"stain", "DAPI"}});
    Labels8 labels;
    labels.CreateRegionsOfLabels(MakeImage<unsigned char>({2, 2, 1}, {1, 0, 0, 5}));
    labels.CreateRegionsOfLabels(image);
    EXPECT_EQ(labels.size, Size(2, 1, 1));
    EXPECT_EQ(labels.offset, image.offset);
    EXPECT_EQ(labels.resolution, image.resolution);
    EXPECT_EQ(labels.description, image.description);
    EXPECT_EQ(labels.components.size(), 1U);
    image.MakeRoom(7, 0, 2);
    labels.CreateRegionsOfLabels(image);
    EXPECT_EQ(labels.size, Size(7, 0, 2));
    EXPECT_TRUE(labels.components.empty());
}

TEST(LabelsAsStored, MayBeTheFrameItself) {
    Labels16 frame;
    frame.MakeRoom(3, 1, 1);
    frame.SetVoxel(1, 4);
    frame.CreateRegionsOfLabels(frame);
    EXPECT_THAT(GetLabels(frame), ElementsAre(0, 4, 0));
    EXPECT_EQ(frame.components.at(4).volume, 1U);
}

// --- both, beside their slow twins ---

template <typename V>
void ExpectTwinsAgree(const kep::Image3d<V>& image) {
    kep::LabeledImage3d<unsigned short, V> labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    ExpectSameLabels(labels, FloodFillSlowly(image));
    labels.CreateRegionsOfLabels(image);
    ExpectSameLabels(labels, TakeLabelsSlowly(image));
}

template <typename V>
void ExpectTwinsAgreeOnRandomImages(unsigned seed) {
    std::mt19937 random(seed);
    for (std::size_t x = 1; x <= 9; ++x)
        for (std::size_t y = 1; y <= 9; ++y)
            for (std::size_t z = 1; z <= 9; ++z) {
                const unsigned density = 15 + static_cast<unsigned>(random() % 80);
                ASSERT_NO_FATAL_FAILURE(ExpectTwinsAgree(MakeRandomImage<V>({x, y, z}, density, 6, random)))
                    << x << " x " << y << " x " << z;
            }
    // Rows that end before, at and behind the words that they are taken in, and the lines that images may be.
    for (const Size& size : {Size(63, 4, 3), Size(64, 4, 3), Size(65, 4, 3), Size(127, 2, 2), Size(128, 2, 2),
                             Size(129, 2, 2), Size(1, 200, 1), Size(1, 1, 200), Size(200, 1, 1), Size(1, 14, 17)})
        for (const unsigned density : {0U, 3U, 30U, 50U, 70U, 97U, 100U})
            ASSERT_NO_FATAL_FAILURE(ExpectTwinsAgree(MakeRandomImage<V>(size, density, 3, random)))
                << size.x << " x " << size.y << " x " << size.z << ", " << density << " %";
}

TEST(Labelling, AgreesWithItsSlowTwins) {
    ExpectTwinsAgreeOnRandomImages<unsigned char>(1);
    ExpectTwinsAgreeOnRandomImages<unsigned short>(2);
    ExpectTwinsAgreeOnRandomImages<bool>(3);
}

TEST(Labelling, AgreesWithItsSlowTwinsWhereThreadsShareTheRows) {
    // Blocks of five voxels, many of which touch; rows enough that the threads meet within a slice, 59 rows from its
    // start, and more labels than a byte holds.
    std::mt19937 random(4);
    const kep::Image3d<unsigned char> blocks = MakeRandomImage<unsigned char>({61, 24, 27}, 25, 3, random);
    kep::Image3d<unsigned char> image;
    image.MakeRoom(301, 119, 131);
    std::size_t i = 0;
    for (std::size_t z = 0; z < 131; ++z)
        for (std::size_t y = 0; y < 119; ++y)
            for (std::size_t x = 0; x < 301; ++x)
                image.SetVoxel(i++, *blocks.GetVoxelAddr(x / 5, y / 5, z / 5));
    ExpectTwinsAgree(image);
}

TEST(Labelling, AgreesWithItsSlowTwinsOnValuesOfOneByte) {
    // Voxels whose lower byte is 0 are no background.
    const auto image = MakeImage<unsigned short>({6, 1, 1}, {256, 0, 512, 65280, 0, 1});
    ExpectTwinsAgree(image);
    Labels16 labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    EXPECT_THAT(GetLabels(labels), ElementsAre(1, 0, 2, 2, 0, 3));
}

class RealLabels : public testing::TestWithParam<const char*> {};

TEST_P(RealLabels, AgreeWithTheSlowTwins) {
    const std::string name = std::string(ZEL_TEST_DATA) + "/tiff/" + GetParam();
    if (!std::filesystem::exists(name))
        GTEST_SKIP() << "no file " << name;
    const kep::Image3d<unsigned short> image(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    ExpectTwinsAgree(image);
    Labels16 labels;
    labels.CreateRegionsOfLabels(image);
    EXPECT_GT(labels.components.size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Files, RealLabels,
                         testing::Values("labels-2d/membranes_labeled.tif", "labels-2d/xy_16bit_labels__nuclei.tif",
                                         "labels-3d/3d_geometric_features_testlabel.tif",
                                         "labels-3d/label-spots-3d.tif", "labels-3d/xyz_8bit_binary__spots.tif",
                                         "labels-3d/Platynereis_tp7_channel1_rescaled(256x256x103)_gt.tif"));

// --- files ---

TEST(LabelledFrame, IsSavedAsNumbersOf16Bits) {
    const ScratchFolder folder;
    const kep::Vector3d<float> offset(1, 2, 3);
    const kep::Resolution resolution(4, 5, 6);
    kep::Image3d<unsigned char> image(&offset, &resolution);
    image.MakeRoom(3, 2, 2);
    image.SetVoxel(5, 200);
    Labels8 labels;
    labels.CreateForegroundRegionsFF(image, nb3D_6);
    labels.SetVoxel(6, 65535);
    for (const std::string file : {"labels.tif", "labels.ics"}) {
        const std::string name = folder / file;
        labels.SaveImage(name.c_str(), kep::FF_LABELED);
        const kep::Image3d<unsigned short> read(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        EXPECT_EQ(read.size, Size(3, 2, 2));
        EXPECT_EQ(read.offset, offset);
        EXPECT_EQ(read.resolution, resolution);
        EXPECT_EQ(read.GetVoxel(5), 1);
        EXPECT_EQ(read.GetVoxel(6), 65535);
        EXPECT_EQ(read.GetVoxel(0), 0);
    }
    EXPECT_THROW(Labels8().SaveImage((folder / "empty.tif").c_str(), kep::FF_LABELED), kep::IOException);
    EXPECT_THROW(labels.SaveImage((folder / "labels.png").c_str(), kep::FF_LABELED), kep::IOException);
    EXPECT_EQ(folder.List(), (std::vector<std::string>{"labels.ics", "labels.tif"}));
}

} // namespace
