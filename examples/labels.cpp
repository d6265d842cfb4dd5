// Labels over an image, and a viewer that is put together by hand instead of by the one call.

#include "factory/zel_viewer.h"
#include "mapping/zel_mapperfactory.h"
#include "overlay/zel_basicoverlayingmodule.h"
#include "overlay/zel_labeledimagecanvas3d.h"

#include <wx/app.h>
#include <wx/log.h>

#include <iostream>
#include <stdexcept>

namespace {

using Image = mor::Image4d<unsigned short>;
using Labels = mor::LabeledImage4d<unsigned short, unsigned short>;
using Overlaying = zel::zel_BasicOverlayingModule<unsigned short, unsigned short>;
using Canvas = zel::zel_LabeledImageViewer3dCanvas<unsigned short, unsigned short, unsigned short>;

wxArrayString OneFile(const wxString& name) {
    wxArrayString names;
    names.Add(name);
    return names;
}

zel::zel_Viewer3dFrame* MakeViewer(const wxString& imageFile, const wxString& labelFile) {
    auto image = std::make_unique<Image>();
    image->ReadSequence(OneFile(imageFile), false);
    // false: the voxels of the file are the labels. true would number the connected parts of what is not 0.
    auto labels = std::make_unique<Labels>(false);
    labels->ReadSequence(OneFile(labelFile), image.get());

    // The frame first, since the modules and the canvas belong to it. It has no parent, so it is ours until it is
    // shown.
    auto frame = std::make_unique<zel::zel_Viewer3dFrame>(nullptr, wxID_ANY, imageFile, wxDefaultPosition,
                                                          wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    auto* const mapping = zel::zel_CreateMapperForType<unsigned short>(frame.get(), *image);
    frame->AddExtensionModule(mapping, "&Mapping", true); // with a menu a module is the frame's
    auto* const overlaying = new Overlaying(frame.get(), labels.get(), true);
    labels.release(); // the module's
    frame->AddExtensionModule(overlaying, "&Overlaying", true);
    auto* const canvas =
        new Canvas(frame.get(), *mapping, *overlaying, image.get(), true, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    image.release(); // the canvas's
    frame->SetCanvas(canvas);
    overlaying->SetOverlaying(true);
    overlaying->SetTransparency(0.5F);
    zel::EquipFrame(*frame);
    return frame.release(); // the toolkit deletes it when it is closed
}

/// labels IMAGE LABELS: two files of the same size.
class Host : public wxApp {
    bool OnInit() override try {
        wxLog::SetLogLevel(wxLOG_Warning);
        if (argc != 3)
            throw std::runtime_error("labels IMAGE LABELS");
        return MakeViewer(argv[1], argv[2])->Show();
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return false;
    }
};

} // namespace

wxIMPLEMENT_APP(Host);
