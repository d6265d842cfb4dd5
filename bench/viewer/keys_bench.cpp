// From a key to the finished picture of three windows of 1000 x 800 pixels together, in the frame that hosts open,
// beside three bare blits of windows of the same sizes. All that the key brings about counts, also what the toolkit
// does a display frame later. And whether automatic browsing keeps its rate.

#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/viewer/bare_windows.h"
#include "factory/zel_viewerfactory.h"

#include <wx/evtloop.h>
#include <wx/menu.h>
#include <wx/stopwatch.h>
#include <wx/timer.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <utility>

namespace {

using namespace zel;

constexpr std::size_t frames = 20;

/// A viewer with a sequence of 20 frames of 512 x 512 x 64 voxels, and bare windows.
class Viewer {
public:
    Viewer() {
        const kep::Resolution resolution(1, 1, 1);
        m_image = std::make_unique<mor::Image4d<unsigned short>>(nullptr, &resolution);
        const auto sample = GetSampleFrame<unsigned short>();
        m_image->MakeRoom(sample->GetSize(), frames);
        for (std::size_t t = 0; t < frames; ++t) {
            m_image->GetVoxelData(t) = sample->GetVoxelData();
            m_image->SetImageName(t, wxString::Format("frame %zu", t));
        }
        m_frame = zel_CreateImage3dFrame(m_image.get(), false, nullptr, wxID_ANY, "bench", wxDefaultPosition,
                                         wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        m_frame->GetMenuBar()->Check(zel_CMD_AUTO_ADJUST_FRAME_SIZE, false);
        ShowAndRest(*m_frame);
        m_frame->SetClientSize(1000, 800);
        Pump(200);
        Canvas().ZoomIn();
        PumpUntilQuiet();
        m_bare = std::make_unique<BareWindows>(Canvas());
        Press(WXK_PAGEUP); // leaves room for Page Down
    }

    zel_Viewer3dCanvas& Canvas() { return *m_frame->GetCanvas(); }
    BareWindows& Bare() { return *m_bare; }
    void Run(int command) { m_frame->ProcessCommand(command); }

    void Press(int key) {
        zel_DrWin3d& window = *Canvas().GetDrWin(zel_PT_XY);
        wxKeyEvent event(wxEVT_KEY_DOWN);
        event.m_keyCode = key;
        event.SetEventObject(&window);
        window.ProcessWindowEvent(event);
        PumpUntilQuiet();
    }
    /// Presses a key and, the next time, the one that takes it back.
    void Alternate(int key, int back) {
        m_there = !m_there;
        Press(m_there ? key : back);
    }

private:
    std::unique_ptr<mor::Image4d<unsigned short>> m_image;
    zel_Viewer3dFrame* m_frame = nullptr;
    std::unique_ptr<BareWindows> m_bare;
    bool m_there = false;
};

Viewer& TheViewer() {
    static Viewer viewer;
    return viewer;
}

void AddKey(const std::string& name, int key, int back, double limit) {
    constexpr double seconds = 0.2; // and as much again for each that the display takes
    const auto prepare = [limit, key, back] {
        Comparison comparison;
        comparison.work = [key, back] { TheViewer().Alternate(key, back); };
        comparison.yardstick = [] {
            TheViewer().Bare().Blit();
            PumpUntilQuiet();
        };
        comparison.unit = "blits";
        comparison.limit = limit;
        comparison.bytes = TheViewer().Bare().GetPixels() * 3;
        comparison.processorTime = true;
        return comparison;
    };
    AddComparison(name, prepare, seconds);
}

/// Ticks and pictures while browsing in a loop at 25 frames a second, beside the ticks of a timer that does nothing.
void Browse(benchmark::State& state) {
    Viewer& viewer = TheViewer();
    zel_DrWin3d& window = *viewer.Canvas().GetDrWin(zel_PT_XY);
    mor::ImageIterator fast = viewer.Canvas().GetImageIterator();
    fast.SetFPS(25);
    viewer.Canvas().UpdateImageIterator(fast);
    viewer.Run(zel_CMD_LOOP_MODE);
    int ticks = 0, pictures = 0, painted = -1;
    const auto countTick = [&ticks](wxTimerEvent& event) {
        ++ticks;
        event.Skip();
    };
    const auto countPicture = [&](wxPaintEvent& event) {
        pictures += std::exchange(painted, viewer.Canvas().GetTime()) != viewer.Canvas().GetTime();
        event.Skip();
    };
    viewer.Canvas().Bind(wxEVT_TIMER, countTick);
    window.Bind(wxEVT_PAINT, countPicture);
    for (auto _ : state) {
        ticks = pictures = 0;
        int idleTicks = 0;
        wxTimer idle;
        idle.Bind(wxEVT_TIMER, [&idleTicks](wxTimerEvent&) { ++idleTicks; });
        idle.Start(1000 / 25);
        viewer.Run(zel_CMD_BROWSE_FORWARD);
        const wxStopWatch watch;
        wxGUIEventLoop loop;
        wxTimer end;
        end.Bind(wxEVT_TIMER, [&loop](wxTimerEvent&) { loop.Exit(); });
        end.StartOnce(4000);
        loop.Run();
        const double seconds = static_cast<double>(watch.Time()) / 1000.0;
        viewer.Run(zel_CMD_STOP_BROWSING);
        PumpUntilQuiet();
        state.SetIterationTime(seconds);
        state.counters["idle_ticks_per_s"] = idleTicks / seconds;
        state.counters["ticks_per_s"] = ticks / seconds;
        state.counters["pictures_per_s"] = pictures / seconds;
    }
    viewer.Canvas().Unbind(wxEVT_TIMER, countTick);
    window.Unbind(wxEVT_PAINT, countPicture);
    viewer.Run(zel_CMD_LOOP_MODE);
}

[[maybe_unused]] const bool added = [] {
    AddKey("key/Page Down", WXK_PAGEDOWN, WXK_PAGEUP, 3.0);
    AddKey("key/time step", '=', '-', 6.0);
    AddKey("key/arrow", WXK_RIGHT, WXK_LEFT, 6.0);
    benchmark::RegisterBenchmark("browse/25 frames a second", Browse)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
    return true;
}();

} // namespace
