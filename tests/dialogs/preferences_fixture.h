#pragma once

// For tests of the preferences.

#include "dialogs/dlg_preferences.h"
#include "image/zel_modaldialog.h"
#include "tests/support/system_dialogs.h"
#include "tests/support/user.h"

#include <wx/colordlg.h>
#include <wx/fontdlg.h>
#include <wx/notebook.h>
#include <wx/spinctrl.h>

namespace zel::test {

/// Brings a page of the preferences to the front.
inline void ShowPage(const wxDialog& dialog, const std::string& title) {
    auto& book = In<wxNotebook>(dialog, 10000);
    for (std::size_t page = 0; page < book.GetPageCount(); ++page)
        if (book.GetPageText(page) == title)
            book.SetSelection(page);
    Settle();
}

inline std::string TextIn(const wxDialog& dialog, int field) {
    return In<wxTextCtrl>(dialog, field).GetValue().utf8_string();
}

/// A frame and a record with the base scale 2, 2, 1.
class PreferencesFixture : public GuiTest {
protected:
    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "preferences");
        ASSERT_TRUE(ShowAndWait(*frame));
        settings.baseScale = {2, 2, 1};
    }
    void TearDown() override {
        if (frame)
            frame->Destroy();
        GuiTest::TearDown();
    }
    int Run(std::function<void(wxDialog&)> drive) {
        answers.ExpectDriven(std::move(drive));
        PreferencesDialog dialog(frame, &settings, &colours);
        return RunModal(dialog);
    }
    void DeleteFrame() {
        delete frame.get();
        EXPECT_EQ(nullptr, frame.get());
    }

    wxWeakRef<wxFrame> frame;
    zel_CanvasSettings settings;
    wxColourData colours;
    DialogAnswers answers;
};

} // namespace zel::test
