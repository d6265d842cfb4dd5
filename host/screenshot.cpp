#include "host/screenshot.h"

#include "image/kep.h"

#include <wx/mstream.h>

namespace zelviewer {

wxImage ComposePicture(zel::zel_Viewer3dCanvas& canvas) {
    // A window has a smallest size, which leaves empty ground around a small image.
    wxSize size = canvas.GetClientSize();
    size.DecTo(canvas.GetOptimalSize());
    if (size.x <= 0 || size.y <= 0)
        return {};
    const wxColour ground = canvas.GetBackgroundColour();
    wxImage picture(size.x, size.y);
    picture.SetRGB(wxRect(size), ground.Red(), ground.Green(), ground.Blue());
    const int edge = canvas.GetBorder() / 2;
    for (const zel::zel_ProjectionType type : {zel::zel_PT_XY, zel::zel_PT_XZ, zel::zel_PT_YZ}) {
        zel::zel_DrWin3d* const window = canvas.GetDrWin(type);
        if (!window->IsShown())
            continue;
        window->Render();
        const wxPoint at = window->GetPosition();
        const wxImage shown = window->GetPointerImage();
        if (shown.IsOk())
            picture.Paste(shown, at.x + edge, at.y + edge);
    }
    return picture;
}

void HavePng() {
    if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr)
        wxImage::AddHandler(new wxPNGHandler); // owned by the toolkit
}

std::string VolumePictureName(const std::string& fileName) {
    const std::size_t ending = fileName.rfind('.');
    return fileName.substr(0, ending) + "-volume" + fileName.substr(ending);
}

void WritePng(const wxImage& picture, const std::string& fileName) {
    HavePng();
    wxMemoryOutputStream bytes;
    if (!picture.IsOk() || !picture.SaveFile(bytes, wxBITMAP_TYPE_PNG))
        throw kep::IOException("The picture cannot be made into a PNG file.");
    kep::AtomicFile file(fileName);
    file.Write(bytes.GetOutputStreamBuffer()->GetBufferStart(), static_cast<std::size_t>(bytes.GetLength()));
    file.Commit();
}

} // namespace zelviewer
