#include "host/imageframe.h"

#include "host/firstmapping.h"
#include "host/frame/palettequestion.h"
#include "host/frame/positionbar.h"
#include "host/frame/statusline.h"
#include "host/message.h"
#include "host/voxelsize.h"
#include "mapping/zel_palettemapping.h"
#include "mapping/zel_rgbmapping.h"
#include "overlay/zel_basicoverlayingmodule.h"
#include "overlay/zel_labeledimagecanvas3d.h"
#include "viewer/zel_equipframe.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/fileconf.h>

#include <string>
#include <utility>

namespace zelviewer {

namespace {

using zel::zel_Viewer3dFrame;
using FramePtr = std::unique_ptr<zel_Viewer3dFrame>;
using LabelModule = zel::zel_BasicOverlayingModule<unsigned short, unsigned short>;

/// Whether images of a type can be coloured by a palette.
template <typename T>
constexpr bool hasPalettes = true;
template <typename C>
constexpr bool hasPalettes<kep::RGB_generic<C>> = false;

/// The canvas, with the menu of the labels if there are any. It owns the image on return, and the frame the labels.
template <typename T>
zel::zel_Viewer3dCanvas* MakeCanvas(zel_Viewer3dFrame& frame, const zel::zel_Mapper<T>& mapper,
                                    std::unique_ptr<mor::Image4d<T>> image, std::unique_ptr<Labels> labels) {
    zel::zel_Viewer3dCanvas* canvas = nullptr;
    if (labels == nullptr) {
        canvas = new zel::zel_ImageViewer3dCanvas<T>(&frame, mapper, image.get(), true, wxID_ANY, wxDefaultPosition,
                                                     wxDefaultSize);
    } else {
        auto* const overlayer = new LabelModule(&frame, labels.get(), true);
        labels.release();
        frame.AddExtensionModule(overlayer, "&Overlaying", true);
        canvas = new zel::zel_LabeledImageViewer3dCanvas<T, unsigned short, unsigned short>(
            &frame, mapper, *overlayer, image.get(), true, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    }
    image.release();
    return canvas;
}

/// The steps of the library's factories one by one, with a mapping of the program's own. One of the factories copies
/// the image for a moment, neither takes an image of equal voxels, and the plain one has no form for int.
template <typename T>
FramePtr BuildFrame(std::unique_ptr<mor::Image4d<T>> image, std::unique_ptr<Labels> labels, const FirstMapping& first,
                    const zel::HistogramSet<T>* counted) {
    auto mapping = MakeMapping(*image, first, counted);
    if constexpr (hasPalettes<T>)
        dynamic_cast<zel::zel_PaletteMappingModule<T>&>(*mapping).SetPaletteQuestion(AskForPalette);
    auto frame = std::make_unique<zel_Viewer3dFrame>(nullptr, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                                     wxDEFAULT_FRAME_STYLE);
    const zel::zel_Mapper<T>& mapper = *mapping;
    frame->AddExtensionModule(mapping.release(), "&Mapping", true); // the frame's from now on
    frame->SetCanvas(MakeCanvas(*frame, mapper, std::move(image), std::move(labels)));
    return frame;
}

/// The module of a frame; null if there is none of this type.
template <typename Module>
Module* FindModule(zel_Viewer3dFrame& frame) {
    for (wxEvtHandler* handler = frame.GetEventHandler(); handler != nullptr; handler = handler->GetNextHandler())
        if (auto* const module = dynamic_cast<Module*>(handler))
            return module;
    return nullptr;
}

/// Where the mappings of colour images are in the configuration, by the bytes of a component.
template <typename T>
constexpr const char* colourGroup = sizeof(T) == 1 ? "/Colours8" : "/Colours16";

template <typename T>
void ReadColoursOf(zel_Viewer3dFrame& frame, wxFileConfig& config) {
    auto* const module = FindModule<zel::zel_RGBMappingModule<T>>(frame);
    if (module == nullptr || !config.HasGroup(colourGroup<T>))
        return;
    config.SetPath(colourGroup<T>);
    try {
        module->ReadFromConfig(config);
        module->ResetMapping();
    } catch (const kep::LibException&) { // a gamma that is none
        config.SetPath("/None");
        module->ReadFromConfig(config);
        module->ResetMapping();
    }
    FitRange(*module); // what is kept is that of another image, whose voxels may have had fewer bits
    config.SetPath("/");
    // Levels of another camera may leave deep voxels black: of their mapping only the hidden channels are taken over.
    if constexpr (sizeof(T) > 1)
        frame.ProcessCommand(module->GetMenuId(zel::zel_ME_NO_STRETCH + static_cast<int>(Stretch::Percentil)));
}

template <typename T>
void WriteColoursOf(zel_Viewer3dFrame& frame, wxFileConfig& config) {
    auto* const module = FindModule<zel::zel_RGBMappingModule<T>>(frame);
    if (module == nullptr)
        return;
    config.SetPath(colourGroup<T>);
    module->WriteToConfig(config);
    config.SetPath("/");
}

} // namespace

void ReadColours(zel_Viewer3dFrame& frame, wxFileConfig& config) {
    ReadColoursOf<unsigned char>(frame, config);
    ReadColoursOf<unsigned short>(frame, config);
}

void WriteColours(zel_Viewer3dFrame& frame, wxFileConfig& config) {
    WriteColoursOf<unsigned char>(frame, config);
    WriteColoursOf<unsigned short>(frame, config);
}

template <typename T>
zel_Viewer3dFrame* MakeFrame(std::unique_ptr<mor::Image4d<T>> image, const FirstLook& look,
                             std::unique_ptr<Labels> labels, std::function<bool(double)> progress,
                             const zel::HistogramSet<T>* counted) {
    const Labels* const shownLabels = labels.get(); // the frame's from now on
    const std::optional<std::string> constant = DescribeConstant(*image);
    FramePtr frame =
        BuildFrame(std::move(image), std::move(labels), {look.stretch, look.part, std::move(progress)}, counted);
    if (const auto* const module = FindModule<LabelModule>(*frame); module != nullptr && look.outlines)
        frame->ProcessCommand(module->GetMenuId(zel::zel_OE_BOUNDARY));
    AddStatusLine<T>(*frame, shownLabels);
    AddPositionBar(*frame);
    PrepareFrame(*frame, look);
    if (constant) {
        frame->SetStatusText(*constant, 1); // where it stays until there is something else to say
        if (!look.fillsDisplay)             // a picture of it is taken, and nobody sees the status bar
            PrintMessage(frame->GetCanvas()->CreateTitle().utf8_string() + ": " + *constant);
    }
    return frame.release();
}

void PrepareFrame(zel_Viewer3dFrame& frame, const FirstLook& look) {
    if (!zel::EquipFrame(frame, {!look.inVoxels, look.fillsDisplay}))
        PrintMessage(frame.GetCanvas()->CreateTitle().utf8_string() + ": " + notProportional);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template zel_Viewer3dFrame* MakeFrame<T>(std::unique_ptr<mor::Image4d<T>>, const FirstLook&,                       \
                                             std::unique_ptr<Labels>, std::function<bool(double)>,                     \
                                             const zel::HistogramSet<T>*);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zelviewer
