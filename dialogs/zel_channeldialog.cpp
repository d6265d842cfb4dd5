#include "dialogs/zel_channeldialog.h"

#include "dialogs/controls/zel_enddialog.h"
#include "dialogs/wdr/zel_histogramlayout.h"
#include "dialogs/wdr/zel_layout.h"
#include "dialogs/zel_channelparams.h"
#include "image/zel_assert.h"

#include <wx/checkbox.h>
#include <wx/choice.h>

namespace zel {

namespace {

const char* const allChannels = "All";

} // namespace

#define ZEL_ASSERT_IN(condition, name) zel_ASSERT(condition, m_source.file, Function(name).c_str())

template <typename T, typename Params>
zel_ChannelDialog<T, Params>::zel_ChannelDialog(wxWindow* parent, wxWindowID id,
                                                const std::vector<Histogram<T>*>& histograms,
                                                const std::vector<Params>& params_vector,
                                                const wxArrayString& channel_names, const wxString& title,
                                                const wxPoint& pos, const wxSize& size, long style,
                                                const Source& source)
    : wxDialog(parent, id, title, pos, size, style),
      graph(nullptr),
      _HistData_vector(histograms),
      params(params_vector),
      m_source(source) {
    ZEL_ASSERT_IN(_HistData_vector.size(), m_source.className);
    ZEL_ASSERT_IN(_HistData_vector.size() == params_vector.size(), m_source.className);
    ZEL_ASSERT_IN(_HistData_vector.size() == channel_names.GetCount(), m_source.className);
    graph = new HistGraph<T>(this, HasChannels() ? histograms.front() : nullptr, zel_graphId, wxDefaultPosition,
                             wxSize(264, 72), wxBORDER_SUNKEN | wxCLIP_CHILDREN | wxTAB_TRAVERSAL);
    graph->SetMinSize(graph->GetSize());
    graph->SetCells(8, 4);
    graph->SetBarColour(*wxBLACK);
}

template <typename T, typename Params>
zel_ChannelDialog<T, Params>::~zel_ChannelDialog() {
    m_over = true; // the controls go after this, and lose the focus
}

template <typename T, typename Params>
std::string zel_ChannelDialog<T, Params>::Function(const char* name) const {
    return std::string("zel::") + m_source.className + "::" + name;
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::Open(const wxArrayString& channel_names, int resetId, const wxSize& size) {
    m_typeChoice = dynamic_cast<wxChoice*>(FindWindow(zel_histogramTypeId));
    m_channelChoice = dynamic_cast<wxChoice*>(FindWindow(zel_channelId));
    m_previewBox = dynamic_cast<wxCheckBox*>(FindWindow(zel_previewId));
    m_typeChoice->SetSelection(graph->GetGraphType());
    m_channelChoice->Set(channel_names);
    PrepareAll();
    m_previewBox->SetValue(true);
    if (All_params != nullptr) {
        m_channelChoice->SetStringSelection(allChannels);
        SelectChannel(-1);
    } else if (HasChannels()) {
        m_channelChoice->SetSelection(0);
        SelectChannel(0);
    }

    Bind(
        wxEVT_CHOICE, [this](wxCommandEvent&) { OnHistogramType(); }, zel_histogramTypeId);
    Bind(
        wxEVT_CHOICE, [this](wxCommandEvent&) { OnChannel(); }, zel_channelId);
    Bind(
        wxEVT_CHECKBOX,
        [this](wxCommandEvent&) {
            if (m_previewBox->IsChecked())
                GeneratePreviewEvents(IsAllChosen());
        },
        zel_previewId);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { OnReset(); }, resetId);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { OnOk(); }, wxID_OK);
    Bind(zel_EVT_MINMAXCTRL, [this](zel_MinMaxCtrlEvent&) { DoPreview(); });
    FitLayout(this, size);
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::PrepareAll() {
    if (_HistData_vector.size() < 2 || !HasChannels() || !HaveSameLayout(_HistData_vector))
        return;
    All_histdata = std::make_unique<Histogram<T>>(AddHistograms(_HistData_vector));
    All_params = std::make_unique<Params>(MergeParams(params, *graph->GetHistogram()));
    m_channelChoice->Append(allChannels);
}

template <typename T, typename Params>
bool zel_ChannelDialog<T, Params>::IsAllChosen() const {
    return m_channelChoice->GetStringSelection() == allChannels;
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::SelectChannel(int channel) {
    Params* shown = nullptr;
    const Histogram<T>* histogram = nullptr;
    if (channel == -1) {
        ZEL_ASSERT_IN(All_histdata, "SelectChannel");
        ZEL_ASSERT_IN(All_params, "SelectChannel");
        if (All_histdata == nullptr || All_params == nullptr)
            return;
        shown = All_params.get();
        histogram = All_histdata.get();
    } else {
        shown = &params[static_cast<std::size_t>(channel)];
        histogram = _HistData_vector[static_cast<std::size_t>(channel)];
    }
    graph->SetHistogram(histogram);
    BindControls(*shown, *histogram);
    graph->Refresh();
    if (m_previewBox->IsChecked())
        GeneratePreviewEvents(channel == -1);
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::DoPreview() {
    const int selection = m_channelChoice->GetSelection();
    const Params* shown = nullptr;
    if (IsAllChosen()) {
        ZEL_ASSERT_IN(All_params, "DoPreview");
        if (All_params == nullptr)
            return;
        shown = All_params.get();
        std::fill(params.begin(), params.end(), *All_params);
    } else if (selection != wxNOT_FOUND) {
        shown = &params[static_cast<std::size_t>(selection)];
    }
    if (shown != nullptr && m_previewBox->IsChecked())
        SendPreview(*shown, selection);
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::GeneratePreviewEvents(bool all) {
    if (all) {
        ZEL_ASSERT_IN(All_params, "GeneratePreviewEvents");
        if (All_params != nullptr)
            SendPreview(*All_params, m_channelChoice->GetSelection());
        return;
    }
    int channel = 0;
    for (const Params& own : params)
        SendPreview(own, channel++);
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::SendPreview(const Params& shown, int channel) {
    if (m_over || GetParent() == nullptr)
        return;
    auto event = MakePreviewEvent(shown, channel);
    GetParent()->GetEventHandler()->ProcessEvent(event);
}

template <typename T, typename Params>
bool zel_ChannelDialog<T, Params>::Show(bool show) {
    m_over = !show;
    return wxDialog::Show(show);
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::OnHistogramType() {
    const int type = m_typeChoice->GetSelection();
    if (type == graph->GetGraphType())
        return;
    graph->SetGraphType(type);
    graph->Refresh();
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::OnChannel() {
    SelectChannel(IsAllChosen() ? -1 : m_channelChoice->GetSelection());
    FitLayout(this, GetSize()); // other bounds may take wider fields
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::OnReset() {
    ResetControls();
    graph->SetGraphType(0);
    m_typeChoice->SetSelection(0);
    graph->Refresh();
    DoPreview();
}

template <typename T, typename Params>
void zel_ChannelDialog<T, Params>::OnOk() {
    if (StoreControls())
        EndWithOk(this);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template class zel_ChannelDialog<T, TLevelsParams<T, unsigned char>>;                                              \
    template class zel_ChannelDialog<T, ThresParams<T>>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
