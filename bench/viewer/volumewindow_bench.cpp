// The volume window: a paint of 600 x 600 pixels, and the whole way of a frame of 512 x 512 x 64 into it. How long
// OpenGL takes is the driver's affair; on a machine without a graphics card the processor does its work.

#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/viewer/bare_windows.h"
#include "factory/zel_viewer.h"
#include "volume/vol3D_canvas.h"

#include <wx/log.h>

#include <memory>

namespace {

using namespace zel;

/// A viewer with its volume window, which is never closed.
class Stage {
public:
    Stage() {
        const wxLogNull quiet;
        const kep::Resolution resolution(1, 1, 1);
        m_image = std::make_unique<mor::Image4d<unsigned char>>(nullptr, &resolution);
        m_image->MakeRoom(kep::Vector3d<std::size_t>(512, 512, 64), 1);
        std::size_t i = 0;
        for (unsigned char& voxel : *m_image->GetImage(0)) {
            const kep::Vector3d<std::size_t> at = m_image->GetFramePos(i++);
            voxel = static_cast<unsigned char>((at.x ^ at.y ^ (4 * at.z)) & 255);
        }
        m_image->UpdateMinMaxValues();
        zel_Viewer3dFrame* const frame = zel_CreateImage3dFrame<unsigned char>(
            m_image.get(), false, nullptr, wxID_ANY, "bench", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE);
        ShowAndRest(*frame);
        m_canvas = frame->GetCanvas();
        m_canvas->ShowVolVis({});
        m_canvas->GetVolVisFrame()->SetClientSize(600, 600);
        Pump(300);
    }

    void Paint() {
        vol3D_VolVisCanvas& volume = *m_canvas->GetVolVisFrame()->GetCanvas();
        volume.Refresh(false);
        volume.Update();
    }
    void Upload() { m_canvas->UpdateVolVis(); }

private:
    std::unique_ptr<mor::Image4d<unsigned char>> m_image;
    zel_Viewer3dCanvas* m_canvas = nullptr;
};

std::shared_ptr<Stage> GetStage() {
    static const auto stage = std::make_shared<Stage>();
    return stage;
}

[[maybe_unused]] const bool added = [] {
    AddComparison(
        "volume window, a paint of 100 sheets",
        [] {
            constexpr std::size_t blended = 100 * 600 * 600 * 4;
            return Comparison{.work = [stage = GetStage()] { stage->Paint(); },
                              .yardstick = MakeCopy(blended),
                              .limit = 15,
                              .bytes = blended};
        },
        2.0);
    AddComparison(
        "volume window, a frame uploaded",
        [] {
            constexpr std::size_t padded = std::size_t{514} * 514 * 66 * 4;
            return Comparison{.work = [stage = GetStage()] { stage->Upload(); },
                              .yardstick = MakeCopy(padded),
                              .limit = 15,
                              .bytes = padded};
        },
        2.0);
    return true;
}();

} // namespace
