#include "host/frame/positionbar.h"

#include "model/zel_axislook.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/toolbar.h>

#include <algorithm>

namespace zelviewer {

namespace {

/// A slider that counts from 1, with its name and its number beside it.
struct Dial {
    wxSlider* slider = nullptr;
    wxStaticText* text = nullptr;
    wxString name;
    int count = 0;

    void Show(int number) const {
        if (slider->GetValue() != number)
            slider->SetValue(number);
        const wxString told = wxString::Format("%s %d of %d", name, number, count);
        if (text->GetLabel() != told)
            text->SetLabel(told);
    }
};

/// The middle of a slice, microns.
float MiddleOf(const zel::ImageGeometry& image, std::size_t slice) {
    return image.offset.z + (static_cast<float>(slice) + 0.5F) / image.resolution.GetUsable().GetRes().z;
}

class PositionBar : public wxToolBar {
public:
    explicit PositionBar(zel::zel_Viewer3dFrame& frame)
        : wxToolBar(&frame, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                    wxTB_BOTTOM | wxTB_HORIZONTAL | wxTB_FLAT | wxTB_NODIVIDER),
          m_frame(frame) {
        zel::zel_Viewer3dCanvas& canvas = *frame.GetCanvas();
        m_slice = AddDial("z", static_cast<int>(canvas.GetImageSize().z));
        m_time = AddDial("t", canvas.GetImageCount());
        Realize();
        Bind(wxEVT_SLIDER, &PositionBar::OnSlider, this);
        Bind(wxEVT_IDLE, &PositionBar::OnIdle, this);
        frame.Bind(wxEVT_SIZE, &PositionBar::OnFrameSize, this);
        ShowState();
    }

private:
    static constexpr int gap = 12; // pixels

    Dial AddDial(const wxString& name, int count) {
        if (count < 2)
            return {};
        Dial dial{new wxSlider(this, wxID_ANY, 1, 1, count), nullptr, name, count};
        // As wide as its longest text, so that nothing moves.
        dial.text = new wxStaticText(this, wxID_ANY, wxString::Format("%s %d of %d", name, count, count),
                                     wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
        dial.text->SetMinSize(dial.text->GetBestSize() + wxSize(gap, 0));
        dial.slider->SetToolTip(name == "z" ? "Slice of the XY window" : "Frame of the sequence");
        AddControl(dial.text);
        AddControl(dial.slider);
        return dial;
    }

    void OnFrameSize(wxSizeEvent& event) {
        event.Skip();
        int dials = 0, texts = 0;
        for (const Dial& dial : {m_slice, m_time})
            if (dial.slider != nullptr) {
                ++dials;
                texts += dial.text->GetMinSize().x;
            }
        if (dials == 0)
            return;
        const int width = std::max((m_frame.GetClientSize().x - texts) / dials - 2 * gap, 60);
        for (const Dial& dial : {m_slice, m_time})
            if (dial.slider != nullptr) {
                dial.slider->SetMinSize(wxSize(width, -1));
                dial.slider->SetSize(width, -1);
            }
    }

    void OnSlider(wxCommandEvent& event) {
        zel::zel_Viewer3dCanvas* const canvas = m_frame.GetCanvas();
        if (canvas == nullptr)
            return;
        if (event.GetEventObject() == m_slice.slider) {
            kep::Vector3d<float> cut = canvas->GetCut();
            cut.z = MiddleOf(canvas->GetImageGeometry(), static_cast<std::size_t>(event.GetInt() - 1));
            canvas->ChangeCut(cut);
        } else {
            canvas->GoToFrame(event.GetInt() - 1);
        }
    }

    void OnIdle(wxIdleEvent& event) {
        event.Skip();
        ShowState();
    }

    /// Whatever moved cut and time, the sliders follow.
    void ShowState() const {
        zel::zel_Viewer3dCanvas* const canvas = m_frame.GetCanvas();
        if (canvas == nullptr)
            return;
        if (m_slice.slider != nullptr) {
            const zel::ImageGeometry image = canvas->GetImageGeometry();
            const int slice = kep::MicronsToVoxel(canvas->GetCut(), image.offset, image.resolution).z;
            m_slice.Show(std::clamp(slice + 1, 1, m_slice.count));
        }
        if (m_time.slider != nullptr)
            m_time.Show(canvas->GetTime() + 1);
    }

    zel::zel_Viewer3dFrame& m_frame;
    Dial m_slice;
    Dial m_time;
};

} // namespace

void AddPositionBar(zel::zel_Viewer3dFrame& frame) {
    zel::zel_Viewer3dCanvas& canvas = *frame.GetCanvas();
    if (canvas.GetImageSize().z < 2 && canvas.GetImageCount() < 2)
        return; // nothing to choose
    frame.SetToolBar(new PositionBar(frame));
}

} // namespace zelviewer
