// How the wait for a picture grows with what is shown: the same key in viewers that differ in one number only. What is
// told is the slope, the power of that number with which the time grows: 0 for no growth, 1 for as much.

#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/viewer/bare_windows.h"
#include "factory/zel_labeledviewerfactory.h"
#include "factory/zel_viewerfactory.h"
#include "overlay/zel_basicoverlayingmodule.h"

#include <wx/menu.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace zel;
using Image = mor::Image4d<unsigned short>;
using Labels = mor::LabeledImage4d<unsigned short, unsigned short>;
using Size = kep::Vector3d<std::size_t>;

const kep::Resolution oneMicron(1, 1, 1);

/// The sample frame again and again until a frame is full.
void Fill(kep::Image3d<unsigned short>& frame) {
    const auto sample = GetSampleFrame<unsigned short>();
    for (unsigned short* at = frame.begin(); at != frame.end();) {
        const auto number = std::min(static_cast<std::size_t>(frame.end() - at), sample->GetNumVoxels());
        at = std::copy_n(sample->begin(), number, at);
    }
}

std::unique_ptr<Image> MakeImage(Size size, std::size_t frames) {
    auto image = std::make_unique<Image>(nullptr, &oneMicron);
    image->MakeRoom(size, frames);
    for (std::size_t t = 0; t < frames; ++t)
        Fill(*image->GetImage(t));
    image->UpdateMinMaxValues();
    return image;
}

/// So many cubes, in rows, planes and layers.
std::unique_ptr<Labels> MakeLabels(Size size, std::size_t number) {
    std::size_t across = 1;
    while (across * across * across < number)
        ++across;
    kep::Image3d<unsigned short> numbers(nullptr, &oneMicron);
    numbers.MakeRoom(size.x, size.y, size.z);
    for (std::size_t i = 0; i < numbers.GetNumVoxels(); ++i) {
        const std::size_t x = i % size.x * across / size.x, y = i / size.x % size.y * across / size.y,
                          z = i / (size.x * size.y) * across / size.z;
        const std::size_t label = (z * across + y) * across + x + 1;
        numbers.SetVoxel(i, static_cast<unsigned short>(label <= number ? label : 0));
    }
    auto labels = std::make_unique<Labels>(false, nullptr, &oneMicron);
    labels->MakeRoom(size, 1);
    labels->GetImage(0)->CreateRegionsOfLabels(numbers);
    return labels;
}

/// What differs from viewer to viewer.
struct Setup {
    Size size{512, 512, 64};
    std::size_t frames = 1;
    std::size_t labels = 0;
    int zoom = 1;
    wxSize window{1000, 800};
};

class GrownViewer {
public:
    explicit GrownViewer(const Setup& setup) {
        auto image = MakeImage(setup.size, setup.frames);
        if (setup.labels == 0)
            m_frame = zel_CreateImage3dFrame(image.release(), true, nullptr, wxID_ANY, "bench", wxDefaultPosition,
                                             wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        else
            m_frame = zel_CreateLabeledImage3dFrame(image.release(), MakeLabels(setup.size, setup.labels).release(),
                                                    true, true, nullptr, wxID_ANY, "bench", wxDefaultPosition,
                                                    wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        m_frame->GetMenuBar()->Check(zel_CMD_AUTO_ADJUST_FRAME_SIZE, false);
        ShowAndRest(*m_frame);
        m_frame->SetClientSize(setup.window);
        Pump(200);
        for (int level = 0; level < setup.zoom; ++level)
            m_frame->GetCanvas()->ZoomIn();
        for (int level = 0; level > setup.zoom; --level)
            m_frame->GetCanvas()->ZoomOut();
        if (setup.labels > 0)
            EnableOverlay();
        PumpUntilQuiet();
    }
    ~GrownViewer() {
        m_frame->Destroy();
        PumpUntilQuiet();
    }
    GrownViewer(const GrownViewer&) = delete;
    GrownViewer& operator=(const GrownViewer&) = delete;

    /// Presses a key in a window and, the next time, the one that takes it back, and waits for the picture.
    void Alternate(zel_ProjectionType plane, int key, int back) {
        zel_DrWin3d& window = *m_frame->GetCanvas()->GetDrWin(plane);
        wxKeyEvent event(wxEVT_KEY_DOWN);
        event.m_keyCode = std::exchange(m_there, !m_there) ? back : key;
        event.SetEventObject(&window);
        window.ProcessWindowEvent(event);
        PumpUntilQuiet();
    }

private:
    void EnableOverlay() {
        for (wxEvtHandler* handler = m_frame->GetEventHandler(); handler; handler = handler->GetNextHandler())
            if (const auto* const module =
                    dynamic_cast<zel_BasicOverlayingModule<unsigned short, unsigned short>*>(handler))
                m_frame->ProcessCommand(module->GetMenuId(zel_OE_ENABLE));
    }

    zel_Viewer3dFrame* m_frame = nullptr;
    bool m_there = false;
};

struct Key {
    zel_ProjectionType plane = zel_PT_YZ;
    int key = WXK_PAGEDOWN;
    int back = WXK_PAGEUP;
};
constexpr Key timeStep{zel_PT_XY, '=', '-'};

/// @param values  of the number that differs, in ascending order, each with its setup
void AddKey(const std::string& name, const std::vector<std::pair<double, Setup>>& values, const Key& key,
            double limit) {
    std::vector<GrowthPoint> points;
    for (const auto& [value, setup] : values)
        points.push_back({value, [setup = setup, key] {
                              const auto viewer = std::make_shared<GrownViewer>(setup);
                              return [viewer, key] { viewer->Alternate(key.plane, key.key, key.back); };
                          }});
    AddGrowth(name, points, limit);
}

double Voxels(const Size& size) {
    return static_cast<double>(size.x * size.y * size.z);
}

[[maybe_unused]] const bool added = [] {
    std::vector<std::pair<double, Setup>> sizes, sequences, zooms, windows, labels;
    // Two frames of the largest take 3.4 GB, which a short run spares the machine.
    const Size largest = std::getenv("ZEL_BENCH_SHORT") != nullptr ? Size{1024, 1024, 64} : Size{2048, 2048, 200};
    // Windows are full of voxels at all sizes.
    for (const auto& [size, zoom] :
         {std::pair(Size{256, 256, 64}, 3), std::pair(Size{512, 512, 100}, 1), std::pair(largest, 0)})
        sizes.emplace_back(Voxels(size), Setup{.size = size, .frames = 2, .zoom = zoom});
    for (const std::size_t frames : {2U, 20U, 200U})
        sequences.emplace_back(static_cast<double>(frames), Setup{.size = {256, 256, 16}, .frames = frames, .zoom = 2});
    for (const std::size_t number : {10U, 100U, 1000U})
        labels.emplace_back(static_cast<double>(number), Setup{.labels = number});
    for (const int zoom : {1, 3, 7})
        zooms.emplace_back(zoom + 1, Setup{.zoom = zoom});
    for (const int width : {500, 1000, 1500})
        windows.emplace_back(width * width, Setup{.zoom = 3, .window = {width, width * 4 / 5}});
    // Three times the time for 195 times the voxels would be a slope of 0.2; 1.3 times is one of 0.05.
    AddKey("Page Down YZ by voxels", sizes, {}, 0.05);
    AddKey("time step by voxels", sizes, timeStep, 0.05);
    AddKey("time step by frames", sequences, timeStep, 0.05);
    AddKey("Page Down YZ by labels", labels, {}, 0.05);
    AddKey("Page Down YZ by zoom", zooms, {}, 0.05);
    AddKey("Page Down YZ by pixels", windows, {}, 1.0);
    return true;
}();

} // namespace
