#include "host/imageframe.h"

#include "host/message.h"
#include "host/proportions.h"

#include <wx/display.h>

#include <algorithm>

namespace zelviewer {

ImageFrame::ImageFrame(const wxString& title) : wxFrame(nullptr, wxID_ANY, title) {}

void ImageFrame::SetCanvas(zel::zel_Viewer3dCanvas* canvas, bool inVoxels) {
    m_canvas = canvas;
    SetTitle(canvas->CreateTitle());
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
    FitToImage();
}

void ImageFrame::FitToImage() {
    const wxSize around = GetSize() - GetClientSize();
    const int display = std::max(0, wxDisplay::GetFromWindow(this));
    const wxSize room = wxDisplay(static_cast<unsigned>(display)).GetClientArea().GetSize() - around;
    wxSize wanted = m_canvas->GetOptimalSize();
    wanted.DecTo(room);
    wanted.IncTo({1, 1});
    if (wanted != GetClientSize())
        SetClientSize(wanted);
}

} // namespace zelviewer
