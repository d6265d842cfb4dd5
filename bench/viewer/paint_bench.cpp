// The whole way of a paint, for three windows of 1000 x 800 pixels together, beside three bare blits of windows of the
// same sizes.

#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/viewer/bare_windows.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/frame.h>

#include <memory>

namespace {

using namespace zel;

/// 16 bits to gray through a table, as the viewer's own mappers do.
class TableMapper : public zel_Mapper<unsigned short> {
public:
    TableMapper() {
        for (std::size_t i = 0; i < m_levels.size(); ++i)
            m_levels[i] = static_cast<unsigned char>(i >> 4);
    }
    void Map(const unsigned short* data, ColourBuffer& buffer) const override {
        const std::size_t count = static_cast<std::size_t>(buffer.width) * static_cast<std::size_t>(buffer.height);
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned char level = m_levels[data[i]];
            buffer.data[i] = {level, level, level};
        }
    }

private:
    std::vector<unsigned char> m_levels = std::vector<unsigned char>(65536);
};

/// The canvas on a frame of 1000 x 800, and bare windows of the same sizes on another.
class Stage {
public:
    Stage() {
        const kep::Resolution resolution(1, 1, 1);
        m_image = std::make_unique<mor::Image4d<unsigned short>>(nullptr, &resolution);
        const auto sample = GetSampleFrame<unsigned short>();
        m_image->MakeRoom(sample->GetSize(), 2);
        for (std::size_t t = 0; t < 2; ++t)
            m_image->GetVoxelData(t) = sample->GetVoxelData();
        auto* const frame = new wxFrame(nullptr, wxID_ANY, "bench");
        frame->SetClientSize(1000, 800);
        m_canvas = new zel_ImageViewer3dCanvas<unsigned short>(frame, m_mapper, m_image.get(), false, wxID_ANY,
                                                               wxDefaultPosition, wxDefaultSize);
        ShowAndRest(*frame);
        m_canvas->ZoomIn();
        Pump(200);
        m_bare = std::make_unique<BareWindows>(*m_canvas);
    }

    void PaintAll() {
        m_canvas->MakeDirtyAndRefresh(zel_PT_ALL);
        m_canvas->Update();
    }
    void MapAnew() {
        zel_MappingEvent event(true);
        m_canvas->MappingChanged(event);
        m_canvas->Update();
    }
    void BlitAgain() {
        m_canvas->Refresh(false);
        m_canvas->Update();
    }
    void ChangeCut() {
        m_canvas->OnCutChange(zel_PT_XY);
        m_canvas->Update();
    }
    BareWindows& GetBare() { return *m_bare; }

private:
    TableMapper m_mapper;
    std::unique_ptr<mor::Image4d<unsigned short>> m_image;
    zel_ImageViewer3dCanvas<unsigned short>* m_canvas = nullptr;
    std::unique_ptr<BareWindows> m_bare;
};

void Add(const std::string& name, double limit, void (Stage::*work)()) {
    AddComparison(name, [limit, work] {
        static Stage stage;
        Comparison comparison;
        comparison.work = [work] { (stage.*work)(); };
        comparison.yardstick = [] { stage.GetBare().Blit(); };
        comparison.unit = "blits";
        comparison.limit = limit;
        comparison.bytes = stage.GetBare().GetPixels() * 3;
        comparison.processorTime = true;
        return comparison;
    });
}

[[maybe_unused]] const bool added = [] {
    Add("paint/resample, map, draw", 6.0, &Stage::PaintAll);
    Add("paint/map, draw", 5.0, &Stage::MapAnew);
    Add("paint/one cut", 3.0, &Stage::ChangeCut);
    Add("paint/draw", 3.0, &Stage::BlitAgain);
    return true;
}();

} // namespace
