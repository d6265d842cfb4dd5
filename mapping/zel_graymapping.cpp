#include "mapping/zel_graymapping.h"

#include <wx/menu.h>

namespace zel {

template <typename T>
zel_GrayMappingModule<T>::zel_GrayMappingModule(wxFrame* frame, const HistogramSet<T>& histograms)
    : zel_PaletteMappingModule<T>(frame, histograms, 0) {}

template <typename T>
wxMenu* zel_GrayMappingModule<T>::CreateMenu(int& id) {
    const bool isFirst = !this->HasMenu();
    wxMenu* const menu = zel_PaletteMappingModule<T>::CreateMenu(id);
    if (!isFirst)
        return menu;
    if constexpr (std::unsigned_integral<T>)
        this->InsertBitdepth(*menu);
    this->Bind(wxEVT_MENU, &zel_GrayMappingModule::OnMapping, this, this->GetMenuId(zel_ME_BITDEPTH), id);
    return menu;
}

template <typename T>
void zel_GrayMappingModule<T>::Map(const T* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const {
    if (const std::size_t count = buffer.GetCount(); count > 0)
        kep::MapToPixels(this->GetMappingTable(), this->GetPaletteTable(), data, count, &buffer.data[0]);
}

template <typename T>
void zel_GrayMappingModule<T>::OnMapping(wxCommandEvent& event) {
    this->RunCommand(event, [this](int offset) { this->ChoosePalette(offset); });
}

#define ZEL_INSTANTIATE(T) template class zel_GrayMappingModule<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
