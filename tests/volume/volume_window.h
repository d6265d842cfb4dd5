#pragma once

// For tests of the volume window: one on the screen, and volumes to show in it.

#include "model/zel_volumetexture.h"
#include "tests/support/gui_test.h"
#include "volume/vol3D_canvas.h"
#include "volume/vol3D_frame.h"

#include <wx/statusbr.h>

#include <array>
#include <vector>

namespace zel::test {

using Voxel = std::array<unsigned char, 4>;

/// A volume window of 200 x 200 pixels. The eye is 5 away and sees 40 degrees, so a place (x, y, z) of the view's space
/// is seen 100 * 2.7475 * x / (5 - z) pixels right of the middle, (100, 100).
class VolumeWindow {
public:
    explicit VolumeWindow(MeshDrawing meshDrawing = MeshDrawing::Halved)
        : frame(new vol3D_VolVisFrame(nullptr, wxID_ANY, "volume", wxDefaultPosition, {300, 300}, wxDEFAULT_FRAME_STYLE,
                                      meshDrawing)) {
        const LogCatcher quiet;
        EXPECT_TRUE(Canvas().Init());
        Settle(); // the toolkit learns what the window manager puts around a window from the first one
        EXPECT_TRUE(ResizeClient(*frame, {200, 200}));
        Settle();
    }
    ~VolumeWindow() {
        delete frame.get();
        Pump();
    }
    VolumeWindow(const VolumeWindow&) = delete;
    VolumeWindow& operator=(const VolumeWindow&) = delete;

    vol3D_VolVisCanvas& Canvas() const { return *frame->GetCanvas(); }

    /// Uploads a cube of n voxels in each direction, made by their place, with its border.
    template <typename MakeVoxel>
    void Show(std::size_t n, const MakeVoxel& makeVoxel) const {
        Show({n, n, n}, {1, 1, 1}, makeVoxel);
    }
    template <typename MakeVoxel>
    void Show(const kep::Vector3d<std::size_t>& size, const kep::Resolution& resolution,
              const MakeVoxel& makeVoxel) const {
        const kep::Vector3d<std::size_t> padded(size.x + 2, size.y + 2, size.z + 2);
        std::vector<Voxel> voxels(padded.x * padded.y * padded.z, Voxel{});
        for (std::size_t z = 0; z < size.z; ++z)
            for (std::size_t y = 0; y < size.y; ++y)
                for (std::size_t x = 0; x < size.x; ++x)
                    voxels[((z + 1) * padded.y + y + 1) * padded.x + x + 1] = makeVoxel(x, y, z);
        ASSERT_TRUE(Canvas().MakeCurrent());
        Canvas().SetVolumeData(voxels.data(), padded, ComputeVolumeScale(size, resolution));
        ASSERT_TRUE(Canvas().HasVolume());
    }

    /// What stands on the screen after a paint.
    wxImage Picture() const {
        Canvas().Refresh(false);
        Canvas().Update();
        PassFrames(1);
        return OpenGLScreen(Canvas());
    }

    void Press(int key, int times = 1) const {
        for (int i = 0; i < times; ++i) {
            wxKeyEvent event(wxEVT_CHAR);
            event.m_keyCode = key;
            event.SetEventObject(&Canvas());
            Canvas().ProcessWindowEvent(event);
        }
    }

    void Choose(int command) const { EXPECT_TRUE(frame->ProcessCommand(command)); }

    wxString Status(int field) const { return frame->GetStatusBar()->GetStatusText(field); }

    wxWeakRef<vol3D_VolVisFrame> frame;
};

inline bool IsBlue(const wxColour& c) {
    return c.Red() < 20 && c.Green() < 20 && c.Blue() > 150;
}
inline bool IsRed(const wxColour& c) {
    return c.Red() > 220 && c.Green() < 20 && c.Blue() < 20;
}
inline bool IsBlack(const wxColour& c) {
    return c.Red() + c.Green() + c.Blue() == 0;
}

/// Whether a line a pixel wide, which may lie a pixel off, is met at a place.
template <typename IsColour>
bool IsNear(const wxImage& picture, const wxPoint& at, const IsColour& isColour) {
    for (int y = at.y - 1; y <= at.y + 1; ++y)
        for (int x = at.x - 1; x <= at.x + 1; ++x)
            if (isColour(ColourAt(picture, {x, y})))
                return true;
    return false;
}

} // namespace zel::test
