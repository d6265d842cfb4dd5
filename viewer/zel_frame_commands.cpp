// Commands that open windows of their own.

#include "viewer/zel_frame.h"

namespace zel {

namespace {

constexpr int messageSeconds = 5;
constexpr const char* unavailable = "Not available yet.";

} // namespace

void zel_Viewer3dFrame::OnShowInfo(wxCommandEvent&) {
    SetInfoStatusText(unavailable, messageSeconds);
}

void zel_Viewer3dFrame::OnSave3dData(wxCommandEvent&) {
    SetInfoStatusText(unavailable, messageSeconds);
}

void zel_Viewer3dFrame::OnSaveView(wxCommandEvent&) {
    SetInfoStatusText(unavailable, messageSeconds);
}

void zel_Viewer3dFrame::OnSaveGalleryView(wxCommandEvent&) {
    SetInfoStatusText(unavailable, messageSeconds);
}

void zel_Viewer3dFrame::OnVisualizeVolume(wxCommandEvent&) {
    SetInfoStatusText(unavailable, messageSeconds);
}

void zel_Viewer3dFrame::OnPreferences(wxCommandEvent&) {
    SetInfoStatusText(unavailable, messageSeconds);
}

} // namespace zel
