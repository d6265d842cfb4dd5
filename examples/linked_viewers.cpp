// Two viewers side by side that show the same place, time and zoom: move in one, and the other follows.

#include "factory/zel_viewer.h"

#include <wx/app.h>
#include <wx/log.h>
#include <wx/weakref.h>

#include <iostream>
#include <stdexcept>

namespace {

using Image = mor::Image4d<unsigned short>;
using zel::zel_Viewer3dCanvas;

zel::zel_Viewer3dFrame* MakeViewer(const wxString& file) {
    wxArrayString files;
    files.Add(file);
    auto image = std::make_unique<Image>();
    image->ReadSequence(files, false);
    auto* const frame = zel::zel_CreateImage3dFrame(image.get(), true, nullptr, wxID_ANY, file, wxDefaultPosition,
                                                    wxDefaultSize, wxDEFAULT_FRAME_STYLE);
    image.release();
    zel::EquipFrame(*frame);
    return frame;
}

/// The other viewer answers with an event of its own, which changes nothing here and so ends it.
void Follow(zel_Viewer3dCanvas& leader, zel_Viewer3dCanvas& follower) {
    leader.Bind(zel::zel_EVT_POSITION_CHANGED,
                [&leader, other = wxWeakRef<zel_Viewer3dCanvas>(&follower)](zel::zel_PositionEvent& event) {
                    event.Skip();
                    if (!other)
                        return; // that viewer was closed
                    other->ChangeCut(leader.GetCut());
                    other->GoToFrame(leader.GetTime());
                    while (other->GetZoom() < leader.GetZoom())
                        other->ZoomIn();
                    while (other->GetZoom() > leader.GetZoom())
                        other->ZoomOut();
                });
}

/// linked_viewers FILE FILE: two images of one place.
class Host : public wxApp {
    bool OnInit() override try {
        wxLog::SetLogLevel(wxLOG_Warning);
        if (argc != 3)
            throw std::runtime_error("linked_viewers FILE FILE");
        auto* const left = MakeViewer(argv[1]);
        auto* const right = MakeViewer(argv[2]);
        Follow(*left->GetCanvas(), *right->GetCanvas());
        Follow(*right->GetCanvas(), *left->GetCanvas());
        left->Show();
        right->Move(left->GetPosition() + wxSize(left->GetSize().x, 0));
        return right->Show();
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return false;
    }
};

} // namespace

wxIMPLEMENT_APP(Host);
