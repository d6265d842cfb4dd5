#include "host/imageframe.h"

#include "host/message.h"
#include "host/mousecontrol.h"
#include "host/proportions.h"

namespace zelviewer {

void PrepareFrame(zel::zel_Viewer3dFrame& frame, bool inVoxels) {
    zel::zel_Viewer3dCanvas* const canvas = frame.GetCanvas();
    frame.SetTitle(canvas->CreateTitle());
    if (!inVoxels) {
        const OpeningScale opening = ChooseScale(canvas->GetResolution());
        if (!opening.proportional)
            PrintMessage(canvas->CreateTitle().utf8_string() +
                         ": The sides of a voxel differ more than a hundredfold; shown with one pixel a voxel.");
        zel::zel_CanvasSettings settings;
        canvas->GetSettings(settings);
        settings.baseScale = opening.scale;
        canvas->SetSettings(settings);
    }
    UseMouse(*canvas);
    frame.ResizeFrameIfRequired();
}

} // namespace zelviewer
