// Two thousand things that a user could do, in no sensible order.

#include "tests/support/gui_test.h"
#include "tests/support/pictures.h"
#include "tests/support/sound_view.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"
#include "volume/vol3D_canvas.h"

#include <wx/menu.h>

#include <array>
#include <limits>
#include <memory>
#include <random>

using namespace zel;
using namespace zel::test;

namespace {

constexpr std::array windows{zel_PT_XY, zel_PT_XZ, zel_PT_YZ};

/// Sends every dialog away as it came.
class CancelDialogs : public wxModalDialogHook {
public:
    CancelDialogs() { Register(); }
    ~CancelDialogs() override { Unregister(); }
    CancelDialogs(const CancelDialogs&) = delete;
    CancelDialogs& operator=(const CancelDialogs&) = delete;

protected:
    int Enter(wxDialog*) override { return wxID_CANCEL; }
};

class MonkeyTest : public GuiTest {
protected:
    void SetUp() override {
        const kep::Resolution resolution(2, 4, 1); // pixels per micron: a box of 20 x 8 x 11 microns
        const kep::Vector3d<float> offset(-3, 100, 0.5F);
        auto image = std::make_unique<mor::Image4d<unsigned short>>(&offset, &resolution);
        image->MakeRoom({40, 32, 11}, frames);
        for (std::size_t t = 0; t < frames; ++t)
            for (std::size_t x = 0; x < 40; ++x)
                image->SetVoxel(x, (x + t) % 32, (x + t) % 11, t, static_cast<unsigned short>(Any(65536)));
        frame = new zel_Viewer3dFrame(nullptr, wxID_ANY, "monkey", wxDefaultPosition, wxSize(400, 400),
                                      wxDEFAULT_FRAME_STYLE);
        canvas = new zel_ImageViewer3dCanvas<unsigned short>(frame, mapper, image.release(), true, wxID_ANY,
                                                             wxDefaultPosition, wxDefaultSize);
        frame->SetCanvas(canvas);
        frame->ResizeFrameIfRequired();
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }

    int Any(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    float AnyBetween(float low, float high) { return std::uniform_real_distribution<float>(low, high)(m_random); }
    template <typename C>
    auto AnyOf(const C& choices) {
        return *(std::begin(choices) + Any(static_cast<int>(std::size(choices))));
    }
    zel_DrWin3d& AnyWindow() { return *canvas->GetDrWin(AnyOf(windows)); }

    void Act();
    void GiveACommand();
    void TameTheVolume();
    void PressAKey();
    void UseTheMouse();
    void Resize();
    void ChangeTheView();
    void CheckPictures();

    static constexpr std::size_t frames = 5;
    const LogCatcher quiet;          // it boasts of its OpenGL
    std::mt19937 m_random{20240611}; // the same monkey each time
    PlainMapper<unsigned short> mapper;
    zel_Viewer3dFrame* frame = nullptr;
    zel_ImageViewer3dCanvas<unsigned short>* canvas = nullptr;
};

void MonkeyTest::GiveACommand() {
    int id = 5995 + Any(50);
    if ((id == zel_CMD_ZOOM_IN && canvas->GetZoom() > 25) || Any(40) == 0)
        id = zel_CMD_NORMAL_ZOOM; // far in or out there is little to break
    if (Any(2) == 0 && frame->GetMenuBar()->FindItem(id) != nullptr) {
        frame->ProcessCommand(id);
        TameTheVolume();
        return;
    }
    wxCommandEvent command(wxEVT_MENU, id);
    frame->ProcessWindowEvent(command);
    TameTheVolume();
    wxUpdateUIEvent update(id);
    frame->ProcessWindowEvent(update);
}

/// The volume window is drawn by the processor here, a tenth of a second for each picture of its size: it stays small
/// and has few sheets, and goes now and then.
void MonkeyTest::TameTheVolume() {
    vol3D_VolVisFrame* const volume = canvas->GetVolVisFrame();
    if (volume == nullptr || !volume->IsShown())
        return;
    volume->SetClientSize(60, 60);
    wxKeyEvent fewer(wxEVT_CHAR);
    fewer.m_keyCode = '-';
    for (int i = 0; i < 9; ++i)
        volume->GetCanvas()->ProcessWindowEvent(fewer);
    if (Any(3) == 0)
        volume->Close(Any(4) == 0);
}

void MonkeyTest::PressAKey() {
    static constexpr int keys[] = {WXK_LEFT,
                                   WXK_RIGHT,
                                   WXK_UP,
                                   WXK_DOWN,
                                   WXK_PAGEUP,
                                   WXK_PAGEDOWN,
                                   WXK_SPACE,
                                   'C',
                                   WXK_HOME,
                                   WXK_END,
                                   WXK_NUMPAD_ADD,
                                   '=',
                                   WXK_NUMPAD_SUBTRACT,
                                   '-',
                                   WXK_F2,
                                   WXK_TAB,
                                   WXK_ESCAPE,
                                   'F',
                                   'S',
                                   '1',
                                   'A',
                                   'Z',
                                   'Y',
                                   'X',
                                   0,
                                   0x20AC};
    static constexpr int modifiers[] = {wxMOD_NONE, wxMOD_NONE, wxMOD_CONTROL, wxMOD_ALT, wxMOD_SHIFT};
    PressKey(AnyWindow(), AnyOf(keys), AnyOf(modifiers));
}

void MonkeyTest::UseTheMouse() {
    static const wxEventType types[] = {wxEVT_LEFT_DOWN,    wxEVT_LEFT_UP,       wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DOWN,
                                        wxEVT_MIDDLE_UP,    wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN,  wxEVT_RIGHT_UP,
                                        wxEVT_RIGHT_DCLICK, wxEVT_AUX1_DOWN,     wxEVT_AUX1_UP,     wxEVT_AUX1_DCLICK,
                                        wxEVT_AUX2_DOWN,    wxEVT_AUX2_UP,       wxEVT_AUX2_DCLICK, wxEVT_MOTION,
                                        wxEVT_LEAVE_WINDOW, wxEVT_ENTER_WINDOW,  wxEVT_MOUSEWHEEL,  wxEVT_MAGNIFY};
    zel_DrWin3d& window = AnyWindow();
    wxMouseEvent event(AnyOf(types));
    event.SetPosition({Any(1200) - 300, Any(1200) - 300});
    event.m_wheelRotation = Any(3) * 120 - 120;
    event.m_wheelDelta = 120;
    event.SetControlDown(Any(3) == 0);
    event.SetShiftDown(Any(3) == 0);
    event.SetId(window.GetId());
    event.SetEventObject(&window);
    window.ProcessWindowEvent(event);
}

void MonkeyTest::Resize() {
    switch (Any(12)) {
    case 0:
        canvas->SetSize(0, 0);
        break;
    case 1:
        canvas->SetSize(Any(60), Any(60));
        break;
    case 2:
        canvas->SetSize(frame->GetClientSize());
        break;
    case 3:
        frame->Move(Any(300), Any(300));
        break;
    default:
        frame->SetSize(Any(900), Any(900));
    }
}

void MonkeyTest::ChangeTheView() {
    const MicronBox& box = canvas->GetBoundingBox();
    switch (Any(9)) {
    case 0:
        canvas->ChangeCut({AnyBetween(-5, 19), AnyBetween(98, 110), AnyBetween(0, 12)});
        break;
    case 1:
        canvas->ChangeCut({std::numeric_limits<float>::quiet_NaN(), box.offset.y + 1, box.offset.z + 1});
        break;
    case 2:
        canvas->CenterView();
        canvas->MakeDirtyAndRefresh(zel_PT_ALL);
        break;
    case 3: {
        zel_MappingEvent event(Any(2) == 0);
        frame->ProcessWindowEvent(event);
        break;
    }
    case 4: {
        zel_CanvasSettings settings;
        canvas->GetSettings(settings);
        settings.cutPointer.style = Any(8) - 1;
        settings.scaleBar.position = Any(6) - 1;
        settings.scaleBar.length = AnyBetween(-1, 30);
        settings.timeBar.position = Any(6) - 1;
        settings.timeBar.thickness = Any(5) - 1;
        settings.annotation.positionYZ = Any(6) - 1;
        canvas->SetSettings(settings);
        break;
    }
    case 5:
        canvas->ShowNextImage();
        break;
    case 6: {
        mor::ImageIterator iterator(0, static_cast<int>(frames) - 1);
        iterator.rangeLast = 1 + Any(4);
        iterator.step = 1 + Any(2);
        iterator.fps = 1 + Any(100);
        try {
            canvas->UpdateImageIterator(iterator);
        } catch (const kep::InternalException&) {
            // the range that it had and the new one may not fit together
        }
        break;
    }
    case 7:
        if (wxFrame* const info = canvas->InfoFrame_Get())
            info->Close();
        break;
    default:
        frame->RefreshIcon();
    }
}

void MonkeyTest::Act() {
    const int what = Any(100);
    if (what < 35)
        GiveACommand();
    else if (what < 65)
        PressAKey();
    else if (what < 85)
        UseTheMouse();
    else if (what < 92)
        Resize();
    else
        ChangeTheView();
}

void MonkeyTest::CheckPictures() {
    canvas->SetSize(frame->GetClientSize());
    Pump();
    for (const zel_ProjectionType type : windows) {
        zel_DrWin3d& window = *canvas->GetDrWin(type);
        ASSERT_EQ(window.IsShown(), canvas->IsDrWinShown(type));
        if (!window.IsShown())
            continue;
        const wxSize size = window.GetClientSize();
        ASSERT_GE(size.x, 1);
        ASSERT_GE(size.y, 1);
        // A window that was hidden a moment ago paints only after a trip through the event loop.
        const auto painted = [&window] { return window.GetPointerImage().GetSize() == window.GetClientSize(); };
        window.Refresh(false);
        window.Update();
        ASSERT_TRUE(WaitUntil(painted)) << "window " << type;
    }
}

} // namespace

TEST_F(MonkeyTest, NoOrderOfCommandsKeysClicksAndSizesBreaksTheFrame) {
    const CancelDialogs cancelDialogs;
    for (int i = 1; i <= 2000; ++i) {
        Act();
        if (i % 3 == 0) {
            Pump();
            canvas->Refresh(false);
            canvas->Update();
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSoundView(*canvas)) << "after " << i;
        if (i % 25 == 0) {
            ASSERT_NO_FATAL_FAILURE(CheckPictures()) << "after " << i;
        }
    }
    EXPECT_GT(mapper.maps, 500) << "too little was drawn to call it a test";
}
