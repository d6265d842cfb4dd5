#include "tests/viewer/frame_fixture.h"
#include "viewer/zel_imagecanvas3d.h"

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

/// A module whose menu takes `entries` ids, or that has none. Tells `log` when it goes and when it sees a command.
class Module : public zel_ExtensionModule {
public:
    Module(std::string ownName, int entries, Calls& notes)
        : m_name(std::move(ownName)), m_entries(entries), m_log(notes) {
        Bind(wxEVT_MENU, [this](wxCommandEvent& event) {
            m_log.push_back(m_name + " " + std::to_string(event.GetId()));
            event.Skip();
        });
    }
    ~Module() override { m_log.push_back(m_name + " gone"); }

    wxMenu* CreateMenu(int& id) override {
        if (m_entries == 0)
            return nullptr;
        SetFirstMenuId(id);
        auto* const menu = new wxMenu;
        for (int i = 0; i < m_entries; ++i)
            menu->Append(id++, m_name + std::to_string(i));
        return menu;
    }

private:
    std::string m_name;
    int m_entries;
    Calls& m_log;
};

class FrameModulesTest : public FrameTest {
protected:
    Calls log;
};

} // namespace

TEST_F(FrameModulesTest, MenuIdsGoOnWithoutGaps) {
    EXPECT_EQ(frame->GetNextMenuId(), 6038);
    auto* const first = new Module("first", 3, log);
    EXPECT_EQ(first->GetFrame(), nullptr);
    EXPECT_EQ(first->GetMenuId(2), 2);
    frame->AddExtensionModule(first, "&First", true);
    EXPECT_EQ(first->GetFrame(), frame);
    EXPECT_EQ(first->GetMenuId(0), 6038);
    EXPECT_EQ(first->GetMenuId(2), 6040);
    auto* const second = new Module("second", 2, log);
    frame->AddExtensionModule(second, "&Second", true);
    EXPECT_EQ(second->GetMenuId(0), 6041);
    EXPECT_EQ(frame->GetNextMenuId(), 6043);
    ASSERT_EQ(frame->GetMenuBar()->GetMenuCount(), 4U);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuLabel(2), "&First");
    EXPECT_EQ(frame->GetMenuBar()->GetMenuLabel(3), "&Second");
    EXPECT_EQ(frame->GetMenuBar()->GetMenu(2)->GetMenuItemCount(), 3U);
}

TEST_F(FrameModulesTest, ModulesSeeCommandsBeforeTheFrameTheLastFirst) {
    frame->AddExtensionModule(new Module("first", 1, log), "&First", true);
    frame->AddExtensionModule(new Module("second", 1, log), "&Second", true);
    frame->ProcessCommand(6038);
    EXPECT_EQ(log, (Calls{"second 6038", "first 6038"}));
    log.clear();
    Choose(6020);
    EXPECT_EQ(log, (Calls{"second 6020", "first 6020"}));
    EXPECT_TRUE(canvas->GetImageIterator().loopMode);
}

TEST_F(FrameModulesTest, AModuleWithoutAMenuIsPushedAllTheSame) {
    auto* const none = new Module("none", 0, log);
    frame->AddExtensionModule(none, "None", true);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuCount(), 2U);
    EXPECT_EQ(frame->GetNextMenuId(), 6038);
    EXPECT_EQ(none->GetFrame(), frame);
    Choose(6020);
    EXPECT_EQ(log, (Calls{"none 6020"}));
    frame->Destroy();
    frame = nullptr;
    Pump();
    EXPECT_EQ(log, (Calls{"none 6020", "none gone"}));
}

TEST_F(FrameModulesTest, AModuleThatIsNotTheFramesGetsNoMenuAndOutlivesIt) {
    auto module = std::make_unique<Module>("host's", 2, log);
    frame->AddExtensionModule(module.get(), "Host", false);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuCount(), 2U);
    EXPECT_EQ(frame->GetNextMenuId(), 6038);
    EXPECT_EQ(module->GetFrame(), frame);
    frame->Destroy();
    frame = nullptr;
    Pump();
    EXPECT_TRUE(log.empty());
    wxCommandEvent event(wxEVT_MENU, 7000);
    EXPECT_FALSE(module->ProcessEvent(event)) << "it skips";
    EXPECT_EQ(log, (Calls{"host's 7000"}));
}

TEST_F(FrameModulesTest, EachModuleGoesAsItWasAdded) {
    const auto kept = std::make_unique<Module>("kept", 1, log);
    const auto alsoKept = std::make_unique<Module>("also kept", 1, log);
    frame->AddExtensionModule(kept.get(), "Kept", false);
    frame->AddExtensionModule(new Module("first", 1, log), "First", true);
    frame->AddExtensionModule(alsoKept.get(), "Also kept", false);
    frame->AddExtensionModule(new Module("second", 1, log), "Second", true);
    frame->AddExtensionModule(new Module("third", 1, log), "Third", true);
    EXPECT_EQ(frame->GetNextMenuId(), 6041);
    frame->Destroy();
    frame = nullptr;
    Pump();
    EXPECT_EQ(log, (Calls{"third gone", "second gone", "first gone"}));
}

TEST_F(FrameModulesTest, AFrameThatAModuleAlreadyHasStays) {
    wxFrame* const other = new wxFrame(nullptr, wxID_ANY, "other");
    auto* const module = new Module("module", 1, log);
    module->SetFrame(other);
    frame->AddExtensionModule(module, "Module", true);
    EXPECT_EQ(module->GetFrame(), other);
    other->Destroy();
}

TEST_F(FrameModulesTest, AppendMenuCopiesTheEntries) {
    auto menu = std::make_unique<wxMenu>();
    menu->Append(7001, "Plain\tCtrl+K", "plain help");
    menu->AppendSeparator();
    menu->AppendCheckItem(7002, "Check", "check help");
    menu->Check(7002, true);
    menu->Enable(7001, false);
    auto* const below = new wxMenu;
    below->Append(7004, "Below");
    menu->Append(7003, "Submenu", below, "submenu help");
    frame->AppendMenuW(menu.get(), "&Host");
    menu.reset(); // the caller's own
    ASSERT_EQ(frame->GetMenuBar()->GetMenuCount(), 3U);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuLabel(2), "&Host");
    const wxMenu& copy = *frame->GetMenuBar()->GetMenu(2);
    ASSERT_EQ(copy.GetMenuItemCount(), 4U);
    const auto item = [&copy](std::size_t i) -> const wxMenuItem& { return *copy.FindItemByPosition(i); };
    EXPECT_EQ(item(0).GetId(), 7001);
    EXPECT_EQ(item(0).GetItemLabel(), "Plain\tCtrl+K");
    EXPECT_EQ(item(0).GetHelp(), "plain help");
    EXPECT_EQ(item(0).GetKind(), wxITEM_NORMAL);
    EXPECT_TRUE(item(0).IsEnabled());
    EXPECT_TRUE(item(1).IsSeparator());
    EXPECT_EQ(item(2).GetId(), 7002);
    EXPECT_EQ(item(2).GetHelp(), "check help");
    EXPECT_EQ(item(2).GetKind(), wxITEM_CHECK);
    EXPECT_FALSE(item(2).IsChecked());
    EXPECT_EQ(item(3).GetId(), 7003);
    EXPECT_EQ(item(3).GetItemLabel(), "Submenu");
    EXPECT_EQ(item(3).GetHelp(), "submenu help");
    EXPECT_EQ(item(3).GetKind(), wxITEM_NORMAL);
    EXPECT_FALSE(item(3).IsSubMenu());
    EXPECT_EQ(frame->GetMenuBar()->FindItem(7004), nullptr);
    int chosen = 0;
    frame->Bind(
        wxEVT_MENU, [&chosen](wxCommandEvent& event) { chosen = event.GetId(); }, 7003);
    Choose(7003);
    EXPECT_EQ(chosen, 7003);
}

TEST_F(FrameModulesTest, AppendingNoMenuIsAnErrorOfTheHost) {
    {
        const AssertCatcher asserts;
        frame->AppendMenuW(nullptr, "Nothing");
        ASSERT_EQ(asserts.GetEntries().size(), 1U);
        EXPECT_EQ(asserts.GetEntries()[0].file, "zel_frame");
        EXPECT_EQ(asserts.GetEntries()[0].function, "zel::zel_Viewer3dFrame::AppendMenuW");
        EXPECT_EQ(asserts.GetEntries()[0].condition, "menu");
    }
    const wxAssertHandler_t handler = wxSetAssertHandler(nullptr); // a host that wants no assertions
    frame->AppendMenuW(nullptr, "Nothing");
    wxSetAssertHandler(handler);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuCount(), 2U);
}

namespace {

/// Maps voxels to gray, and notes when it goes.
class MappingModule : public Module, public zel_Mapper<unsigned char> {
public:
    MappingModule(Calls& notes, int& count) : Module("mapper", 1, notes), m_count(count) {}
    void Map(const unsigned char* data, ColourBuffer& buffer) const override {
        ++m_count;
        for (int i = 0; i < buffer.width * buffer.height; ++i)
            buffer.data[i] = {data[i], data[i], data[i]};
    }

private:
    int& m_count;
};

class TypedCanvas : public zel_ImageViewer3dCanvas<unsigned char> {
public:
    using zel_ImageViewer3dCanvas<unsigned char>::zel_ImageViewer3dCanvas;
    ~TypedCanvas() override { log->push_back("canvas gone"); }
    Calls* log = nullptr;
};

class FrameEndTest : public GuiTest {
protected:
    void SetUp() override {
        host = new wxFrame(nullptr, wxID_ANY, "host", wxDefaultPosition, wxSize(300, 200));
        frame = MakeFrame(host);
        auto image = std::make_unique<mor::Image4d<unsigned char>>();
        image->MakeRoom({40, 30, 10}, 5);
        auto* const module = new MappingModule(log, maps);
        frame->AddExtensionModule(new Module("first", 1, log), "First", true);
        frame->AddExtensionModule(module, "Mapper", true);
        canvas = new TypedCanvas(frame, *module, image.release(), true, wxID_ANY, wxDefaultPosition, wxDefaultSize);
        canvas->log = &log;
        frame->SetCanvas(canvas);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(WaitUntil([&] { return maps > 0; }));
        log.clear();
    }
    void TearDown() override {
        host->Destroy();
        GuiTest::TearDown();
    }
    /// When the frame goes, runs an event loop as a message box would, with all that may come in it.
    void ListenAtHost() {
        host->Bind(
            wxEVT_UPDATE_UI,
            [this](wxUpdateUIEvent& event) {
                log.push_back("closing");
                EXPECT_EQ(event.GetEventObject(), frame);
                const int mapsBefore = maps;
                const int time = canvas->GetTime();
                canvas->MakeDirtyAndRefresh(zel_PT_ALL);
                canvas->Update();
                LetUnwantedTicksCome(50); // ten, when it browses
                zel_MappingEvent mapping;
                frame->ProcessWindowEvent(mapping);
                canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL);
                canvas->ToggleAxisReverse(0);
                frame->RefreshIcon();
                Settle();
                EXPECT_EQ(maps, mapsBefore);
                EXPECT_EQ(canvas->GetTime(), time);
            },
            6037);
    }

    wxFrame* host = nullptr;
    zel_Viewer3dFrame* frame = nullptr;
    TypedCanvas* canvas = nullptr;
    int maps = 0;
    Calls log;
};

} // namespace

TEST_F(FrameEndTest, ModulesGoFirstThenTheHostHearsThenTheCanvasGoes) {
    ListenAtHost();
    frame->Close();
    EXPECT_TRUE(log.empty()) << "it goes in a later turn";
    Pump();
    EXPECT_EQ(log, (Calls{"mapper gone", "first gone", "closing", "canvas gone"}));
}

TEST_F(FrameEndTest, ClosingWhileBrowsingBrowsesNoMore) {
    ListenAtHost();
    frame->ProcessCommand(6020);
    for (int i = 0; i < 199; ++i)
        frame->ProcessCommand(6004); // 200 frames per second
    frame->ProcessCommand(6018);
    const int time = canvas->GetTime();
    EXPECT_TRUE(WaitUntil([&] { return canvas->GetTime() != time; }));
    log.clear();
    frame->Close();
    LetUnwantedTicksCome(50);
    EXPECT_EQ(log, (Calls{"mapper gone", "first gone", "closing", "canvas gone"}));
}

TEST_F(FrameEndTest, AMessageThatIsStillShownHarmsNobody) {
    frame->SetInfoStatusText("still here", 0); // which the next tick would take away
    delete frame;
    LetUnwantedTicksCome(20);
    EXPECT_EQ(log, (Calls{"mapper gone", "first gone", "canvas gone"}));
}

TEST_F(FrameEndTest, GoingWithTheHostIsTheSame) {
    host->Destroy();
    Pump();
    EXPECT_EQ(log, (Calls{"mapper gone", "first gone", "canvas gone"}));
    host = new wxFrame(nullptr, wxID_ANY, "for the end of the test");
}
