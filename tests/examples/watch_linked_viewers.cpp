#include "watching.h"

namespace watching {

namespace {

using Place = kep::Vector3d<float>;

const Place first(20.5F, 30.5F, 1.5F);
const Place second(70.5F, 10.5F, 3.5F);
int step = 0;

} // namespace

void MakeFiles() {
    Save(MakeRamp(), "left");
    Save(MakeRamp(), "right");
}

bool Look(const std::vector<zel::zel_Viewer3dFrame*>& viewers) {
    if (viewers.size() != 2)
        return false;
    zel::zel_Viewer3dCanvas& left = *viewers[0]->GetCanvas();
    zel::zel_Viewer3dCanvas& right = *viewers[1]->GetCanvas();
    if (step == 0) {
        left.ChangeCut(first);
        step = 1;
    } else if (step == 1 && right.GetCut() == first) {
        right.ChangeCut(second);
        right.ZoomIn();
        step = 2;
    }
    return step == 2 && left.GetCut() == second && left.GetZoom() == 1;
}

} // namespace watching
