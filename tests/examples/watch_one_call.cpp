#include "watching.h"

#include <wx/menu.h>

namespace watching {

namespace {

/// Whether the picture shows the ramp at 7.5 pixels a voxel: two thirds of the display's 1600 x 1200 are 1066 x 800
/// pixels, into which 133 x 101 voxels go 7.5 times.
bool IsRamp(const wxImage& picture) {
    if (picture.GetSize() != wxSize(960, 720))
        return false;
    for (int voxel = 20; voxel < 60; ++voxel) { // clear of the marks of the cut
        const int x = static_cast<int>(7.5 * voxel + 3.75);
        if (picture.GetRed(x, 20) != 2 * voxel || picture.GetBlue(x, 20) != 2 * voxel)
            return false;
    }
    return true;
}

} // namespace

void MakeFiles() {
    Save(MakeRamp(), "ramp");
}

bool Look(const std::vector<zel::zel_Viewer3dFrame*>& viewers) {
    zel::zel_Viewer3dFrame& viewer = *viewers.front();
    zel::zel_Viewer3dCanvas& canvas = *viewer.GetCanvas();
    if (!IsRamp(canvas.GetDrWin(zel::zel_PT_XY)->GetPointerImage()))
        return false;
    if (viewer.GetMenuBar()->GetMenuCount() != 3)
        Fail("the frame is not the one wanted");
    if (viewer.GetTitle() != "ramp000.tif - 128 x 96 x 5 - 750%")
        return false;
    Press(viewer, zel::zel_PT_XY, {100, 200}); // in voxel 13, 26
    if (canvas.GetCut() != kep::Vector3d<float>(13.5F, 26.5F, 2.5F))
        Fail("a click does not set the cut");
    return true;
}

} // namespace watching
