#pragma once

// For tests of saving: images whose voxels name their place, canvases of them, and the files read back.

#include "model/zel_composition.h"
#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"
#include "tests/support/scratch_folder.h"
#include "viewer/zel_imagecanvas3d.h"

#include <memory>
#include <string>

namespace zel::test {

/// A voxel that names its place: 1 + x + 10 y + 100 z + 1000 t, in an image below 10 x 10 x 10.
inline unsigned short Named(std::size_t x, std::size_t y, std::size_t z, std::size_t t = 0) {
    return static_cast<unsigned short>(1 + x + 10 * y + 100 * z + 1000 * t);
}

inline constexpr Colour white{255, 255, 255};

class SavingFixture : public GuiTest {
protected:
    using Canvas = zel_ImageViewer3dCanvas<unsigned short>;

    void TearDown() override {
        if (frame != nullptr)
            frame->Destroy();
        GuiTest::TearDown();
    }

    /// Makes a canvas in the frame. It shows the image with one pixel a voxel, and nothing over it.
    void MakeCanvas(kep::Vector3d<std::size_t> size, std::size_t frames, const kep::Resolution& resolution = {1, 1, 1},
                    kep::Vector3d<float> offset = {}) {
        image = MakeImage<unsigned short>(size, frames, Named, resolution, offset);
        canvas = new Canvas(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
        HideDecorations(*canvas);
    }

    static Sheet Read(const std::string& name) { return Sheet(name.c_str(), nullptr, false, -1, nullptr, nullptr); }
    static Colour At(const Sheet& sheet, int x, int y) {
        return sheet.GetVoxel(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0);
    }
    /// The number of the voxel that a pixel shows.
    static int NumberAt(const Sheet& sheet, int x, int y) {
        const Colour pixel = At(sheet, x, y);
        EXPECT_EQ(pixel.blue, 0) << x << " " << y;
        return pixel.red + 256 * pixel.green;
    }
    static void ExpectSize(const Sheet& sheet, int width, int height) {
        ASSERT_EQ(sheet.GetSize(),
                  (kep::Vector3d<std::size_t>(static_cast<std::size_t>(width), static_cast<std::size_t>(height), 1)));
    }
    /// A part of a sheet is what a window has in its backing bitmap.
    void ExpectWindowAt(const Sheet& sheet, zel_ProjectionType type, int left, int top) {
        const wxImage picture = canvas->GetDrWin(type)->GetPointerImage();
        ASSERT_LE(static_cast<std::size_t>(left + picture.GetWidth()), sheet.GetSizeX());
        ASSERT_LE(static_cast<std::size_t>(top + picture.GetHeight()), sheet.GetSizeY());
        for (int y = 0; y < picture.GetHeight(); ++y)
            for (int x = 0; x < picture.GetWidth(); ++x)
                ASSERT_EQ(At(sheet, left + x, top + y),
                          Colour(picture.GetRed(x, y), picture.GetGreen(x, y), picture.GetBlue(x, y)))
                    << x << " " << y;
    }
    /// A sheet is the view of the windows `in`, which have their backing bitmaps.
    void ExpectView(const Sheet& sheet, int in, int spacing) {
        const auto sizeOf = [this](zel_ProjectionType type) { return canvas->GetDrWin(type)->GetPointerImage(); };
        const bool xy = (in & zel_PT_XY) != 0, xz = (in & zel_PT_XZ) != 0, yz = (in & zel_PT_YZ) != 0;
        const int wx = sizeOf(zel_PT_XY).GetWidth(), hy = sizeOf(zel_PT_XY).GetHeight();
        const int hz = sizeOf(zel_PT_XZ).GetHeight();
        ExpectSize(sheet, (xy || xz ? wx : 0) + (yz ? hz : 0) + (yz && (xy || xz) ? spacing : 0),
                   (xy || yz ? hy : 0) + (xz ? hz : 0) + (xz && (xy || yz) ? spacing : 0));
        if (xy)
            ExpectWindowAt(sheet, zel_PT_XY, 0, 0);
        if (yz)
            ExpectWindowAt(sheet, zel_PT_YZ, xy || xz ? wx + spacing : 0, 0);
        if (xz)
            ExpectWindowAt(sheet, zel_PT_XZ, 0, xy || yz ? hy + spacing : 0);
    }

    PlainMapper<unsigned short> mapper;
    std::unique_ptr<mor::Image4d<unsigned short>> image;
    wxFrame* frame = nullptr;
    Canvas* canvas = nullptr;
    ScratchFolder folder;
};

} // namespace zel::test
