#include "factory/zel_viewer.h"
#include <iostream>
#include <wx/app.h>
#include <wx/log.h>

/// Shows gray images of up to 16 bits: one_call FILE..., one file for each time point.
class Host : public wxApp {
    bool OnInit() override try {
        wxLog::SetLogLevel(wxLOG_Warning); // the toolkit would show messages on progress in boxes
        wxArrayString files = argv.GetArguments();
        files.RemoveAt(0); // the program's own name
        auto image = std::make_unique<mor::Image4d<unsigned short>>();
        image->ReadSequence(files, false);
        auto* frame = zel::zel_CreateImage3dFrame(image.get(), true, nullptr, wxID_ANY, files[0], wxDefaultPosition,
                                                  wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        image.release();         // it goes with the frame now
        zel::EquipFrame(*frame); // a use for the mouse, true proportions, a short title
        return frame->Show();
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return false;
    }
};
wxIMPLEMENT_APP(Host);
