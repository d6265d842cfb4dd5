#pragma once

// For tests of what keys, mouse, commands and time do to a canvas.

#include "tests/support/user.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <functional>
#include <string>
#include <vector>

namespace zel::test {

using Calls = std::vector<std::string>;

/// A canvas without voxels. It notes what it is told, draws nothing by itself, and plays a sequence of `images`.
class NotingCanvas : public zel_Viewer3dCanvas {
public:
    explicit NotingCanvas(wxWindow* parent) : zel_Viewer3dCanvas(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize) {}

    void ReverseAxis(int axis) override { calls.push_back("ReverseAxis " + std::to_string(axis)); }
    void Draw(wxDC&, zel_ProjectionType type) override {
        if (type == zel_PT_XY) {
            wxMilliSleep(static_cast<unsigned long>(drawMilliseconds));
            ++paintsXY;
            paintedTime = static_cast<int>(m_time);
            paintedCut = m_view.options.cut;
            paintedVisible = m_view.visibleBox;
        }
    }
    kep::Vector3d<std::size_t> GetImageSize() override { return {}; }
    int GetTime() override { return static_cast<int>(m_time); }
    int GetImageCount() override { return images; }
    kep::Resolution GetResolution() override { return resolution; }
    void Save3dData(const wxString&) override {}
    void SaveActualView(const char*, int, zel_ProjectionType) override {}
    void SaveGalleryView(const char*, int, int, int, bool, int, int) override {}
    void InfoFrame_UpdatePixelInfo() override { ++pixelInfos; }
    void InfoFrame_UpdateImageInfo() override {}
    void InfoFrame_UpdateCutAndVisBoxInfo() override { ++cutInfos; }
    void MakeDirtyAndRefresh(zel_ProjectionType) override { Refresh(false); }
    wxString CreateTitle() override { return {}; }
    void OnCutChange(zel_ProjectionType mask) override {
        calls.push_back("OnCutChange " + std::to_string(mask));
        zel_Viewer3dCanvas::OnCutChange(mask);
    }
    void OnVis3dChange(zel_ProjectionType mask) override {
        calls.push_back("OnVis3dChange " + std::to_string(mask));
        zel_Viewer3dCanvas::OnVis3dChange(mask);
    }
    void OnContentChange(zel_ProjectionType mask) override {
        calls.push_back("OnContentChange " + std::to_string(mask));
        zel_Viewer3dCanvas::OnContentChange(mask);
    }
    void OnTimeChange() override {
        zel_Viewer3dCanvas::OnTimeChange();
        shown.push_back(static_cast<int>(m_time));
        if (onShown)
            onShown();
    }

    /// A sequence of this many frames, at the first.
    void Play(int count) {
        images = count;
        m_iterator = mor::ImageIterator(0, count - 1);
        m_time = 0;
        shown.clear();
    }

    using zel_Viewer3dCanvas::m_iterator;
    using zel_Viewer3dCanvas::m_sequenceTimer;
    using zel_Viewer3dCanvas::m_time;
    using zel_Viewer3dCanvas::RecomputeVisible;

    Calls calls;            // notifications of the view
    std::vector<int> shown; // frames, one for each OnTimeChange
    std::function<void()> onShown;
    int pixelInfos = 0;
    int cutInfos = 0;
    int images = 1;
    kep::Resolution resolution{1, 1, 1};
    int drawMilliseconds = 0; // what a picture takes
    int paintsXY = 0;
    int paintedTime = -1; // what the last paint of the XY window showed
    kep::Vector3d<float> paintedCut;
    MicronBox paintedVisible;
};

/// A frame of 400 by 400 pixels inside, with a canvas. Its box of 20 x 20 x 7 microns at 10 pixels per micron fits:
/// XY is 200 x 200 pixels, XZ 200 x 70, YZ 70 x 200.
template <typename Canvas>
class CanvasFixture : public GuiTest {
protected:
    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "canvas");
        canvas = new Canvas(frame);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, wxSize(400, 400)));
        Forget();
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }
    void Forget() {
        canvas->calls.clear();
        canvas->shown.clear();
        canvas->pixelInfos = canvas->cutInfos = 0;
    }
    zel_DrWin3d& Window(zel_ProjectionType type) { return *canvas->GetDrWin(type); }

    wxFrame* frame = nullptr;
    Canvas* canvas = nullptr;
};

using NotingCanvasTest = CanvasFixture<NotingCanvas>;

} // namespace zel::test
