#pragma once

#include "tests/monkey/black_box.h"
#include "tests/monkey/dialog_hands.h"
#include "tests/monkey/viewers.h"
#include "tests/support/gui_test.h"

#include <wx/log.h>

#include <memory>
#include <string>
#include <vector>

class wxMenuItem;

namespace zel {
class vol3D_VolVisFrame;
}

namespace zel::test {

/// What a run of the monkey is.
struct MonkeyRun {
    unsigned seed = 1;
    int commands = 300;
    int patience = 20;        ///< seconds that a command may take
    bool browsesOnly = false; ///< what leaves nothing behind: no saving, no new frames of images, one viewer
};

/// A user and a host in one, who do everything that can be done to viewers, in no sensible order. After each command
/// it is tested what must hold whatever was done; the first fault ends the run.
class Monkey {
public:
    explicit Monkey(const MonkeyRun& run);
    ~Monkey();
    Monkey(const Monkey&) = delete;
    Monkey& operator=(const Monkey&) = delete;

    /// All commands of the run.
    void Run();
    /// One command.
    void Step();
    /// Closes all viewers.
    void CloseAll();
    const BlackBox& GetBlackBox() const { return m_box; }
    int GetDialogsSeen() const { return m_hands.GetSeen(); }

private:
    struct Command {
        const char* name;
        int weight;
        void (Monkey::*act)();
        bool browses; ///< leaves nothing behind
    };
    static const std::vector<Command>& AllCommands();

    /// What is logged is no fault, and may tell what came before one.
    class Log : public wxLog {
    public:
        explicit Log(BlackBox& box) : m_box(box) {}

    protected:
        void DoLogRecord(wxLogLevel, const wxString& text, const wxLogRecordInfo&) override;

    private:
        BlackBox& m_box;
    };

    const Command& AnyCommand();
    void Check();
    void CheckViewer(AnyViewer& viewer);
    void ForgetTheGone();
    bool IsThere() const { return m_viewer != nullptr && m_viewer->frame; }
    void Note(const std::string& what) { m_box.Note("  " + what); }

    // The commands; those of the user first. They work on m_viewer.
    void ChooseEntry();
    void OpenMenu();
    void SendAnyId();
    void PressKey();
    void UseMouse();
    void DragMouse();
    void UseHands();
    void Resize();
    void ChangeWindowState();
    void MoveFocus();
    void SendSystemEvent();
    void TouchAnyWindow();
    void UseVolume();
    void WaitAWhile();
    void CloseViewer();
    // of the host
    void OpenViewer();
    void ChangeView();
    void ChangeSettings();
    void Browse();
    void ChangeFrames();
    void ChangeModules();
    void Save();
    void DriveVolume();
    void ActAsHost();
    void GoAtOddMoment();

    zel_DrWin3d& AnyDrawingWindow();
    wxWindow* AnyTopLevel();
    void ChooseEntryOf(wxFrame& frame);
    void TameVolume();

    MonkeyRun m_run;
    Dice m_dice;
    BlackBox m_box;
    Log m_log;
    wxLog* m_logBefore;
    ScratchFolder m_folder;
    std::string m_folderBefore;
    DialogHands m_hands;
    wxWeakRef<wxFrame> m_host; ///< the parent of some viewers
    std::vector<std::unique_ptr<AnyViewer>> m_viewers;
    AnyViewer* m_viewer = nullptr; ///< that the present command is for
};

} // namespace zel::test
