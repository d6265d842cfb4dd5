#include "tests/monkey/dialog_hands.h"

#include "tests/monkey/hands.h"
#include "tests/support/system_dialogs.h"

#include <wx/app.h>
#include <wx/colordlg.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/fontdlg.h>
#include <wx/msgdlg.h>
#include <wx/stopwatch.h>

#include <filesystem>
#include <utility>

namespace zel::test {

namespace {

constexpr std::size_t mostOpen = 4; // dialogs over one another

/// Pumps until the condition holds, or not for longer than a while.
template <typename Condition>
bool PumpUntil(const Condition& condition, int milliseconds) {
    const wxStopWatch watch;
    while (!condition()) {
        if (watch.Time() > milliseconds)
            return false;
        PumpFor(5);
        wxMilliSleep(1);
    }
    return true;
}

/// The system's dialog for folders shows one as chosen. The toolkit cannot take "Open" without.
bool IsChosen(const wxDialog& dialog, const std::string& folder) {
    static auto* const getName = OfSystem<char*(void*)>("gtk_file_chooser_get_filename");
    static auto* const freeName = OfSystem<void(void*)>("g_free");
    char* const name = getName(dialog.GetHandle());
    const bool same = name != nullptr && name == folder;
    freeName(name);
    return same;
}

bool IsChosen(const wxFileDialog& dialog, const wxString& file) {
    wxArrayString files;
    dialog.GetPaths(files);
    return files.size() == 1 && files[0] == file;
}

bool IsOpen(const wxWeakRef<wxDialog>& dialog) {
    return dialog && dialog->IsModal();
}

} // namespace

DialogHands::DialogHands(Dice& dice, const ScratchFolder& folder, std::function<void(const std::string&)> note,
                         std::function<void()> hostActs)
    : m_dice(dice), m_folder(folder), m_note(std::move(note)), m_hostActs(std::move(hostActs)) {
    WriteBytes(folder / "garbage.tif", "II*\0 no picture at all");
    WriteBytes(folder / "garbage.txt", "1 2 3\nnan abc -1 1e400\n\n\xff\xfe");
    WriteBytes(folder / "empty.zelview", "");
    std::filesystem::create_directory(folder / "sub");
    Register();
}

int DialogHands::Enter(wxDialog* dialog) {
    if (!m_open.empty() && m_open.back() == dialog)
        return wxID_NONE; // a native dialog that was let through comes a second time
    ++m_seen;
    m_note("  dialog \"" + dialog->GetTitle().utf8_string() + "\" " + NameOf(*dialog));
    if (m_open.size() >= mostOpen)
        return wxID_CANCEL;
    if (const auto* const box = dynamic_cast<wxMessageDialog*>(dialog))
        return m_dice.OneIn(3) ? OpenAnd(*dialog, &DialogHands::EndMessage) : AnswerMessage(*box);
    const bool isNative =
        dynamic_cast<wxFileDialog*>(dialog) != nullptr || dynamic_cast<wxDirDialog*>(dialog) != nullptr ||
        dynamic_cast<wxColourDialog*>(dialog) != nullptr || dynamic_cast<wxFontDialog*>(dialog) != nullptr;
    if (isNative && m_dice.OneIn(3))
        return wxID_CANCEL;
    if (dynamic_cast<wxFileDialog*>(dialog) != nullptr)
        return OpenAnd(*dialog, &DialogHands::ChooseFile);
    if (dynamic_cast<wxDirDialog*>(dialog) != nullptr)
        return OpenAnd(*dialog, &DialogHands::ChooseFolder);
    return OpenAnd(*dialog, isNative ? &DialogHands::EndSystemDialog : &DialogHands::Drive);
}

void DialogHands::Exit(wxDialog* dialog) {
    if (!m_open.empty() && m_open.back() == dialog)
        m_open.pop_back();
}

int DialogHands::AnswerMessage(const wxMessageDialog& box) {
    m_note("  message \"" + box.GetMessage().utf8_string() + "\"");
    constexpr int answers[] = {wxID_OK, wxID_YES, wxID_NO, wxID_CANCEL};
    return m_dice.Of(answers);
}

int DialogHands::OpenAnd(wxDialog& dialog, void (DialogHands::*drive)(wxDialog&)) {
    m_open.push_back(&dialog);
    const wxWeakRef<wxDialog> self(&dialog);
    wxTheApp->CallAfter([this, self, drive] { // in the loop that ShowModal runs
        if (self && !m_open.empty() && m_open.back() == self.get())
            (this->*drive)(*self);
    });
    return wxID_NONE;
}

void DialogHands::EndMessage(wxDialog& dialog) {
    const wxWeakRef<wxDialog> self(&dialog);
    PumpFor(20);
    if (m_dice.OneIn(4))
        m_hostActs();
    if (self && self->GetHandle() != nullptr && !m_open.empty() && m_open.back() == self.get())
        PressSystemButton(*self, m_dice.OneIn(2) ? SystemButton::ok : SystemButton::cancel);
}

std::string DialogHands::AnyFile() {
    const std::vector<std::string> files = m_folder.List();
    if (m_dice.OneIn(2) && !files.empty())
        return m_folder / files[static_cast<std::size_t>(m_dice.Any(static_cast<int>(files.size())))];
    static const char* const names[] = {"a.tif", "b.ics",  "c.txt", "d",     "e.zelview",
                                        "f.png", "g.tiff", "h.ply", "i.ini", "s p \xc3\xa4.tif"};
    return m_folder / m_dice.Of(names);
}

void DialogHands::ChooseFile(wxDialog& dialog) {
    const wxWeakRef<wxDialog> self(&dialog);
    auto& files = dynamic_cast<wxFileDialog&>(dialog);
    const wxString wished = wxString::FromUTF8(AnyFile());
    m_note("  file " + wished.utf8_string());
    if (!PumpUntil([&self] { return !self || self->IsShownOnScreen(); }, 2000) || !IsOpen(self))
        return;
    files.SetPath(wished);
    const bool isChosen = PumpUntil([&] { return !self || IsChosen(files, wished); }, 300);
    if (m_dice.OneIn(5))
        m_hostActs();
    if (IsOpen(self))
        self->EndModal(isChosen && !m_dice.OneIn(6) ? wxID_OK : wxID_CANCEL);
}

void DialogHands::ChooseFolder(wxDialog& dialog) {
    const wxWeakRef<wxDialog> self(&dialog);
    const std::string wished = m_dice.OneIn(2) ? m_folder.GetPath() : m_folder / "sub";
    m_note("  folder " + wished);
    PumpFor(100);
    if (!self)
        return;
    dynamic_cast<wxDirDialog&>(dialog).SetPath(wxString::FromUTF8(wished));
    PumpUntil([&] { return !self || IsChosen(*self, wished); }, 1000);
    if (m_dice.OneIn(5))
        m_hostActs();
    if (!self || m_open.empty() || m_open.back() != self.get())
        return;
    const bool isChosen = IsChosen(*self, wished) && !m_dice.OneIn(4);
    PressSystemButton(*self, isChosen ? SystemButton::open : SystemButton::cancel);
}

void DialogHands::EndSystemDialog(wxDialog& dialog) {
    const wxWeakRef<wxDialog> self(&dialog);
    PumpFor(100);
    if (m_dice.OneIn(5))
        m_hostActs();
    if (self && !m_open.empty() && m_open.back() == self.get())
        PressSystemButton(*self, m_dice.OneIn(2) ? SystemButton::ok : SystemButton::cancel);
}

void DialogHands::Drive(wxDialog& dialog) {
    const wxWeakRef<wxDialog> self(&dialog);
    PumpUntil([&self] { return !self || (self->IsModal() && self->IsShownOnScreen()); }, 2000);
    for (int changes = m_dice.Any(9); changes > 0 && IsOpen(self); --changes) {
        if (m_dice.OneIn(15)) {
            m_hostActs();
            continue;
        }
        const std::vector<wxWindow*> windows = ReachableWindows(*self);
        if (windows.empty())
            break;
        wxWindow& control = *m_dice.Of(windows);
        m_note("  in it: " + NameOf(control));
        const std::string what = m_dice.OneIn(12) ? UseRealInput(control, m_dice) : ChangeControl(control, m_dice);
        m_note("  " + what);
        PumpFor(10);
    }
    End(self);
}

void DialogHands::End(const wxWeakRef<wxDialog>& dialog) {
    for (int tries = 0; tries < 3 && IsOpen(dialog); ++tries) {
        const int way = m_dice.Any(5);
        m_note("  end " + std::to_string(way));
        if (way == 0) {
            dialog->Close();
        } else if (way == 1) {
            wxKeyEvent escape(wxEVT_CHAR_HOOK);
            escape.m_keyCode = WXK_ESCAPE;
            escape.SetEventObject(dialog.get());
            dialog->ProcessWindowEvent(escape);
        } else {
            const int id = way == 2 ? wxID_CANCEL : wxID_OK;
            wxCommandEvent press(wxEVT_BUTTON, id);
            if (wxWindow* const button = dialog->FindWindow(id)) {
                press.SetEventObject(button);
                button->ProcessWindowEvent(press);
            }
        }
        PumpFor(10);
    }
    if (IsOpen(dialog))
        dialog->EndModal(wxID_CANCEL);
}

} // namespace zel::test
