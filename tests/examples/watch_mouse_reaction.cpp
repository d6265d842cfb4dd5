#include "watching.h"

#include <wx/statusbr.h>

namespace watching {

void MakeFiles() {
    Save(MakeRamp(), "ramp");
}

bool Look(const std::vector<zel::zel_Viewer3dFrame*>& viewers) {
    zel::zel_Viewer3dFrame& viewer = *viewers.front();
    zel::zel_Viewer3dCanvas& canvas = *viewer.GetCanvas();
    if (canvas.GetDrWin(zel::zel_PT_XY)->GetPointerImage().GetSize() != wxSize(960, 720))
        return false; // 7.5 pixels a voxel
    const kep::Vector3d<float> cut = canvas.GetCut();
    Press(viewer, zel::zel_PT_XY, {100, 200}, true);                             // voxel 13, 26
    if (viewer.GetStatusBar()->GetStatusText(1) != "from a voxel of value 6682") // 514 * 13
        Fail("the first click is not told");
    Press(viewer, zel::zel_PT_XY, {123, 230}, true); // voxel 16, 30: 3 and 4 microns away
    if (viewer.GetStatusBar()->GetStatusText(1) != "5.00 microns")
        Fail("the distance is not the one wanted");
    if (canvas.GetCut() != cut)
        Fail("the ruler moves the cut");
    Press(viewer, zel::zel_PT_XY, {123, 230});
    if (canvas.GetCut() == cut)
        Fail("a plain click does not move the cut");
    return true;
}

} // namespace watching
