// main() of benchmarks with windows.

#include "bench/support/comparison.h"

#include <wx/app.h>
#include <wx/evtloop.h>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

/// Runs the benchmarks with an event loop active, which moves only when they say so.
class BenchApp : public wxApp {
public:
    bool OnInit() override { return true; }
    int OnRun() override {
        wxGUIEventLoop loop;
        const wxEventLoopActivator activate(&loop);
        benchmark::RunSpecifiedBenchmarks();
        PrintComparisons();
        return 0;
    }
};

} // namespace

int main(int argc, char** argv) {
    setenv("GDK_BACKEND", "x11", 0);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    wxApp::SetInstance(new BenchApp); // which the toolkit owns
    return wxEntry(argc, argv);
}
