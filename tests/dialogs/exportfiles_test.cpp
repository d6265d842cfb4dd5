// What happens after a dialog of saving has ended with OK.

#include "tests/dialogs/export_fixture.h"
#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/system_dialogs.h"

#include "core/kepcore/kep_exceptions.h"

#include <filesystem>

using namespace zel;
using namespace zel::test;

namespace {

/// Notes the names of the files, and the frame that the canvas shows then.
class NotingProcessor : public ExportData_CanvasProcessor {
public:
    explicit NotingProcessor(NotingCanvas* noted) : ExportData_CanvasProcessor(noted), m_noted(noted) {}

    void operator()(const wxString& fileName) override {
        files.push_back(std::to_string(m_noted->GetTime()) + " " + fileName.utf8_string());
        if (onFile)
            onFile();
    }

    std::vector<std::string> files;
    std::function<void()> onFile;

private:
    NotingCanvas* m_noted;
};

using Files = std::vector<std::string>;

class ExportFilesTest : public ExportFixture {
protected:
    void SetUp() override {
        ExportFixture::SetUp();
        processor = std::make_unique<NotingProcessor>(canvas);
        workingFolder = std::filesystem::current_path();
    }
    void TearDown() override {
        std::filesystem::current_path(workingFolder); // file dialogs change it
        ExportFixture::TearDown();
    }
    /// What the user has chosen in a dialog that has ended.
    struct Chosen {
        int first = 0;
        int last = 9;
        int step = 1;
        std::string nameTemplate = "imageXXX.tif";
        int format = 10011;
        bool single = false;
    };
    void Export(const Chosen& chosen) {
        Save3dDataDialog dialog(frame);
        ExportSequenceDialog panel(&dialog, canvas);
        Set(dialog, panel, chosen);
        panel.ProcessExport(*processor);
        EXPECT_EQ(frame.get(), dialog.GetParent());
    }
    static void Set(wxDialog& dialog, ExportSequenceDialog& panel, const Chosen& chosen) {
        In<wxSpinCtrl>(dialog, 10005).SetValue(chosen.first);
        In<wxSpinCtrl>(dialog, 10007).SetValue(chosen.last);
        In<wxSpinCtrl>(dialog, 10009).SetValue(chosen.step);
        In<wxTextCtrl>(dialog, 10015).ChangeValue(wxString::FromUTF8(chosen.nameTemplate));
        ASSERT_TRUE(panel.CheckTemplate());
        In<wxRadioButton>(dialog, chosen.format).SetValue(true);
        In<wxCheckBox>(dialog, 10003).SetValue(chosen.single);
    }
    void ExpectFolder(const std::string& path) {
        answers.ExpectDriven([this, path](wxDialog& dialog) {
            EXPECT_EQ("Choose folder to save 3D image sequence", dynamic_cast<wxDirDialog&>(dialog).GetMessage());
            EXPECT_EQ(wxDD_CHANGE_DIR | wxDD_DIR_MUST_EXIST,
                      dialog.GetWindowStyle() & (wxDD_CHANGE_DIR | wxDD_DIR_MUST_EXIST));
            EXPECT_EQ(frame.get(), dialog.GetParent());
            ChooseFolder(dialog, path);
        });
    }
    /// Lets a dialog open under which the viewer is closed.
    void ExpectClosed() {
        answers.Expect([this](wxDialog&) -> int {
            wxTheApp->CallAfter([this] { DeleteFrame(); });
            return wxID_NONE;
        });
    }

    ScratchFolder folder;
    std::unique_ptr<NotingProcessor> processor;
    std::filesystem::path workingFolder;
};

TEST_F(ExportFilesTest, NamesAreMadeOfTheTemplate) {
    EXPECT_EQ("image007.tif", ExportSequenceDialog::MakeFileName("imageXXX.tif", 7));
    EXPECT_EQ("image234.tif", ExportSequenceDialog::MakeFileName("imageXXX.tif", 1234));
    EXPECT_EQ(wxString::FromUTF8("t\xC3\xA9"
                                 "3.tif"),
              ExportSequenceDialog::MakeFileName("t\xC3\xA9X.tif", 3));
    EXPECT_THROW(ExportSequenceDialog::MakeFileName("imageXXX", 7), kep::InternalException);
}

TEST_F(ExportFilesTest, ASingleImageGetsTheFileChosen) {
    canvas->m_iterator.current = 4;
    canvas->OnTimeChange();
    canvas->shown.clear();
    const std::string file = folder / "caf\xC3\xA9.tif";
    answers.ExpectDriven([&](wxDialog& dialog) {
        auto& files = dynamic_cast<wxFileDialog&>(dialog);
        EXPECT_EQ("Save single 3D image", files.GetMessage());
        EXPECT_EQ("Image cytometry standard (*.ics)|*.ics|TIFF image (*.tif)|*.tif", files.GetWildcard());
        const long style = wxFD_SAVE | wxFD_OVERWRITE_PROMPT | wxFD_CHANGE_DIR;
        EXPECT_EQ(style, files.GetWindowStyle() & style);
        EXPECT_EQ("", files.GetDirectory());
        EXPECT_EQ("", files.GetFilename());
        EXPECT_EQ(frame.get(), dialog.GetParent());
        ChooseFile(dialog, file);
    });
    Export({.first = 2, .last = 5, .single = true});
    EXPECT_EQ((Files{"4 " + file}), processor->files);
    EXPECT_EQ((std::vector<int>{}), canvas->shown);
    EXPECT_EQ(0, canvas->m_iterator.rangeFirst) << "the parameters of a sequence count for none";
}

TEST_F(ExportFilesTest, ACancelledFileOrFolderWritesNothing) {
    for (const bool single : {true, false}) {
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        Export({.single = single});
        EXPECT_EQ((Files{}), processor->files);
    }
}

TEST_F(ExportFilesTest, ASequenceGetsAFileForEachFrame) {
    ExpectFolder(folder.GetPath());
    Export({});
    Files expected;
    std::vector<int> shown;
    for (int i = 0; i < 10; ++i) {
        expected.push_back(std::to_string(i) + " " + folder.GetPath() + "/image00" + std::to_string(i) + ".tif");
        if (i > 0)
            shown.push_back(i);
    }
    EXPECT_EQ(expected, processor->files);
    EXPECT_EQ(shown, canvas->shown) << "the canvas stays at the last frame";
}

TEST_F(ExportFilesTest, RangeAndStepChooseTheFrames) {
    canvas->m_iterator.current = 6;
    canvas->OnTimeChange();
    canvas->shown.clear();
    ExpectFolder(folder.GetPath());
    Export({.first = 1, .last = 8, .step = 3, .nameTemplate = "t\xC3\xA9X.ics"});
    // From 6 back by whole steps of 3: 3 is the last that lies in the range.
    const std::string begin = folder.GetPath() + "/t\xC3\xA9";
    EXPECT_EQ((Files{"3 " + begin + "3.ics", "6 " + begin + "6.ics"}), processor->files);
    EXPECT_EQ((std::vector<int>{3, 6}), canvas->shown);
    EXPECT_EQ(1, canvas->m_iterator.rangeFirst);
    EXPECT_EQ(8, canvas->m_iterator.rangeLast);
    EXPECT_EQ(3, canvas->m_iterator.step);
    EXPECT_EQ("t\xC3\xA9X.ics", canvas->m_iterator.nameTemplate);
}

TEST_F(ExportFilesTest, EachFrameIsPaintedBeforeItsFile) {
    ASSERT_TRUE(WaitUntil([&] { return canvas->paintsXY > 0; }));
    Files painted;
    processor->onFile = [&] { painted.push_back(std::to_string(canvas->paintedTime)); };
    ExpectFolder(folder.GetPath());
    Export({.first = 0, .last = 2});
    EXPECT_EQ((Files{"0", "1", "2"}), painted);
}

TEST_F(ExportFilesTest, LoopModeWritesEachFileOnceAndEndsAtTheFirstFrame) {
    canvas->m_iterator.loopMode = true;
    ExpectFolder(folder.GetPath());
    Export({.first = 3, .last = 5});
    const std::string begin = folder.GetPath() + "/image00";
    EXPECT_EQ((Files{"3 " + begin + "3.tif", "4 " + begin + "4.tif", "5 " + begin + "5.tif"}), processor->files);
    EXPECT_EQ((std::vector<int>{3, 4, 5, 3}), canvas->shown);
    EXPECT_TRUE(canvas->m_iterator.loopMode);
}

TEST_F(ExportFilesTest, ASequenceOfOneFrameGetsOneFile) {
    canvas->Play(1);
    ExpectFolder(folder.GetPath());
    Export({.last = 0});
    EXPECT_EQ((Files{"0 " + folder.GetPath() + "/image000.tif"}), processor->files);
    EXPECT_EQ((std::vector<int>{}), canvas->shown);
}

TEST_F(ExportFilesTest, TheRootFolderKeepsItsOneSeparator) {
    ExpectFolder("/");
    Export({.last = 0});
    EXPECT_EQ((Files{"0 /image000.tif"}), processor->files);
}

TEST_F(ExportFilesTest, VideosAreNotThereYet) {
    for (const int format : {10012, 10013}) {
        answers.ExpectMessage("Not implemented yet", "This function is not yet implemeted, sorry.\nYou may only save "
                                                     "image sequence at the moment.");
        Export({.first = 2, .last = 6, .step = 2, .nameTemplate = "otherX.tif", .format = format});
        EXPECT_EQ((Files{}), processor->files);
        EXPECT_EQ(2, canvas->m_iterator.rangeFirst) << "the canvas has taken the parameters";
        EXPECT_EQ(6, canvas->m_iterator.rangeLast);
        EXPECT_EQ(2, canvas->m_iterator.step);
        EXPECT_EQ(2, canvas->m_iterator.current);
        EXPECT_EQ("imageXXX.tif", canvas->m_iterator.nameTemplate) << "which is not that of a video";
    }
}

TEST_F(ExportFilesTest, WhatTheIteratorRefusesIsSaid) {
    struct Case {
        Chosen chosen;
        std::string text;
    };
    const Case cases[] = {{{.first = 5, .last = 4}, "Incorrect index given."},
                          {{.first = 5, .last = 6, .step = 3}, "Incorrect step size given."}};
    for (const auto& [chosen, text] : cases) {
        answers.Expect([&text](wxDialog& open) -> int {
            const auto& box = dynamic_cast<wxMessageDialog&>(open);
            EXPECT_EQ("Error processing the dialog", box.GetTitle());
            EXPECT_EQ(text, box.GetMessage());
            EXPECT_EQ(wxICON_EXCLAMATION | wxOK | wxCENTRE, box.GetMessageDialogStyle());
            return wxID_OK;
        });
        Export(chosen);
        EXPECT_EQ((Files{}), processor->files);
        EXPECT_EQ(0, canvas->m_iterator.rangeFirst);
        EXPECT_EQ((std::vector<int>{}), canvas->shown);
    }
}

TEST_F(ExportFilesTest, WhatTheCanvasRefusesIsSaid) {
    Save3dDataDialog dialog(frame);
    ExportSequenceDialog panel(&dialog, canvas);
    Set(dialog, panel, {.first = 5, .last = 8, .step = 4});
    canvas->Play(7); // fewer than the dialog was made for
    answers.ExpectMessage("Error processing the dialog", "Incorrect index given.");
    panel.ProcessExport(*processor);
    EXPECT_EQ((Files{}), processor->files);
    EXPECT_EQ(5, canvas->m_iterator.rangeFirst) << "was taken over before";
    EXPECT_EQ(6, canvas->m_iterator.rangeLast);
}

TEST_F(ExportFilesTest, ATemplateWithoutSuffixFailsAtTheFirstName) {
    ExpectFolder(folder.GetPath());
    try {
        Export({.nameTemplate = "imageXXX"});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const kep::InternalException& e) {
        EXPECT_EQ("Missing suffix in the template name.", e.GetText());
    }
    EXPECT_EQ((Files{}), processor->files);
}

TEST_F(ExportFilesTest, WhatAProcessorThrowsEndsTheExport) {
    processor->onFile = [this] {
        if (canvas->GetTime() == 2)
            throw std::runtime_error("thrown");
    };
    Save3dDataDialog dialog(frame);
    ExportSequenceDialog panel(&dialog, canvas);
    Set(dialog, panel, {});
    ExpectFolder(folder.GetPath());
    EXPECT_THROW(panel.ProcessExport(*processor), std::runtime_error);
    EXPECT_EQ(3U, processor->files.size());
    EXPECT_EQ(2, canvas->GetTime());
    EXPECT_EQ(frame.get(), dialog.GetParent());

    processor->onFile = {};
    ExpectFolder(folder.GetPath());
    panel.ProcessExport(*processor); // once more, from the first frame
    EXPECT_EQ(13U, processor->files.size());
}

TEST_F(ExportFilesTest, AFolderThatVanishesEndsTheExportAndLeavesNothing) {
    const std::string place = folder / "place";
    std::filesystem::create_directory(place);
    class Writer : public ExportData_CanvasProcessor {
    public:
        using ExportData_CanvasProcessor::ExportData_CanvasProcessor;
        void operator()(const wxString& fileName) override {
            Save(FrameOf<unsigned char>({1, 2, 3}), fileName.utf8_string());
            ++written;
            EXPECT_TRUE(std::filesystem::exists(fileName.utf8_string()));
            if (written == 2)
                std::filesystem::remove_all(std::filesystem::path(fileName.utf8_string()).parent_path());
        }
        int written = 0;
    };
    Writer writer(canvas);
    Save3dDataDialog dialog(frame);
    ExportSequenceDialog panel(&dialog, canvas);
    Set(dialog, panel, {});
    ExpectFolder(place);
    EXPECT_THROW(panel.ProcessExport(writer), kep::IOException);
    EXPECT_EQ(2, writer.written);
    EXPECT_FALSE(std::filesystem::exists(place));
    EXPECT_EQ(2, canvas->GetTime()) << "the frame that could not be written";
}

TEST_F(ExportFilesTest, AViewerThatGoesUnderADialogIsNotSaved) {
    // What is open: the dialog of the file, that of the folder, the notice about videos, the error.
    const Chosen choices[] = {{.single = true}, {}, {.format = 10012}, {.first = 5, .last = 4}};
    for (const Chosen& chosen : choices) {
        if (!frame)
            SetUp();
        Save3dDataDialog dialog(frame);
        ExportSequenceDialog panel(&dialog, canvas);
        Set(dialog, panel, chosen);
        ExpectClosed();
        panel.ProcessExport(*processor);
        EXPECT_EQ((Files{}), processor->files);
        EXPECT_EQ(nullptr, frame.get());
        EXPECT_EQ(nullptr, dialog.GetParent());
    }
}

TEST_F(ExportFilesTest, ACanvasThatGoesEndsTheExportAfterTheFile) {
    processor->onFile = [this] { canvas->Destroy(); };
    ExpectFolder(folder.GetPath());
    Export({});
    EXPECT_EQ(1U, processor->files.size());
}

TEST_F(ExportFilesTest, AViewerThatGoesEndsTheExportAfterTheFile) {
    processor->onFile = [this] { DeleteFrame(); };
    Save3dDataDialog dialog(frame);
    ExportSequenceDialog panel(&dialog, canvas);
    Set(dialog, panel, {});
    ExpectFolder(folder.GetPath());
    panel.ProcessExport(*processor);
    EXPECT_EQ(1U, processor->files.size());
    EXPECT_EQ(nullptr, dialog.GetParent());
}

TEST_F(ExportFilesTest, AViewerThatIsAboutToGoIsNotSavedAnyMore) {
    processor->onFile = [this] { canvas->DetachMapper(); }; // its image may be gone
    ExpectFolder(folder.GetPath());
    Export({});
    EXPECT_EQ(1U, processor->files.size());
    for (const bool single : {true, false}) {
        processor->files.clear();
        if (single)
            answers.ExpectDriven([this](wxDialog& dialog) { ChooseFile(dialog, folder / "a.tif"); });
        Export({.single = single});
        EXPECT_EQ((Files{}), processor->files);
    }
}

TEST_F(ExportFilesTest, AFrameThatEndsTheViewerEndsTheExport) {
    canvas->onShown = [this] { canvas->DetachMapper(); };
    ExpectFolder(folder.GetPath());
    Export({});
    EXPECT_EQ(1U, processor->files.size());
}

} // namespace
