#include "host/growingcells.h"

#include "host/synthetic.h"
#include "image/kep.h"
#include "mapping/zel_graymapping.h"
#include "model/zel_histogramcount.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/event.h>
#include <wx/log.h>
#include <wx/weakref.h>

#include <algorithm>
#include <memory>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace zelviewer {

namespace {

using Image = mor::Image4d<unsigned short>;
using Canvas = zel::zel_ImageViewer3dCanvas<unsigned short>;
using Mapping = zel::zel_GrayMappingModule<unsigned short>;

zel::HistogramSet<unsigned short> CountFrames(const Image& image, std::size_t frames) {
    zel::HistogramSet<unsigned short> histograms;
    histograms.Get().Init(0, 65535, 65536);
    for (std::size_t t = 0; t < frames; ++t)
        zel::CountFrame(*image[t], histograms.Get());
    return histograms;
}

/// A frame and its labels, ready for their sequences.
struct Painted {
    std::unique_ptr<kep::Image3d<unsigned short>> intensity;
    std::unique_ptr<Labels::Frame> labels;
};

Painted Paint(const SyntheticFilm& film, std::size_t t, std::size_t threads) {
    SyntheticFrame frame = film.Paint(t, threads);
    auto labels = std::make_unique<Labels::Frame>();
    labels->CreateRegionsOfLabels(*frame.labels);
    return {std::move(frame.intensity), std::move(labels)};
}

/// Puts a frame where there was room for it, and its labels behind those that are there: labels of a frame are looked
/// at once and for good, so there must be none before.
void Place(Painted painted, std::size_t t, Image& image, Labels& labels) {
    image.GetVoxelData(t).swap(painted.intensity->GetVoxelData());
    labels.InsertFrame(painted.labels.get(), image.GetImageName(t), -1);
    painted.labels.release(); // the sequence has taken it
}

/// Belongs to the window, as its client object.
class Growth : public wxEvtHandler, public wxClientData {
public:
    Growth(std::shared_ptr<const SyntheticFilm> film, zel::zel_Viewer3dFrame& frame, Labels& labels)
        : m_frame(frame), m_canvas(dynamic_cast<Canvas*>(frame.GetCanvas())), m_labels(labels) {
        CallAfter([this, film] { StartPainting(film); }); // the window comes first
    }

private:
    void StartPainting(const std::shared_ptr<const SyntheticFilm>& film) {
        try {
            m_painter = std::jthread([this, film](const std::stop_token& stop) { PaintOthers(*film, stop); });
        } catch (const std::system_error&) { // as below
            wxLogError("There is no thread to paint the other synthetic cells.");
        }
    }

    /// On a thread of its own.
    void PaintOthers(const SyntheticFilm& film, const std::stop_token& stop) {
        const auto frames = static_cast<std::size_t>(film.GetSettings().frames);
        try {
            for (std::size_t t = 1; t < frames && !stop.stop_requested(); ++t) {
                const auto painted = std::make_shared<Painted>(Paint(film, t, 1));
                CallAfter([this, painted, t] { Take(std::move(*painted), t); });
            }
        } catch (const std::bad_alloc&) { // the other frames stay dark
            wxLogError("Not enough memory for all of the synthetic cells.");
        }
    }

    void Take(Painted painted, std::size_t t) {
        if (!m_canvas || m_canvas->IsMapperDetached())
            return; // the window is closing
        Image& image = *m_canvas->GetImage();
        Place(std::move(painted), t, image, m_labels);
        m_canvas->OnFrameChange(t);
        if (t + 1 < image.GetNumFrames())
            return;
        image.UpdateMinMaxValues();
        for (wxEvtHandler* handler = m_frame.GetEventHandler(); handler != nullptr; handler = handler->GetNextHandler())
            if (auto* const mapping = dynamic_cast<Mapping*>(handler))
                mapping->OnHistogramChange(CountFrames(image, image.GetNumFrames()));
        m_canvas->OnFrameChange(static_cast<std::size_t>(m_canvas->GetTime())); // which the stretch shows anew
    }

    zel::zel_Viewer3dFrame& m_frame;
    wxWeakRef<Canvas> m_canvas;
    Labels& m_labels;
    std::jthread m_painter; // the last member: it uses the others
};

} // namespace

zel::zel_Viewer3dFrame* MakeGrowingCells(const FirstLook& look) {
    const auto film = std::make_shared<const SyntheticFilm>();
    const auto frames = static_cast<std::size_t>(film->GetSettings().frames);
    Painted first = Paint(*film, 0, kep::GetThreadLimit());
    auto image = std::make_unique<Image>(&first.intensity->GetOffset(), &first.intensity->GetResolution());
    auto labels = std::make_unique<Labels>(false, &first.intensity->GetOffset(), &first.intensity->GetResolution());
    image->MakeRoom(film->GetSettings().size, frames);
    labels->MakeRoom(film->GetSettings().size, 0);
    for (std::size_t t = 0; t < frames; ++t)
        image->SetImageName(t, wxString::Format("Synthetic cells, %zu of %zu", t + 1, frames));
    Place(std::move(first), 0, *image, *labels);
    const zel::HistogramSet<unsigned short> counted = CountFrames(*image, 1);
    Labels& shownLabels = *labels; // the frame's from now on
    zel::zel_Viewer3dFrame* const frame =
        MakeFrame<unsigned short>(std::move(image), look, std::move(labels), {}, &counted);
    frame->SetClientObject(new Growth(film, *frame, shownLabels));
    return frame;
}

} // namespace zelviewer
