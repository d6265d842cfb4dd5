#include "watching.h"

#include <wx/log.h>
#include <wx/module.h>
#include <wx/timer.h>
#include <wx/toplevel.h>

#include <cstdlib>
#include <exception>
#include <iostream>

namespace watching {

void Fail(const char* what) {
    std::cerr << what << std::endl;
    std::_Exit(1);
}

mor::Image4d<unsigned short> MakeRamp() {
    const kep::Resolution resolution(1, 1, 1);
    mor::Image4d<unsigned short> ramp(nullptr, &resolution);
    ramp.MakeRoom(128, 96, 5, 1);
    std::size_t i = 0;
    for (unsigned short& voxel : *ramp.GetImage(0))
        voxel = static_cast<unsigned short>(514 * (i++ % 128)); // 514 = 2 * 257, which is two grays
    return ramp;
}

void Press(zel::zel_Viewer3dFrame& viewer, zel::zel_ProjectionType type, const wxPoint& at, bool control) {
    zel::zel_DrWin3d& window = *viewer.GetCanvas()->GetDrWin(type);
    wxMouseEvent down(wxEVT_LEFT_DOWN);
    down.SetPosition(at);
    down.SetLeftDown(true);
    down.SetControlDown(control);
    down.SetEventObject(&window);
    window.ProcessWindowEvent(down);
}

namespace {

class Watcher : public wxTimer {
public:
    void Notify() override try {
        if (++m_rounds > 600)
            Fail("not all was seen in half a minute");
        std::vector<zel::zel_Viewer3dFrame*> viewers;
        for (wxWindow* const window : wxTopLevelWindows)
            if (auto* const viewer = dynamic_cast<zel::zel_Viewer3dFrame*>(window);
                viewer != nullptr && viewer->IsShownOnScreen())
                viewers.push_back(viewer);
        if (viewers.empty() || !Look(viewers))
            return;
        Stop();
        m_hasSeenAll = true;
        for (zel::zel_Viewer3dFrame* const viewer : viewers)
            viewer->Close();
    } catch (const std::exception& failure) {
        Fail(failure.what());
    }

    bool HasSeenAll() const { return m_hasSeenAll; }

private:
    int m_rounds = 0;
    bool m_hasSeenAll = false;
};

/// Comes before the application's OnInit.
class WatcherModule : public wxModule {
public:
    bool OnInit() override {
        const wxLogNull quiet;
        MakeFiles();
        m_watcher.Start(50);
        return true;
    }
    void OnExit() override {
        m_watcher.Stop();
        if (!m_watcher.HasSeenAll())
            Fail("the program ended by itself");
    }

private:
    Watcher m_watcher;

    wxDECLARE_DYNAMIC_CLASS(WatcherModule);
};

wxIMPLEMENT_DYNAMIC_CLASS(WatcherModule, wxModule);

} // namespace

} // namespace watching
