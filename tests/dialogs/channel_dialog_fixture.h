#pragma once

// For tests of the levels and the thresholding dialog.

#include "dialogs/dlg_levels.h"
#include "dialogs/dlg_thres.h"
#include "dialogs/zel_previewevents.h"
#include "tests/support/user.h"

#include <wx/choice.h>

#include <memory>
#include <string>
#include <vector>

namespace zel::test {

/// Histograms of channels, which the dialogs take by address.
template <typename T>
class Channels {
public:
    /// Adds a channel with a bin for each step from first to last, all of which have counted to 1.
    Channels& Add(T first, T last, std::size_t bins) {
        m_histograms.push_back(std::make_unique<Histogram<T>>());
        m_histograms.back()->Init(first, last, bins);
        for (std::size_t& count : *m_histograms.back())
            count = 1;
        addresses.push_back(m_histograms.back().get());
        return *this;
    }

    std::vector<Histogram<T>*> addresses;

private:
    std::vector<std::unique_ptr<Histogram<T>>> m_histograms;
};

/// The first place of a row of triangles at which the mouse is over a position: the least x for which
/// (x - 2) / (width - 2) * count reaches it.
inline wxPoint PlaceOf(const Triangles& row, int position) {
    const int width = row.GetClientSize().x - 2;
    return {2 + (position * width + row.GetCount() - 1) / row.GetCount(), 4};
}
/// A shown frame that notes the previews which its dialogs send.
class ChannelDialogTest : public GuiTest {
protected:
    using Texts = std::vector<std::string>;

    static constexpr long style = wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxCLIP_CHILDREN;

    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "dialogs", wxDefaultPosition, wxSize(200, 100));
        frame->Bind(zel_EVT_LEVELS_PREVIEW, [this](zel_LevelsEvent& event) {
            EXPECT_EQ(0, event.GetId());
            previews.push_back(wxString::Format("%.9g..%.9g ^%g -> %g..%g in %d", static_cast<double>(event.GetInMin()),
                                                static_cast<double>(event.GetInMax()), event.GetGamma(),
                                                static_cast<double>(event.GetOutMin()),
                                                static_cast<double>(event.GetOutMax()), event.GetChannel())
                                   .utf8_string());
        });
        frame->Bind(zel_EVT_THRESHOLDING_PREVIEW, [this](zel_ThresholdingEvent& event) {
            EXPECT_EQ(0, event.GetId());
            previews.push_back(wxString::Format("%.9g..%.9g in %d", static_cast<double>(event.GetLower()),
                                                static_cast<double>(event.GetUpper()), event.GetChannel())
                                   .utf8_string());
        });
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }

    /// The previews since the last call.
    Texts TakePreviews() { return std::exchange(previews, {}); }

    static wxArrayString Names(std::initializer_list<const char*> names) {
        wxArrayString list;
        for (const char* const name : names)
            list.Add(name);
        return list;
    }

    template <typename T>
    LevelsWidget<T, unsigned char>* MakeLevels(const Channels<T>& channels,
                                               const std::vector<TLevelsParams<T, unsigned char>>& params,
                                               const wxArrayString& names) {
        return new LevelsWidget<T, unsigned char>(frame, wxID_ANY, channels.addresses, params, names, "Adjust Levels",
                                                  wxDefaultPosition, wxDefaultSize, style);
    }
    template <typename T>
    ThresholdingDialog<T>* MakeThresholds(const Channels<T>& channels, const std::vector<ThresParams<T>>& params,
                                          const wxArrayString& names) {
        return new ThresholdingDialog<T>(frame, wxID_ANY, channels.addresses, params, names, "Adjust Thresholds",
                                         wxDefaultPosition, wxDefaultSize, style);
    }
    /// Opens the dialog as the mapping does. @return what ShowModal says
    int Run(wxDialog& dialog, std::function<void(wxDialog&)> drive) {
        answers.ExpectDriven(std::move(drive));
        return dialog.ShowModal();
    }
    template <typename Params, typename Dialog>
    static std::vector<Params> ParamsOf(Dialog& dialog) {
        std::vector<Params> params(17); // what was there is replaced
        dialog.GetParams(params);
        return params;
    }

    /// The control of the input (10005) or output (10006) values.
    template <typename T>
    static VariableMinMaxCtrl<T>& Control(const wxDialog& dialog, int id) {
        return In<VariableMinMaxCtrl<T>>(dialog, id);
    }
    static wxChoice& Channel(const wxDialog& dialog) { return In<wxChoice>(dialog, 10002); }
    static Texts Entries(const wxChoice& choice) {
        Texts entries;
        for (const wxString& entry : choice.GetStrings())
            entries.push_back(entry.utf8_string());
        return entries;
    }
    /// What follows when the user takes an entry of a choice.
    static void Choose(wxChoice& choice, int entry) {
        choice.SetSelection(entry);
        wxCommandEvent event(wxEVT_CHOICE, choice.GetId());
        event.SetInt(entry);
        event.SetString(choice.GetString(static_cast<unsigned int>(entry)));
        event.SetEventObject(&choice);
        choice.ProcessWindowEvent(event);
    }
    /// Low, gamma if there is one, and high text.
    template <typename T>
    static Texts Fields(const VariableMinMaxCtrl<T>& control) {
        Texts texts{control.GetLowText()->GetValue().utf8_string()};
        if (control.GetGammaText() != nullptr)
            texts.push_back(control.GetGammaText()->GetValue().utf8_string());
        texts.push_back(control.GetHighText()->GetValue().utf8_string());
        return texts;
    }

    /// Drags what is at a position to others, one after the other.
    static void DragFrom(Triangles& row, int from, std::initializer_list<int> to) {
        std::vector<wxPoint> path{PlaceOf(row, from)};
        for (const int position : to)
            path.push_back(PlaceOf(row, position));
        Drag(row, path);
    }

    wxFrame* frame = nullptr;
    DialogAnswers answers;
    Texts previews;
};

} // namespace zel::test
