#pragma once

#include "host/firstpaint.h"
#include "host/frame/dialogplaces.h"
#include "host/opening.h"
#include "host/options.h"
#include "host/settingsfile.h"
#include "viewer/zel_frame.h"

#include <wx/app.h>
#include <wx/stopwatch.h>
#include <wx/timer.h>

#include <memory>
#include <string>
#include <vector>

namespace zelviewer {

/// The program with a window: opens it, or writes its picture and leaves.
class ViewerApp : public wxApp {
public:
    explicit ViewerApp(const Options& options);

    bool OnInit() override { return true; } // the command line was read before the toolkit started
    int OnRun() override;

    /// No exception ends the program: each is shown in a box, and the loop goes on.
    bool OnExceptionInMainLoop() override;
    void ProcessPendingEvents() override;
    void OnAssertFailure(const wxChar* file, int line, const wxChar* function, const wxChar* condition,
                         const wxChar* message) override;

protected:
    /// Opens what the options name.
    /// @throws Failure
    virtual zel::zel_Viewer3dFrame* OpenFrame(const Options& options);
    /// Shows a text, in a window that must be answered.
    virtual void ShowError(const std::string& text);
    /// Opens files and folders that the user has chosen while the program runs, in a window of their own.
    void OpenFiles(const std::vector<std::string>& files);

private:
    std::vector<std::size_t> ChooseChannels(const ChannelQuestion& question);
    static zel::zel_Viewer3dFrame* OpenSynthetic(const Options& options);
    void Present(zel::zel_Viewer3dFrame& frame);
    void Equip(zel::zel_Viewer3dFrame& frame);
    void KeepFiles(const std::vector<std::string>& files);
    void KeepState(zel::zel_Viewer3dFrame& frame);
    void ChangeSettings(const std::function<void(wxFileConfig&)>& change);
    static void Quit();
    void OnFirstPaint();
    void ShowVolume();
    void TakeScreenshot();
    void LeaveWith(int exitCode);
    void ReportException();
    void ReportError(const std::string& text);

    Options m_options;
    SettingsFile m_settings; // none until the program runs
    bool m_settingsFailed = false;
    DialogPlaces m_dialogPlaces;
    zel::zel_Viewer3dFrame* m_frame = nullptr;
    std::unique_ptr<FirstPaint> m_firstPaint;
    wxTimer m_patience;
    int m_exitCode = 0;
    bool m_errorIsShown = false;
    std::string m_lastError;
    wxStopWatch m_sinceLastError;
};

} // namespace zelviewer
