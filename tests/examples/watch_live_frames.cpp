#include "watching.h"

namespace watching {

void MakeFiles() {}

/// Called with the number 10.
bool Look(const std::vector<zel::zel_Viewer3dFrame*>& viewers) {
    zel::zel_Viewer3dCanvas& canvas = *viewers.front()->GetCanvas();
    if (canvas.GetImageCount() > 10)
        Fail("there are more frames than were taken");
    return canvas.GetImageCount() == 10 && canvas.GetTime() == 9 && canvas.CreateTitle() == "frame 9";
}

} // namespace watching
