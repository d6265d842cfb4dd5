#include "host/imageframe.h"

#include "factory/zel_viewerfactory.h"
#include "host/linearmapper.h"
#include "host/message.h"
#include "host/mousecontrol.h"
#include "host/proportions.h"
#include "mapping/zel_mapperfactory.h"
#include "model/zel_histogramcount.h"
#include "viewer/zel_imagecanvas3d.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace zelviewer {

namespace {

using zel::zel_Viewer3dFrame;
using FramePtr = std::unique_ptr<zel_Viewer3dFrame>;

/// The canvas owns the image on return.
template <typename T>
void AddCanvas(zel_Viewer3dFrame& frame, const zel::zel_Mapper<T>& mapper, std::unique_ptr<mor::Image4d<T>> image) {
    auto* const canvas = new zel::zel_ImageViewer3dCanvas<T>(&frame, mapper, image.get(), true, wxID_ANY,
                                                             wxDefaultPosition, wxDefaultSize);
    image.release();
    frame.SetCanvas(canvas);
}

/// The window of a colour or complex image, with a mapper of its own.
template <typename T>
class LinearFrame : public zel_Viewer3dFrame {
public:
    explicit LinearFrame(std::unique_ptr<mor::Image4d<T>> image)
        : zel_Viewer3dFrame(nullptr, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE),
          m_mapper(image->GetExtremes()) {
        AddCanvas<T>(*this, m_mapper, std::move(image));
    }

private:
    LinearMapper<T> m_mapper;
};

/// Deletes what a factory that threw has left behind: frames without a canvas.
void DeleteHalfMadeFrames() {
    const std::vector<wxWindow*> windows(wxTopLevelWindows.begin(), wxTopLevelWindows.end());
    for (wxWindow* const window : windows)
        if (auto* const frame = dynamic_cast<zel_Viewer3dFrame*>(window); frame != nullptr && !frame->GetCanvas())
            delete frame;
}

template <typename T>
FramePtr BuildFrame(std::unique_ptr<mor::Image4d<T>> image) {
    if constexpr (zel::HistogramSet<T>::channelCount != 1) {
        return std::make_unique<LinearFrame<T>>(std::move(image));
    } else {
        try {
            FramePtr frame(zel::zel_CreateImage3dFrame<T>(image.get(), true, nullptr, wxID_ANY, wxEmptyString,
                                                          wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE));
            image.release(); // the canvas owns it
            return frame;
        } catch (...) {
            DeleteHalfMadeFrames();
            throw;
        }
    }
}

/// The values that occur, one bin for each whole number between the ends. Between ends that lie further apart than any
/// picture can tell, neighbouring numbers share a bin.
zel::HistogramSet<int> CountInts(const mor::Image4d<int>& image) {
    constexpr std::int64_t mostBins = std::int64_t{1} << 20;
    const int low = image.GetCachedMinValue(), high = image.GetCachedMaxValue();
    const std::int64_t values = std::int64_t{high} - low + 1;
    zel::HistogramSet<int> histograms;
    histograms.Get().Init(low, high, static_cast<std::size_t>(std::min(values, mostBins)));
    for (std::size_t t = 0; t < image.GetNumFrames(); ++t)
        zel::CountFrame(*image[t], histograms.Get());
    return histograms;
}

/// The factory has no form for int: its steps, one by one.
template <>
FramePtr BuildFrame(std::unique_ptr<mor::Image4d<int>> image) {
    auto frame = std::make_unique<zel_Viewer3dFrame>(nullptr, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                                     wxDEFAULT_FRAME_STYLE);
    auto* const mapper = zel::zel_CreateGrayMapperForType<int>(frame.get(), CountInts(*image));
    frame->AddExtensionModule(mapper, "&Mapping", true);
    AddCanvas<int>(*frame, *mapper, std::move(image));
    return frame;
}

/// The grays of int and float images are spread between their extremes, which must not be one.
template <typename T>
void RefuseConstant(const mor::Image4d<T>& image) {
    if constexpr (std::is_same_v<T, int> || std::is_same_v<T, float>) {
        const T value = image.GetCachedMinValue();
        if (value != image.GetCachedMaxValue())
            return;
        wxString text("All voxels have the value ");
        if constexpr (std::is_same_v<T, int>)
            text << value;
        else
            text << wxString::Format("%g", static_cast<double>(value));
        text << ". Images of type " << NameOf(std::is_same_v<T, int> ? DisplayType::Int : DisplayType::Float)
             << " are shown between their smallest and their largest value, which must differ.";
        throw kep::InternalException(text.utf8_string());
    }
}

/// Runs the menu command of a stretch, as the user would.
template <typename T>
void RunStretch(zel_Viewer3dFrame& frame, Stretch stretch) {
    for (wxEvtHandler* handler = frame.GetEventHandler(); handler != nullptr; handler = handler->GetNextHandler())
        if (const auto* const module = dynamic_cast<zel::zel_MappingModule<T>*>(handler))
            frame.ProcessCommand(module->GetMenuId(zel::zel_ME_NO_STRETCH + static_cast<int>(stretch)));
}

} // namespace

template <typename T>
zel_Viewer3dFrame* MakeFrame(std::unique_ptr<mor::Image4d<T>> image, Stretch stretch, bool inVoxels) {
    RefuseConstant(*image);
    FramePtr frame = BuildFrame(std::move(image));
    if (stretch != Stretch::None)
        RunStretch<T>(*frame, stretch);
    PrepareFrame(*frame, inVoxels);
    return frame.release();
}

void PrepareFrame(zel_Viewer3dFrame& frame, bool inVoxels) {
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

#define ZEL_INSTANTIATE(T) template zel_Viewer3dFrame* MakeFrame<T>(std::unique_ptr<mor::Image4d<T>>, Stretch, bool);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zelviewer
