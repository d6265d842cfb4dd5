#include "tests/support/gui_test.h"

#include "tests/support/xwindows.h"

#include <wx/dcclient.h>
#include <wx/evtloop.h>
#include <wx/stopwatch.h>
#include <wx/weakref.h>

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <utility>

namespace zel::test {

namespace {

void FailOnAssert(const wxString& file, int line, const wxString& function, const wxString& condition,
                  const wxString& message) {
    ADD_FAILURE_AT(file.utf8_str(), line)
        << "assertion in " << function.utf8_str() << ": " << condition.utf8_str() << " " << message.utf8_str();
}

class TestApp : public wxApp {
public:
    bool OnInit() override {
        SetExitOnFrameDelete(false);
        wxSetAssertHandler(&FailOnAssert);
        return true; // the command line is GoogleTest's
    }

    int OnRun() override {
        wxGUIEventLoop loop;
        const wxEventLoopActivator activate(&loop);
        return RUN_ALL_TESTS();
    }

    bool OnExceptionInMainLoop() override {
        try {
            throw;
        } catch (const std::exception& e) {
            ADD_FAILURE() << "an exception reached the event loop: " << e.what();
        } catch (...) {
            ADD_FAILURE() << "an unknown exception reached the event loop";
        }
        return true;
    }
};

AssertCatcher* currentAsserts = nullptr;

/// A function of the system beneath the toolkit, which comes with the toolkit, but without its headers.
template <typename Signature>
Signature* SystemFunction(const char* name) {
    void* const function = dlsym(RTLD_DEFAULT, name);
    if (function == nullptr)
        throw std::runtime_error(std::string("the system has no ") + name);
    return reinterpret_cast<Signature*>(function);
}

/// Everything that was asked of the display is done, and what it says is in the queue of events.
void SyncDisplay() {
    static auto* const theDisplay = SystemFunction<void*()>("gdk_display_get_default");
    static auto* const sync = SystemFunction<void(void*)>("gdk_display_sync");
    sync(theDisplay());
}

/// The clock by which a window lays out and paints, or null if it is not on the screen.
void* FrameClockOf(const wxTopLevelWindow& window) {
    static auto* const clockOf = SystemFunction<void*(void*)>("gtk_widget_get_frame_clock");
    return window.IsShown() && !window.IsIconized() ? clockOf(window.GetHandle()) : nullptr;
}

std::int64_t FramesOf(void* clock) {
    static auto* const frames = SystemFunction<std::int64_t(void*)>("gdk_frame_clock_get_frame_counter");
    return frames(clock);
}

void RequestFrame(void* clock) {
    constexpr int paintPhase = 1 << 4;
    static auto* const request = SystemFunction<void(void*, int)>("gdk_frame_clock_request_phase");
    request(clock, paintPhase);
}

void PassFrame() {
    std::vector<std::pair<wxWeakRef<wxTopLevelWindow>, std::int64_t>> framesThen;
    for (wxWindow* const window : wxTopLevelWindows)
        if (auto* const topLevel = dynamic_cast<wxTopLevelWindow*>(window))
            if (void* const clock = FrameClockOf(*topLevel))
                framesThen.emplace_back(topLevel, FramesOf(clock));
    const auto waits = [](const auto& then) {
        void* const clock = then.first ? FrameClockOf(*then.first) : nullptr;
        if (clock == nullptr || FramesOf(clock) > then.second)
            return false;
        RequestFrame(clock); // again and again: one that comes in the middle of a frame is lost
        return true;
    };
    EXPECT_TRUE(WaitUntil([&] { return std::none_of(framesThen.begin(), framesThen.end(), waits); }))
        << "a window on the screen is not painted";
}

} // namespace

void Pump() {
    wxEventLoopBase* const loop = wxEventLoopBase::GetActive();
    do {
        while (loop->Pending())
            loop->Dispatch();
        wxTheApp->ProcessPendingEvents();
        loop->ProcessIdle();
    } while (loop->Pending());
}

void PassFrames(int count) {
    for (int i = 0; i < count; ++i)
        PassFrame();
}

void Settle() {
    for (int round = 0; round < 2; ++round) { // what comes in the first may ask for more
        SyncDisplay();
        EXPECT_TRUE(WaitForWindowManager()) << "the window manager does not answer";
        SyncDisplay();
        Pump();
        PassFrame();
    }
}

namespace {

bool PumpUntil(const std::function<bool()>& condition, int milliseconds) {
    const wxStopWatch watch;
    while (!condition()) {
        if (watch.Time() > milliseconds)
            return false;
        Pump();
        wxMilliSleep(1);
    }
    return true;
}

} // namespace

void LetUnwantedTicksCome(int milliseconds) {
    const wxStopWatch watch;
    PumpUntil([&] { return watch.Time() >= milliseconds; }, milliseconds);
}

bool WaitUntil(const std::function<bool()>& condition, int milliseconds) {
    constexpr int patience = 4; // with a machine that has much else to do
    return PumpUntil(condition, patience * milliseconds);
}

int CountXWindowsAtRest() {
    constexpr int rest = 500; // milliseconds
    int count = CountXWindows();
    wxStopWatch sinceChange;
    const auto rests = [&] {
        const int now = CountXWindows();
        if (now != std::exchange(count, now))
            sinceChange.Start();
        return sinceChange.Time() > rest;
    };
    EXPECT_TRUE(WaitUntil(rests, 30 * rest)) << "windows come and go without end";
    return count;
}

bool ShowAndWait(wxTopLevelWindow& window) {
    bool painted = false;
    const auto note = [&painted](wxPaintEvent& event) {
        painted = true;
        event.Skip();
    };
    window.Bind(wxEVT_PAINT, note); // children covering it all send it their paints too
    window.Show();
    window.Raise();
    const bool shown = WaitUntil([&] { return painted && window.IsShownOnScreen(); });
    window.Unbind(wxEVT_PAINT, note);
    Settle(); // a window manager's last words on the size
    return shown;
}

bool ResizeClient(wxTopLevelWindow& window, const wxSize& size) {
    window.SetSize(window.ClientToWindowSize(size));
    Settle();
    return WaitUntil([&] { return window.GetClientSize() == size; });
}

wxImage Screen(wxWindow& window) {
    const wxSize size = window.GetClientSize();
    wxBitmap bitmap(size.x, size.y, 24);
    wxClientDC source(&window);
    wxMemoryDC target(bitmap);
    target.Blit(0, 0, size.x, size.y, &source, 0, 0);
    target.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}

wxImage OpenGLScreen(wxWindow& window) {
    const wxSize size = window.GetClientSize();
    const wxPoint at = window.ClientToScreen({0, 0});
    const std::vector<unsigned char> pixels = ReadScreen(at.x, at.y, size.x, size.y);
    wxImage picture(size.x, size.y, false);
    std::copy(pixels.begin(), pixels.end(), picture.GetData());
    return picture;
}

wxColour ColourAt(const wxImage& picture, const wxPoint& at) {
    return {picture.GetRed(at.x, at.y), picture.GetGreen(at.x, at.y), picture.GetBlue(at.x, at.y)};
}

bool PressKey(wxWindow& window, int keyCode, int modifiers) {
    wxKeyEvent event(wxEVT_KEY_DOWN);
    event.m_keyCode = keyCode;
    event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
    event.SetAltDown((modifiers & wxMOD_ALT) != 0);
    event.SetShiftDown((modifiers & wxMOD_SHIFT) != 0);
    event.SetId(window.GetId());
    event.SetEventObject(&window);
    return window.ProcessWindowEvent(event);
}

void SendMouse(wxWindow& window, wxEventType type, const wxPoint& at, int modifiers) {
    wxMouseEvent event(type);
    event.SetPosition(at);
    event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
    event.SetId(window.GetId());
    event.SetEventObject(&window);
    window.ProcessWindowEvent(event);
}

AssertCatcher::AssertCatcher() : m_previous(wxSetAssertHandler(&Handle)) {
    currentAsserts = this;
}

AssertCatcher::~AssertCatcher() {
    currentAsserts = nullptr;
    wxSetAssertHandler(m_previous);
}

void AssertCatcher::Handle(const wxString& file, int, const wxString& function, const wxString& condition,
                           const wxString&) {
    currentAsserts->m_entries.push_back({file.utf8_string(), function.utf8_string(), condition.utf8_string()});
}

DialogAnswers::~DialogAnswers() {
    Unregister();
    EXPECT_TRUE(m_answers.empty()) << m_answers.size() << " expected dialogs did not come";
}

void DialogAnswers::ExpectMessage(const std::string& caption, const std::string& text, int code) {
    Expect([caption, text, code](wxDialog& dialog) -> int {
        auto* const box = dynamic_cast<wxMessageDialog*>(&dialog);
        if (box == nullptr) {
            ADD_FAILURE() << "a message box was expected, not \"" << dialog.GetTitle().utf8_string() << "\"";
            return wxID_CANCEL;
        }
        EXPECT_EQ(caption, box->GetTitle().utf8_string());
        EXPECT_EQ(text, box->GetMessage().utf8_string());
        return code;
    });
}

void DialogAnswers::ExpectDriven(std::function<void(wxDialog&)> drive) {
    Expect([drive = std::move(drive)](wxDialog& dialog) -> int {
        const auto run = [drive, &dialog] {
            EXPECT_TRUE(WaitUntil([&] { return dialog.IsModal() && dialog.IsShownOnScreen(); }));
            Settle(); // a window manager's last words, and the first paint
            drive(dialog);
            if (dialog.IsModal()) {
                ADD_FAILURE() << "the dialog \"" << dialog.GetTitle().utf8_string() << "\" is still open";
                dialog.EndModal(wxID_CANCEL);
            }
        };
        wxTheApp->CallAfter(run); // ShowModal runs the loop in which this comes
        return wxID_NONE;
    });
}

int DialogAnswers::Enter(wxDialog* dialog) {
    if (!m_open.empty() && m_open.back() == dialog)
        return wxID_NONE; // a native dialog that was let through comes a second time
    if (m_answers.empty()) {
        ADD_FAILURE() << "nobody expected the dialog \"" << dialog->GetTitle().utf8_string() << "\"";
        return wxID_CANCEL;
    }
    const Answer answer = std::move(m_answers.front());
    m_answers.pop_front();
    const int code = answer(*dialog);
    if (code == wxID_NONE)
        m_open.push_back(dialog);
    return code;
}

void DialogAnswers::Exit(wxDialog* dialog) {
    if (!m_open.empty() && m_open.back() == dialog)
        m_open.pop_back();
}

void GuiTest::TearDown() {
    Pump();
    EXPECT_TRUE(wxTopLevelWindows.empty()) << "a window outlived the test";
    while (!wxTopLevelWindows.empty()) {
        wxTopLevelWindows.GetFirst()->GetData()->Destroy();
        Pump();
    }
}

} // namespace zel::test

int main(int argc, char** argv) {
    setenv("GSETTINGS_BACKEND", "memory", 0); // native choosers would complain of dconf
    setenv("NO_AT_BRIDGE", "1", 0);
    setenv("GDK_BACKEND", "x11", 0);
    ::testing::InitGoogleTest(&argc, argv);
    wxApp::SetInstance(new zel::test::TestApp); // which the toolkit owns
    return wxEntry(argc, argv);
}
