// Linked with the example, it makes the file that the example is called with, looks at the window that opens, and
// closes it.

#include "factory/zel_viewer.h"

#include <wx/log.h>
#include <wx/menu.h>
#include <wx/module.h>
#include <wx/timer.h>
#include <wx/toplevel.h>

#include <cstdlib>
#include <iostream>

namespace {

/// Whether the picture grows brighter from left to right: gray 0, 2, 4 ...
bool IsRamp(const wxImage& picture) {
    if (picture.GetSize() != wxSize(128, 96))
        return false;
    for (int x = 20; x < 64; ++x) // clear of the marks of the cut
        if (picture.GetRed(x, 20) != 2 * x || picture.GetBlue(x, 20) != 2 * x)
            return false;
    return true;
}

class Watcher : public wxTimer {
public:
    void Notify() override {
        if (++m_rounds > 300)
            Fail("no ramp is seen");
        for (wxWindow* const window : wxTopLevelWindows) {
            auto* const frame = dynamic_cast<zel::zel_Viewer3dFrame*>(window);
            if (frame == nullptr || !frame->IsShownOnScreen())
                continue;
            if (frame->GetMenuBar()->GetMenuCount() != 3 || frame->GetTitle() != "ramp000.tif")
                Fail("the frame is not the one wanted");
            if (IsRamp(frame->GetCanvas()->GetDrWin(zel::zel_PT_XY)->GetPointerImage())) {
                std::cout << "seen" << std::endl;
                frame->Close();
            }
            return;
        }
    }

private:
    static void Fail(const char* what) {
        std::cerr << what << std::endl;
        std::_Exit(1);
    }

    int m_rounds = 0;
};

/// Comes before the application's OnInit.
class WatcherModule : public wxModule {
public:
    bool OnInit() override {
        const kep::Resolution resolution(1, 1, 1);
        mor::Image4d<unsigned short> ramp(nullptr, &resolution);
        ramp.MakeRoom(128, 96, 5, 1);
        std::size_t i = 0;
        for (unsigned short& voxel : *ramp.GetImage(0))
            voxel = static_cast<unsigned short>(514 * (i++ % 128)); // 514 = 2 * 257, which is two grays
        const wxLogNull quiet;
        ramp.SaveSequence("ramp", 3, ".tif", 0, 0);
        m_watcher.Start(50);
        return true;
    }
    void OnExit() override { m_watcher.Stop(); }

private:
    Watcher m_watcher;

    wxDECLARE_DYNAMIC_CLASS(WatcherModule);
};

wxIMPLEMENT_DYNAMIC_CLASS(WatcherModule, wxModule);

} // namespace
