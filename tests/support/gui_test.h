#pragma once

// For tests with real windows: an event loop that moves only when told, pictures, input, and what the toolkit says.

#include "tests/support/log_catcher.h"

#include <wx/modalhook.h>
#include <wx/wx.h>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace zel::test {

/// Dispatches what is pending: system events, pending events, idle time, in which windows that were told to Destroy go.
void Pump();

/// Pumps until the condition holds. @return whether it did within the limit
bool WaitUntil(const std::function<bool()>& condition, int milliseconds = 5000);

/// Pumps until each window on the screen has gone through `count` of its frames. In a frame the toolkit delivers the
/// moves of the pointer, lays out and paints: what was asked for before has been painted then.
void PassFrames(int count);

/// Waits until all that has been asked for so far has happened: the display and the window manager, if there is one,
/// have answered, real input has arrived, windows have their size and picture. Only timers may still have to come.
void Settle();

/// Pumps for a fixed time: for a tick of a timer that must not come, and by which no event can be told to be missing.
/// Whatever comes without a timer has come after Settle().
void LetUnwantedTicksCome(int milliseconds);

/// All windows on the display, of every program, once their number has stood still for a while: window managers take
/// their frames away in their own time.
int CountXWindowsAtRest();

/// Shows a top-level window and waits until it has painted: from then on Update() paints at once.
bool ShowAndWait(wxTopLevelWindow& window);

/// Gives a top-level window a client area of this size, and waits until it has it and all inside is laid out.
bool ResizeClient(wxTopLevelWindow& window, const wxSize& size);

/// What stands on the screen in the window's client area.
wxImage Screen(wxWindow& window);
/// The same for a window in which OpenGL draws. No part of it may be covered or off the screen.
wxImage OpenGLScreen(wxWindow& window);

wxColour ColourAt(const wxImage& picture, const wxPoint& at);

/// The toolkit's own event objects, sent straight to the window. @return whether the window kept the key, rather than
/// skip it
bool PressKey(wxWindow& window, int keyCode, int modifiers = wxMOD_NONE);
void SendMouse(wxWindow& window, wxEventType type, const wxPoint& at, int modifiers = wxMOD_NONE);

/// While one lives, failed assertions are collected; otherwise each fails the test.
class AssertCatcher {
public:
    struct Entry {
        std::string file;
        std::string function;
        std::string condition;
    };

    AssertCatcher();
    ~AssertCatcher();
    AssertCatcher(const AssertCatcher&) = delete;
    AssertCatcher& operator=(const AssertCatcher&) = delete;
    const std::vector<Entry>& GetEntries() const { return m_entries; }

private:
    static void Handle(const wxString& file, int line, const wxString& function, const wxString& condition,
                       const wxString& message);

    std::vector<Entry> m_entries;
    wxAssertHandler_t m_previous;
};

/// While one lives, modal dialogs are answered in order. One that nobody expected fails the test and is cancelled; so
/// does one that was expected and did not come.
class DialogAnswers : public wxModalDialogHook {
public:
    /// Gets the dialog. @return the code that ShowModal returns, or wxID_NONE to let it open
    using Answer = std::function<int(wxDialog&)>;

    DialogAnswers() { Register(); }
    ~DialogAnswers() override;
    DialogAnswers(const DialogAnswers&) = delete;
    DialogAnswers& operator=(const DialogAnswers&) = delete;

    void Expect(Answer answer) { m_answers.push_back(std::move(answer)); }
    /// A message box with this caption and text, answered by `code`.
    void ExpectMessage(const std::string& caption, const std::string& text, int code = wxID_OK);
    /// A dialog that opens, and once it is on the screen is driven to its end. One that is still open then fails the
    /// test and is cancelled.
    void ExpectDriven(std::function<void(wxDialog&)> drive);
    /// How many of them have not come yet.
    std::size_t GetPending() const { return m_answers.size(); }

protected:
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

private:
    std::deque<Answer> m_answers;
    std::vector<wxDialog*> m_open;
};

/// Each test starts and ends without windows, and no exception may reach the event loop.
class GuiTest : public ::testing::Test {
protected:
    void TearDown() override;
};

} // namespace zel::test
