#include "host/frame/gotodialog.h"

#include "image/zel_modaldialog.h"

#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <array>

namespace zelviewer {

namespace {

struct Target {
    const char* name;
    int number; ///< from 1
    int count;
};

class GoToDialog : public wxDialog {
public:
    GoToDialog(wxWindow* parent, const std::array<Target, 4>& targets)
        : wxDialog(parent, wxID_ANY, "Go to", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE) {
        auto* const grid = new wxFlexGridSizer(3, wxSize(8, 6));
        for (std::size_t i = 0; i < targets.size(); ++i) {
            grid->Add(new wxStaticText(this, wxID_ANY, targets[i].name), wxSizerFlags().CentreVertical());
            m_fields[i] = new wxSpinCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                         wxSP_ARROW_KEYS | wxTE_PROCESS_ENTER, 1, targets[i].count, targets[i].number);
            m_fields[i]->Enable(targets[i].count > 1);
            m_fields[i]->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { EndModal(wxID_OK); });
            grid->Add(m_fields[i]);
            grid->Add(new wxStaticText(this, wxID_ANY, wxString::Format("of %d", targets[i].count)),
                      wxSizerFlags().CentreVertical());
        }
        auto* const column = new wxBoxSizer(wxVERTICAL);
        column->Add(grid, wxSizerFlags().Border(wxALL, 12));
        column->Add(CreateButtonSizer(wxOK | wxCANCEL),
                    wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, 12));
        SetSizerAndFit(column);
        m_fields[2]->SetFocus();
    }

    int GetNumber(std::size_t i) const { return m_fields[i]->GetValue(); }

private:
    std::array<wxSpinCtrl*, 4> m_fields{};
};

} // namespace

void AskWhereToGo(zel::zel_Viewer3dCanvas& canvas) {
    if (canvas.GetImageCount() == 0)
        return;
    const zel::ImageGeometry image = canvas.GetImageGeometry();
    const kep::Vector3d<float> resolution = image.resolution.GetUsable().GetRes();
    const kep::Vector3d<int> cut = kep::MicronsToVoxel(canvas.GetCut(), image.offset, image.resolution);
    const auto target = [](const char* name, int voxel, std::size_t count) {
        return Target{name, std::clamp(voxel + 1, 1, static_cast<int>(count)), static_cast<int>(count)};
    };
    const wxWeakRef<wxWindow> self(&canvas);
    GoToDialog dialog(wxGetTopLevelParent(&canvas),
                      {target("x", cut.x, image.voxels.x), target("y", cut.y, image.voxels.y),
                       target("z", cut.z, image.voxels.z),
                       target("t", canvas.GetTime(), static_cast<std::size_t>(std::max(canvas.GetImageCount(), 1)))});
    if (zel::RunModal(dialog) != wxID_OK || !self)
        return;
    const auto middle = [](float offset, int number, float res) {
        return offset + (static_cast<float>(number) - 0.5F) / res;
    };
    canvas.ChangeCut({middle(image.offset.x, dialog.GetNumber(0), resolution.x),
                      middle(image.offset.y, dialog.GetNumber(1), resolution.y),
                      middle(image.offset.z, dialog.GetNumber(2), resolution.z)});
    canvas.GoToFrame(dialog.GetNumber(3) - 1);
}

} // namespace zelviewer
