// The commands of a module that shows one channel: its menu, and what asks the user.

#include "dialogs/dlg_set_range.h"
#include "mapping/commands/zel_mappingquestions.h"
#include "mapping/zel_palette.h"
#include "mapping/zel_palettemapping.h"

#include <wx/filedlg.h>
#include <wx/frame.h>
#include <wx/menu.h>

namespace zel {

namespace {

wxString AskForPaletteFile(wxWindow* parent) {
    wxFileDialog dialog(parent, "Load palette", "", "",
                        "Palettes (*.pal)|*.pal| Text files (*.txt)|*.txt|All files (*.*)|*.*",
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    return RunModal(dialog) == wxID_OK ? dialog.GetPath() : wxString();
}

/// Built-in palettes are computed; the others come from a file that the user chooses.
bool GetPalette(int entry, wxWindow* parent, Palette& palette) {
    switch (entry) {
    case zel_PE_SATURATION:
        CreatePalette(zel_saturationPalette, palette);
        return true;
    case zel_PE_LABELS:
        CreatePalette(zel_labelsPalette, palette);
        return true;
    case zel_PE_PERIODIC:
        CreatePalette(zel_periodicPalette, palette);
        return true;
    case zel_PE_FILE: {
        const wxString name = AskForPaletteFile(parent);
        return !name.empty() && LoadPalette(palette, name);
    }
    default:
        return false;
    }
}

bool AskForRange(wxFrame* frame, float lowest, float highest, float& min, float& max) {
    return GetFloatRangeFromUser(frame, lowest, highest, min, max);
}

template <std::integral T>
bool AskForRange(wxFrame* frame, T lowest, T highest, T& min, T& max) {
    long first = min;
    long last = max;
    if (!GetLongRangeFromUser(frame, lowest, highest, first, last))
        return false;
    min = static_cast<T>(first);
    max = static_cast<T>(last);
    return true;
}

/// The dialogs know the one channel by this name, of complex images too.
wxArrayString ChannelName() {
    wxArrayString names;
    names.Add("Gray");
    return names;
}

} // namespace

template <typename Voxel>
wxMenu* zel_PaletteMappingModule<Voxel>::CreateMenu(int& id) {
    const bool isFirst = !this->HasMenu();
    wxMenu* const menu = zel_MappingModule<Voxel>::CreateMenu(id);
    if (!isFirst)
        return menu;
    const auto append = [this, menu](int offset, const char* label, const char* help) {
        menu->AppendCheckItem(this->GetMenuId(offset), label, help);
    };
    menu->AppendSeparator();
    append(zel_PE_GRAY, "Gray", "View the data as labels");
    append(zel_PE_SATURATION, "Saturation", "Show saturated values in colours");
    append(zel_PE_LABELS, "Labels", "View the data as labels");
    append(zel_PE_PERIODIC, "Periodic", "View the data with a periodic palette");
    append(zel_PE_FILE, "Palette...", "Select custom palette");
    this->Bind(wxEVT_UPDATE_UI, &zel_PaletteMappingModule::OnUpdateUI, this, this->GetMenuId(zel_PE_GRAY),
               this->GetMenuId(zel_PE_FILE));
    this->Bind(zel_EVT_LEVELS_PREVIEW, &zel_PaletteMappingModule::OnPreviewLevels, this);
    this->Bind(zel_EVT_THRESHOLDING_PREVIEW, &zel_PaletteMappingModule::OnPreviewThresholding, this);
    return menu;
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::OnUpdateUI(wxUpdateUIEvent& event) {
    const int offset = this->OffsetOf(event);
    if (offset >= zel_PE_GRAY && offset <= zel_PE_FILE)
        event.Check(offset == m_paletteMode);
    else
        event.Skip();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::ChoosePalette(int offset) {
    if (offset < zel_PE_GRAY || offset > zel_PE_FILE)
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    Palette palette;
    if (offset == zel_PE_FILE && m_askForPalette) {
        const PaletteQuestion ask = m_askForPalette; // this module may go while it asks
        if (!ask(this->GetFrame(), palette) || !self)
            return;
        m_paletteMode = offset;
        SetPal(palette);
        return;
    }
    m_paletteMode = offset; // also if no file is chosen after all
    if (GetPalette(offset, this->GetFrame(), palette) && self)
        SetPal(palette);
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetRange() {
    const Histogram<Element>& histogram = GetShownHistogram();
    if (histogram.empty())
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    Element min = Shown().rangeMin;
    Element max = Shown().rangeMax;
    if (!AskForRange(this->GetFrame(), histogram.GetLeftCenter(), histogram.GetRightCenter(), min, max) || !self)
        return;
    Shown().rangeMin = min;
    Shown().rangeMax = max;
    ResetMapping();
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::SetBitdepth() {
    if (GetShownHistogram().empty())
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto bits = detail::AskForBitdepth(this->GetFrame(), static_cast<double>(Shown().rangeMax),
                                             static_cast<double>(GetShownHistogram().GetRightCenter()));
    if (bits && self)
        ApplyBitdepth(*bits);
}

template <typename Voxel>
void zel_PaletteMappingModule<Voxel>::ApplyBitdepth(int bits) {
    Shown().rangeMax = detail::LargestOf<Element>(bits);
    ResetMapping();
}

template <typename Voxel>
bool zel_PaletteMappingModule<Voxel>::SetLevelsStretch() {
    if (GetShownHistogram().empty())
        return false;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto chosen = detail::AskForLevels<Element>(this->GetFrame(), {Shown().CopyPart(GetShownHistogram())},
                                                      {Shown().levels}, ChannelName());
    if (!self)
        return false;
    if (chosen) {
        Shown().levels = chosen->front();
        UpdateLUT();
    } else {
        ResetMapping();
    }
    return chosen.has_value();
}

template <typename Voxel>
bool zel_PaletteMappingModule<Voxel>::SetThreshold() {
    if (GetShownHistogram().empty())
        return false;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto chosen = detail::AskForThresholds<Element>(this->GetFrame(), {Shown().CopyPart(GetShownHistogram())},
                                                          {Shown().thresholds}, ChannelName());
    if (!self)
        return false;
    if (chosen) {
        Shown().thresholds = chosen->front();
        DoThresholding();
    } else {
        UpdateLUT(); // the curve of the levels, whatever the stretch: an equalised picture becomes a plain ramp
    }
    return chosen.has_value();
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template wxMenu* zel_PaletteMappingModule<T>::CreateMenu(int&);                                                    \
    template void zel_PaletteMappingModule<T>::OnUpdateUI(wxUpdateUIEvent&);                                           \
    template void zel_PaletteMappingModule<T>::ChoosePalette(int);                                                     \
    template void zel_PaletteMappingModule<T>::SetRange();                                                             \
    template void zel_PaletteMappingModule<T>::SetBitdepth();                                                          \
    template void zel_PaletteMappingModule<T>::ApplyBitdepth(int);                                                     \
    template bool zel_PaletteMappingModule<T>::SetLevelsStretch();                                                     \
    template bool zel_PaletteMappingModule<T>::SetThreshold();
ZEL_PALETTE_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
