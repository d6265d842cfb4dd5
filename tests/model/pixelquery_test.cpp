#include "model/zel_pixelquery.h"

#include "core/kepalgo/kep_copytoimage.h"

#include <gtest/gtest.h>

#include <random>

namespace zel {
namespace {

using Voxel = kep::Vector3d<std::size_t>;
using Microns = kep::Vector3d<float>;

const Plane& xy = planes[0];
const Plane& xz = planes[1];
const Plane& yz = planes[2];

/// 20 x 10 x 8 voxels of 1 x 1 x 2 microns, from (100, 50, 0); 2 pixels a micron; from (104, 52, 4) on 8 x 4 x 6
/// microns are seen, that is 16 x 8 x 12 pixels. The cut is in voxel (10, 5, 3).
View SmallView() {
    View view;
    view.boundingBox = {{100, 50, 0}, {20, 10, 16}};
    view.visibleBox = {{104, 52, 4}, {8, 4, 6}};
    view.scale = {2, 2, 2};
    view.cutStep = {1, 1, 2};
    view.options.cut = {110.5F, 55.5F, 7.0F};
    return view;
}

const ImageGeometry image{{100, 50, 0}, {20, 10, 8}, {1, 1, 0.5F}};
constexpr int border = 2;

std::optional<PixelPlace> Locate(const View& view, const Plane& plane, const Point& pixel) {
    const kep::Vector3d<int> pixels(16, 8, 12);
    const Size client(At(pixels, plane.horizontal), At(pixels, plane.vertical));
    return LocatePixel(view, image, plane, {client.x + border, client.y + border}, client, pixel);
}

using Place = std::optional<PixelPlace>;

TEST(LocatePixel, GivesPlaceAndVoxelInEachPlane) {
    // Pixel (5, 3) lies 2.5 and 1.5 microns from the visible corner.
    EXPECT_EQ(Locate(SmallView(), xy, {5, 3}), Place({Microns(106.5F, 53.5F, 7.0F), Voxel(6, 3, 3)}));
    EXPECT_EQ(Locate(SmallView(), xz, {5, 3}), Place({Microns(106.5F, 55.5F, 5.5F), Voxel(6, 5, 2)}));
    EXPECT_EQ(Locate(SmallView(), yz, {5, 3}), Place({Microns(110.5F, 53.5F, 6.5F), Voxel(10, 3, 3)}));
}

TEST(LocatePixel, LowerFacesAreInsideAndUpperOnesAreNot) {
    View view = SmallView();
    view.visibleBox.offset = {100, 50, 0};
    EXPECT_EQ(Locate(view, xy, {0, 0}), Place({Microns(100, 50, 7), Voxel(0, 3 - 3, 3)}));
    EXPECT_EQ(Locate(view, xy, {-1, 0}), std::nullopt);
    EXPECT_EQ(Locate(view, xy, {0, -1}), std::nullopt);
    EXPECT_EQ(Locate(view, xy, {39, 19}), Place({Microns(119.5F, 59.5F, 7), Voxel(19, 9, 3)}));
    EXPECT_EQ(Locate(view, xy, {40, 19}), std::nullopt);
    EXPECT_EQ(Locate(view, xy, {39, 20}), std::nullopt);
    view.options.cut.z = 0;
    EXPECT_EQ(Locate(view, xy, {0, 0}), Place({Microns(100, 50, 0), Voxel(0, 0, 0)}));
    view.options.cut.z = 16; // the picture shows the last layer there
    EXPECT_EQ(Locate(view, xy, {0, 0}), std::nullopt);
}

TEST(LocatePixel, ACutNextToTheFarFaceIsInTheLastLayer) {
    View view = SmallView();
    view.options.cut.z = 15.999F; // within the tolerance by which the next layer, had there been one, is shown
    EXPECT_EQ(Locate(view, xy, {5, 3}), Place({Microns(106.5F, 53.5F, 15.999F), Voxel(6, 3, 7)}));
}

TEST(LocatePixel, AMirroredAxisNamesTheVoxelOfThePictureAndAPlaceBesideIt) {
    View view = SmallView();
    view.options.reversedX = true;
    // The picture has column 16 - 1 - 5 = 10 there, 5 microns from the corner; the place counts from the window with
    // its border, 18 - 1 - 5 = 12, 6 microns.
    EXPECT_EQ(Locate(view, xy, {5, 3}), Place({Microns(110, 53.5F, 7), Voxel(9, 3, 3)}));
    EXPECT_EQ(Locate(view, xz, {5, 3}), Place({Microns(110, 55.5F, 5.5F), Voxel(9, 5, 2)}));
    // In YZ the place follows X's flag along Z, which is not mirrored in the picture: (14 - 1 - 5) / 2 = 4 microns.
    EXPECT_EQ(Locate(view, yz, {5, 3}), Place({Microns(110.5F, 53.5F, 8), Voxel(10, 3, 3)}));
    view.options.reversedX = false;
    view.options.reversedY = true;
    // Row 8 - 1 - 3 = 4, 2 microns; the place 10 - 1 - 3 = 6, 3 microns.
    EXPECT_EQ(Locate(view, xy, {5, 3}), Place({Microns(106.5F, 55, 7), Voxel(6, 4, 3)}));
    EXPECT_EQ(Locate(view, yz, {5, 3}), Place({Microns(110.5F, 55, 6.5F), Voxel(10, 4, 3)}));
    // In XZ the place follows Y's flag along Z: (14 - 1 - 3) / 2 = 5 microns.
    EXPECT_EQ(Locate(view, xz, {5, 3}), Place({Microns(106.5F, 55.5F, 9), Voxel(6, 5, 2)}));
    view.options.reversedY = false;
    view.options.reversedZ = true;
    // Z mirrors the pictures and no place. XZ: row 12 - 1 - 3 = 8, 4 microns; YZ: column 12 - 1 - 5 = 6, 3 microns.
    EXPECT_EQ(Locate(view, xz, {5, 3}), Place({Microns(106.5F, 55.5F, 5.5F), Voxel(6, 5, 4)}));
    EXPECT_EQ(Locate(view, yz, {5, 3}), Place({Microns(110.5F, 53.5F, 6.5F), Voxel(10, 3, 3)}));
    EXPECT_EQ(Locate(view, xy, {5, 3}), Locate(SmallView(), xy, {5, 3}));
}

TEST(LocatePixel, BesideTheImageThereIsNothingInEitherSense) {
    View view = SmallView();
    view.visibleBox.offset.x = 98; // 4 black columns to the left
    EXPECT_EQ(Locate(view, xy, {3, 3}), std::nullopt);
    EXPECT_NE(Locate(view, xy, {4, 3}), std::nullopt);
    view.options.reversedX = true;
    // Now they are to the right. Column 13 is black, although its place, 18 - 1 - 13 = 4, is the image's first.
    EXPECT_NE(Locate(view, xy, {11, 3}), std::nullopt);
    EXPECT_EQ(Locate(view, xy, {12, 3}), std::nullopt);
    EXPECT_EQ(Locate(view, xy, {13, 3}), std::nullopt);
    view = SmallView();
    view.visibleBox.offset.y = 48; // 4 black rows, below now
    view.options.reversedY = true;
    EXPECT_EQ(Locate(view, xy, {5, 3}), Place({Microns(106.5F, 51, 7), Voxel(6, 0, 3)}));
    EXPECT_EQ(Locate(view, xy, {5, 4}), std::nullopt);
    EXPECT_EQ(Locate(view, xy, {5, 5}), std::nullopt) << "although its place, 10 - 1 - 5 = 4, is the image's first";
}

TEST(LocatePixel, AWindowOfOnePixelOnTheFarFaceShowsTheLastVoxel) {
    View view = SmallView();
    view.visibleBox.offset.x = 119.999F;
    const Place place = LocatePixel(view, image, xy, {3, 10}, {1, 8}, {0, 0});
    ASSERT_NE(place, std::nullopt);
    EXPECT_EQ(place->voxel, Voxel(19, 2, 3));
}

TEST(LocatePixel, NamesTheVoxelThatResamplingChose) {
    std::mt19937 random(11);
    const auto between = [&random](double low, double high) {
        return static_cast<float>(std::uniform_real_distribution<double>(low, high)(random));
    };
    const auto below = [&random](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    int checked = 0;
    for (int round = 0; round < 200; ++round) {
        ImageGeometry geometry;
        geometry.offset = {between(-500, 500), between(-5, 5), between(-50, 50)};
        geometry.voxels = {20, 15, 10};
        geometry.resolution = kep::Resolution(between(0.2, 12), between(0.2, 12), between(0.2, 12));
        View view;
        view.Open(geometry);
        view.options.zoom = below(7) - 2;
        ASSERT_TRUE(view.Arrange({60 + below(40), 60 + below(40)}, border));
        for (const Axis axis : axes) {
            view.options.Reversed(axis) = below(2) == 1;
            const float free = At(view.boundingBox.size, axis) - At(view.visibleBox.size, axis);
            At(view.visibleBox.offset, axis) = At(geometry.offset, axis) + std::max(0.0F, free) * between(0, 1);
            At(view.options.cut, axis) =
                At(geometry.offset, axis) + At(view.boundingBox.size, axis) * between(0.01, 0.99);
        }
        // An image whose voxels hold their numbers plus 1; 0 is beside it.
        kep::Image3d<int> numbers(&geometry.offset, &geometry.resolution);
        numbers.MakeRoom(20, 15, 10);
        for (std::size_t i = 0; i < numbers.GetNumVoxels(); ++i)
            numbers.SetVoxel(i, static_cast<int>(i) + 1);
        const auto arranged = *view.Arrange({90, 90}, border);
        for (const Plane& plane : planes) {
            const Rect& rect = arranged[plane.type];
            const Size window(rect.width, rect.height), client(rect.width - border, rect.height - border);
            const Microns offset = view.GetSliceOffset(plane);
            const kep::Resolution scale(view.scale);
            kep::Image3d<int> slice(&offset, &scale);
            const Voxel voxels = VoxelsOfSlice(plane, client);
            slice.MakeRoom(voxels.x, voxels.y, voxels.z);
            slice.Fill(0);
            kep::CopyToImage(numbers, slice);
            for (int i = 0; i < 50; ++i) {
                const Point pixel(below(client.x), below(client.y));
                const auto at = FindInSlice(plane, view.options, RowsOfPicture(plane, client), slice.GetSize(), pixel);
                ASSERT_TRUE(at);
                const Place place = LocatePixel(view, geometry, plane, window, client, pixel);
                if (!place)
                    continue; // its position lies beside the box: a border away
                const int shown = slice.GetVoxel(*at);
                const bool isMirrored = view.options.reversedX || view.options.reversedY || view.options.reversedZ;
                if (!isMirrored) {
                    const auto byPosition = kep::MicronsToVoxel(place->position, geometry.offset, geometry.resolution);
                    ASSERT_EQ(byPosition,
                              kep::Vector3d<int>(static_cast<int>(place->voxel.x), static_cast<int>(place->voxel.y),
                                                 static_cast<int>(place->voxel.z)));
                }
                ASSERT_EQ(static_cast<int>(numbers.GetIndex(place->voxel.x, place->voxel.y, place->voxel.z)) + 1,
                          shown);
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 20000);
}

TEST(FindInSlice, UndoesMirroringAndTurning) {
    ViewOptions options;
    // A window of 6 by 4 pixels in each plane.
    EXPECT_EQ(FindInSlice(xy, options, {6, 4}, {6, 4, 1}, {1, 3}), Voxel(1, 3, 0));
    EXPECT_EQ(FindInSlice(xz, options, {6, 4}, {6, 1, 4}, {1, 3}), Voxel(1, 0, 3));
    EXPECT_EQ(FindInSlice(yz, options, {4, 6}, {1, 4, 6}, {1, 3}), Voxel(0, 3, 1));
    options.reversedX = true;
    EXPECT_EQ(FindInSlice(xy, options, {6, 4}, {6, 4, 1}, {1, 3}), Voxel(4, 3, 0));
    EXPECT_EQ(FindInSlice(xz, options, {6, 4}, {6, 1, 4}, {1, 3}), Voxel(4, 0, 3));
    EXPECT_EQ(FindInSlice(yz, options, {4, 6}, {1, 4, 6}, {1, 3}), Voxel(0, 3, 1));
    options.reversedY = true;
    EXPECT_EQ(FindInSlice(xy, options, {6, 4}, {6, 4, 1}, {1, 3}), Voxel(4, 0, 0));
    EXPECT_EQ(FindInSlice(xz, options, {6, 4}, {6, 1, 4}, {1, 3}), Voxel(4, 0, 3));
    EXPECT_EQ(FindInSlice(yz, options, {4, 6}, {1, 4, 6}, {1, 3}), Voxel(0, 0, 1));
    options.reversedZ = true;
    EXPECT_EQ(FindInSlice(xy, options, {6, 4}, {6, 4, 1}, {1, 3}), Voxel(4, 0, 0));
    EXPECT_EQ(FindInSlice(xz, options, {6, 4}, {6, 1, 4}, {1, 3}), Voxel(4, 0, 0));
    EXPECT_EQ(FindInSlice(yz, options, {4, 6}, {1, 4, 6}, {1, 3}), Voxel(0, 0, 4));
}

TEST(FindInSlice, MirrorsLabelsByAnotherPicture) {
    // Labels are mirrored by the XY picture, here 6 by 4, in XZ of 6 by 3 and YZ of 3 by 4 pixels.
    const Size pictureXY(6, 4);
    ViewOptions options;
    options.reversedX = options.reversedZ = true;
    EXPECT_EQ(FindInSlice(xz, options, pictureXY, {6, 1, 3}, {1, 2}), Voxel(4, 0, 1)); // 6 - 1 - 1, 4 - 2 - 1
    EXPECT_EQ(FindInSlice(xz, options, pictureXY, {6, 1, 3}, {1, 0}), std::nullopt);   // 4 - 0 - 1 = 3
    EXPECT_EQ(FindInSlice(yz, options, pictureXY, {1, 4, 3}, {2, 3}), Voxel(0, 3, 1)); // by the height: 4 - 2 - 1
    EXPECT_EQ(FindInSlice(yz, options, pictureXY, {1, 4, 3}, {0, 3}), std::nullopt);
    options = {};
    options.reversedY = true;
    EXPECT_EQ(FindInSlice(yz, options, pictureXY, {1, 4, 3}, {1, 3}), Voxel(0, 2, 1)); // by the width: 6 - 3 - 1
    EXPECT_EQ(FindInSlice(yz, options, pictureXY, {1, 4, 3}, {1, 1}), std::nullopt);   // 6 - 1 - 1 = 4
}

TEST(FindInSlice, PixelsOutsideAreNotThere) {
    ViewOptions options;
    for (const Point& outside : {Point(-1, 0), Point(0, -1), Point(6, 0), Point(0, 4)}) {
        EXPECT_EQ(FindInSlice(xy, options, {6, 4}, {6, 4, 1}, outside), std::nullopt);
        options.reversedX = options.reversedY = !options.reversedX;
        EXPECT_EQ(FindInSlice(xy, options, {6, 4}, {6, 4, 1}, outside), std::nullopt);
    }
    EXPECT_EQ(FindInSlice(xy, {}, {0, 0}, {0, 0, 0}, {0, 0}), std::nullopt) << "before the first picture";
    // Labels in YZ while XY has no picture: nothing says where a mirrored pixel is.
    EXPECT_EQ(FindInSlice(yz, {}, {0, 0}, {1, 4, 3}, {0, 0}), Voxel(0, 0, 0));
    options = {};
    options.reversedZ = true;
    EXPECT_EQ(FindInSlice(yz, options, {0, 0}, {1, 4, 3}, {0, 0}), std::nullopt);
}

} // namespace
} // namespace zel
