#pragma once

// For tests of labels in a whole viewer.

#include "factory/zel_viewer.h"
#include "overlay/zel_basicoverlayingmodule.h"
#include "overlay/zel_labeledimagecanvas3d.h"
#include "overlay/zel_overlayingevents.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/overlay/label_images.h"
#include "viewer/zel_commands.h"

namespace zel::test {

/// An image of bytes, 100 everywhere in the first frame, 101 in the second and so on.
inline std::unique_ptr<mor::Image4d<unsigned char>> PlainImage(kep::Vector3d<std::size_t> size, std::size_t frames) {
    return MakeImage<unsigned char>(size, frames, [](auto, auto, auto, auto t) { return 100 + t; });
}

/// A shown viewer of the labelled factory's.
template <typename T, typename V>
class LabeledViewer {
public:
    using Module = zel_BasicOverlayingModule<unsigned short, V>;
    using Canvas = zel_LabeledImageViewer3dCanvas<T, unsigned short, V>;

    LabeledViewer(std::unique_ptr<mor::Image4d<T>> newImage, std::unique_ptr<LabelImage<V>> newLabels,
                  wxWindow* parent = nullptr)
        : image(std::move(newImage)), labels(std::move(newLabels)) {
        frame = zel_CreateLabeledImage3dFrame<T, unsigned short, V>(image.get(), labels.get(), false, false, parent,
                                                                    wxID_ANY, "viewer", wxDefaultPosition,
                                                                    wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        module = dynamic_cast<Module*>(frame->GetEventHandler());
        canvas = dynamic_cast<Canvas*>(frame->GetCanvas());
        HideDecorations(*canvas);
        EXPECT_TRUE(ShowAndWait(*frame));
        frame->Bind(zel_EVT_OVERLAYING_CHANGED, [this](zel_OverlayingEvent& event) {
            EXPECT_EQ(event.GetId(), 0);
            EXPECT_EQ(event.GetDataChanged(), event.GetReload());
            log.push_back(event.GetReload() ? "reload" : "changed");
            event.Skip();
        });
        frame->Bind(zel_EVT_OVERLAYING_COMMAND, [this](zel_OverlayingCommandEvent& event) {
            EXPECT_EQ(event.GetId(), 0);
            EXPECT_EQ(event.GetClientData(), static_cast<zel_ExtensionModule*>(module));
            EXPECT_EQ(event.GetCommandEvent()->GetEventType(), wxEventType(wxEVT_MENU));
            log.push_back("command " + std::to_string(event.GetCommandEvent()->GetId() - module->GetMenuId(0)));
        });
    }
    ~LabeledViewer() {
        if (frame)
            frame->Destroy();
        Pump();
    }
    LabeledViewer(const LabeledViewer&) = delete;
    LabeledViewer& operator=(const LabeledViewer&) = delete;

    /// Does what a click on an entry does: the mark is set before the command comes. The toolkit's ProcessCommand would
    /// leave a radio entry alone that has its mark.
    void Choose(int entry) {
        wxMenuItem* const item = frame->GetMenuBar()->FindItem(module->GetMenuId(entry));
        if (item->IsCheckable())
            item->Check(item->GetKind() == wxITEM_RADIO || !item->IsChecked());
        EXPECT_TRUE(item->GetMenu()->SendEvent(item->GetId(), item->IsCheckable() ? item->IsChecked() : -1));
    }
    /// The same for an entry of the frame's own menus.
    void Run(int command) { EXPECT_TRUE(frame->ProcessCommand(command)); }
    bool IsChecked(int entry) const { return frame->GetMenuBar()->IsChecked(module->GetMenuId(entry)); }
    std::vector<std::string> TakeLog() { return std::exchange(log, {}); }
    /// The window's picture after a pending paint.
    wxImage Picture(zel_ProjectionType type) const {
        canvas->Update();
        return canvas->GetDrWin(type)->GetPointerImage();
    }
    /// A picture row by row, each pixel as a letter.
    std::vector<std::string> Letters(zel_ProjectionType type, const std::function<char(Colour)>& letterOf) const {
        const wxImage picture = Picture(type);
        std::vector<std::string> rows;
        for (int y = 0; y < picture.GetHeight(); ++y) {
            rows.emplace_back();
            for (int x = 0; x < picture.GetWidth(); ++x)
                rows.back() += letterOf({picture.GetRed(x, y), picture.GetGreen(x, y), picture.GetBlue(x, y)});
        }
        return rows;
    }

    std::unique_ptr<mor::Image4d<T>> image;
    std::unique_ptr<LabelImage<V>> labels;
    wxWeakRef<zel_Viewer3dFrame> frame;
    Module* module = nullptr;
    Canvas* canvas = nullptr;
    std::vector<std::string> log;
};

} // namespace zel::test
