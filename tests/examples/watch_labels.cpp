#include "watching.h"

#include <wx/menu.h>

namespace watching {

void MakeFiles() {
    mor::Image4d<unsigned short> ramp = MakeRamp();
    Save(ramp, "image");
    for (unsigned short& voxel : *ramp.GetImage(0))
        voxel = 0;
    for (std::size_t x = 20; x < 50; ++x)
        for (std::size_t y = 20; y < 80; ++y)
            ramp.SetVoxel(x, y, 2, 0, 1);
    Save(ramp, "labels");
}

bool Look(const std::vector<zel::zel_Viewer3dFrame*>& viewers) {
    if (viewers.front()->GetMenuBar()->FindMenu("Overlaying") == wxNOT_FOUND)
        Fail("there is no menu for the labels");
    const wxImage picture = viewers.front()->GetCanvas()->GetDrWin(zel::zel_PT_XY)->GetPointerImage();
    const auto isColoured = [&picture](int voxelX, int voxelY) {
        const int x = picture.GetWidth() * (2 * voxelX + 1) / 256;
        const int y = picture.GetHeight() * (2 * voxelY + 1) / 192;
        return picture.GetRed(x, y) != picture.GetGreen(x, y) || picture.GetRed(x, y) != picture.GetBlue(x, y);
    };
    return picture.IsOk() && isColoured(25, 30) && isColoured(45, 70) && !isColoured(10, 30) && !isColoured(55, 70);
}

} // namespace watching
