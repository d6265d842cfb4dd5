// A host that closes a viewer while one of its dialogs is open.

#include "dialogs/dlg_set_range.h"
#include "dialogs/zel_minmaxctrl.h"
#include "dialogs/zel_modaldialog.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/support/user.h"
#include "viewer/zel_commands.h"

#include <wx/timer.h>
#include <wx/weakref.h>

using namespace zel;
using namespace zel::test;

namespace {

/// How a viewer goes.
enum class Way { close, destroy, deletion, withParent, withDeletedParent };
constexpr Way ways[] = {Way::close, Way::destroy, Way::deletion, Way::withParent, Way::withDeletedParent};

class Once : public wxTimer {
public:
    explicit Once(std::function<void()> act) : m_act(std::move(act)) { StartOnce(1); }
    void Notify() override { m_act(); }

private:
    std::function<void()> m_act;
};

template <typename T, typename Module = zel_GrayMappingModule<T>>
class ClosingTest : public GuiTest {
protected:
    void Open() {
        host = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(700, 0), wxSize(100, 100));
        host->Show();
        image = MakeImage<T>({20, 16, 9}, 2, [](auto x, auto, auto, auto) { return VoxelOf(x); });
        frame = zel_CreateImage3dFrame<T>(image.get(), false, host, wxID_ANY, "viewer", wxPoint(0, 0), wxDefaultSize,
                                          wxDEFAULT_FRAME_STYLE);
        module = frame->GetEventHandler();
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    Module& GetModule() const { return dynamic_cast<Module&>(*module); }
    static T VoxelOf(std::size_t x) {
        if constexpr (HistogramSet<T>::channelCount == 3)
            return T(static_cast<unsigned char>(x), 0, 0);
        else
            return T(static_cast<typename HistogramSet<T>::Element>(x));
    }
    int IdOf(int entry) const { return GetModule().GetMenuId(entry); }
    void CloseBy(Way way) {
        switch (way) {
        case Way::close:
            frame->Close(true);
            return;
        case Way::destroy:
            frame->Destroy();
            return;
        case Way::deletion:
            delete frame.get();
            return;
        case Way::withParent:
            host->Destroy();
            return;
        case Way::withDeletedParent:
            delete host.get();
            return;
        }
    }
    /// Runs a command whose dialog finds its viewer closed while it is open.
    void CloseUnder(int command, Way way, bool byTimer, const std::function<void(wxDialog&)>& before = {}) {
        answers.ExpectDriven([&](wxDialog& dialog) {
            if (before)
                before(dialog);
            std::unique_ptr<Once> timer;
            if (byTimer)
                timer = std::make_unique<Once>([this, way] { CloseBy(way); });
            else
                CloseBy(way);
            EXPECT_TRUE(WaitUntil([&] { return frame == nullptr; }));
            EXPECT_EQ(nullptr, dialog.GetParent());
            EXPECT_FALSE(dialog.IsModal());
            EXPECT_FALSE(dialog.IsShown());
        });
        frame->ProcessCommand(command);
        EXPECT_EQ(0U, answers.GetPending());
        EXPECT_EQ(nullptr, frame.get());
        EXPECT_EQ(nullptr, module.get());
        if (host)
            host->Destroy();
        Pump();
        EXPECT_TRUE(wxTopLevelWindows.empty());
    }
    void CloseUnderInEachWay(int entry) {
        for (const Way way : ways)
            for (const bool byTimer : {true, false}) {
                SCOPED_TRACE(static_cast<int>(way));
                Open();
                CloseUnder(IdOf(entry), way, byTimer);
            }
    }

    LogCatcher toolkitLog; // the traces of the stretches
    DialogAnswers answers;
    std::unique_ptr<mor::Image4d<T>> image;
    wxWeakRef<wxFrame> host;
    wxWeakRef<zel_Viewer3dFrame> frame;
    wxWeakRef<wxEvtHandler> module;
};

using WordClosingTest = ClosingTest<unsigned short>;
using FloatClosingTest = ClosingTest<float>;
using ColourClosingTest = ClosingTest<kep::RGB_generic<unsigned char>, zel_RGBMappingModule<unsigned char>>;
using ComplexClosingTest = ClosingTest<std::complex<float>, zel_ComplexMappingModule<float>>;

} // namespace

TEST_F(WordClosingTest, EndsTheLevelsDialog) {
    CloseUnderInEachWay(zel_ME_LEVELS);
}

TEST_F(FloatClosingTest, EndsTheLevelsDialog) {
    CloseUnderInEachWay(zel_ME_LEVELS);
}

TEST_F(WordClosingTest, EndsTheThresholdingDialog) {
    CloseUnderInEachWay(zel_ME_THRESHOLD);
}

TEST_F(WordClosingTest, EndsTheRangeDialog) {
    CloseUnderInEachWay(zel_ME_RANGE);
}

TEST_F(FloatClosingTest, EndsTheRangeDialog) {
    CloseUnderInEachWay(zel_ME_RANGE);
}

TEST_F(WordClosingTest, EndsTheBitDepthDialog) {
    CloseUnderInEachWay(zel_ME_BITDEPTH);
}

TEST_F(WordClosingTest, EndsThePaletteChooser) {
    CloseUnderInEachWay(zel_PE_FILE);
}

TEST_F(ColourClosingTest, EndsEachDialogOfColours) {
    for (const int entry : {zel_ME_LEVELS, zel_ME_THRESHOLD, zel_ME_RANGE, zel_ME_BITDEPTH})
        CloseUnderInEachWay(entry);
}

TEST_F(ComplexClosingTest, EndsEachDialogOfAPart) {
    for (const int entry : {int{zel_ME_LEVELS}, int{zel_ME_THRESHOLD}, int{zel_ME_RANGE}, int{zel_PE_FILE}})
        CloseUnderInEachWay(entry);
}

TEST_F(WordClosingTest, EndsTheBrowsingRangeDialog) {
    for (const Way way : ways) {
        Open();
        CloseUnder(zel_CMD_BROWSING_RANGE, way, true);
    }
}

TEST_F(WordClosingTest, EndsADialogThatAKeyHasOpened) {
    for (const Way way : ways) {
        Open();
        Focus(*frame->GetCanvas()->GetDrWin(zel_PT_XY));
        answers.ExpectDriven([&](wxDialog& dialog) {
            EXPECT_EQ("Adjust Levels", dialog.GetTitle());
            CloseBy(way);
            EXPECT_TRUE(WaitUntil([&] { return frame == nullptr; }));
        });
        wxUIActionSimulator().Char('5', wxMOD_ALT); // the toolkit's and the system's handlers are under the dialog, too
        EXPECT_TRUE(WaitUntil([&] { return answers.GetPending() == 0 && frame == nullptr; }));
        EXPECT_EQ(nullptr, module.get());
        if (host)
            host->Destroy();
        Pump();
    }
}

TEST_F(WordClosingTest, DropsWhatWasTypedAndNotCommitted) {
    for (const Way way : ways) {
        Open();
        CloseUnder(IdOf(zel_ME_LEVELS), way, false, [](wxDialog& dialog) {
            TypeInto(*In<VariableMinMaxCtrl<unsigned short>>(dialog, 10005).GetLowText(), "5");
        });
    }
}

TEST_F(WordClosingTest, AfterOkHasBeenPressedItIsACancel) {
    for (const Way way : ways)
        for (const int entry : {zel_ME_LEVELS, zel_ME_RANGE}) {
            Open();
            CloseUnder(IdOf(entry), way, false, [](wxDialog& dialog) {
                wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
                In(dialog, wxID_OK).ProcessWindowEvent(ok); // the dialog's loop ends once this handler is left
            });
        }
}

TEST_F(WordClosingTest, EndsADialogOverADialog) {
    for (const Way way : ways) {
        Open();
        std::vector<int> codes;
        answers.ExpectDriven([&](wxDialog& range) {
            long low = 3;
            long high = 7;
            answers.ExpectDriven([&](wxDialog& upper) {
                EXPECT_EQ(&range, upper.GetParent());
                CloseBy(way);
                EXPECT_TRUE(WaitUntil([&] { return frame == nullptr; }));
            });
            codes.push_back(GetLongRangeFromUser(&range, 0, 9, low, high));
            EXPECT_TRUE(WaitUntil([&] { return !range.IsModal(); })) << "the lower one ends after the upper one";
        });
        frame->ProcessCommand(IdOf(zel_ME_RANGE));
        EXPECT_EQ((std::vector<int>{0}), codes);
        EXPECT_EQ(nullptr, module.get());
        if (host)
            host->Destroy();
        Pump();
    }
}

TEST_F(WordClosingTest, EndsAMessageBoxOverADialog) {
    for (const Way way : ways) {
        Open();
        answers.ExpectDriven([&](wxDialog& range) {
            In<wxTextCtrl>(range, 10005).ChangeValue("70000");
            bool told = false;
            answers.Expect([&](wxDialog& box) -> int {
                EXPECT_EQ(&range, box.GetParent());
                told = true;
                wxTheApp->CallAfter([&] { CloseBy(way); });
                return wxID_NONE;
            });
            wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
            In(range, wxID_OK).ProcessWindowEvent(ok);
            EXPECT_TRUE(told);
            EXPECT_EQ(nullptr, frame.get());
            EXPECT_TRUE(WaitUntil([&] { return !range.IsModal(); }));
        });
        frame->ProcessCommand(IdOf(zel_ME_RANGE));
        EXPECT_EQ(nullptr, module.get());
        if (host)
            host->Destroy();
        Pump();
    }
}

TEST_F(WordClosingTest, UnderADialogOfTheHostsHandlerEndsTheCommand) {
    for (const Way way : ways) {
        Open();
        frame->Bind(zel_EVT_MAPPING_CHANGED, [this, way](zel_MappingEvent&) {
            wxDialog dialog(frame, wxID_ANY, "the host's");
            answers.ExpectDriven([this, way](wxDialog&) {
                CloseBy(way);
                EXPECT_TRUE(WaitUntil([this] { return frame == nullptr; }));
            });
            EXPECT_EQ(wxID_CANCEL, RunModal(dialog));
        });
        frame->ProcessCommand(IdOf(zel_ME_LINEAR_STRETCH));
        EXPECT_EQ(nullptr, module.get());
        if (host)
            host->Destroy();
        Pump();
    }
}

TEST_F(WordClosingTest, LeavesAModuleOfTheHostsWithoutAFrame) {
    for (const int entry : {zel_ME_LEVELS, zel_ME_THRESHOLD, zel_ME_RANGE, zel_ME_BITDEPTH}) {
        Open();
        zel_GrayMappingModule<unsigned short> kept(frame, GetModule().GetHistograms());
        int id = 100;
        const std::unique_ptr<wxMenu> menu(kept.CreateMenu(id));
        frame->AddExtensionModule(&kept, "", false);
        EXPECT_EQ(frame.get(), kept.GetFrame());
        answers.ExpectDriven([this](wxDialog&) {
            CloseBy(Way::close);
            EXPECT_TRUE(WaitUntil([this] { return frame == nullptr; }));
        });
        wxCommandEvent command(wxEVT_MENU, kept.GetMenuId(entry));
        kept.OnMapping(command);
        EXPECT_EQ(nullptr, frame.get());
        EXPECT_EQ(nullptr, kept.GetFrame());
        EXPECT_EQ(0, kept.GetStretchMode());
        host->Destroy();
        Pump();
    }
}
