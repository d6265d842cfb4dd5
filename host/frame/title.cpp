#include "host/frame/title.h"

#include "viewer/zel_viewer3dcanvas.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zelviewer {

namespace {

void UpdateTitle(zel::zel_Viewer3dFrame& frame) {
    zel::zel_Viewer3dCanvas* const canvas = frame.GetCanvas();
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

std::string DescribeTitle(const std::string& name, const kep::Vector3d<std::size_t>& voxels, float pixels) {
    const double percent = 100.0 * static_cast<double>(pixels);
    std::array<char, 64> zoom;
    std::snprintf(zoom.data(), zoom.size(), percent < 10.0 ? "%.1f%%" : "%.0f%%", percent);
    return name + " - " + std::to_string(voxels.x) + " x " + std::to_string(voxels.y) + " x " +
           std::to_string(voxels.z) + " - " + zoom.data();
}

void AddTitle(zel::zel_Viewer3dFrame& frame) {
    UpdateTitle(frame);
    frame.Bind(wxEVT_IDLE, [&frame](wxIdleEvent& event) {
        event.Skip();
        UpdateTitle(frame); // the canvas sets its own when the frame shown changes
    });
}

} // namespace zelviewer
