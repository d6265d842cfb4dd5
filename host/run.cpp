#include "host/run.h"

#include "host/hostlog.h"
#include "host/meshexport.h"
#include "host/message.h"
#include "host/outputs.h"
#include "host/picturesave.h"
#include "host/screenshot.h"
#include "host/viewerapp.h"

#include <wx/init.h>
#include <wx/log.h>

#include <cstdlib>

namespace zelviewer {

namespace {

/// Starts the toolkit with an application object, which it then owns.
bool StartToolkit(ViewerApp* app, char* programName) {
    setenv("GDK_BACKEND", "x11", 0); // OpenGL windows need it, under Wayland too
    wxApp::SetInstance(app);
    int count = 1;
    char* arguments[] = {programName, nullptr};
    const wxLogNull silence; // its own words about a missing display would come beside ours
    return wxEntryStart(count, arguments);
}

/// The toolkit without windows, for as long as one lives: it opens no display.
class ToolkitWithoutWindows {
public:
    ToolkitWithoutWindows(char* programName, bool isVerbose) {
        wxApp::SetInstance(new wxAppConsole);
        int count = 1;
        char* arguments[] = {programName, nullptr};
        if (!wxEntryStart(count, arguments))
            throw Failure("The toolkit cannot be started.");
        wxLog::SetActiveTarget(new HostLog(isVerbose, true));
    }
    ~ToolkitWithoutWindows() { wxEntryCleanup(); }
    ToolkitWithoutWindows(const ToolkitWithoutWindows&) = delete;
    ToolkitWithoutWindows& operator=(const ToolkitWithoutWindows&) = delete;
};

void SaveWithoutWindow(const Options& options, char* programName) {
    const ToolkitWithoutWindows toolkit(programName, options.verbose);
    SavePictures(options);
}

} // namespace

std::string RefusalOfOutputs(const Options& options) {
    if (!options.screenshot && !options.exportMeshes && !options.save.IsAskedFor())
        return {};
    std::vector<std::string> names = options.files;
    names.insert(names.end(), options.labels.begin(), options.labels.end());
    if (options.view)
        names.push_back(*options.view);
    const OutputRules rules(names, options.force);
    if (options.screenshot) {
        std::string refusal = rules.RefusalOf(*options.screenshot, {".png"});
        if (refusal.empty() && options.volume)
            refusal = rules.RefusalOf(VolumePictureName(*options.screenshot), {".png"});
        return refusal;
    }
    const std::vector<std::string> outputs =
        options.save.IsAskedFor() ? options.save.GetFileNames() : FindMeshFiles(*options.exportMeshes);
    const std::vector<std::string> endings =
        options.save.IsAskedFor() ? options.save.GetEndings() : std::vector<std::string>{".ply"};
    for (const std::string& output : outputs)
        if (std::string refusal = rules.RefusalOf(output, endings); !refusal.empty())
            return refusal;
    return {};
}

int RunViewer(const Options& options, char* programName) {
    if (const std::string refusal = RefusalOfOutputs(options); !refusal.empty()) {
        PrintMessage(refusal);
        return 2;
    }
    if (options.exportMeshes) {
        ExportMeshes({options.labels, options.components, options.resolution, *options.exportMeshes,
                      options.closeMeshes, options.force});
        return 0;
    }
    if (options.save.IsAskedFor()) {
        SaveWithoutWindow(options, programName);
        return 0;
    }
    if (!StartToolkit(new ViewerApp(options), programName)) {
        PrintMessage("There is no display to show a window on: set DISPLAY, use --screenshot under xvfb-run, "
                     "--save-view, --save-gallery, --save-film or --info.");
        return 1;
    }
    wxLog::SetActiveTarget(new HostLog(options.verbose, options.screenshot.has_value()));
    const int result = wxTheApp->CallOnInit() ? wxTheApp->OnRun() : 1;
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}

} // namespace zelviewer
