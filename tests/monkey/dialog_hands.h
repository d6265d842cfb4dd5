#pragma once

#include "tests/monkey/dice.h"
#include "tests/support/scratch_folder.h"

#include <wx/dialog.h>
#include <wx/modalhook.h>
#include <wx/weakref.h>

#include <functional>
#include <string>
#include <vector>

class wxMessageDialog;

namespace zel::test {

/// While one lives, modal dialogs are changed at random and then ended: by OK, Cancel, Escape, by the window manager,
/// or by a host that closes the viewer under them.
class DialogHands : public wxModalDialogHook {
public:
    /// @param note     told what is done
    /// @param hostActs does what a host may do at any time
    DialogHands(Dice& dice, const ScratchFolder& folder, std::function<void(const std::string&)> note,
                std::function<void()> hostActs);
    ~DialogHands() override { Unregister(); }
    DialogHands(const DialogHands&) = delete;
    DialogHands& operator=(const DialogHands&) = delete;

    /// No dialog is open.
    bool AreFree() const { return m_open.empty(); }
    int GetSeen() const { return m_seen; }

protected:
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

private:
    int AnswerMessage(const wxMessageDialog& box);
    int OpenAnd(wxDialog& dialog, void (DialogHands::*drive)(wxDialog&));
    void EndMessage(wxDialog& dialog);
    void ChooseFile(wxDialog& dialog);
    void ChooseFolder(wxDialog& dialog);
    void EndSystemDialog(wxDialog& dialog);
    void Drive(wxDialog& dialog);
    void End(const wxWeakRef<wxDialog>& dialog);
    std::string AnyFile();

    Dice& m_dice;
    const ScratchFolder& m_folder;
    std::function<void(const std::string&)> m_note;
    std::function<void()> m_hostActs;
    std::vector<wxDialog*> m_open;
    int m_seen = 0;
};

} // namespace zel::test
