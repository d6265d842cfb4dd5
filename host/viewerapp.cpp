#include "host/viewerapp.h"

#include "host/failuredialog.h"
#include "host/fileselection.h"
#include "host/frame/channeldialog.h"
#include "host/frame/hostmenus.h"
#include "host/frame/placement.h"
#include "host/frame/sequencequestion.h"
#include "host/growingcells.h"
#include "host/imageframe.h"
#include "host/message.h"
#include "host/opening.h"
#include "host/run.h"
#include "host/screenshot.h"
#include "host/settings.h"
#include "image/zel_modaldialog.h"
#include "volume/vol3D_canvas.h"

#include <wx/modalhook.h>
#include <wx/msgdlg.h>
#include <wx/weakref.h>

#include <unistd.h>

#include <filesystem>

namespace zelviewer {

namespace {

constexpr int patienceMilliseconds = 30'000; // for a window to paint; a busy machine takes its time

/// Without a user nobody answers a box: its text goes to standard error.
class BoxlessMode : public wxModalDialogHook {
public:
    BoxlessMode() { Register(); }
    ~BoxlessMode() override { Unregister(); }
    BoxlessMode(const BoxlessMode&) = delete;
    BoxlessMode& operator=(const BoxlessMode&) = delete;

protected:
    int Enter(wxDialog* dialog) override {
        const auto* const box = dynamic_cast<wxMessageDialog*>(dialog);
        PrintWarning((box != nullptr ? box->GetMessage() : dialog->GetTitle()).utf8_string());
        return wxID_OK;
    }
};

} // namespace

ViewerApp::ViewerApp(const Options& options) : m_options(options) {}

int ViewerApp::OnRun() {
    const auto boxless = m_options.screenshot ? std::make_unique<BoxlessMode>() : nullptr;
    if (!m_options.LeavesByItself())
        m_settings = SettingsFile(NameOfUserSettings());
    const bool isFromDesktop = !m_options.LeavesByItself() && IsReadByNobody(STDOUT_FILENO, STDERR_FILENO);
    try {
        if (isFromDesktop && m_options.labels.empty()) // a file was double-clicked
            m_options.files = AskForSequence(nullptr, m_options.files);
        m_frame = OpenFrame(m_options);
        KeepFiles(m_options.files);
        m_firstPaint = std::make_unique<FirstPaint>(*m_frame->GetCanvas(), [this] { OnFirstPaint(); });
        if (m_options.screenshot) {
            m_patience.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
                PrintMessage(*m_options.screenshot + ": The window was not painted.");
                LeaveWith(1);
            });
            m_patience.StartOnce(patienceMilliseconds);
        }
        Present(*m_frame);
    } catch (const Cancelled& cancelled) { // by the user, who knows
        PrintMessage(cancelled.what());
        return 1;
    } catch (const Failure& failure) {
        PrintMessage(failure.what());
        if (isFromDesktop)
            ShowError(failure.what());
        return 1;
    } catch (...) { // the files were read, and the user looks at the screen by now
        ReportException();
        return 1;
    }
    wxApp::OnRun();
    return m_exitCode;
}

zel::zel_Viewer3dFrame* ViewerApp::OpenFrame(const Options& options) {
    if (options.files.empty())
        return OpenSynthetic(options);
    const OpeningPlan plan = PlanOpening(options);
    if (plan.question) {
        Options chosen = options;
        chosen.channels = ChooseChannels(*plan.question);
        return OpenFrame(chosen);
    }
    if (const std::string conflict = FindConflict(options, plan.type); !conflict.empty())
        throw Failure(options.files.front() + ": " + conflict);
    // Who names labels wants to see them, and the image as well.
    const FirstLook look{options.stretch, options.voxels, options.part, !options.labels.empty(), !options.screenshot};
    return WithVoxelType(plan.type, [&](auto type) {
        using T = typename decltype(type)::type;
        ReadingProgress progress(plan.frames, plan.bytes, !options.LeavesByItself());
        auto [image, histograms] = ReadFiles<T>(options, plan, progress);
        auto labels = options.labels.empty() ? nullptr : ReadLabels<T>(options, *image);
        try {
            const auto counting = [&progress](double done) { return progress.Report("Counting gray levels", done); };
            return MakeFrame<T>(std::move(image), look, std::move(labels), counting,
                                histograms ? &*histograms : nullptr);
        } catch (const kep::ReadingStopped&) {
            throw Cancelled(options.files.front() + ": Opening was cancelled.");
        } catch (const kep::InternalException& error) {
            throw kep::InternalException(NameAndReason(options.files.front(), error));
        }
    });
}

/// Asks which channels of a file are shown. @throws Failure if nobody is there; Cancelled
std::vector<std::size_t> ViewerApp::ChooseChannels(const ChannelQuestion& question) {
    if (m_options.LeavesByItself())
        Refuse(question);
    std::vector<std::size_t> channels = AskForChannels(GetTopWindow(), question);
    if (channels.empty())
        throw Cancelled(question.file + ": No channel was chosen.");
    return channels;
}

zel::zel_Viewer3dFrame* ViewerApp::OpenSynthetic(const Options& options) {
    if (options.type == DisplayType::Complex)
        return MakeFrame(OpenVortex(), {options.stretch, options.voxels, options.part, false, !options.screenshot});
    if (!options.screenshot)
        return MakeGrowingCells({options.stretch, options.voxels, {}, false, true});
    LabeledCells cells = OpenSyntheticCells();
    return MakeFrame(std::move(cells.image), {options.stretch, options.voxels}, std::move(cells.labels));
}

/// Shows a window as the last one was left.
void ViewerApp::Present(zel::zel_Viewer3dFrame& frame) {
    Equip(frame);
    const auto settings = m_settings.Read();
    if (!m_options.stretch)
        ReadColours(frame, *settings);
    ShowInPlace(frame, ReadPlace(*settings));
}

/// Gives a window what only the program has.
void ViewerApp::Equip(zel::zel_Viewer3dFrame& frame) {
    AddHostMenus(frame, {[this](const std::vector<std::string>& files) { OpenFiles(files); }, &ViewerApp::Quit,
                         [this] { return ReadRecent(*m_settings.Read()); }});
    frame.Bind(wxEVT_CLOSE_WINDOW, [this, &frame](wxCloseEvent& event) {
        event.Skip();
        KeepState(frame);
    });
}

void ViewerApp::KeepFiles(const std::vector<std::string>& files) {
    if (files.empty())
        return;
    OpenedFiles names;
    for (const std::string& file : files)
        names.push_back(std::filesystem::absolute(file).lexically_normal());
    ChangeSettings([&names](wxFileConfig& config) { WriteRecent(config, AddRecent(ReadRecent(config), names)); });
}

void ViewerApp::KeepState(zel::zel_Viewer3dFrame& frame) {
    ChangeSettings([&frame](wxFileConfig& config) {
        if (!frame.IsIconized())
            WritePlace(config, {frame.GetRect(), frame.IsMaximized()});
        WriteColours(frame, config);
    });
}

/// Says once that nothing is kept: it is no reason to stop.
void ViewerApp::ChangeSettings(const std::function<void(wxFileConfig&)>& change) {
    const std::string failure = m_settings.Change(change);
    if (!failure.empty() && !m_settingsFailed)
        PrintMessage(failure);
    m_settingsFailed = m_settingsFailed || !failure.empty();
}

void ViewerApp::OpenFiles(const std::vector<std::string>& files) {
    Options options;
    options.stretch = m_options.stretch;
    options.voxels = m_options.voxels;
    try {
        options.files = ExpandFolders(AskForSequence(GetTopWindow(), files));
        zel::zel_Viewer3dFrame* const frame = OpenFrame(options);
        KeepFiles(options.files);
        Present(*frame);
    } catch (const Cancelled&) { // by the user, who knows
        return;
    } catch (...) {
        ReportException();
    }
}

void ViewerApp::Quit() {
    const std::vector<wxWindow*> windows(wxTopLevelWindows.begin(), wxTopLevelWindows.end());
    for (wxWindow* const window : windows)
        if (dynamic_cast<zel::zel_Viewer3dFrame*>(window) != nullptr)
            window->Close();
}

void ViewerApp::OnFirstPaint() {
    if (m_options.volume)
        ShowVolume();
    if (!m_options.screenshot)
        return;
    m_frame->ResizeFrameIfRequired(); // what the window manager puts around the window counts only now
    CallAfter([this] { TakeScreenshot(); });
}

void ViewerApp::ShowVolume() {
    const wxWeakRef<zel::zel_Viewer3dFrame> frame(m_frame); // the user may close it while OpenGL starts
    frame->GetCanvas()->ShowVolVis(frame->GetIcons());
    if (!frame || frame->GetCanvas()->GetVolVisFrame() == nullptr || !m_options.view)
        return;
    zel::vol3D_VolVisCanvas& volume = *frame->GetCanvas()->GetVolVisFrame()->GetCanvas();
    if (!volume.LoadViewFile(*m_options.view))
        throw Failure(*m_options.view + ": The file cannot be opened.");
    volume.Refresh(false);
}

void ViewerApp::TakeScreenshot() {
    // Seen again now, for files that were put there since.
    if (const std::string refusal = RefusalOfOutputs(m_options); !refusal.empty())
        throw Failure(refusal);
    try {
        const wxImage picture = ComposePicture(*m_frame->GetCanvas());
        if (m_options.volume) {
            zel::vol3D_VolVisFrame* const volume = m_frame->GetCanvas()->GetVolVisFrame();
            const wxImage seen = volume != nullptr ? volume->GetCanvas()->TakePicture() : wxImage();
            if (!seen.IsOk())
                throw Failure(VolumePictureName(*m_options.screenshot) + ": There is no OpenGL to draw the volume.");
            WritePng(seen, VolumePictureName(*m_options.screenshot));
        }
        WritePng(picture, *m_options.screenshot);
        LeaveWith(0);
    } catch (const kep::LibException& error) {
        PrintMessage(NameAndReason(*m_options.screenshot, error));
        LeaveWith(1);
    }
}

void ViewerApp::LeaveWith(int exitCode) {
    m_exitCode = exitCode;
    if (m_frame != nullptr)
        m_frame->Destroy();
    ExitMainLoop();
}

bool ViewerApp::OnExceptionInMainLoop() {
    ReportException();
    return true;
}

/// What is thrown out of a pending event would otherwise fly through the toolkit's loop.
void ViewerApp::ProcessPendingEvents() {
    try {
        wxApp::ProcessPendingEvents();
    } catch (...) {
        ReportException();
    }
}

/// Reports the exception that is being handled.
void ViewerApp::ReportException() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        ReportError("There is not enough memory.");
    } catch (const std::exception& error) {
        ReportError(error.what());
    } catch (...) {
        ReportError("An unknown error occurred.");
    }
}

void ViewerApp::ReportError(const std::string& text) {
    if (m_options.screenshot) {
        PrintMessage(text);
        LeaveWith(1);
        return;
    }
    // What a paint throws comes again when the box has gone: it is shown once, or nobody could close the program.
    constexpr long soon = 2000; // ms
    if (m_errorIsShown || (text == m_lastError && m_sinceLastError.Time() < soon)) {
        PrintMessage(text);
        m_sinceLastError.Start();
        return;
    }
    m_errorIsShown = true;
    ShowError(text);
    m_errorIsShown = false;
    m_lastError = text;
    m_sinceLastError.Start();
}

void ViewerApp::ShowError(const std::string& text) {
    zel::ShowMessage(wxString::FromUTF8(text), "zelviewer", wxOK | wxICON_ERROR, GetTopWindow());
}

void ViewerApp::OnAssertFailure(const wxChar* file, int line, const wxChar* function, const wxChar* condition,
                                const wxChar* message) {
    if (!m_options.screenshot) {
        wxApp::OnAssertFailure(file, line, function, condition, message);
        return;
    }
    PrintMessage((wxString("Assertion failed: ") << condition << " in " << function).utf8_string());
}

} // namespace zelviewer
