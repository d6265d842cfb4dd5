#pragma once

// For tests of the dialogs of saving.

#include "dialogs/dlg_export_sequence.h"
#include "image/zel_modaldialog.h"
#include "tests/support/user.h"
#include "tests/viewer/noting_canvas.h"

#include <wx/spinctrl.h>

namespace zel::test {

/// Controls "Sequence parameters".
inline const std::vector<std::string> sequenceControls{"box Sequence parameters",
                                                       "10003 check box Save only a single image?",
                                                       "10004 First frame:",
                                                       "10005 spin 0 to 100, 0",
                                                       "10006 Last frame:",
                                                       "10007 spin 0 to 100, 0",
                                                       "10008 Step:",
                                                       "10009 spin 1 to 100, 1",
                                                       "10010 Output format:",
                                                       "10011 radio button Image sequence",
                                                       "10012 radio button AVI video",
                                                       "10013 radio button Animated GIF",
                                                       "10014 Name template:",
                                                       "10015 field",
                                                       "5100 OK",
                                                       "5101 Cancel"};

/// Sends what a control of a dialog sends when it is used.
inline void Send(wxWindow& dialog, wxEventType type, int id) {
    wxCommandEvent event(type, id);
    event.SetEventObject(dialog.FindWindow(id));
    dialog.FindWindow(id)->ProcessWindowEvent(event);
}

/// Brings back what the process remembers of the dialogs of saving: image sequences, of more than one image.
inline void ForgetExportChoices(wxWindow* parent, zel_SequenceCanvas* canvas) {
    Save3dDataDialog dialog(parent);
    const ExportSequenceDialog panel(&dialog, canvas);
    for (const bool single : {true, false}) {
        In<wxCheckBox>(dialog, 10003).SetValue(single);
        Send(dialog, wxEVT_CHECKBOX, 10003);
    }
    In<wxTextCtrl>(dialog, 10015).ChangeValue("1"); // a speed that needs no question
    Send(dialog, wxEVT_RADIOBUTTON, 10011);
}

/// A frame with a canvas that plays a sequence of 10 frames.
class ExportFixture : public GuiTest {
protected:
    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "saving");
        canvas = new NotingCanvas(frame);
        canvas->Play(10);
        ASSERT_TRUE(ShowAndWait(*frame));
        ForgetExportChoices(frame, canvas);
        canvas->shown.clear();
    }
    void TearDown() override {
        if (frame)
            frame->Destroy();
        GuiTest::TearDown();
    }
    void DeleteFrame() {
        delete frame.get();
        EXPECT_EQ(nullptr, frame.get());
    }

    wxWeakRef<wxFrame> frame;
    wxWeakRef<NotingCanvas> canvas;
    DialogAnswers answers;
};

} // namespace zel::test
