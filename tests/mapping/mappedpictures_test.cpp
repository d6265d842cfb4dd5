// What the drawing windows show of the mapping, pixel by pixel.
#include "tests/mapping/viewer_fixture.h"

#include <limits>

using namespace zel;
using namespace zel::test;

namespace {

class MappedPictures : public GuiTest {
protected:
    LogCatcher toolkitLog; // the traces of the stretches
};

using Colour = kep::RGB_generic<unsigned char>;

Colour At(const wxImage& picture, int x, int y) {
    return {picture.GetRed(x, y), picture.GetGreen(x, y), picture.GetBlue(x, y)};
}

/// All three windows show the voxels through the module, one pixel each, at the cut in the middle.
template <typename T>
void ExpectPictures(const MappedViewer<T>& viewer, const char* when) {
    const auto& size = viewer.image->GetSize();
    const auto compare = [&](zel_ProjectionType type, std::size_t width, std::size_t height, const auto& voxelAt) {
        const wxImage picture = viewer.Picture(type);
        ASSERT_EQ(picture.GetSize(), wxSize(static_cast<int>(width), static_cast<int>(height)));
        int wrong = 0;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                const T voxel = voxelAt(x, y);
                ColourBuffer buffer(1, 1);
                viewer.module->Map(&voxel, buffer);
                wrong += At(picture, static_cast<int>(x), static_cast<int>(y)) == buffer.data[0] ? 0 : 1;
            }
        }
        EXPECT_EQ(wrong, 0) << when << ", window " << type;
    };
    const auto& image = *viewer.image;
    compare(zel_PT_XY, size.x, size.y, [&](auto x, auto y) { return image.GetVoxel(x, y, size.z / 2, 0); });
    compare(zel_PT_XZ, size.x, size.z, [&](auto x, auto y) { return image.GetVoxel(x, size.y / 2, y, 0); });
    compare(zel_PT_YZ, size.z, size.y, [&](auto x, auto y) { return image.GetVoxel(size.x / 2, y, x, 0); });
}

template <typename T, typename MakeVoxel>
void ExpectEveryEntry(const MakeVoxel& makeVoxel) {
    MappedViewer viewer(MakeImage<T>({80, 60, 30}, 2, makeVoxel));
    ExpectPictures(viewer, "at first");
    for (const int stretch : {3, 4, 5, 2}) {
        for (const int palette : {8, 9, 10, 11}) {
            viewer.Choose(palette);
            viewer.Choose(stretch);
            ExpectPictures(viewer, (std::to_string(stretch) + ", " + std::to_string(palette)).c_str());
        }
    }
}

} // namespace

TEST_F(MappedPictures, ShowEveryStretchAndPalette) {
    ExpectEveryEntry<unsigned char>([](auto x, auto y, auto z, auto) { return 20 + x + y + z; });
    ExpectEveryEntry<unsigned short>([](auto x, auto y, auto z, auto) { return 300 + 97 * x + 31 * y + z * z; });
    ExpectEveryEntry<float>(
        [](auto x, auto y, auto z, auto) { return 0.01 * static_cast<double>(x * y) - static_cast<double>(z); });
}

TEST_F(MappedPictures, BrightenUnderTheLinearStretch) {
    // 10, 20, ... 200 along x: the voxel in column 4 is 50.
    MappedViewer viewer(MakeImage<unsigned char>({20, 16, 9}, 1, [](auto x, auto, auto, auto) { return 10 + 10 * x; }));
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 3), Colour(50, 50, 50));
    viewer.Choose(zel_ME_LINEAR_STRETCH);
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 3), Colour(54, 54, 54)); // 40 * 255 / 190 = 53.7
    EXPECT_EQ(At(viewer.Picture(zel_PT_XZ), 4, 3), Colour(54, 54, 54));
    EXPECT_EQ(At(viewer.Picture(zel_PT_YZ), 4, 3), Colour(134, 134, 134)); // column 10 is 110: 100 * 255 / 190
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 19, 3), Colour(255, 255, 255));
    viewer.Choose(zel_ME_EQUALIZATION);
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 3), Colour(63, 63, 63)); // 5 of 20 columns: 63.75, truncated
    viewer.Choose(zel_PE_LABELS);
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 3), Colour(255, 255, 0)); // 63 = 5 * 12 + 3
}

TEST_F(MappedPictures, FollowAPreviewBeforeItsEventReturns) {
    MappedViewer viewer(MakeImage<unsigned char>({20, 16, 9}, 1, [](auto x, auto, auto, auto) { return 10 + 10 * x; }));
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 3), Colour(50, 50, 50));
    zel_LevelsEvent levels(40.0F, 60.0F, 1.0, 100.0F, 200.0F);
    EXPECT_TRUE(viewer.frame->ProcessWindowEvent(levels));
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ})
        EXPECT_EQ(At(viewer.PaintedPicture(type), 4, 3), Colour(150, 150, 150));
    EXPECT_EQ(At(viewer.PaintedPicture(zel_PT_YZ), 4, 3), Colour(200, 200, 200));
    EXPECT_EQ(viewer.TakeLog(), (std::vector<std::string>{"preview"})) << "and no command for the host";

    zel_ThresholdingEvent thresholds(45.0F, 55.0F);
    EXPECT_TRUE(viewer.frame->ProcessWindowEvent(thresholds));
    EXPECT_EQ(At(viewer.PaintedPicture(zel_PT_XY), 4, 3), Colour(255, 255, 255));
    EXPECT_EQ(At(viewer.PaintedPicture(zel_PT_XY), 5, 3), Colour(0, 0, 0));
    EXPECT_EQ(viewer.TakeLog(), (std::vector<std::string>{"preview"}));

    viewer.module->ResetMapping();
    viewer.canvas->MakeDirtyAndRefresh(zel_PT_ALL);
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 3), Colour(50, 50, 50)) << "nothing of it has stayed";
}

TEST_F(MappedPictures, FollowNoPreviewOfAModuleWithoutAMenu) {
    HistogramSet<unsigned char> histograms;
    histograms.Get().Init(0, 255, 256);
    zel_GrayMappingModule<unsigned char> module(nullptr, histograms);
    auto* const frame =
        new zel_Viewer3dFrame(nullptr, wxID_ANY, "host", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    frame->AddExtensionModule(&module, "&Mapping", false);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuCount(), 2U);
    zel_ThresholdingEvent thresholds(45.0F, 55.0F);
    EXPECT_FALSE(frame->ProcessWindowEvent(thresholds));
    EXPECT_EQ(module.GetMappingTable().Get(50), 50);
    frame->Destroy();
    Pump();
}

TEST_F(MappedPictures, ShowASingleVoxel) {
    MappedViewer viewer(MakeImage<unsigned char>({1, 1, 1}, 1, [](auto, auto, auto, auto) { return 77; }));
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
        const wxImage picture = viewer.Picture(type);
        EXPECT_EQ(picture.GetSize(), wxSize(1, 1));
        EXPECT_EQ(At(picture, 0, 0), Colour(77, 77, 77));
    }
    viewer.Choose(zel_ME_LINEAR_STRETCH);
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 0, 0), Colour(0, 0, 0)) << "the one value is the lowest";
}

TEST_F(MappedPictures, OfAConstantImageAreBlackUnderTheLinearStretch) {
    MappedViewer viewer(MakeImage<unsigned short>({9, 9, 9}, 1, [](auto, auto, auto, auto) { return 30000; }));
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 4), Colour(117, 117, 117)); // 30000 / 257 = 116.7
    for (const int stretch : {zel_ME_LINEAR_STRETCH, zel_ME_PERCENTIL_STRETCH}) {
        viewer.Choose(stretch);
        EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 4), Colour(0, 0, 0));
    }
    viewer.Choose(zel_ME_EQUALIZATION);
    EXPECT_EQ(At(viewer.Picture(zel_PT_XY), 4, 4), Colour(255, 255, 255));
}

TEST_F(MappedPictures, ShowVoxelsThatAreNoNumbersBlack) {
    constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    MappedViewer viewer(MakeImage<float>({11, 9, 9}, 1, [](auto x, auto y, auto, auto) {
        return y == 0 ? notANumber : y == 1 ? infinite : y == 2 ? -infinite : static_cast<float>(x);
    }));
    for (const int stretch : {2, 3, 4}) {
        viewer.Choose(stretch);
        const wxImage picture = viewer.Picture(zel_PT_XY);
        EXPECT_EQ(At(picture, 5, 0), Colour(0, 0, 0)) << stretch;
        EXPECT_EQ(At(picture, 5, 1), Colour(255, 255, 255));
        EXPECT_EQ(At(picture, 5, 2), Colour(0, 0, 0));
        EXPECT_EQ(At(picture, 5, 3), Colour(128, 128, 128)); // 127.5
        EXPECT_EQ(At(picture, 10, 3), Colour(255, 255, 255));
    }
}
