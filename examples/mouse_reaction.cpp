// A reaction to the mouse of one's own: a ruler. Ctrl and a click set its ends in turn; everything else the mouse does
// as in every viewer.

#include "factory/zel_viewer.h"

#include <wx/app.h>
#include <wx/log.h>

#include <cmath>
#include <iostream>
#include <memory>
#include <optional>

namespace {

using Image = mor::Image4d<unsigned short>;
using Canvas = zel::zel_ImageViewer3dCanvas<unsigned short>;
using Voxel = kep::Vector3d<std::size_t>;

float Microns(std::size_t from, std::size_t to, float voxelsPerMicron) {
    return (static_cast<float>(to) - static_cast<float>(from)) / voxelsPerMicron;
}

float Distance(const Voxel& from, const Voxel& to, const kep::Vector3d<float>& resolution) {
    return std::hypot(Microns(from.x, to.x, resolution.x), Microns(from.y, to.y, resolution.y),
                      Microns(from.z, to.z, resolution.z));
}

void AddRuler(zel::zel_Viewer3dFrame& frame, Canvas& canvas) {
    const auto start = std::make_shared<std::optional<Voxel>>();
    // What is bound later is asked first: this comes before the mouse control that EquipFrame has bound.
    canvas.Bind(zel::zel_EVT_MOUSE3D, [&frame, &canvas, start](zel::zel_Mouse3dEvent& event) {
        const wxMouseEvent& mouse = event.GetMouseEvent();
        if (event.GetWindow() == nullptr || !mouse.LeftDown() || !mouse.ControlDown()) {
            event.Skip(); // to those who were bound before
            return;
        }
        const auto pixel = canvas.GetPixelInfo(event.GetWindow()->GetPlane().type, mouse.GetPosition());
        if (!pixel)
            return; // beside the image
        wxString text;
        if (!*start) {
            *start = pixel->voxel;
            text = "from a voxel of value " + pixel->value;
        } else {
            const kep::Vector3d<float> resolution = canvas.GetResolution().GetUsable().GetRes();
            text = wxString::Format("%.2f microns", Distance(**start, pixel->voxel, resolution));
            start->reset();
        }
        frame.SetInfoStatusText(text, 10);
        std::cout << text << std::endl;
    });
}

/// mouse_reaction FILE...
class Host : public wxApp {
    bool OnInit() override try {
        wxLog::SetLogLevel(wxLOG_Warning);
        wxArrayString files = argv.GetArguments();
        files.RemoveAt(0);
        auto image = std::make_unique<Image>();
        image->ReadSequence(files, false);
        auto* const frame = zel::zel_CreateImage3dFrame(image.get(), true, nullptr, wxID_ANY, files[0],
                                                        wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        image.release();
        zel::EquipFrame(*frame);
        AddRuler(*frame, dynamic_cast<Canvas&>(*frame->GetCanvas()));
        return frame->Show();
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return false;
    }
};

} // namespace

wxIMPLEMENT_APP(Host);
