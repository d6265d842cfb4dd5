#include "viewer/zel_frametitle.h"

#include "model/zel_proportions.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <algorithm>

namespace zel {

namespace {

void UpdateTitle(zel_Viewer3dFrame& frame) {
    zel_Viewer3dCanvas* const canvas = frame.GetCanvas();
    if (canvas == nullptr || canvas->GetImageCount() == 0)
        return;
    const kep::Vector3d<float> resolution = canvas->GetResolution().GetUsable().GetRes();
    const kep::Vector3d<float>& scale = canvas->GetScale();
    const float pixels = std::min({scale.x / resolution.x, scale.y / resolution.y, scale.z / resolution.z});
    const wxString title =
        wxString::FromUTF8(DescribeTitle(canvas->CreateTitle().utf8_string(), canvas->GetImageSize(), pixels));
    if (frame.GetTitle() != title)
        frame.SetTitle(title);
}

} // namespace

void AddTitle(zel_Viewer3dFrame& frame) {
    UpdateTitle(frame);
    frame.Bind(wxEVT_IDLE, [&frame](wxIdleEvent& event) {
        event.Skip();
        UpdateTitle(frame); // the canvas sets its own when the frame shown changes
    });
}

} // namespace zel
