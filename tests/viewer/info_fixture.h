#pragma once

// For tests of the info window.

#include "tests/support/pictures.h"
#include "tests/support/user.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/notebook.h>
#include <wx/stattext.h>

#include <memory>
#include <string>
#include <vector>

namespace zel::test {

/// The text of a value of a canvas's info window.
inline std::string InfoText(const zel_Viewer3dCanvas& canvas, int id) {
    return In<wxStaticText>(*canvas.InfoFrame_Get(), id).GetLabelText().utf8_string();
}

inline std::vector<std::string> InfoTexts(const zel_Viewer3dCanvas& canvas, const std::vector<int>& ids) {
    std::vector<std::string> texts;
    for (const int id : ids)
        texts.push_back(InfoText(canvas, id));
    return texts;
}

inline wxNotebook& InfoPages(const zel_Viewer3dCanvas& canvas) {
    return In<wxNotebook>(*canvas.InfoFrame_Get(), 10010);
}

/// The texts of a page in the order of their places, each as "id text".
inline std::vector<std::string> PageTexts(const zel_Viewer3dCanvas& canvas, std::size_t page) {
    std::vector<std::string> texts;
    for (const wxWindow* const child : InfoPages(canvas).GetPage(page)->GetChildren())
        if (const auto* const text = dynamic_cast<const wxStaticText*>(child))
            texts.push_back(std::to_string(text->GetId()) + " " + text->GetLabelText().utf8_string());
    return texts;
}

class InfoCanvas : public zel_ImageViewer3dCanvas<unsigned short> {
public:
    using zel_ImageViewer3dCanvas<unsigned short>::zel_ImageViewer3dCanvas;
    using zel_ImageViewer3dCanvas<unsigned short>::GetBitmap;
    using zel_ImageViewer3dCanvas<unsigned short>::GetBuffer;
    using zel_ImageViewer3dCanvas<unsigned short>::IsDataDirty;
    using zel_ImageViewer3dCanvas<unsigned short>::IsColourDirty;
};

/// A viewer's frame, with an image whose voxels are numbered from 1 on and whose picture shows these numbers.
class InfoTest : public GuiTest {
protected:
    static constexpr std::size_t sizeX = 40, sizeY = 30, sizeZ = 20;

    static int Number(const kep::Vector3d<std::size_t>& at, std::size_t frame = 0) {
        return static_cast<int>(1 + at.x + sizeX * (at.y + sizeY * at.z) + 24000 * frame);
    }
    static std::unique_ptr<mor::Image4d<unsigned short>> Numbered(std::size_t frames = 1,
                                                                  const kep::Resolution& resolution = {1, 1, 1},
                                                                  const kep::Vector3d<float>& offset = {}) {
        return MakeImage<unsigned short>(
            {sizeX, sizeY, sizeZ}, frames,
            [](auto x, auto y, auto z, auto t) {
                return Number({x, y, z}, t);
            },
            resolution, offset);
    }
    void Open(std::unique_ptr<mor::Image4d<unsigned short>> newImage, const wxSize& client = {400, 350}) {
        image = std::move(newImage);
        frame = new zel_Viewer3dFrame(nullptr, wxID_ANY, "viewer", {200, 150}, {500, 450}, wxDEFAULT_FRAME_STYLE);
        canvas = new InfoCanvas(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
        frame->SetCanvas(canvas);
        HideDecorations(*canvas);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, client));
        Paint();
    }
    void TearDown() override {
        if (frame)
            frame->Destroy();
        GuiTest::TearDown();
    }
    void Paint() {
        Pump();
        ASSERT_TRUE(WaitUntil([&] {
            canvas->Update();
            for (const Plane& plane : planes)
                if (canvas->IsDrWinShown(plane.type) && canvas->GetImage() != nullptr &&
                    (canvas->IsDataDirty(plane.type) || canvas->IsColourDirty(plane.type)))
                    return false;
            return true;
        }));
    }
    void ShowInfo() {
        EXPECT_TRUE(frame->ProcessCommand(zel_CMD_SHOW_INFO));
        Settle();
    }
    zel_DrWin3d& Window(zel_ProjectionType type) { return *canvas->GetDrWin(type); }
    wxWindow& Info() { return *canvas->InfoFrame_Get(); }
    /// The lower right corner of a drawing window, on the screen.
    wxPoint Corner(zel_ProjectionType type) {
        const wxRect rect = Window(type).GetRect();
        return canvas->ClientToScreen(wxPoint(rect.x + rect.width, rect.y + rect.height));
    }
    std::vector<std::string> PixelTexts() { return InfoTexts(*canvas, {10001, 10002, 10003, 10004}); }

    const std::vector<std::string> nothing{"---", "---", "---", "---"};
    PlainMapper<unsigned short> mapper;
    std::unique_ptr<mor::Image4d<unsigned short>> image;
    wxWeakRef<zel_Viewer3dFrame> frame;
    InfoCanvas* canvas = nullptr;
};

} // namespace zel::test
