#pragma once

// What docs/embedding.md quotes of a host.

#include "factory/zel_viewer.h"
#include "image/zel_framereading.h"
#include "mapping/zel_mapperfactory.h"

#include <wx/weakref.h>

#include <memory>
#include <utility>

namespace zel::docs {

/// What zel_CreateImage3dFrame does, step by step, without its temporary copy of the image. When it throws, nothing is
/// left behind.
template <typename T>
zel_Viewer3dFrame* OpenByHand(std::unique_ptr<mor::Image4d<T>> image, const wxString& title,
                              const zel_MapperOptions& options) {
    std::unique_ptr<zel_MappingModule<T>> module(zel_CreateMapperForType<T>(nullptr, *image, options));
    auto frame = std::make_unique<zel_Viewer3dFrame>(nullptr, wxID_ANY, title, wxDefaultPosition, wxDefaultSize,
                                                     wxDEFAULT_FRAME_STYLE);
    const zel_Mapper<T>& mapper = *module;
    frame->AddExtensionModule(module.release(), "&Mapping", true); // deleted with the frame
    frame->SetCanvas(new zel_ImageViewer3dCanvas<T>(frame.get(), mapper, image.get(), true, wxID_ANY, wxDefaultPosition,
                                                    wxDefaultSize));
    image.release(); // deleted with the canvas
    frame->ResizeFrameIfRequired();
    return frame.release(); // the toolkit deletes it once it has been closed
}

/// Lets one viewer show the place and the time of another. Called both ways, it links the two.
inline void Follow(zel_Viewer3dCanvas& leader, zel_Viewer3dCanvas& follower) {
    const wxWeakRef<zel_Viewer3dCanvas> to(&follower); // either of them may be closed first
    leader.Bind(zel_EVT_POSITION_CHANGED, [&leader, to](zel_PositionEvent& event) {
        event.Skip(); // to other handlers
        if (!to || to->IsMapperDetached())
            return; // it is closing, and its image may be gone
        to->ChangeCut(leader.GetCut());
        to->GoToFrame(leader.GetTime());
    });
}

/// Appends frames to the image of a viewer while they are made by another thread. It belongs to the main thread; the
/// thread that delivers has ended before this goes.
template <typename T>
class LiveSequence : public wxEvtHandler {
public:
    LiveSequence(mor::Image4d<T>& image, zel_ImageViewer3dCanvas<T>& canvas) : m_image(image), m_canvas(&canvas) {}

    /// To be called from any thread.
    void Deliver(std::shared_ptr<kep::Image3d<T>> frame) {
        CallAfter([this, frame] { Append(std::move(*frame)); });
    }

private:
    void Append(kep::Image3d<T> frame) {
        if (!m_canvas || m_canvas->IsMapperDetached())
            return; // the viewer is closing, and the image may be gone
        const bool isAtTheEnd = m_canvas->GetTime() == m_canvas->GetImageCount() - 1;
        mor::AppendFrame(m_image, std::make_unique<kep::Image3d<T>>(std::move(frame)), "live");
        m_canvas->OnSequenceChange(); // before any other event comes
        if (isAtTheEnd)
            m_canvas->GoToFrame(m_canvas->GetImageCount() - 1);
    }

    mor::Image4d<T>& m_image;
    wxWeakRef<zel_ImageViewer3dCanvas<T>> m_canvas;
};

} // namespace zel::docs
