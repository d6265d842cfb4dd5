#include "host/frame/statusline.h"

#include "host/frame/whereabouts.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/statusbr.h>
#include <wx/utils.h>

#include <algorithm>
#include <memory>
#include <string>

namespace zelviewer {

namespace {

template <typename T>
class StatusLine {
public:
    StatusLine(zel::zel_Viewer3dFrame& frame, const Labels* labels) : m_frame(frame), m_labels(labels) {}

    void OnIdle(wxIdleEvent& event) {
        event.Skip();
        auto* const canvas = dynamic_cast<zel::zel_ImageViewer3dCanvas<T>*>(m_frame.GetCanvas());
        if (canvas == nullptr || canvas->GetImage() == nullptr || canvas->IsMapperDetached())
            return;
        wxStatusBar* const bar = m_frame.GetStatusBar();
        if (bar == nullptr)
            return;
        MakeRoom(*bar);
        const mor::Image4d<T>& image = *canvas->GetImage();
        if (static_cast<std::size_t>(canvas->GetTime()) >= image.GetNumFrames())
            return; // all frames were removed
        const Whereabouts place = Look(*canvas, image);
        const auto describe = [&](Detail detail) {
            return wxString::FromUTF8(DescribeWhereabouts(place, image.GetOffset(), image.GetResolution(), detail));
        };
        wxRect field;
        bar->GetFieldRect(0, field);
        wxString text = describe(Detail::VoxelsAndMicrons);
        constexpr int margins = 8; // that the bar leaves at the text's ends
        if (bar->GetTextExtent(text).x > field.width - margins)
            text = describe(Detail::Voxels);
        if (text == m_shown || field.width <= 0)
            return;
        m_shown = text;
        bar->SetStatusText(text, 0);
    }

private:
    /// Messages have a field for as long as there is one.
    void MakeRoom(wxStatusBar& bar) {
        const int messages = WidthOfMessages(bar.GetClientSize().x, !bar.GetStatusText(1).empty());
        if (messages == m_messages)
            return;
        m_messages = messages;
        const int widths[] = {-1, messages};
        bar.SetStatusWidths(2, widths);
    }

    Whereabouts Look(const zel::zel_ImageViewer3dCanvas<T>& canvas, const mor::Image4d<T>& image) const {
        Whereabouts place;
        place.frame = const_cast<zel::zel_ImageViewer3dCanvas<T>&>(canvas).GetTime();
        place.frames = static_cast<int>(image.GetNumFrames());
        if (const auto pixel = LookUnderPointer(canvas)) {
            place.voxel = pixel->voxel;
            place.value = Trimmed(pixel->value);
        } else {
            place.voxel = VoxelOfCut(canvas, image);
            place.value = Trimmed(canvas.GetVoxelText(place.voxel, static_cast<std::size_t>(place.frame)));
        }
        place.label = FindLabel(place);
        return place;
    }

    /// The texts of colours are padded at the left.
    static std::string Trimmed(wxString text) { return text.Trim(false).utf8_string(); }

    static std::optional<zel::zel_PixelInfo> LookUnderPointer(const zel::zel_ImageViewer3dCanvas<T>& canvas) {
        const wxPoint pointer = wxGetMousePosition();
        for (const zel::zel_ProjectionType type : {zel::zel_PT_XY, zel::zel_PT_XZ, zel::zel_PT_YZ}) {
            zel::zel_DrWin3d* const window = canvas.GetDrWin(type);
            if (canvas.MouseInProjection(pointer, window, nullptr) != nullptr)
                return canvas.GetPixelInfo(type, window->ScreenToClient(pointer));
        }
        return std::nullopt;
    }

    static kep::Vector3d<std::size_t> VoxelOfCut(const zel::zel_Viewer3dCanvas& canvas, const mor::Image4d<T>& image) {
        const kep::Vector3d<int> at = kep::MicronsToVoxel(canvas.GetCut(), image.GetOffset(), image.GetResolution());
        const auto held = [](int voxel, std::size_t count) {
            return static_cast<std::size_t>(std::clamp(voxel, 0, static_cast<int>(count) - 1));
        };
        const kep::Vector3d<std::size_t> size = image.GetSize();
        return {held(at.x, size.x), held(at.y, size.y), held(at.z, size.z)};
    }

    std::optional<unsigned> FindLabel(const Whereabouts& place) const {
        const auto frame = static_cast<std::size_t>(place.frame);
        if (m_labels == nullptr || frame >= m_labels->GetNumFrames())
            return std::nullopt;
        const auto& labels = *m_labels->GetImage(frame);
        const kep::Vector3d<std::size_t> size = labels.GetSize();
        if (place.voxel.x >= size.x || place.voxel.y >= size.y || place.voxel.z >= size.z)
            return std::nullopt;
        return labels.GetVoxel(place.voxel.x, place.voxel.y, place.voxel.z);
    }

    zel::zel_Viewer3dFrame& m_frame;
    const Labels* m_labels;
    wxString m_shown;
    int m_messages = -1; // width of their field, once it was set
};

} // namespace

template <typename T>
void AddStatusLine(zel::zel_Viewer3dFrame& frame, const Labels* labels) {
    frame.Bind(wxEVT_IDLE,
               [line = std::make_shared<StatusLine<T>>(frame, labels)](wxIdleEvent& event) { line->OnIdle(event); });
}

#define ZEL_INSTANTIATE(T) template void AddStatusLine<T>(zel::zel_Viewer3dFrame&, const Labels*);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zelviewer
