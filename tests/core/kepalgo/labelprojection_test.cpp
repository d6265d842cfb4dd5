#include "core/kepalgo/kep_labelprojection.h"
#include "tests/core/kepalgo/labelled_twins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

using testing::ElementsAre;
using Size = kep::Vector3d<std::size_t>;
using Labels = kep::LabeledImage3d<unsigned short, unsigned char>;
using Picture = kep::Image3d<unsigned short>;

Labels MakeLabels(const Size& size, const std::vector<unsigned short>& voxels) {
    Labels labels;
    labels.MakeRoom(size.x, size.y, size.z);
    std::copy(voxels.begin(), voxels.end(), labels.begin());
    return labels;
}

std::vector<unsigned short> GetPixels(const Picture& picture) {
    return {picture.begin(), picture.end()};
}

TEST(LabelProjection, TakesTheLargestLabelAlongItsAxis) {
    // Two slices of two rows of three voxels.
    const auto src = MakeLabels({3, 2, 2}, {1, 9, 3, /**/ 4, 0, 0, /*next slice*/ 0, 2, 8, /**/ 5, 0, 65535});
    Picture dst;
    kep::Get_Labeled_AF_XY(src, dst, nullptr, false);
    EXPECT_EQ(dst.size, Size(3, 2, 1));
    EXPECT_THAT(GetPixels(dst), ElementsAre(1, 9, 8, 5, 0, 65535));
    kep::Get_Labeled_AF_XZ(src, dst, nullptr, false);
    EXPECT_EQ(dst.size, Size(3, 1, 2));
    EXPECT_THAT(GetPixels(dst), ElementsAre(4, 9, 3, 5, 2, 65535));
    kep::Get_Labeled_AF_YZ(src, dst, nullptr, false);
    EXPECT_EQ(dst.size, Size(1, 2, 2));
    EXPECT_THAT(GetPixels(dst), ElementsAre(9, 4, 8, 65535));
}

TEST(LabelProjection, TakesResolutionAndOffsetWithZeroOnTheCollapsedAxis) {
    auto src = MakeLabels({1, 1, 1}, {3});
    src.SetOffset({1.5F, -2.5F, 3.5F});
    src.SetResolution({4, 5, 6});
    Picture dst;
    kep::Get_Labeled_AF_XY(src, dst, nullptr, true);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(1.5F, -2.5F, 0.0F));
    EXPECT_EQ(dst.resolution, kep::Resolution(4, 5, 6));
    kep::Get_Labeled_AF_XZ(src, dst, nullptr, false);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(1.5F, 0.0F, 3.5F));
    kep::Get_Labeled_AF_YZ(src, dst, nullptr, false);
    EXPECT_EQ(dst.offset, kep::Vector3d<float>(0.0F, -2.5F, 3.5F));
}

TEST(LabelProjection, OfTheSecondKindKeepsOutlinesAlone) {
    const std::vector<unsigned short> picture{0, 0, 0, 0, 0, 0, 0, //
                                              0, 5, 5, 5, 0, 0, 0, //
                                              0, 5, 5, 5, 6, 6, 6, //
                                              0, 5, 5, 5, 6, 6, 6, //
                                              0, 0, 5, 0, 6, 6, 6};
    // Gone are the 5 in the middle of its square and the one below it, which has 5 on all four sides, and the one 6
    // that neither touches another label nor the edge.
    const std::vector<unsigned short> outlines{0, 0, 0, 0, 0, 0, 0, //
                                               0, 5, 5, 5, 0, 0, 0, //
                                               0, 5, 0, 5, 6, 6, 6, //
                                               0, 5, 0, 5, 6, 0, 6, //
                                               0, 0, 5, 0, 6, 6, 6};
    Picture dst;
    kep::Get_Labeled_AF_XY(MakeLabels({7, 5, 1}, picture), dst, nullptr, true);
    EXPECT_EQ(GetPixels(dst), outlines);
    kep::Get_Labeled_AF_XZ(MakeLabels({7, 1, 5}, picture), dst, nullptr, true);
    EXPECT_EQ(GetPixels(dst), outlines);
    kep::Get_Labeled_AF_YZ(MakeLabels({1, 7, 5}, picture), dst, nullptr, true);
    EXPECT_EQ(GetPixels(dst), outlines);
}

TEST(LabelProjection, FindsOutlinesInThePictureAndNotInTheVolume) {
    // Both slices are full, with labels that differ: only the upper one counts.
    std::vector<unsigned short> voxels(18, 3);
    std::fill(voxels.begin(), voxels.begin() + 4, 1);
    Picture dst;
    kep::Get_Labeled_AF_XY(MakeLabels({3, 3, 2}, voxels), dst, nullptr, true);
    EXPECT_THAT(GetPixels(dst), ElementsAre(3, 3, 3, 3, 0, 3, 3, 3, 3));
}

TEST(LabelProjection, IgnoresLabelsThatTheMaskLeavesOut) {
    const auto mask = std::make_unique<bool[]>(65536);
    mask[2] = mask[65535] = true;
    const auto src = MakeLabels({3, 1, 2}, {2, 7, 1, /*next slice*/ 9, 65535, 8});
    Picture dst;
    kep::Get_Labeled_AF_XY(src, dst, mask.get(), false);
    EXPECT_THAT(GetPixels(dst), ElementsAre(2, 65535, 0));
    EXPECT_EQ(src.GetVoxel(2), 1); // the labels themselves stay
    mask[0] = true;                // background stays background
    kep::Get_Labeled_AF_XY(src, dst, mask.get(), false);
    EXPECT_THAT(GetPixels(dst), ElementsAre(2, 65535, 0));
}

TEST(LabelProjection, OfNothingIsNothing) {
    Picture dst;
    dst.MakeRoom(2, 2, 1);
    kep::Get_Labeled_AF_XY(Labels(), dst, nullptr, true);
    EXPECT_TRUE(dst.IsEmpty());
}

// The slow twin: a walk along the collapsed axis for each pixel, then a look at its neighbours.
Picture ProjectSlowly(const Labels& src, std::size_t Size::*collapsed, const bool* mask, bool secondKind) {
    Picture whole;
    Size size = src.size;
    size.*collapsed = 1;
    whole.MakeRoom(size.x, size.y, size.z);
    for (std::size_t i = 0; i < src.GetNumVoxels(); ++i) {
        Size p = src.GetPos(i);
        p.*collapsed = 0;
        const unsigned short label = src.GetVoxel(i);
        if (mask == nullptr || mask[label])
            whole.SetVoxel(p.x, p.y, p.z, std::max(label, whole.GetVoxel(p)));
    }
    if (!secondKind)
        return whole;
    Picture outlines(whole);
    for (std::size_t i = 0; i < whole.GetNumVoxels(); ++i) {
        bool isOutline = false;
        for (auto axis : {&Size::x, &Size::y, &Size::z}) {
            if (axis == collapsed)
                continue;
            const Size p = whole.GetPos(i);
            for (const bool up : {false, true}) {
                Size next = p;
                next.*axis += up ? std::size_t{1} : ~std::size_t{0};
                isOutline = isOutline || next.*axis >= size.*axis || whole.GetVoxel(next) != whole.GetVoxel(p);
            }
        }
        if (!isOutline)
            outlines.SetVoxel(i, 0);
    }
    return outlines;
}

TEST(LabelProjection, AgreesWithItsSlowTwin) {
    std::mt19937 random(5);
    const auto mask = std::make_unique<bool[]>(65536);
    std::generate_n(mask.get(), 65536, [&random] { return random() % 4 != 0; });
    const auto expectSame = [](const Picture& got, const Picture& expected) {
        EXPECT_EQ(got.size, expected.size);
        EXPECT_EQ(GetPixels(got), GetPixels(expected));
    };
    for (int round = 0; round < 200; ++round) {
        const Size size(1 + random() % 19, 1 + random() % 19, 1 + random() % 4);
        const unsigned density = 60 + static_cast<unsigned>(random() % 41);
        Labels src;
        // Few labels over many voxels, so that there are insides.
        src.CreateRegionsOfLabels(MakeRandomImage<unsigned char>(size, density, 2, random));
        for (const bool* const chosen : {static_cast<const bool*>(nullptr), static_cast<const bool*>(mask.get())}) {
            for (const bool secondKind : {false, true}) {
                Picture dst;
                kep::Get_Labeled_AF_XY(src, dst, chosen, secondKind);
                expectSame(dst, ProjectSlowly(src, &Size::z, chosen, secondKind));
                kep::Get_Labeled_AF_XZ(src, dst, chosen, secondKind);
                expectSame(dst, ProjectSlowly(src, &Size::y, chosen, secondKind));
                kep::Get_Labeled_AF_YZ(src, dst, chosen, secondKind);
                expectSame(dst, ProjectSlowly(src, &Size::x, chosen, secondKind));
            }
        }
    }
}

} // namespace
