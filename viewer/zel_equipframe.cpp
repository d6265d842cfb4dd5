#include "viewer/zel_equipframe.h"

#include "viewer/zel_firstshow.h"
#include "viewer/zel_fit.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_frametitle.h"
#include "viewer/zel_mousecontrol.h"
#include "viewer/zel_viewer3dcanvas.h"

namespace zel {

bool EquipFrame(zel_Viewer3dFrame& frame, const FrameEquipment& equipment) {
    zel_Viewer3dCanvas& canvas = *frame.GetCanvas();
    canvas.SetTruePictures({true, true, true, true});
    UseMouse(canvas);
    const bool isTrue = !equipment.trueProportions || ShowInTrueProportions(canvas);
    if (equipment.fillsDisplay)
        FillRoom(canvas, wxGetClientDisplayRect().GetSize() * 2 / 3);
    AddTitle(frame);
    frame.ResizeFrameIfRequired();
    PrepareFirstShow(frame);
    return isTrue;
}

} // namespace zel
