// One step of a drag in the levels and the threshold dialog, on a viewer whose three windows have 1000 x 800 pixels
// together: from the mouse event through the table to the painted windows, and all that the toolkit paints afterwards,
// in the dialog too. Beside three bare blits of windows of the same sizes.

#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/viewer/bare_windows.h"
#include "dialogs/dlg_levels.h"
#include "dialogs/dlg_thres.h"
#include "factory/zel_viewerfactory.h"

#include <wx/menu.h>

#include <memory>

namespace {

using namespace zel;
using Word = unsigned short;

/// A viewer of a 16-bit image.
class Viewer {
public:
    Viewer() {
        const kep::Resolution resolution(1, 1, 1);
        m_image = std::make_unique<mor::Image4d<Word>>(nullptr, &resolution);
        const auto sample = GetSampleFrame<Word>();
        m_image->MakeRoom(sample->GetSize(), 1);
        m_image->GetVoxelData(0) = sample->GetVoxelData();
        m_frame = zel_CreateImage3dFrame(m_image.get(), false, nullptr, wxID_ANY, "bench", wxPoint(300, 0),
                                         wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        m_frame->GetMenuBar()->Check(zel_CMD_AUTO_ADJUST_FRAME_SIZE, false);
        ShowAndRest(*m_frame);
        m_frame->SetClientSize(1000, 800);
        Pump(200);
        m_frame->GetCanvas()->ZoomIn();
        PumpUntilQuiet();
        m_bare = std::make_unique<BareWindows>(*m_frame->GetCanvas());
    }

    wxFrame* GetFrame() { return m_frame; }
    BareWindows& Bare() { return *m_bare; }

private:
    std::unique_ptr<mor::Image4d<Word>> m_image;
    zel_Viewer3dFrame* m_frame = nullptr;
    std::unique_ptr<BareWindows> m_bare;
};

Viewer& TheViewer() {
    static Viewer viewer;
    return viewer;
}

/// A dialog over the viewer. It stays open until the viewer goes.
template <typename Dialog, typename Params>
class OpenDialog {
public:
    OpenDialog() {
        m_histogram.Init(0, 65535, 65536);
        for (std::size_t& count : m_histogram)
            count = 7;
        wxArrayString names;
        names.Add("Gray");
        m_dialog = new Dialog(TheViewer().GetFrame(), wxID_ANY, m_histograms, {Params{0, 4095}}, names, "bench",
                              wxPoint(0, 0), wxDefaultSize, wxDEFAULT_DIALOG_STYLE);
        m_dialog->Show();
        Pump(300);
    }

    /// Takes the left triangle, moves it to the other of two places and lets it go.
    void Step() {
        const int from = m_there ? second : first;
        const int to = m_there ? first : second;
        m_there = !m_there;
        Send(wxEVT_LEFT_DOWN, from); // moves nothing
        Send(wxEVT_MOTION, to);
        Send(wxEVT_LEFT_UP, to);
        PumpUntilQuiet();
    }

private:
    static constexpr int first = 5;
    static constexpr int second = 8;

    void Send(wxEventType type, int x) {
        Triangles& row = *dynamic_cast<VariableMinMaxCtrl<Word>&>(*m_dialog->FindWindow(10005)).GetTriangles();
        wxMouseEvent event(type);
        event.SetPosition(wxPoint(x, 4));
        event.SetLeftDown(type != wxEVT_LEFT_UP);
        event.SetEventObject(&row);
        row.ProcessWindowEvent(event);
    }

    Histogram<Word> m_histogram;
    std::vector<Histogram<Word>*> m_histograms{&m_histogram};
    Dialog* m_dialog = nullptr;
    bool m_there = false;
};

template <typename Dialog, typename Params>
void AddDrag(const std::string& name) {
    constexpr double seconds = 0.2; // and as much again for each that the display takes
    const auto prepare = [] {
        const auto dialog = std::make_shared<OpenDialog<Dialog, Params>>();
        Comparison comparison;
        comparison.work = [dialog] { dialog->Step(); };
        comparison.yardstick = [] {
            TheViewer().Bare().Blit();
            PumpUntilQuiet();
        };
        comparison.unit = "blits";
        comparison.limit = 6.0;
        comparison.bytes = TheViewer().Bare().GetPixels() * 3;
        comparison.processorTime = true;
        return comparison;
    };
    AddComparison(name, prepare, seconds);
}

[[maybe_unused]] const bool added = [] {
    AddDrag<LevelsWidget<Word, unsigned char>, TLevelsParams<Word, unsigned char>>("drag/levels");
    AddDrag<ThresholdingDialog<Word>, ThresParams<Word>>("drag/thresholds");
    return true;
}();

} // namespace
