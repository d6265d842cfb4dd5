// The gray module's menu and what its entries do.

#include "mapping/gray/zel_graymapping_impl.h"

#include <wx/filedlg.h>
#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/numdlg.h>

#include <cmath>

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

} // namespace

template <typename T>
wxMenu* zel_GrayMappingModule<T>::CreateMenu(int& id) {
    const bool isFirst = this->GetMenuId(0) == 0;
    wxMenu* const menu = zel_MappingModule<T>::CreateMenu(id);
    if (!isFirst)
        return menu;
    const auto idOf = [this](int offset) { return this->GetMenuId(offset); };
    if constexpr (std::unsigned_integral<T>)
        menu->Insert(1, idOf(zel_ME_BITDEPTH), "Set bitdepth...", "Set \"real\" image bitdepth");
    menu->AppendSeparator();
    menu->AppendCheckItem(idOf(zel_PE_GRAY), "Gray", "View the data as labels");
    menu->AppendCheckItem(idOf(zel_PE_SATURATION), "Saturation", "Show saturated values in colours");
    menu->AppendCheckItem(idOf(zel_PE_LABELS), "Labels", "View the data as labels");
    menu->AppendCheckItem(idOf(zel_PE_PERIODIC), "Periodic", "View the data with a periodic palette");
    menu->AppendCheckItem(idOf(zel_PE_FILE), "Palette...", "Select custom palette");
    this->Bind(wxEVT_MENU, &zel_GrayMappingModule::OnMapping, this, idOf(zel_ME_BITDEPTH), id);
    this->Bind(wxEVT_UPDATE_UI, &zel_GrayMappingModule::OnUpdateUI, this, idOf(zel_PE_GRAY), idOf(zel_PE_FILE));
    this->Bind(zel_EVT_LEVELS_PREVIEW, &zel_GrayMappingModule::OnPreviewLevels, this);
    this->Bind(zel_EVT_THRESHOLDING_PREVIEW, &zel_GrayMappingModule::OnPreviewThresholding, this);
    return menu;
}

template <typename T>
void zel_GrayMappingModule<T>::OnMapping(wxCommandEvent& event) {
    const wxWeakRef<wxEvtHandler> self(this); // a dialog may outlive the module
    zel_MappingModule<T>::OnMapping(event);
    if (!self)
        return;
    const int offset = this->OffsetOf(event);
    if (offset >= zel_PE_GRAY && offset <= zel_PE_FILE)
        ChoosePalette(offset);
    if (self)
        this->FinishCommand(event);
}

template <typename T>
void zel_GrayMappingModule<T>::ChoosePalette(int entry) {
    const wxWeakRef<wxEvtHandler> self(this);
    m_paletteMode = entry; // also if no file is chosen after all
    Palette palette;
    if (GetPalette(entry, this->GetFrame(), palette) && self)
        SetPal(palette);
}

template <typename T>
void zel_GrayMappingModule<T>::OnUpdateUI(wxUpdateUIEvent& event) {
    const int offset = this->OffsetOf(event);
    if (offset >= zel_PE_GRAY && offset <= zel_PE_FILE)
        event.Check(offset == m_paletteMode);
    else
        event.Skip();
}

template <typename T>
void zel_GrayMappingModule<T>::OnPreviewLevels(zel_LevelsEvent& event) {
    const auto value = [](float number) { return SaturateTo<T>(static_cast<double>(number)); };
    const auto level = [](float number) { return SaturateTo<unsigned char>(static_cast<double>(number)); };
    m_mappingTable.CreateGamma(value(event.GetInMin()), value(event.GetInMax()), static_cast<float>(event.GetGamma()),
                               level(event.GetOutMin()), level(event.GetOutMax()));
    this->TellMappingChanged(false);
}

template <typename T>
void zel_GrayMappingModule<T>::OnPreviewThresholding(zel_ThresholdingEvent& event) {
    m_mappingTable.CreateThresholding(SaturateTo<T>(static_cast<double>(event.GetLower())),
                                      SaturateTo<T>(static_cast<double>(event.GetUpper())), 0, 255);
    this->TellMappingChanged(false);
}

template <typename T>
void zel_GrayMappingModule<T>::SetBitdepth() {
    if (!HasData())
        return;
    const wxWeakRef<wxEvtHandler> self(this);
    const auto bitsOf = [](T value) { return CountBits(SaturateTo<long long>(static_cast<double>(value))); };
    const long current = bitsOf(m_rangeMax);
    const long limit = bitsOf(GetHistogram().GetRightCenter());
    wxNumberEntryDialog dialog(this->GetFrame(), "Set image bit depth", "Bit depth = ", "Image Bit Depth", current, 1,
                               limit);
    if (RunModal(dialog) != wxID_OK || !self || dialog.GetValue() == current)
        return;
    m_rangeMax = SaturateTo<T>(std::ldexp(1.0, static_cast<int>(dialog.GetValue())) - 1.0);
    ResetMapping();
}

#define ZEL_INSTANTIATE(T) template class zel_GrayMappingModule<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
