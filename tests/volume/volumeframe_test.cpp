// The frame of the volume window: menus, keys, help, view files, closing.

#include "model/zel_viewfile.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/user.h"
#include "tests/volume/volume_window.h"

#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/stattext.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace zel::test {
namespace {

class VolumeFrame : public GuiTest {};

constexpr auto nothing = [](auto...) { return Voxel{}; };

struct Entry {
    int id;
    std::string label;
    std::string help;
    wxItemKind kind = wxITEM_NORMAL;
};

void ExpectEntries(const wxMenu& menu, const std::vector<Entry>& entries) {
    ASSERT_EQ(menu.GetMenuItemCount(), entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const wxMenuItem& item = *menu.FindItemByPosition(i);
        EXPECT_EQ(item.GetKind(), entries[i].kind) << i;
        if (entries[i].kind == wxITEM_SEPARATOR)
            continue;
        EXPECT_EQ(item.GetId(), entries[i].id);
        EXPECT_EQ(item.GetItemLabel(), entries[i].label);
        EXPECT_EQ(item.GetHelp(), entries[i].help);
    }
}

TEST_F(VolumeFrame, HasItsMenus) {
    const VolumeWindow window;
    const wxMenuBar& bar = *window.frame->GetMenuBar();
    ASSERT_EQ(bar.GetMenuCount(), 2U);
    EXPECT_EQ(bar.GetMenuLabel(0), "&View");
    EXPECT_EQ(bar.GetMenuLabel(1), "&Help");
    const Entry line{0, "", "", wxITEM_SEPARATOR};
    ExpectEntries(*bar.GetMenu(0),
                  {{5007, "x+", "View along positive x axis"},
                   {5008, "x-", "View along negative x axis"},
                   {5009, "y+", "View along positive y axis"},
                   {5010, "y-", "View along negative y axis"},
                   {5011, "z+", "View along positive z axis"},
                   {5012, "z-", "View along negative z axis"},
                   line,
                   {10002, "&White background", "Draw white background instead of black", wxITEM_CHECK},
                   {10003, "Hide &clipping plane", "Hide the clipping plane", wxITEM_CHECK},
                   {10004, "Hide &box", "Hide the view box", wxITEM_CHECK},
                   line,
                   {10005, "&Save view", "Save current view to a file"},
                   {10006, "&Load view", "Load view from a file"}});
    ExpectEntries(*bar.GetMenu(1), {{5006, "&Help\tCtrl-H", "Shows this window's help"}});
}

TEST_F(VolumeFrame, HasACanvasThatFillsItAndAStatusBarOfTwoFields) {
    const VolumeWindow window;
    EXPECT_EQ(window.Canvas().GetName(), "VolGLCanvas");
    EXPECT_EQ(window.Canvas().GetParent(), window.frame.get());
    EXPECT_TRUE(window.Canvas().HasFlag(wxFULL_REPAINT_ON_RESIZE));
    EXPECT_EQ(window.Canvas().GetSize(), window.frame->GetClientSize());
    EXPECT_EQ(window.frame->GetStatusBar()->GetFieldsCount(), 2);
    EXPECT_EQ(window.frame->GetHelpDialog(), nullptr);
}

TEST_F(VolumeFrame, OpensWithTheViewAsAfterAReset) {
    const VolumeWindow window;
    const vol3D_VolVisCanvas& canvas = window.Canvas();
    const auto expectReset = [&canvas] {
        EXPECT_EQ(canvas.GetSliceCount(), 100);
        EXPECT_EQ(canvas.GetIntensity(), 0.5F);
        EXPECT_EQ(canvas.GetThreshold(), 0.5F);
        EXPECT_EQ(canvas.GetEyeDistance(), -5.0F);
        EXPECT_EQ(canvas.GetPlaneOffset(), 1.0);
        EXPECT_FALSE(canvas.IsMovingPlane());
        EXPECT_EQ(canvas.GetObjectMatrix(), identityMatrix);
        EXPECT_EQ(canvas.GetPlaneMatrix(), identityMatrix);
    };
    expectReset();
    EXPECT_EQ(canvas.GetTextureScale(), kep::Vector3d<float>(0, 0, 0));
    window.Show(2, nothing);
    const kep::Vector3d<float> scale = canvas.GetTextureScale();
    for (const int key : {int{WXK_SPACE}, int{'+'}, int{WXK_UP}, int{WXK_RIGHT}})
        window.Press(key);
    window.Choose(5009);
    window.Choose(10004);
    window.Canvas().ResetView();
    expectReset();
    EXPECT_EQ(canvas.GetTextureScale(), scale);
    EXPECT_TRUE(canvas.HasVolume());
    EXPECT_TRUE(IsNear(window.Picture(), {31, 100}, IsBlue)) << "the box is back";
    EXPECT_TRUE(window.frame->GetMenuBar()->IsChecked(10004)) << "the mark stays";
}

TEST_F(VolumeFrame, TheMiddleOfTheSheetLiesBehindItsCorners) {
    const VolumeWindow window;
    // At row 0, column 0: x = y = -0.5, r = sqrt(0.75) = 0.8660.
    const auto corner = window.Canvas().GetSheetPoint(0, 0);
    EXPECT_NEAR(corner.x, -1.1547, 1e-4);
    EXPECT_NEAR(corner.y, -1.1547, 1e-4);
    EXPECT_NEAR(corner.z, 0.42265, 1e-4);
    // At row 3, column 4: y = -1/14, x = 1/14, r = 0.51010.
    const auto middle = window.Canvas().GetSheetPoint(3, 4);
    EXPECT_NEAR(middle.x, 0.28006, 1e-4);
    EXPECT_NEAR(middle.y, -0.28006, 1e-4);
    EXPECT_NEAR(middle.z, 0.01980, 1e-4);
}

TEST_F(VolumeFrame, PlacesOnTheBall) {
    const auto middle = vol3D_VolVisCanvas::ProjectToSphere(100, 50, 200, 100);
    EXPECT_NEAR(middle.z, 1.0, 1e-6);
    const auto corner = vol3D_VolVisCanvas::ProjectToSphere(0, 0, 200, 100); // on the rim: (-1, 1, 0) / sqrt 2
    EXPECT_NEAR(corner.x, -0.70711, 1e-5);
    EXPECT_NEAR(corner.y, 0.70711, 1e-5);
    EXPECT_NEAR(corner.z, 0.0, 1e-6);
}

TEST_F(VolumeFrame, NumbersStayInTheirBounds) {
    const VolumeWindow window;
    window.Press('+', 30);
    EXPECT_EQ(window.Canvas().GetSliceCount(), 400);
    window.Press('-', 50);
    EXPECT_EQ(window.Canvas().GetSliceCount(), 0);
    window.Press(WXK_UP, 20);
    EXPECT_EQ(window.Canvas().GetIntensity(), 1.0F);
    window.Press(WXK_DOWN, 40);
    EXPECT_EQ(window.Canvas().GetIntensity(), 0.0F);
    window.Press(WXK_RIGHT, 20);
    EXPECT_EQ(window.Canvas().GetThreshold(), 1.0F);
    window.Press(WXK_LEFT, 40);
    EXPECT_EQ(window.Canvas().GetThreshold(), 0.0F);
}

TEST_F(VolumeFrame, OtherKeysAreForOthers) {
    const VolumeWindow window;
    for (const int key : {int{'x'}, int{WXK_PAGEUP}, int{'='}}) {
        wxKeyEvent event(wxEVT_CHAR);
        event.m_keyCode = key;
        EXPECT_FALSE(window.Canvas().ProcessWindowEvent(event) && !event.GetSkipped()) << key;
        EXPECT_TRUE(event.GetSkipped()) << key;
    }
}

TEST_F(VolumeFrame, TheRightButtonMovesTheScene) {
    const VolumeWindow window;
    SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 150});
    EXPECT_NEAR(window.Canvas().GetEyeDistance(), -4.5F, 1e-6F);
    SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 150});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 190});
    EXPECT_NEAR(window.Canvas().GetEyeDistance(), -4.5F, 1e-6F);
}

TEST_F(VolumeFrame, TheSecondPressOfADoubleClickDragsToo) {
    const VolumeWindow window;
    window.Show(2, nothing);
    SendMouse(window.Canvas(), wxEVT_LEFT_DCLICK, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {120, 100});
    window.Picture();
    EXPECT_NE(window.Canvas().GetObjectMatrix(), identityMatrix);
    SendMouse(window.Canvas(), wxEVT_LEFT_UP, {120, 100});
    SendMouse(window.Canvas(), wxEVT_RIGHT_DCLICK, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 110});
    EXPECT_NEAR(window.Canvas().GetEyeDistance(), -4.9F, 1e-6F);
}

TEST_F(VolumeFrame, TheRealKeyboardReachesTheCanvas) {
    const VolumeWindow window;
    window.frame->Raise();
    Focus(window.Canvas());
    Press(WXK_SPACE);
    EXPECT_TRUE(window.Canvas().IsMovingPlane());
    Press(WXK_UP);
    Press(WXK_LEFT);
    EXPECT_EQ(window.Canvas().GetIntensity(), 0.53125F);
    EXPECT_EQ(window.Canvas().GetThreshold(), 0.46875F);
    Press('-');
    EXPECT_EQ(window.Canvas().GetSliceCount(), 90);
    Press(WXK_ESCAPE);
    EXPECT_FALSE(window.frame->IsShown());
}

TEST_F(VolumeFrame, GivesTheKeyboardToItsCanvas) {
    const VolumeWindow window;
    wxFocusEvent event(wxEVT_SET_FOCUS);
    window.frame->ProcessWindowEvent(event);
    EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == &window.Canvas(); }));
}

TEST_F(VolumeFrame, ClosingHidesItAndKeepsWhatItShows) {
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Choose(5006);
    const wxWeakRef<wxDialog> help = window.frame->GetHelpDialog();
    EXPECT_FALSE(window.frame->Close(false)) << "vetoed";
    Pump();
    ASSERT_TRUE(window.frame);
    EXPECT_FALSE(window.frame->IsShown());
    EXPECT_TRUE(window.Canvas().HasVolume());
    EXPECT_EQ(window.frame->GetHelpDialog(), nullptr);
    EXPECT_FALSE(help);
    window.frame->Show();
    Settle();
    EXPECT_TRUE(IsNear(window.Picture(), {31, 100}, IsBlue));
    window.Choose(5006);
    EXPECT_NE(window.frame->GetHelpDialog(), nullptr) << "a new one";
}

TEST_F(VolumeFrame, AForcedCloseDestroysIt) {
    const VolumeWindow window;
    window.Choose(5006);
    EXPECT_TRUE(window.frame->Close(true));
    Pump();
    EXPECT_FALSE(window.frame);
}

TEST_F(VolumeFrame, HelpTellsTheKeys) {
    const VolumeWindow window;
    window.Choose(5006);
    wxDialog* const help = window.frame->GetHelpDialog();
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->GetTitle(), "Volume Visualization Help");
    EXPECT_EQ(help->GetParent(), window.frame.get());
    EXPECT_TRUE(help->IsShown());
    EXPECT_FALSE(help->IsModal());
    std::vector<std::string> boxes, texts;
    for (const wxWindow* const child : help->GetChildren()) {
        const auto* const box = dynamic_cast<const wxStaticBox*>(child);
        if (box == nullptr)
            continue;
        boxes.push_back(box->GetLabel().utf8_string());
        for (const wxWindow* const text : box->GetChildren()) {
            EXPECT_EQ(text->GetId(), 10000);
            texts.push_back(text->GetLabel().utf8_string());
        }
    }
    EXPECT_EQ(boxes, (std::vector<std::string>{"Mouse", "Keyboard"}));
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "Left button:",  "model / clipping plane rotation",
                         "Right button:", "model / clipping plane translation",
                         "ESC:",          "close the window",
                         "'+':",          "increase the number of slices",
                         "'-':",          "decrease the number of slices",
                         "SPACE:",        "switch between controlling the model\nand controlling the plane",
                         "Up arrow:",     "increase the intensity of voxels",
                         "Down arrow:",   "decrease the intensity of voxels",
                         "Left arrow:",   "decrease the intensity treshold",
                         "Right arrow:",  "increase the intensity treshold"}));
    wxWindow* const ok = help->FindWindow(wxID_OK);
    ASSERT_NE(ok, nullptr);
    EXPECT_EQ(help->GetDefaultItem(), ok);
    wxCommandEvent press(wxEVT_BUTTON, wxID_OK);
    press.SetEventObject(ok);
    ok->ProcessWindowEvent(press);
    EXPECT_FALSE(help->IsShown());
    window.Choose(5006);
    EXPECT_EQ(window.frame->GetHelpDialog(), help) << "the same, shown again";
    EXPECT_TRUE(help->IsShown());
}

// View files.

/// Answers a file dialog that must have these words.
void ExpectFile(DialogAnswers& answers, const std::string& title, const std::string& wildcard,
                const std::string& path) {
    answers.ExpectDriven([=](wxDialog& dialog) {
        auto& files = dynamic_cast<wxFileDialog&>(dialog);
        EXPECT_EQ(files.GetMessage(), title);
        EXPECT_EQ(files.GetWildcard(), wildcard);
        files.SetPath(wxString::FromUTF8(path));
        EXPECT_TRUE(WaitUntil([&] { return files.GetPath() == wxString::FromUTF8(path); }));
        files.EndModal(wxID_OK);
    });
}

const std::string saveTitle = "Save view matrix as", loadTitle = "Choose a view to load";
const std::string saveWildcard = "Viewer3D view matrix (*.zelview)|*.zelview";
const std::string loadWildcard = "Viewer3D view matrix (*.zelview)|*.zelview|All files (*.*) | *.*";

std::string ReadText(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(VolumeFrame, AViewIsSavedAndLoaded) {
    const ScratchFolder folder;
    const std::string name = folder / "seite \xc3\xa4.zelview";
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Choose(5009);
    SendMouse(window.Canvas(), wxEVT_RIGHT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {100, 137});
    SendMouse(window.Canvas(), wxEVT_RIGHT_UP, {100, 137});
    DialogAnswers answers;
    ExpectFile(answers, saveTitle, saveWildcard, name);
    window.Choose(10005);
    std::istringstream words(ReadText(name));
    std::vector<std::string> numbers{std::istream_iterator<std::string>(words), {}};
    ASSERT_EQ(numbers.size(), 34U);
    EXPECT_EQ(numbers[0].substr(0, 6), "-4.630") << "-5 + 0.37";
    EXPECT_EQ(ReadText(name).back(), ' ');

    const Matrix4 saved = window.Canvas().GetObjectMatrix();
    const float distance = window.Canvas().GetEyeDistance();
    window.Canvas().ResetView();
    window.Press('+');
    ExpectFile(answers, loadTitle, loadWildcard, name);
    window.Choose(10006);
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), saved);
    EXPECT_NEAR(window.Canvas().GetEyeDistance(), distance, 1e-6F);
    EXPECT_EQ(window.Canvas().GetSliceCount(), 110) << "not a part of the view";
}

TEST_F(VolumeFrame, ALoadedViewWaitsForTheNextPaint) {
    const ScratchFolder folder;
    const std::string name = folder / "reset.zelview";
    int paints = 0;
    const VolumeWindow window;
    window.Show(2, nothing);
    window.Canvas().SaveViewFile(name);
    window.Choose(5009);
    window.Picture();
    Settle();
    window.Canvas().Bind(wxEVT_PAINT, [&paints](wxPaintEvent& event) {
        ++paints;
        event.Skip();
    });
    EXPECT_TRUE(window.Canvas().LoadViewFile(name));
    Settle();
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), identityMatrix);
    EXPECT_EQ(paints, 0) << "no refresh follows";
    window.Canvas().SetShowBox(true);
    EXPECT_TRUE(WaitUntil([&] { return paints > 0; }));
}

TEST_F(VolumeFrame, AShortViewFileLeavesTheRest) {
    const ScratchFolder folder;
    const std::string name = folder / "short.zelview";
    std::ofstream(name) << "-3.25 0.5 0 0";
    const VolumeWindow window;
    DialogAnswers answers;
    ExpectFile(answers, loadTitle, loadWildcard, name);
    window.Choose(10006);
    EXPECT_EQ(window.Canvas().GetEyeDistance(), -3.25F);
    EXPECT_EQ(window.Canvas().GetObjectMatrix()[0], 0.5F);
    EXPECT_EQ(window.Canvas().GetObjectMatrix()[5], 1.0F);
    EXPECT_EQ(window.Canvas().GetPlaneOffset(), 1.0);
}

TEST_F(VolumeFrame, AViewOfNoNumbersDrawsOnAndIsResetAway) {
    const ScratchFolder folder;
    const std::string name = folder / "nan.zelview";
    std::ofstream file(name);
    for (int i = 0; i < 34; ++i)
        file << (i % 2 == 0 ? "nan " : "-inf ");
    file.close();
    const VolumeWindow window;
    window.Show(2, nothing);
    EXPECT_TRUE(window.Canvas().LoadViewFile(name));
    SendMouse(window.Canvas(), wxEVT_LEFT_DOWN, {100, 100});
    SendMouse(window.Canvas(), wxEVT_MOTION, {120, 110});
    window.Picture();
    SendMouse(window.Canvas(), wxEVT_LEFT_UP, {120, 110});
    window.Canvas().ResetView();
    EXPECT_TRUE(IsNear(window.Picture(), {31, 100}, IsBlue));
}

TEST_F(VolumeFrame, WhatCannotBeSavedIsTold) {
    const ScratchFolder folder;
    const VolumeWindow window;
    DialogAnswers answers;
    const std::string name = folder / "gone" + "/a.zelview";
    answers.Expect([&](wxDialog& dialog) { // a chooser of the system's would not leave a folder that is there
        dynamic_cast<wxFileDialog&>(dialog).SetPath(wxString::FromUTF8(name));
        return wxID_OK;
    });
    answers.ExpectMessage("Message", "Unable to create file.");
    window.Choose(10005);
    EXPECT_FALSE(std::filesystem::exists(folder / "gone"));
}

TEST_F(VolumeFrame, WhatCannotBeOpenedIsTold) {
    const ScratchFolder folder;
    const std::string name = folder / "gone.zelview";
    const VolumeWindow window;
    window.Choose(5009);
    const Matrix4 before = window.Canvas().GetObjectMatrix();
    EXPECT_FALSE(window.Canvas().LoadViewFile(name));
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), before);
    std::ofstream(name) << "1";
    DialogAnswers answers;
    answers.ExpectDriven([&](wxDialog& dialog) {
        auto& files = dynamic_cast<wxFileDialog&>(dialog);
        files.SetPath(wxString::FromUTF8(name));
        EXPECT_TRUE(WaitUntil([&] { return files.GetPath() == wxString::FromUTF8(name); }));
        std::filesystem::remove(name); // by somebody else, while the user looks at the dialog
        files.EndModal(wxID_OK);
    });
    answers.ExpectMessage("Message", "Unable to open file.");
    window.Choose(10006);
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), before);
}

TEST_F(VolumeFrame, TheWindowMayGoUnderAMessage) {
    const ScratchFolder folder;
    for (const int command : {10005, 10006}) {
        const VolumeWindow window;
        const std::string name = folder / "gone" + "/a.zelview";
        DialogAnswers answers;
        answers.Expect([&](wxDialog& dialog) {
            dynamic_cast<wxFileDialog&>(dialog).SetPath(wxString::FromUTF8(name));
            return wxID_OK;
        });
        answers.Expect([&window](wxDialog& box) -> int {
            wxTheApp->CallAfter([&window, &box] { // in the system's own loop, which the box runs in
                EXPECT_FALSE(box.IsModal());
                delete window.frame.get();
            });
            return wxID_NONE;
        });
        window.Choose(command);
        EXPECT_FALSE(window.frame);
    }
}

TEST_F(VolumeFrame, CancelChangesNothing) {
    const VolumeWindow window;
    DialogAnswers answers;
    for (const int command : {10005, 10006}) {
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        window.Choose(command);
    }
    EXPECT_EQ(window.Canvas().GetObjectMatrix(), identityMatrix);
}

TEST_F(VolumeFrame, MayBeDeletedWhileItsDialogsAreOpen) {
    for (const int command : {10005, 10006}) {
        const VolumeWindow window;
        window.Choose(5006);
        DialogAnswers answers;
        answers.ExpectDriven([&](wxDialog&) { delete window.frame.get(); });
        window.frame->ProcessCommand(command);
        EXPECT_FALSE(window.frame) << command;
    }
}

TEST_F(VolumeFrame, ManyWindowsLeaveNothingOnTheDisplay) {
    const auto openOne = [] {
        const VolumeWindow window;
        window.Show(8, nothing);
        window.Choose(5006);
        window.Picture();
    };
    openOne(); // what the toolkit keeps for all
    const int before = CountXWindowsAtRest();
    for (int i = 0; i < 10; ++i)
        openOne();
    EXPECT_EQ(CountXWindowsAtRest(), before);
}

TEST_F(VolumeFrame, AWindowThatNeverStartedOpenGLGoesQuietly) {
    const wxWeakRef<vol3D_VolVisFrame> frame(
        new vol3D_VolVisFrame(nullptr, wxID_ANY, "volume", wxDefaultPosition, {200, 200}, wxDEFAULT_FRAME_STYLE));
    frame->Show();
    Settle();
    EXPECT_FALSE(frame->GetCanvas()->TakePicture().IsOk());
    delete frame.get();
}

} // namespace
} // namespace zel::test
