#include "mapping/zel_mappingmodule.h"

#include "image/zel_assert.h"
#include "mapping/text/zel_qualifiedname.h"
#include "mapping/zel_mappingevents.h"
#include "viewer/zel_events.h"

#include <wx/frame.h>
#include <wx/log.h>
#include <wx/menu.h>

namespace zel {

template <typename T>
zel_MappingModule<T>::zel_MappingModule(wxFrame* frame, const HistogramSet<T>& histograms, double percentilValue)
    : m_histograms(histograms), m_percentilValue(percentilValue) {
    SetFrame(frame);
    for (int channel = 0; channel < channelCount; ++channel)
        GetChannel(channel) = ChannelMapping<Element>::Of(GetHistogram(channel));
}

template <typename T>
void zel_MappingModule<T>::TakeHistograms(const HistogramSet<T>& histograms) {
    m_histograms = histograms;
    for (int channel = 0; channel < channelCount; ++channel)
        GetChannel(channel).NarrowRange(GetHistogram(channel));
}

template <typename T>
wxMenu* zel_MappingModule<T>::CreateMenu(int& id) {
    zel_ASSERT(this->GetMenuId(0) == 0, "mapping", QualifiedName<T>("zel_MappingModule", "CreateMenu").c_str());
    if (HasMenu())
        return m_menu;
    ++id;
    SetFirstMenuId(id);
    auto* const menu = new wxMenu;
    const auto append = [&](int offset, const char* label, const char* help, wxItemKind kind) {
        menu->Append(GetMenuId(offset), label, help, kind);
    };
    append(zel_ME_RANGE, "Set image ran&ge...", "Set the range of displayed image intensities", wxITEM_NORMAL);
    menu->AppendSeparator();
    append(zel_ME_NO_STRETCH, "&No stretch\tAlt-1", "Apply no stretching", wxITEM_CHECK);
    append(zel_ME_LINEAR_STRETCH, "&Linear stretch\tAlt-2", "Apply linear stretch", wxITEM_CHECK);
    append(zel_ME_PERCENTIL_STRETCH, "&Percentil stretch\tAlt-3", "Apply percentil stretch", wxITEM_CHECK);
    constexpr const char* equalizationHelp = "Apply histogram equalization";
    if constexpr (HistogramSet<T>::channelCount == 3) {
        append(zel_ME_EQUALIZATION, "&Histogram equalization", equalizationHelp, wxITEM_CHECK);
        wxLogMessage("Disabling Histogram equalization as it is not implemented for color images.");
        menu->Enable(GetMenuId(zel_ME_EQUALIZATION), false);
    } else {
        append(zel_ME_EQUALIZATION, "&Histogram equalization\tAlt-4", equalizationHelp, wxITEM_CHECK);
    }
    append(zel_ME_LEVELS, "Levels\tAlt-5", "Show levels dialog", wxITEM_CHECK);
    menu->AppendSeparator();
    append(zel_ME_THRESHOLD, "Threshold\tAlt-6", "Apply thresholding", wxITEM_CHECK);
    id = GetMenuId(zel_ME_LAST);
    Bind(wxEVT_UPDATE_UI, &zel_MappingModule::OnUpdateUI, this, GetMenuId(zel_ME_BITDEPTH),
         GetMenuId(zel_ME_THRESHOLD));
    m_menu = menu;
    return menu;
}

template <typename T>
void zel_MappingModule<T>::InsertBitdepth(wxMenu& menu) const {
    menu.Insert(1, GetMenuId(zel_ME_BITDEPTH), "Set bitdepth...", "Set \"real\" image bitdepth");
}

template <typename T>
void zel_MappingModule<T>::OnMapping(wxCommandEvent& event) {
    const wxWeakRef<wxEvtHandler> self(this);
    const int offset = OffsetOf(event);
    bool isChosen = true;
    switch (offset) {
    case zel_ME_BITDEPTH:
        SetBitdepth();
        return;
    case zel_ME_RANGE:
        SetRange();
        return;
    case zel_ME_LEVELS:
        isChosen = SetLevelsStretch();
        break;
    case zel_ME_THRESHOLD:
        isChosen = SetThreshold();
        break;
    default:
        if (!RunStretch(offset))
            return;
    }
    if (!self)
        return;
    if (isChosen) {
        m_stretchMode = offset; // afterwards, as the operation may ask for the old one
    } else {
        // The click has moved the mark already. In this order, as the two may be the same entry.
        CheckEntry(offset, false);
        CheckEntry(m_stretchMode, true);
    }
}

template <typename T>
bool zel_MappingModule<T>::RunStretch(int entry) {
    switch (entry) {
    case zel_ME_NO_STRETCH:
        SetIdentity();
        return true;
    case zel_ME_LINEAR_STRETCH:
        SetLinearStretch();
        return true;
    case zel_ME_PERCENTIL_STRETCH:
        SetPercentilStretch();
        return true;
    case zel_ME_EQUALIZATION:
        SetHistEqualStretch();
        return true;
    default:
        return false;
    }
}

template <typename T>
void zel_MappingModule<T>::CheckEntry(int offset, bool isChecked) {
    if (!m_menu || offset < zel_ME_BITDEPTH || offset > zel_ME_LAST)
        return;
    wxMenuItem* const item = m_menu->FindItem(GetMenuId(offset));
    if (item != nullptr && item->IsCheckable())
        item->Check(isChecked);
}

template <typename T>
void zel_MappingModule<T>::OnUpdateUI(wxUpdateUIEvent& event) {
    const int offset = OffsetOf(event);
    if (offset >= zel_ME_NO_STRETCH && offset <= zel_ME_THRESHOLD)
        event.Check(offset == m_stretchMode); // so check entries behave like radio entries
    else
        event.Skip();
}

template <typename T>
void zel_MappingModule<T>::TellMappingChanged(bool committed) {
    if (GetFrame() == nullptr)
        return;
    zel_MappingEvent changed(committed);
    GetFrame()->ProcessWindowEvent(changed);
}

template <typename T>
void zel_MappingModule<T>::FinishCommand(const wxCommandEvent& event) {
    const wxWeakRef<wxEvtHandler> self(this); // a host's handler may close the frame
    TellMappingChanged(true);
    if (!self || GetFrame() == nullptr || !event.ShouldPropagate())
        return;
    zel_MappingCommandEvent told(event);
    told.SetClientData(static_cast<zel_ExtensionModule*>(this));
    GetFrame()->ProcessWindowEvent(told);
}

#define ZEL_INSTANTIATE(T) template class zel_MappingModule<T>;
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
