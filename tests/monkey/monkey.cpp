#include "tests/monkey/monkey.h"

#include "core/kepcore/kep_exceptions.h"
#include "tests/monkey/hands.h"
#include "tests/support/glib_complaints.h"
#include "tests/support/sound_view.h"

#include <wx/frame.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

namespace zel::test {

namespace {

/// What the library tells the application by an exception, for a mistake of the user's.
bool IsDocumented(const kep::InternalException& failure) {
    return failure.GetText() == std::string("Missing the number-replacement character 'X'.");
}

/// Complaints of GTK that no call of the library's causes.
bool IsHarmless(const std::string& complaint) {
    const auto isOf = [&complaint](const char* function) { return complaint.find(function) != std::string::npos; };
    // The last two come of windows that the monkey itself has made smaller than anybody else can.
    return isOf("gtk_distribute_natural_allocation") || // a menu bar in a narrow frame
           isOf("gtk_window_resize: assertion") ||
           isOf("gtk_box_gadget_distribute: assertion 'size >= 0' failed in GtkNotebook");
}

} // namespace

void Monkey::Log::DoLogRecord(wxLogLevel, const wxString& text, const wxLogRecordInfo&) {
    m_box.Note("  log: " + text.utf8_string());
}

Monkey::Monkey(const MonkeyRun& run)
    : m_run(run),
      m_dice(run.seed),
      m_box("ZEL_MONKEY_SEED=" + std::to_string(run.seed) + " ZEL_MONKEY_COMMANDS=" + std::to_string(run.commands),
            std::chrono::seconds(run.patience)),
      m_log(m_box),
      m_logBefore(wxLog::SetActiveTarget(&m_log)),
      m_folderBefore(std::filesystem::current_path().string()),
      m_hands(
          m_dice, m_folder, [this](const std::string& what) { m_box.Note(what); }, [this] { ActAsHost(); }) {
    GLibComplaints().clear();
    m_host = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(1400, 1000), wxSize(120, 80));
    m_host->Show();
}

Monkey::~Monkey() {
    CloseAll();
    wxLog::SetActiveTarget(m_logBefore);
    std::filesystem::current_path(m_folderBefore); // choosers of files leave it for a folder that goes
}

void Monkey::CloseAll() {
    m_box.Begin("all viewers are closed");
    for (const auto& viewer : m_viewers)
        if (viewer->frame)
            viewer->frame->Destroy();
    if (m_host)
        m_host->Destroy();
    Pump();
    m_viewers.clear();
    m_viewer = nullptr;
}

void Monkey::Run() {
    std::cout << "seed " << m_run.seed << ", " << m_run.commands << " commands" << std::endl;
    for (int i = 0; i < m_run.commands && !::testing::Test::HasFailure(); ++i)
        Step();
    if (::testing::Test::HasFailure())
        std::cout << m_box.Tell() << std::endl;
    CloseAll();
    Check();
    std::cout << m_hands.GetSeen() << " dialogs; the longest command took " << m_box.GetLongest().count()
              << " ms: " << m_box.GetLongestStep() << std::endl;
}

const Monkey::Command& Monkey::AnyCommand() {
    const std::vector<Command>& commands = AllCommands();
    const auto weightOf = [this](const Command& command) {
        return m_run.browsesOnly && !command.browses ? 0 : command.weight;
    };
    const int all = std::accumulate(commands.begin(), commands.end(), 0,
                                    [&](int sum, const Command& command) { return sum + weightOf(command); });
    int place = m_dice.Any(all);
    return *std::find_if(commands.begin(), commands.end(),
                         [&](const Command& command) { return (place -= weightOf(command)) < 0; });
}

void Monkey::Step() {
    ForgetTheGone();
    if (m_viewers.empty()) {
        m_box.Begin("open");
        OpenViewer();
    } else {
        m_viewer = m_viewers[static_cast<std::size_t>(m_dice.Any(static_cast<int>(m_viewers.size())))].get();
        const Command& command = AnyCommand();
        m_box.Begin(std::string(command.name) + " (" + m_viewer->name + ")");
        try {
            (this->*command.act)();
        } catch (const kep::InternalException& failure) {
            EXPECT_TRUE(IsDocumented(failure)) << "thrown out of a command: " << failure.GetText();
        } catch (const std::exception& failure) {
            ADD_FAILURE() << "thrown out of a command: " << failure.what();
        }
    }
    TameVolume();
    PumpFor(20);
    Check();
}

void Monkey::ForgetTheGone() {
    std::erase_if(m_viewers, [](const auto& viewer) { return !viewer->frame; });
    m_viewer = nullptr;
}

void Monkey::Check() {
    for (const std::string& complaint : GLibComplaints())
        EXPECT_TRUE(IsHarmless(complaint)) << complaint;
    GLibComplaints().clear();
    EXPECT_TRUE(m_hands.AreFree()) << "a dialog is still open";
    for (const auto& viewer : m_viewers)
        CheckViewer(*viewer);
}

void Monkey::CheckViewer(AnyViewer& viewer) {
    const ::testing::ScopedTrace trace(__FILE__, __LINE__, viewer.name);
    if (m_dice.OneIn(10)) {
        EXPECT_TRUE(viewer.AreVoxelsKept());
    }
    if (viewer.HasPicture())
        ExpectSoundView(*viewer.GetCanvas());
}

} // namespace zel::test
