#include "core/kepcore/kep_exceptions.h"
#include "model/zel_composition.h"
#include "tests/support/failing_memory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

using namespace zel;

namespace {

constexpr Colour white{255, 255, 255};

/// A picture whose pixels name their place, and which picture they belong to.
struct Numbered {
    Numbered(int width, int height, int number) : size(width, height) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                pixels.emplace_back(static_cast<unsigned char>(x), static_cast<unsigned char>(y),
                                    static_cast<unsigned char>(number));
    }
    PictureSource Source() const { return {pixels.data(), size}; }

    Size size;
    std::vector<Colour> pixels;
};

/// The pictures of the three windows.
struct Windows {
    Windows(const Size& xy, const Size& xz, const Size& yz)
        : pictures{{xy.x, xy.y, 1}, {xz.x, xz.y, 2}, {yz.x, yz.y, 4}} {}
    PerPlane<PictureSource> Sources() const {
        return {{pictures[0].Source(), pictures[1].Source(), pictures[2].Source()}};
    }
    PerPlane<Size> Sizes() const { return {{pictures[0].size, pictures[1].size, pictures[2].size}}; }

    Numbered pictures[3];
};

PerPlane<bool> In(bool xy, bool xz, bool yz) {
    return {{xy, xz, yz}};
}

Colour At(const Sheet& sheet, int x, int y) {
    return sheet.GetVoxel(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0);
}

/// The rules of a view, pixel by pixel.
void ExpectView(const Windows& windows, bool a, bool b, bool c, int spacing) {
    const Sheet sheet = ComposeView(windows.Sources(), In(a, b, c), spacing);
    const Numbered& xy = windows.pictures[0];
    const Numbered& xz = windows.pictures[1];
    const Numbered& yz = windows.pictures[2];
    const int wx = xy.size.x, hy = xy.size.y, hz = xz.size.y;
    const int width = (a || b ? wx : 0) + (c ? hz : 0) + (c && (a || b) ? spacing : 0);
    const int height = (a || c ? hy : 0) + (b ? hz : 0) + (b && (a || c) ? spacing : 0);
    ASSERT_EQ(sheet.GetSize(),
              (kep::Vector3d<std::size_t>(static_cast<std::size_t>(width), static_cast<std::size_t>(height), 1)));
    const int rightAt = a || b ? wx + spacing : 0, underAt = a || c ? hy + spacing : 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            Colour expected = white;
            const auto look = [&](bool isIn, const Numbered& picture, int left, int top) {
                if (isIn && x >= left && x - left < picture.size.x && y >= top && y - top < picture.size.y)
                    expected = picture.pixels[static_cast<std::size_t>((y - top) * picture.size.x + x - left)];
            };
            look(a, xy, 0, 0); // what is drawn later lies over it
            look(c, yz, rightAt, 0);
            look(b, xz, 0, underAt);
            ASSERT_EQ(At(sheet, x, y), expected) << x << " " << y;
        }
}

/// The rules of a gallery, with its numbers as they are told: the quotient in whole numbers, divided as a float.
Size ExpectedGallerySize(const GalleryOptions& o, const Size& tile) {
    const auto n = static_cast<float>((o.last - o.first + 1) / o.step);
    const int other = static_cast<int>(std::ceil(n / static_cast<float>(o.count)));
    const int columns = o.byRows ? other : o.count, rows = o.byRows ? o.count : other;
    return {(o.spacing + tile.x) * columns - o.spacing, (o.spacing + tile.y) * rows - o.spacing};
}

int ExpectedColumns(const GalleryOptions& o, const Size& tile) {
    return (ExpectedGallerySize(o, tile).x + o.spacing) / (tile.x + o.spacing);
}

} // namespace

TEST(ViewSheet, HasTheThreeWindowsBesideOneAnother) {
    const Windows windows({20, 15}, {20, 7}, {7, 15});
    // 20 + 4 + 7 by 15 + 4 + 7
    EXPECT_EQ(ViewSheetSize(windows.Sizes(), In(true, true, true), 4), Size(31, 26));
    const Sheet sheet = ComposeView(windows.Sources(), In(true, true, true), 4);
    EXPECT_EQ(At(sheet, 0, 0), Colour(0, 0, 1));
    EXPECT_EQ(At(sheet, 19, 14), Colour(19, 14, 1));
    EXPECT_EQ(At(sheet, 20, 14), white);
    EXPECT_EQ(At(sheet, 23, 0), white);
    EXPECT_EQ(At(sheet, 24, 0), Colour(0, 0, 4));
    EXPECT_EQ(At(sheet, 30, 14), Colour(6, 14, 4));
    EXPECT_EQ(At(sheet, 0, 18), white);
    EXPECT_EQ(At(sheet, 0, 19), Colour(0, 0, 2));
    EXPECT_EQ(At(sheet, 19, 25), Colour(19, 6, 2));
    EXPECT_EQ(At(sheet, 24, 19), white); // the free corner
    EXPECT_EQ(sheet.GetResolution(), kep::Resolution());
}

TEST(ViewSheet, WithoutYZThereIsNoColumnForIt) {
    const Windows windows({20, 15}, {20, 7}, {7, 15});
    EXPECT_EQ(ViewSheetSize(windows.Sizes(), In(true, true, false), 4), Size(20, 26));
    EXPECT_EQ(ViewSheetSize(windows.Sizes(), In(true, false, true), 4), Size(31, 15));
    EXPECT_EQ(ViewSheetSize(windows.Sizes(), In(false, true, false), 4), Size(20, 7));
    EXPECT_EQ(ViewSheetSize(windows.Sizes(), In(false, false, true), 4), Size(7, 15));
}

TEST(ViewSheet, ThePlaceOfXYStaysWhiteWhileTheTwoOthersNeedIt) {
    const Windows windows({20, 15}, {20, 7}, {7, 15});
    const Sheet sheet = ComposeView(windows.Sources(), In(false, true, true), 4);
    EXPECT_EQ(sheet.GetSize(), (kep::Vector3d<std::size_t>(31, 26, 1)));
    EXPECT_EQ(At(sheet, 0, 0), white);
    EXPECT_EQ(At(sheet, 24, 0), Colour(0, 0, 4));
    EXPECT_EQ(At(sheet, 0, 19), Colour(0, 0, 2));
}

TEST(ViewSheet, PicturesOfOtherSizesAreCutToTheSheet) {
    // XZ has not been drawn yet: its ten rows stand for the depth, and YZ loses all beyond.
    const Windows windows({20, 15}, {10, 10}, {33, 18});
    const Sheet sheet = ComposeView(windows.Sources(), In(true, false, true), 2);
    EXPECT_EQ(sheet.GetSize(), (kep::Vector3d<std::size_t>(32, 15, 1)));
    EXPECT_EQ(At(sheet, 31, 14), Colour(9, 14, 4));
}

TEST(ViewSheet, IsThatOfTheRulesForRandomSizes) {
    std::mt19937 random(20261122);
    std::uniform_int_distribution<int> side(1, 40), spacing(0, 12), bit(0, 1);
    for (int round = 0; round < 300; ++round) {
        const auto any = [&] { return Size(side(random), side(random)); };
        const Windows windows(any(), any(), any());
        ExpectView(windows, bit(random) != 0, bit(random) != 0, bit(random) != 0, spacing(random));
    }
}

TEST(ViewSheet, ASpacingBelowZeroIsNone) {
    const Windows windows({20, 15}, {20, 7}, {7, 15});
    EXPECT_EQ(ViewSheetSize(windows.Sizes(), In(true, true, true), -50), Size(27, 22));
}

TEST(ViewSheet, ShownAndAskedForGoIn) {
    const PerPlane<bool> all = In(true, true, true);
    EXPECT_EQ(WindowsToSave(zel_PT_ALL, all).values, all.values);
    EXPECT_EQ(WindowsToSave(zel_PT_XY, all).values, In(true, false, false).values);
    EXPECT_EQ(WindowsToSave(zel_PT_XZ, all).values, In(false, true, false).values);
    EXPECT_EQ(WindowsToSave(zel_PT_YZ, all).values, In(false, false, true).values);
    EXPECT_EQ(WindowsToSave(zel_PT_ALL, In(true, true, false)).values, In(true, true, false).values);
    EXPECT_EQ(WindowsToSave(zel_PT_YZ, In(true, true, false)).values, In(false, false, false).values);
    for (const int mask : {0, 3, 5, 6, 8, -1})
        EXPECT_EQ(WindowsToSave(static_cast<zel_ProjectionType>(mask), all).values, In(false, false, false).values);
}

TEST(ViewSheet, WithoutMemoryThereIsNoSheet) {
    const Windows windows({20, 15}, {20, 7}, {7, 15});
    std::size_t number = 0;
    for (bool failed = true; failed; ++number) {
        bool thrown = false;
        const FailingMemory fault(number);
        try {
            ComposeView(windows.Sources(), In(true, true, true), 4);
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        failed = fault.HasFailed();
        ASSERT_EQ(thrown, failed) << number;
    }
    EXPECT_GT(number, 1U);
}

TEST(ViewSheet, ASideBeyondIntIsRefused) {
    const int most = std::numeric_limits<int>::max();
    const PerPlane<Size> sizes{{Size(most, 15), Size(most, 7), Size(7, 15)}};
    try {
        ViewSheetSize(sizes, In(true, true, true), 4);
        FAIL() << "accepted";
    } catch (const kep::LibException& refusal) {
        // 2147483647 + 4 + 7 by 15 + 4 + 7
        EXPECT_EQ(refusal.GetText(), "The picture would have 2147483658 x 26 pixels, which is too large.");
    }
}

TEST(Gallery, SevenSlicesInThreeColumnsHaveThreeRows) {
    const GalleryOptions options{0, 6, 1, false, 3, 10};
    EXPECT_EQ(GallerySheetSize(options, {20, 15}), Size(80, 65)); // 3 * 30 - 10 by 3 * 25 - 10
    std::vector<int> asked;
    std::vector<Numbered> pictures;
    for (int slice = 0; slice < 7; ++slice)
        pictures.emplace_back(20, 15, slice);
    const Sheet sheet = ComposeGallery(options, {20, 15}, [&](int slice) {
        asked.push_back(slice);
        return pictures[static_cast<std::size_t>(slice)].Source();
    });
    EXPECT_EQ(asked, (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(At(sheet, 0, 0), Colour(0, 0, 0));
    EXPECT_EQ(At(sheet, 30, 0), Colour(0, 0, 1));
    EXPECT_EQ(At(sheet, 79, 14), Colour(19, 14, 2));
    EXPECT_EQ(At(sheet, 0, 25), Colour(0, 0, 3));
    EXPECT_EQ(At(sheet, 0, 50), Colour(0, 0, 6));
    EXPECT_EQ(At(sheet, 30, 50), white);
    EXPECT_EQ(At(sheet, 79, 64), white);
    EXPECT_EQ(At(sheet, 25, 0), white);
}

TEST(Gallery, RowsAreFilledFirstWhateverIsFixed) {
    // Seven in two rows: four columns.
    const GalleryOptions options{0, 6, 1, true, 2, 1};
    EXPECT_EQ(GallerySheetSize(options, {2, 2}), Size(11, 5));
    std::vector<Numbered> pictures;
    for (int slice = 0; slice < 7; ++slice)
        pictures.emplace_back(2, 2, slice);
    const Sheet sheet =
        ComposeGallery(options, {2, 2}, [&](int slice) { return pictures[static_cast<std::size_t>(slice)].Source(); });
    EXPECT_EQ(At(sheet, 9, 0).blue, 3);
    EXPECT_EQ(At(sheet, 0, 3).blue, 4);
    EXPECT_EQ(At(sheet, 9, 3), white);
}

TEST(Gallery, MoreRowsThanPicturesStayWhite) {
    EXPECT_EQ(GallerySheetSize({0, 2, 1, true, 5, 1}, {2, 2}), Size(2, 14));
}

TEST(Gallery, AStepMayDrawOnePictureMoreThanTheSheetHasRoomFor) {
    // Slices 0 to 6 by 2: 7 / 2 = 3 pictures, but 0, 2, 4 and 6 are drawn.
    const GalleryOptions oneRow{0, 6, 2, true, 1, 1};
    EXPECT_EQ(GallerySheetSize(oneRow, {2, 2}), Size(8, 2));
    int drawn = 0;
    const Numbered picture(2, 2, 9);
    const auto count = [&](int) {
        ++drawn;
        return picture.Source();
    };
    EXPECT_EQ(ComposeGallery(oneRow, {2, 2}, count).GetNumVoxels(), 16U);
    EXPECT_EQ(drawn, 4);
    // In two columns there is room for the fourth.
    const Sheet sheet = ComposeGallery({0, 6, 2, false, 2, 1}, {2, 2}, count);
    EXPECT_EQ(sheet.GetSize(), (kep::Vector3d<std::size_t>(5, 5, 1)));
    EXPECT_EQ(At(sheet, 4, 4), Colour(1, 1, 9));
}

TEST(Gallery, FewerSlicesThanAStepAreOnePicture) {
    EXPECT_EQ(GallerySheetSize({0, 0, 5, true, 1, 10}, {4, 3}), Size(4, 3));
    EXPECT_EQ(GallerySheetSize({3, 5, 50, false, 1, 10}, {4, 3}), Size(4, 3));
}

TEST(Gallery, StepAndCountBelowOneCountAsOne) {
    for (const int wrong : {0, -1, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(GallerySheetSize({0, 2, wrong, true, wrong, 1}, {2, 2}), Size(8, 2));
        std::vector<int> asked;
        const Numbered picture(2, 2, 9);
        const Sheet sheet = ComposeGallery({0, 2, wrong, false, wrong, wrong}, {2, 2}, [&](int slice) {
            asked.push_back(slice);
            return picture.Source();
        });
        EXPECT_EQ(asked, (std::vector<int>{0, 1, 2}));
        EXPECT_EQ(sheet.GetSize(), (kep::Vector3d<std::size_t>(2, 6, 1)));
    }
}

TEST(Gallery, RowsOfAPictureOfAnotherWidthSlip) {
    // Tiles of 3 x 2 out of a picture of 4 x 1: pixels 0 to 2, then pixel 3, and nothing more.
    const Numbered picture(4, 1, 9);
    const Sheet sheet = ComposeGallery({0, 0, 1, true, 1, 0}, {3, 2}, [&](int) { return picture.Source(); });
    EXPECT_EQ(At(sheet, 2, 0), Colour(2, 0, 9));
    EXPECT_EQ(At(sheet, 0, 1), Colour(3, 0, 9));
    EXPECT_EQ(At(sheet, 1, 1), white);
    EXPECT_EQ(At(sheet, 2, 1), white);
}

TEST(Gallery, IsThatOfTheRulesForRandomSizes) {
    std::mt19937 random(20261122);
    std::uniform_int_distribution<int> side(1, 30), spacing(0, 9), slices(0, 20), step(1, 6), count(1, 8), bit(0, 1);
    for (int round = 0; round < 400; ++round) {
        GalleryOptions options;
        options.first = slices(random);
        options.last = options.first + slices(random);
        options.step = step(random);
        if (options.last - options.first + 1 < options.step)
            continue; // the rules give no picture for these, and the sheet has one
        options.byRows = bit(random) != 0;
        options.count = count(random);
        options.spacing = spacing(random);
        const Size tile(side(random), side(random));
        const bool exact = bit(random) != 0;
        std::vector<Numbered> pictures;
        for (int slice = 0; slice <= options.last; ++slice)
            pictures.emplace_back(exact ? tile.x : side(random), exact ? tile.y : side(random), slice);

        const Size size = ExpectedGallerySize(options, tile);
        const int columns = ExpectedColumns(options, tile);
        ASSERT_EQ(GallerySheetSize(options, tile), size);
        std::vector<Colour> expected(static_cast<std::size_t>(size.x) * static_cast<std::size_t>(size.y), white);
        int index = 0;
        for (int slice = options.first; slice <= options.last; slice += options.step, ++index) {
            const std::vector<Colour>& pixels = pictures[static_cast<std::size_t>(slice)].pixels;
            for (int y = 0; y < tile.y; ++y)
                for (int x = 0; x < tile.x; ++x) {
                    const int toX = index % columns * (tile.x + options.spacing) + x;
                    const int toY = index / columns * (tile.y + options.spacing) + y;
                    const auto from = static_cast<std::size_t>(y * tile.x + x);
                    if (from < pixels.size() && toX < size.x && toY < size.y)
                        expected[static_cast<std::size_t>(toY * size.x + toX)] = pixels[from];
                }
        }
        const Sheet sheet = ComposeGallery(
            options, tile, [&](int slice) { return pictures[static_cast<std::size_t>(slice)].Source(); });
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), sheet.begin(), sheet.end())) << round;
    }
}

TEST(Gallery, SidesBeyondIntAreRefusedBeforeAnythingIsDrawn) {
    const int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
    const auto refuse = [](int) -> PictureSource {
        ADD_FAILURE() << "drawn";
        return {};
    };
    for (const GalleryOptions& options : {GalleryOptions{0, 9, 1, false, most, most},
                                          {0, 9, 1, true, most, 0},
                                          {least, most, 1, true, 1, most},
                                          {0, most, 1, false, 1, most}})
        for (const Size& tile : {Size(2, 2), Size(most, most)}) {
            EXPECT_THROW(GallerySheetSize(options, tile), kep::LibException);
            EXPECT_THROW(ComposeGallery(options, tile, refuse), kep::LibException);
        }
    // 100 tiles of 30 million pixels with one between them.
    try {
        GallerySheetSize({0, 99, 1, true, 1, 1}, {30'000'000, 10});
        FAIL() << "accepted";
    } catch (const kep::LibException& refusal) {
        EXPECT_EQ(refusal.GetText(), "The picture would have 3000000099 x 10 pixels, which is too large.");
    }
}

TEST(Gallery, HasRoomForAllSlicesIfWished) {
    const auto lastOf = [](int first, int last, int step) {
        const GalleryOptions roomy = WithRoomForAll({first, last, step, true, 2, 10});
        EXPECT_EQ(roomy.first, first);
        EXPECT_EQ(roomy.step, step);
        return roomy.last;
    };
    EXPECT_EQ(lastOf(0, 6, 1), 6);
    EXPECT_EQ(lastOf(2, 6, 2), 7);  // 2, 4, 6
    EXPECT_EQ(lastOf(2, 7, 2), 7);  // the same
    EXPECT_EQ(lastOf(0, 9, 4), 11); // 0, 4, 8
    EXPECT_EQ(lastOf(5, 5, 100), 104);
    EXPECT_EQ(lastOf(0, std::numeric_limits<int>::max(), 2), std::numeric_limits<int>::max());
    EXPECT_EQ(GallerySheetSize(WithRoomForAll({2, 6, 2, true, 1, 0}), {9, 8}), Size(27, 8));
}
