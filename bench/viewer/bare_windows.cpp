#include "bench/viewer/bare_windows.h"

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/evtloop.h>
#include <wx/frame.h>
#include <wx/stopwatch.h>

namespace {

class BareWindow : public wxWindow {
public:
    BareWindow(wxWindow* parent, const wxRect& place)
        : wxWindow(parent, wxID_ANY, place.GetPosition(), place.GetSize(), wxBORDER_SUNKEN | wxWANTS_CHARS),
          m_picture(GetClientSize()) {
        Bind(wxEVT_ERASE_BACKGROUND, [](wxEraseEvent&) {});
        Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
            wxPaintDC dc(this);
            wxMemoryDC picture;
            picture.SelectObjectAsSource(m_picture);
            dc.Blit(0, 0, m_picture.GetWidth(), m_picture.GetHeight(), &picture, 0, 0, wxCOPY);
        });
    }

private:
    wxBitmap m_picture;
};

} // namespace

void Pump(long milliseconds) {
    wxEventLoopBase* const loop = wxEventLoopBase::GetActive();
    const wxStopWatch watch;
    while (watch.Time() < milliseconds) {
        while (loop->Pending())
            loop->Dispatch();
        wxTheApp->ProcessPendingEvents();
        loop->ProcessIdle();
        wxMilliSleep(1);
    }
}

void PumpUntilQuiet() {
    constexpr unsigned long longerThanAFrame = 40; // ms
    wxEventLoopBase* const loop = wxEventLoopBase::GetActive();
    do
        wxTheApp->ProcessPendingEvents();
    while (loop->DispatchTimeout(longerThanAFrame) != -1);
}

void ShowAndRest(wxFrame& frame) {
    frame.Show();
    Pump(300);
}

BareWindows::BareWindows(const zel::zel_Viewer3dCanvas& canvas) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "bench");
    frame->SetClientSize(canvas.GetClientSize());
    auto* const panel = new wxPanel(frame);
    for (const zel::zel_ProjectionType type : {zel::zel_PT_XY, zel::zel_PT_XZ, zel::zel_PT_YZ})
        m_windows.push_back(new BareWindow(panel, canvas.GetDrWin(type)->GetRect()));
    ShowAndRest(*frame);
}

void BareWindows::Blit() {
    for (wxWindow* window : m_windows) {
        window->Refresh(false);
        window->Update();
    }
}

std::size_t BareWindows::GetPixels() const {
    std::size_t pixels = 0;
    for (const wxWindow* window : m_windows)
        pixels += static_cast<std::size_t>(window->GetClientSize().x * window->GetClientSize().y);
    return pixels;
}
