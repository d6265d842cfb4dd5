#pragma once

// For tests of the mapping in a whole viewer.

#include "factory/zel_viewer.h"
#include "mapping/zel_graymapping.h"
#include "mapping/zel_mappingevents.h"
#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"

#include <wx/menu.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zel::test {

/// A shown viewer of the factory's, and the module in it.
template <typename T, typename Module = zel_GrayMappingModule<T>>
class MappedViewer {
public:
    explicit MappedViewer(std::unique_ptr<mor::Image4d<T>> newImage) : image(std::move(newImage)) {
        frame = zel_CreateImage3dFrame<T>(image.get(), false, nullptr, wxID_ANY, "viewer", wxDefaultPosition,
                                          wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        module = dynamic_cast<Module*>(frame->GetEventHandler());
        canvas = dynamic_cast<zel_ImageViewer3dCanvas<T>*>(frame->GetCanvas());
        HideDecorations(*canvas);
        EXPECT_TRUE(ShowAndWait(*frame));
        frame->Bind(zel_EVT_MAPPING_CHANGED, [this](zel_MappingEvent& event) {
            log.push_back(event.IsCommitted() ? "changed" : "preview");
            event.Skip();
        });
        frame->Bind(zel_EVT_MAPPING_COMMAND, [this](zel_MappingCommandEvent& event) {
            EXPECT_EQ(event.GetId(), 0);
            EXPECT_EQ(event.GetClientData(), static_cast<zel_ExtensionModule*>(module));
            EXPECT_EQ(event.GetCommandEvent()->GetEventType(), wxEventType(wxEVT_MENU));
            log.push_back("command " + std::to_string(event.GetCommandEvent()->GetId()));
        });
    }
    ~MappedViewer() {
        frame->Destroy();
        Pump();
    }
    MappedViewer(const MappedViewer&) = delete;
    MappedViewer& operator=(const MappedViewer&) = delete;

    /// Does what the toolkit does when an entry is chosen: the mark is flipped before the command comes.
    void Choose(int entry) { EXPECT_TRUE(frame->ProcessCommand(module->GetMenuId(entry))); }
    bool IsChecked(int entry) const { return frame->GetMenuBar()->IsChecked(module->GetMenuId(entry)); }
    /// The marked entries, as they are when the menu is opened.
    std::vector<int> GetMarks() {
        frame->GetMenuBar()->UpdateMenus();
        std::vector<int> marks;
        for (int entry = zel_ME_NO_STRETCH; entry < zel_ME_LAST; ++entry) {
            const wxMenuItem* const item = frame->GetMenuBar()->FindItem(module->GetMenuId(entry));
            if (item != nullptr && item->IsCheckable() && item->IsChecked())
                marks.push_back(entry);
        }
        return marks;
    }
    /// What has been told since the last call.
    std::vector<std::string> TakeLog() { return std::exchange(log, {}); }
    /// The same without the previews that a dialog sends when it opens.
    std::vector<std::string> TakeLogWithoutPreviews() {
        std::erase(log, "preview");
        return TakeLog();
    }
    wxImage PaintedPicture(zel_ProjectionType type) const { return canvas->GetDrWin(type)->GetPointerImage(); }
    /// The window's picture after a pending paint.
    wxImage Picture(zel_ProjectionType type) const {
        canvas->Update();
        return PaintedPicture(type);
    }

    /// The colour in the middle of the XY window.
    wxColour Middle() const {
        const wxImage picture = Picture(zel_PT_XY);
        return ColourAt(picture, {picture.GetWidth() / 2, picture.GetHeight() / 2});
    }

    std::unique_ptr<mor::Image4d<T>> image;
    zel_Viewer3dFrame* frame = nullptr;
    Module* module = nullptr;
    zel_ImageViewer3dCanvas<T>* canvas = nullptr;
    std::vector<std::string> log;
};

} // namespace zel::test
