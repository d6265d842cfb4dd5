// The commands that save, driven through their dialogs: from the menu to the files on the disk.

#include "core/kepcore/kep_exceptions.h"
#include "tests/support/file_size_limit.h"
#include "tests/viewer/saving_fixture.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_frame.h"

#include <wx/checkbox.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/radiobox.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

#include <dlfcn.h>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <limits>

using namespace zel;
using namespace zel::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

template <typename Control>
Control& ControlOf(wxDialog& dialog, int id) {
    return dynamic_cast<Control&>(*dialog.FindWindow(id));
}

void SetSpin(wxDialog& dialog, int id, int value) {
    ControlOf<wxSpinCtrl>(dialog, id).SetValue(value);
}

void Press(wxDialog& dialog, int id) {
    wxCommandEvent event(wxEVT_BUTTON, id);
    event.SetEventObject(dialog.FindWindow(id));
    dialog.FindWindow(id)->ProcessWindowEvent(event);
}

/// The box "Save only a single image?" as a user leaves it.
void SetSingleImage(wxDialog& dialog, bool isSingle) {
    ControlOf<wxCheckBox>(dialog, 10003).SetValue(isSingle);
    wxCommandEvent event(wxEVT_CHECKBOX, 10003);
    event.SetEventObject(dialog.FindWindow(10003));
    dialog.FindWindow(10003)->ProcessWindowEvent(event);
}

/// Chooses a file in the toolkit's dialog.
void ChooseFile(wxDialog& dialog, const std::string& path) {
    auto& chooser = dynamic_cast<wxFileDialog&>(dialog);
    chooser.SetPath(path);
    EXPECT_TRUE(WaitUntil([&] { return chooser.GetPath() == path; }));
    chooser.EndModal(wxID_OK);
}

/// Chooses a folder in the toolkit's dialog, whose path stays empty if it is not the system that ends it.
void ChooseFolder(wxDialog& dialog, const std::string& path) {
    using Respond = void (*)(void* dialog, int response);
    constexpr int accept = -3; // GTK_RESPONSE_ACCEPT
    auto& chooser = dynamic_cast<wxDirDialog&>(dialog);
    chooser.SetPath(path);
    Settle();
    reinterpret_cast<Respond>(dlsym(RTLD_DEFAULT, "gtk_dialog_response"))(chooser.GetHandle(), accept);
}

/// The choices of "Sequence parameters".
struct Sequence {
    int first = 0;
    int last = 0;
    int step = 1;
    std::string nameTemplate = "imageXXX.tif";
};

void Fill(wxDialog& dialog, const Sequence& sequence) {
    SetSpin(dialog, 10005, sequence.first);
    SetSpin(dialog, 10007, sequence.last);
    SetSpin(dialog, 10009, sequence.step);
    ControlOf<wxTextCtrl>(dialog, 10015).SetValue(sequence.nameTemplate);
}

class SavingDialogs : public SavingFixture {
protected:
    void Open(kep::Vector3d<std::size_t> size = {9, 8, 5}, std::size_t frames = 1) {
        frame = viewer =
            new zel_Viewer3dFrame(nullptr, wxID_ANY, "viewer", wxDefaultPosition, {400, 400}, wxDEFAULT_FRAME_STYLE);
        MakeCanvas(size, frames);
        viewer->SetCanvas(canvas);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, {300, 280}));
    }
    void TearDown() override {
        std::filesystem::current_path(m_before); // the choosers have left it for a folder that goes
        SavingFixture::TearDown();
    }
    void Choose(int id) { EXPECT_TRUE(viewer->ProcessCommand(id)) << id; }

    /// Runs a command: sets the dialog's own controls, takes a single file, and answers the chooser.
    void SaveSingle(int id, const std::function<void(wxDialog&)>& setUp, const std::string& path) {
        DialogAnswers answers;
        answers.ExpectDriven([&](wxDialog& dialog) {
            setUp(dialog);
            SetSingleImage(dialog, true);
            Press(dialog, wxID_OK);
        });
        answers.ExpectDriven([&](wxDialog& dialog) { ChooseFile(dialog, path); });
        Choose(id);
    }
    /// The same for a sequence into a folder.
    void SaveSequence(int id, const Sequence& sequence, const std::function<void(wxDialog&)>& setUp,
                      const std::string& path) {
        DialogAnswers answers;
        answers.ExpectDriven([&](wxDialog& dialog) {
            setUp(dialog);
            SetSingleImage(dialog, false);
            Fill(dialog, sequence);
            Press(dialog, wxID_OK);
        });
        answers.ExpectDriven([&](wxDialog& dialog) { ChooseFolder(dialog, path); });
        Choose(id);
    }
    static void SetUpNothing(wxDialog&) {}

    zel_Viewer3dFrame* viewer = nullptr;

private:
    std::filesystem::path m_before = std::filesystem::current_path();
};

} // namespace

TEST_F(SavingDialogs, DataGoIntoASingleFile) {
    Open({9, 8, 5}, 3);
    canvas->ShowNextImage();
    for (const std::string name : {"a.tif", "b.ics"}) {
        const LogCatcher log;
        SaveSingle(
            zel_CMD_SAVE_3D_DATA, [](wxDialog& dialog) { EXPECT_EQ(dialog.GetTitle(), "Save 3D image data as..."); },
            folder / name);
        EXPECT_TRUE(log.Has(wxLOG_Message, "Saving: " + (folder / name)));
        const kep::Image3d<unsigned short> saved((folder / name).c_str(), nullptr, false, -1, nullptr, nullptr);
        EXPECT_TRUE(std::equal(saved.begin(), saved.end(), image->GetImage(1)->begin(), image->GetImage(1)->end()));
    }
    EXPECT_EQ(canvas->GetTime(), 1);
}

TEST_F(SavingDialogs, DataOfASequenceGoIntoNumberedFiles) {
    Open({9, 8, 5}, 8);
    const LogCatcher log;
    SaveSequence(zel_CMD_SAVE_3D_DATA, {1, 7, 3, "tXX of XX.ics"}, SetUpNothing, folder.GetPath());
    EXPECT_THAT(folder.List(), ElementsAre("t01 of XX.ics", "t04 of XX.ics", "t07 of XX.ics"));
    for (const std::size_t t : {1U, 4U, 7U}) {
        const std::string name = folder / ("t0" + std::to_string(t) + " of XX.ics");
        const kep::Image3d<unsigned short> saved(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        EXPECT_TRUE(std::equal(saved.begin(), saved.end(), image->GetImage(t)->begin(), image->GetImage(t)->end()));
    }
    EXPECT_EQ(canvas->GetTime(), 7) << "the canvas ends at the last frame saved";
}

TEST_F(SavingDialogs, ViewsForAllWindowsChoicesAndBorders) {
    Open();
    const std::string name = folder / "view.tif";
    const zel_ProjectionType byRow[] = {zel_PT_XY, zel_PT_XZ, zel_PT_YZ, zel_PT_ALL};
    for (int shown = 1; shown < 8; ++shown) {
        canvas->ShowDrWin(zel_PT_ALL, false);
        canvas->ShowDrWin(static_cast<zel_ProjectionType>(shown), true);
        Settle();
        for (int row = 0; row < 4; ++row) {
            const int border = (7 * shown + 5 * row) % 20;
            const int in = shown & byRow[row];
            std::filesystem::remove(name);
            DialogAnswers answers;
            answers.ExpectDriven([&](wxDialog& dialog) {
                EXPECT_EQ(dialog.GetTitle(), "Save view");
                ControlOf<wxRadioBox>(dialog, 10000).SetSelection(row);
                SetSpin(dialog, 10002, border);
                SetSingleImage(dialog, true);
                Press(dialog, wxID_OK);
            });
            answers.ExpectDriven([&](wxDialog& dialog) { ChooseFile(dialog, name); });
            if (in == 0)
                answers.ExpectMessage("Error",
                                      "Selected projection(s) can not be saved\nbecause they are not visible!");
            Choose(zel_CMD_SAVE_VIEW);
            EXPECT_EQ(answers.GetPending(), 0U);
            EXPECT_EQ(std::filesystem::exists(name), in != 0);
            if (in != 0)
                ExpectView(Read(name), in, border);
        }
    }
}

TEST_F(SavingDialogs, TheBorderStartsAt10AndAllWindowsAreChosen) {
    Open();
    SaveSingle(zel_CMD_SAVE_VIEW, SetUpNothing, folder / "view.tif");
    const Sheet sheet = Read(folder / "view.tif");
    ExpectSize(sheet, 9 + 10 + 5, 8 + 10 + 5);
    ExpectView(sheet, zel_PT_ALL, 10);
}

TEST_F(SavingDialogs, ViewsOfASequenceShowEachItsFrame) {
    Open({9, 8, 5}, 5);
    SaveSequence(
        zel_CMD_SAVE_VIEW, {0, 4, 2, "vX.tif"}, [](wxDialog& dialog) { SetSpin(dialog, 10002, 1); },
        folder.GetPath() + "/");
    EXPECT_THAT(folder.List(), ElementsAre("v0.tif", "v2.tif", "v4.tif"));
    for (const std::size_t t : {0U, 2U, 4U}) {
        const Sheet sheet = Read(folder / ("v" + std::to_string(t) + ".tif"));
        ExpectSize(sheet, 15, 14);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 9; ++x)
                ASSERT_EQ(NumberAt(sheet, x, y), Named(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 2, t));
        EXPECT_EQ(NumberAt(sheet, 10, 7), Named(4, 7, 0, t));
        EXPECT_EQ(NumberAt(sheet, 8, 9), Named(8, 4, 0, t));
    }
    EXPECT_EQ(canvas->GetTime(), 4);
}

TEST_F(SavingDialogs, AGalleryOfTheChosenSlices) {
    Open({9, 8, 7});
    const std::string name = folder / "gallery.tif";
    for (const bool byRows : {true, false}) {
        SaveSingle(
            zel_CMD_SAVE_GALLERY,
            [byRows](wxDialog& dialog) {
                EXPECT_EQ(dialog.GetTitle(), "Gallery parameters");
                SetSpin(dialog, 10018, 1);
                SetSpin(dialog, 10019, 6);
                SetSpin(dialog, 10020, 2);
                ControlOf<wxRadioButton>(dialog, byRows ? 10021 : 10022).SetValue(true);
                SetSpin(dialog, 10023, 2);
                SetSpin(dialog, 10024, 3);
            },
            name);
        // Slices 1, 3 and 5: 6 / 2 = 3 pictures in two rows, or in two columns, which is two by two.
        const Sheet sheet = Read(name);
        ExpectSize(sheet, 2 * 12 - 3, 2 * 11 - 3);
        EXPECT_EQ(NumberAt(sheet, 0, 0), Named(0, 0, 1));
        EXPECT_EQ(NumberAt(sheet, 20, 7), Named(8, 7, 3));
        EXPECT_EQ(NumberAt(sheet, 8, 18), Named(8, 7, 5));
        EXPECT_EQ(At(sheet, 12, 11), white);
        std::filesystem::remove(name);
    }
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(4.5F, 4.5F, 3.5F));
}

TEST_F(SavingDialogs, GalleriesOfASequence) {
    Open({9, 8, 5}, 4);
    SaveSequence(
        zel_CMD_SAVE_GALLERY, {2, 3, 1, "gXXXX.tif"},
        [](wxDialog& dialog) {
            SetSpin(dialog, 10018, 1);
            SetSpin(dialog, 10019, 4);
            SetSpin(dialog, 10024, 0);
        },
        folder.GetPath());
    EXPECT_THAT(folder.List(), ElementsAre("g0002.tif", "g0003.tif"));
    for (const std::size_t t : {2U, 3U}) {
        const Sheet sheet = Read(folder / ("g000" + std::to_string(t) + ".tif"));
        ExpectSize(sheet, 36, 8);
        for (std::size_t z = 1; z < 5; ++z)
            EXPECT_EQ(NumberAt(sheet, static_cast<int>(z - 1) * 9, 0), Named(0, 0, z, t));
    }
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(4.5F, 4.5F, 2.5F));
}

TEST_F(SavingDialogs, AStartingSliceAboveTheEndingOneSavesNothing) {
    Open();
    const LogCatcher log;
    SaveSingle(
        zel_CMD_SAVE_GALLERY,
        [](wxDialog& dialog) {
            SetSpin(dialog, 10018, 3);
            SetSpin(dialog, 10019, 2);
        },
        folder / "gallery.tif");
    EXPECT_THAT(folder.List(), IsEmpty());
    EXPECT_THAT(log.GetEntries(), IsEmpty());
}

TEST_F(SavingDialogs, AnImageOfOneSliceHasAGallery) {
    Open({9, 8, 1});
    SaveSingle(
        zel_CMD_SAVE_GALLERY, [](wxDialog& dialog) { EXPECT_EQ(ControlOf<wxSpinCtrl>(dialog, 10020).GetValue(), 0); },
        folder / "one.tif");
    const Sheet sheet = Read(folder / "one.tif");
    ExpectSize(sheet, 9, 8);
    EXPECT_EQ(NumberAt(sheet, 8, 7), Named(8, 7, 0));
}

TEST_F(SavingDialogs, CancelledAnywhereNothingIsSaved) {
    Open({9, 8, 5}, 3);
    for (const int id : {zel_CMD_SAVE_3D_DATA, zel_CMD_SAVE_VIEW, zel_CMD_SAVE_GALLERY})
        for (const bool single : {true, false}) {
            {
                DialogAnswers answers;
                answers.ExpectDriven([](wxDialog& dialog) { Press(dialog, wxID_CANCEL); });
                Choose(id);
            }
            DialogAnswers answers;
            answers.ExpectDriven([single](wxDialog& dialog) {
                SetSingleImage(dialog, single);
                Press(dialog, wxID_OK);
            });
            answers.Expect([](wxDialog&) { return wxID_CANCEL; });
            Choose(id);
        }
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingDialogs, OnlySequencesOfFilesExist) {
    Open({9, 8, 5}, 3);
    for (const int button : {10012, 10013}) {
        DialogAnswers answers;
        answers.ExpectDriven([button](wxDialog& dialog) {
            SetSingleImage(dialog, false);
            ControlOf<wxRadioButton>(dialog, button).SetValue(true);
            ControlOf<wxTextCtrl>(dialog, 10015).SetValue("5");
            Press(dialog, wxID_OK);
        });
        answers.ExpectMessage("Not implemented yet", "This function is not yet implemeted, sorry.\nYou may only save "
                                                     "image sequence at the moment.");
        Choose(zel_CMD_SAVE_VIEW);
    }
}

TEST_F(SavingDialogs, ATemplateWithoutASuffixReachesTheApplication) {
    Open({9, 8, 5}, 3);
    DialogAnswers answers;
    answers.ExpectDriven([](wxDialog& dialog) {
        Fill(dialog, {0, 2, 1, "imageXXX"});
        Press(dialog, wxID_OK);
    });
    answers.ExpectDriven([this](wxDialog& dialog) { ChooseFolder(dialog, folder.GetPath()); });
    EXPECT_NONFATAL_FAILURE(viewer->ProcessCommand(zel_CMD_SAVE_VIEW),
                            "an exception reached the event loop: Missing suffix in the template name.");
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingDialogs, TheViewerMayCloseUnderEachDialog) {
    for (const int id : {zel_CMD_SAVE_3D_DATA, zel_CMD_SAVE_VIEW, zel_CMD_SAVE_GALLERY})
        for (const int under : {0, 1}) {
            Open({9, 8, 5}, 3);
            const auto close = [this](wxDialog&) { delete std::exchange(frame, nullptr); };
            DialogAnswers answers;
            if (under == 1)
                answers.ExpectDriven([](wxDialog& dialog) {
                    SetSingleImage(dialog, true);
                    Press(dialog, wxID_OK);
                });
            answers.ExpectDriven(close);
            Choose(id);
            Pump();
            EXPECT_EQ(frame, nullptr);
        }
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingDialogs, AFolderThatVanishesBetweenTwoFilesIsToldOfForEachFile) {
    Open({9, 8, 5}, 4);
    const std::string inner = folder / "inner", kept = folder / "kept";
    std::filesystem::create_directory(inner);
    // The title changes with each frame: the third moves the folder away.
    struct Mover : Canvas {
        using Canvas::Canvas;
        wxString CreateTitle() override {
            if (GetTime() == 2)
                std::filesystem::rename(from, to);
            return Canvas::CreateTitle();
        }
        std::string from, to;
    };
    auto* const mover = new Mover(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    mover->from = inner;
    mover->to = kept;
    HideDecorations(*mover);
    viewer->SetCanvas(mover);
    Settle();
    const LogCatcher log;
    SaveSequence(zel_CMD_SAVE_VIEW, {0, 3, 1, "vX.tif"}, SetUpNothing, inner);
    std::vector<std::string> errors;
    for (const LogCatcher::Entry& entry : log.GetEntries())
        if (entry.level == wxLOG_Error)
            errors.push_back(entry.text);
    EXPECT_THAT(errors, ElementsAre(HasSubstr("inner/v2.tif"), HasSubstr("inner/v3.tif")));
    EXPECT_THAT(folder.List(), ElementsAre("kept"));
    for (const std::size_t t : {0U, 1U}) {
        const Sheet sheet = Read(kept + "/v" + std::to_string(t) + ".tif");
        ExpectSize(sheet, 24, 23);
        EXPECT_EQ(NumberAt(sheet, 0, 0), Named(0, 0, 2, t));
    }
    EXPECT_FALSE(std::filesystem::exists(kept + "/v2.tif"));
}

TEST_F(SavingDialogs, AFullDiskIsToldOfForEachFile) {
    Open({9, 8, 5}, 3);
    const LogCatcher log;
    {
        const FileSizeLimit limit(100);
        SaveSequence(zel_CMD_SAVE_GALLERY, {0, 2, 1, "gX.tif"}, SetUpNothing, folder.GetPath());
    }
    EXPECT_EQ(std::count_if(log.GetEntries().begin(), log.GetEntries().end(),
                            [](const LogCatcher::Entry& entry) { return entry.level == wxLOG_Error; }),
              3);
    EXPECT_THAT(folder.List(), IsEmpty());
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(4.5F, 4.5F, 2.5F));
}

TEST_F(SavingDialogs, TheViewerMayGoUnderTheWordOfHiddenWindows) {
    Open();
    canvas->ShowDrWin(zel_PT_XZ, false);
    const wxWeakRef<wxFrame> open(frame);
    const std::string path = folder / "view.tif";
    DialogAnswers answers;
    answers.ExpectDriven([](wxDialog& dialog) {
        ControlOf<wxRadioBox>(dialog, 10000).SetSelection(1); // XZ
        SetSingleImage(dialog, true);
        Press(dialog, wxID_OK);
    });
    answers.ExpectDriven([&](wxDialog& dialog) { ChooseFile(dialog, path); });
    answers.Expect([&](wxDialog& box) -> int {
        wxTheApp->CallAfter([&] { // in the system's own loop, which the box runs in
            EXPECT_FALSE(box.IsModal());
            delete frame;
            frame = viewer = nullptr;
        });
        return wxID_NONE;
    });
    viewer->ProcessCommand(zel_CMD_SAVE_VIEW);
    EXPECT_FALSE(open);
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingDialogs, APictureThatIsTooLargeIsToldOf) {
    Open();
    // A canvas whose saving needs more than there is.
    struct Greedy : Canvas {
        using Canvas::Canvas;
        void SaveActualView(const char*, int, zel_ProjectionType) override {
            throw kep::LibException("The picture would have 3 x 3 pixels, which is too large.");
        }
        void Save3dData(const wxString&) override { throw std::bad_alloc(); }
    };
    viewer->SetCanvas(new Greedy(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize));
    const LogCatcher log;
    SaveSingle(zel_CMD_SAVE_VIEW, SetUpNothing, folder / "a.tif");
    EXPECT_TRUE(log.Has(wxLOG_Error, "The picture would have 3 x 3 pixels, which is too large."));
    SaveSingle(zel_CMD_SAVE_3D_DATA, SetUpNothing, folder / "a.tif");
    EXPECT_TRUE(log.Has(wxLOG_Error, "There is not enough memory for the picture."));
}
