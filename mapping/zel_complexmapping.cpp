#include "mapping/zel_complexmapping.h"

#include <wx/log.h>
#include <wx/menu.h>

#include <algorithm>
#include <string>

namespace zel {

namespace {

struct PartEntry {
    const char* label;
    const char* accelerator;
    const char* help;
};

constexpr PartEntry partEntries[complexModeCount] = {
    {"&Real", "\tF5", "Show real part"},
    {"&Imaginary", "\tF6", "Show imaginary part"},
    {"&Phase", "\tF7", "Show phase"},
    {"&Amplitude", "\tF8", "Show amplitude"},
};

constexpr bool IsPartEntry(int offset) {
    return offset >= zel_firstPartEntry && offset < zel_firstPartEntry + complexModeCount;
}

} // namespace

template <typename T>
int zel_ComplexMappingModule<T>::FirstOf(const Enabled& enabled) {
    const auto first = std::find(enabled.begin(), enabled.end(), true);
    if (first == enabled.end())
        throw "Complex: Shouldn't get here"; // a C string, which hosts catch as such
    return static_cast<int>(first - enabled.begin());
}

template <typename T>
zel_ComplexMappingModule<T>::zel_ComplexMappingModule(wxFrame* frame, const HistogramSet<std::complex<T>>& histograms,
                                                      bool real, bool imaginary, bool phase, bool amplitude)
    : zel_PaletteMappingModule<std::complex<T>>(frame, histograms, FirstOf({real, imaginary, phase, amplitude})),
      m_enabled{real, imaginary, phase, amplitude} {}

template <typename T>
wxMenu* zel_ComplexMappingModule<T>::CreateMenu(int& id) {
    const bool isFirst = !this->HasMenu();
    wxMenu* const menu = zel_PaletteMappingModule<std::complex<T>>::CreateMenu(id);
    if (!isFirst)
        return menu;
    menu->AppendSeparator();
    const int first = this->GetMenuId(zel_firstPartEntry);
    for (int part = 0; part < complexModeCount; ++part) {
        const auto& [label, accelerator, help] = partEntries[part];
        const bool isEnabled = IsPartEnabled(static_cast<ComplexMode>(part));
        menu->AppendRadioItem(first + part, isEnabled ? std::string(label) + accelerator : label, help);
        menu->Enable(first + part, isEnabled);
    }
    this->Bind(wxEVT_MENU, &zel_ComplexMappingModule::OnMapping, this, this->GetMenuId(zel_ME_BITDEPTH), id);
    this->Bind(wxEVT_UPDATE_UI, &zel_ComplexMappingModule::OnShowPartChange, this, first, first + complexModeCount - 1);
    return menu;
}

template <typename T>
void zel_ComplexMappingModule<T>::Map(const std::complex<T>* data,
                                      Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const {
    const ComplexPart part = PartOf(GetShowMode());
    if (part == nullptr) {
        wxLogError("Don't know how to display this mode of complex numbers.");
        return;
    }
    constexpr std::size_t atOnce = 4096; // values that stay in the processor's cache until they are looked up
    std::array<float, atOnce> values;
    const std::size_t count = buffer.GetCount();
    for (std::size_t i = 0; i < count; i += atOnce) {
        const std::size_t now = std::min(atOnce, count - i);
        part(data + i, now, values.data());
        kep::MapToPixels(this->GetMappingTable(), this->GetPaletteTable(), values.data(), now, &buffer.data[i]);
    }
}

template <typename T>
void zel_ComplexMappingModule<T>::ChoosePart(ComplexMode part, bool isChecked) {
    if (isChecked && IsPartEnabled(part))
        this->SetShownChannel(part);
    this->ResetMapping();
    this->UpdateLUT(); // thresholded or equalised, the new part begins with the curve of its levels
}

template <typename T>
void zel_ComplexMappingModule<T>::OnMapping(wxCommandEvent& event) {
    this->RunCommand(event, [this, isChecked = event.IsChecked()](int offset) {
        if (IsPartEntry(offset))
            ChoosePart(static_cast<ComplexMode>(offset - zel_firstPartEntry), isChecked);
        else
            this->ChoosePalette(offset);
    });
}

template <typename T>
void zel_ComplexMappingModule<T>::OnShowPartChange(wxUpdateUIEvent& event) {
    const int offset = this->OffsetOf(event);
    if (IsPartEntry(offset))
        event.Check(offset - zel_firstPartEntry == GetShowMode());
    else
        event.Skip();
}

template class zel_ComplexMappingModule<float>;

} // namespace zel
