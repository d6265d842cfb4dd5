#include "host/frame/channeldialog.h"

#include "image/zel_modaldialog.h"

#include <wx/checklst.h>
#include <wx/choicdlg.h>
#include <wx/filename.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace zelviewer {

namespace {

wxArrayString ToArray(const std::vector<std::string>& texts) {
    wxArrayString array;
    for (const std::string& text : texts)
        array.Add(wxString::FromUTF8(text));
    return array;
}

wxString Ask(const ChannelQuestion& question) {
    const wxString name = wxFileName(wxString(question.file.c_str(), *wxConvFileName)).GetFullName();
    return name + wxString::Format(" has %zu channels.\n", question.channels.size()) +
           (question.most == 1 ? "Choose the one to show."
                               : "Choose one to show it in gray, or two or three as red, green and blue.");
}

/// A list in which as many channels are checked as can be shown, or OK is gray.
class ChannelDialog : public wxDialog {
public:
    ChannelDialog(wxWindow* parent, const ChannelQuestion& question)
        : wxDialog(parent, wxID_ANY, "Channels", wxDefaultPosition, wxDefaultSize,
                   wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
          m_most(question.most) {
        constexpr int margin = 10;
        auto* const sizer = new wxBoxSizer(wxVERTICAL);
        m_list = new wxCheckListBox(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, ToArray(question.channels));
        sizer->Add(new wxStaticText(this, wxID_ANY, Ask(question)), wxSizerFlags().Border(wxALL, margin));
        sizer->Add(m_list, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, margin));
        sizer->Add(CreateButtonSizer(wxOK | wxCANCEL), wxSizerFlags().Expand().Border(wxALL, margin));
        SetSizerAndFit(sizer);
        m_list->Bind(wxEVT_CHECKLISTBOX, [this](wxCommandEvent&) { EnableOk(); });
        EnableOk();
    }

    std::vector<std::size_t> GetChannels() const {
        std::vector<std::size_t> channels;
        for (unsigned i = 0; i < m_list->GetCount(); ++i)
            if (m_list->IsChecked(i))
                channels.push_back(i);
        return channels;
    }

private:
    void EnableOk() {
        const std::size_t count = GetChannels().size();
        FindWindow(wxID_OK)->Enable(count >= 1 && count <= m_most);
    }

    std::size_t m_most;
    wxCheckListBox* m_list;
};

} // namespace

std::vector<std::size_t> AskForChannels(wxWindow* parent, const ChannelQuestion& question) {
    if (question.most == 1) {
        wxSingleChoiceDialog dialog(parent, Ask(question), "Channels", ToArray(question.channels));
        if (zel::RunModal(dialog) != wxID_OK)
            return {};
        return {static_cast<std::size_t>(dialog.GetSelection())};
    }
    ChannelDialog dialog(parent, question);
    return zel::RunModal(dialog) == wxID_OK ? dialog.GetChannels() : std::vector<std::size_t>();
}

} // namespace zelviewer
