// The graph of the levels dialog over a histogram of 16 bits, from Refresh to the painted panel. It is painted with
// each change of channel or type, and must not be felt: the yardstick is the millisecond that it may take.

#include "bench/support/comparison.h"
#include "dialogs/zel_histgraph.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/frame.h>
#include <wx/stopwatch.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <ctime>
#include <random>

namespace {

using namespace zel;
using Word = unsigned short;

void SpendAMillisecond() {
    const std::clock_t end = std::clock() + CLOCKS_PER_SEC / 1000;
    while (std::clock() < end) {
    }
}

/// A graph as the dialogs make it, on the screen.
class Stage {
public:
    Stage() {
        m_histogram.Init(0, 65535, 65536);
        std::mt19937 random(5);
        std::normal_distribution<double> cells(20000.0, 8000.0);
        for (int i = 0; i < 4000000; ++i) // noise between the few bins that a real image fills well
            ++m_histogram[static_cast<std::size_t>(std::lround(std::clamp(cells(random), 0.0, 65535.0)))];
        auto* const frame = new wxFrame(nullptr, wxID_ANY, "bench");
        auto* const panel = new wxPanel(frame);
        m_graph = new HistGraph<Word>(panel, &m_histogram, 10004, wxDefaultPosition, wxSize(264, 72));
        m_graph->SetCells(8, 4);
        m_graph->SetBarColour(*wxBLACK);
        frame->Show();
        const wxStopWatch watch;
        while (watch.Time() < 300) {
            while (wxEventLoopBase::GetActive()->Pending())
                wxEventLoopBase::GetActive()->Dispatch();
            wxTheApp->ProcessPendingEvents();
            wxEventLoopBase::GetActive()->ProcessIdle();
            wxMilliSleep(1);
        }
    }
    void Paint(int graphType) {
        m_graph->SetGraphType(graphType);
        m_graph->Refresh();
        m_graph->Update();
    }
    Histogram<Word>& GetHistogram() { return m_histogram; }

private:
    Histogram<Word> m_histogram;
    HistGraph<Word>* m_graph = nullptr;
};

Stage& GetStage() {
    static Stage stage;
    return stage;
}

void Add(const std::string& name, std::function<void()> work) {
    AddComparison(name, [work] {
        GetStage();
        Comparison comparison;
        comparison.work = work;
        comparison.yardstick = SpendAMillisecond;
        comparison.unit = "ms";
        comparison.limit = 1.0;
        comparison.bytes = 65536 * sizeof(std::size_t);
        comparison.processorTime = true;
        return comparison;
    });
}

[[maybe_unused]] const bool added = [] {
    Add("graph of 65536 bins, linear", [] { GetStage().Paint(1); });
    Add("graph of 65536 bins, logarithmic", [] { GetStage().Paint(0); });
    Add("its layout alone, linear", [] {
        HistGraphStyle style;
        style.graphType = 1;
        const auto& histogram = GetStage().GetHistogram();
        benchmark::DoNotOptimize(LayOutHistGraph({histogram.begin(), histogram.end()}, style, {260, 68}));
    });
    return true;
}();

} // namespace
