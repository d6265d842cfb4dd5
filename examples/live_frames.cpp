// Frames that arrive while the viewer is open: a camera on a thread of its own, of which the newest frame is shown.

#include "factory/zel_viewer.h"

#include <wx/app.h>
#include <wx/log.h>
#include <wx/weakref.h>

#include <chrono>
#include <cmath>
#include <iostream>
#include <stdexcept>
#include <stop_token>
#include <thread>

namespace {

using Image = mor::Image4d<unsigned short>;
using Canvas = zel::zel_ImageViewer3dCanvas<unsigned short>;

const kep::Resolution resolution(5, 5, 2); // voxels per micron

/// Stands for a camera: a bright spot that circles over a slope.
std::unique_ptr<Image::Frame> TakePicture(int time) {
    auto frame = std::make_unique<Image::Frame>(nullptr, &resolution);
    frame->MakeRoom(160, 120, 12);
    const double angle = 0.2 * time;
    const double x = 80 + 40 * std::cos(angle);
    const double y = 60 + 30 * std::sin(angle);
    for (std::size_t i = 0; i < frame->GetNumVoxels(); ++i) {
        const kep::Vector3d<std::size_t> at = frame->GetPos(i);
        const double away = std::hypot(static_cast<double>(at.x) - x, static_cast<double>(at.y) - y,
                                       4 * (static_cast<double>(at.z) - 6));
        frame->SetVoxel(i, static_cast<unsigned short>(10 * at.x + 3000 * std::exp(-away * away / 200)));
    }
    return frame;
}

/// live_frames [NUMBER]: so many frames, otherwise as many as come until the window is closed.
class Host : public wxApp {
    bool OnInit() override try {
        wxLog::SetLogLevel(wxLOG_Warning);
        long wanted = 0;
        if (argc > 1 && !argv[1].ToLong(&wanted))
            throw std::runtime_error("live_frames [NUMBER]");
        auto image = std::make_unique<Image>(nullptr, &resolution);
        auto first = TakePicture(0);
        image->SetResolution(resolution);
        image->MakeRoom(first->GetSizeX(), first->GetSizeY(), first->GetSizeZ(), 0); // the geometry of all frames
        image->InsertFrame(first.get(), "frame 0", -1);
        first.release(); // the image's
        m_image = image.get();
        auto* const frame = zel::zel_CreateImage3dFrame(image.get(), true, nullptr, wxID_ANY, "Camera",
                                                        wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        image.release();
        zel::EquipFrame(*frame);
        m_canvas = dynamic_cast<Canvas*>(frame->GetCanvas());
        m_camera = std::jthread([this, wanted](const std::stop_token& stop) { Film(stop, wanted); });
        return frame->Show();
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return false;
    }
    int OnExit() override {
        m_camera = std::jthread(); // asks it to stop, and waits until it has
        return wxApp::OnExit();
    }

    /// On the camera's thread: it touches nothing of the viewer, but has the main thread do so.
    void Film(const std::stop_token& stop, long wanted) {
        for (int time = 1; !stop.stop_requested() && (wanted == 0 || time < wanted); ++time) {
            const std::shared_ptr<Image::Frame> picture = TakePicture(time);
            CallAfter([this, picture, time] { Show(*picture, time); });
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
        }
    }
    /// On the main thread, where viewer and image may be used.
    void Show(const Image::Frame& picture, int time) {
        if (!m_canvas || m_canvas->IsMapperDetached())
            return; // closed, and the image gone or going
        const bool follows = m_canvas->GetTime() == m_canvas->GetImageCount() - 1;
        m_image->InsertFrame(picture, wxString::Format("frame %d", time), -1);
        m_canvas->OnSequenceChange();
        if (follows) // who looks at an earlier frame is left alone
            m_canvas->GoToFrame(m_canvas->GetImageCount() - 1);
    }

    wxWeakRef<Canvas> m_canvas;
    Image* m_image = nullptr; // the canvas's
    std::jthread m_camera;    // the last member: it uses the others
};

} // namespace

wxIMPLEMENT_APP(Host);
