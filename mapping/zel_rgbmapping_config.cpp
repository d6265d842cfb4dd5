// What the colour module keeps in a host's configuration.

#include "mapping/text/zel_rgbconfig.h"
#include "mapping/zel_rgbmapping.h"

namespace zel {

template <typename T>
void zel_RGBMappingModule<T>::ReadFromConfig(wxFileConfig& config) {
    const ConfigReader read(config);
    int stretch = zel_ME_NO_STRETCH;
    double percentil = 0;
    read("RGBMAP_STRETCH_MODE", stretch, int{zel_ME_NO_STRETCH});
    read("RGBMAP_PERCENTIL_VALUE", percentil, 0.001);
    this->SetStretchEntry(stretch);
    this->SetPercentilValue(percentil);
    GoThroughChannels<T>(
        read, [this](int c) -> auto& { return this->GetChannel(c); }, m_isShown);
    this->CheckEntry(stretch, true);
    for (const int entry : {zel_CE_RED, zel_CE_GREEN, zel_CE_BLUE})
        this->CheckEntry(entry, IsChannelShown(entry - zel_CE_RED));
    ReadLevelsFromConfig(config);
}

template <typename T>
void zel_RGBMappingModule<T>::WriteToConfig(wxFileConfig& config) {
    const ConfigWriter write(config);
    write("RGBMAP_STRETCH_MODE", this->GetStretchEntry(), int{zel_ME_NO_STRETCH});
    write("RGBMAP_PERCENTIL_VALUE", this->GetPercentilValue(), 0.001);
    GoThroughChannels<T>(
        write, [this](int c) -> const auto& { return this->GetChannel(c); }, m_isShown);
    WriteLevelsToConfig(config);
}

template <typename T>
void zel_RGBMappingModule<T>::ReadLevelsFromConfig(wxFileConfig& config) {
    GoThroughLevels<T>(
        ConfigReader(config), [this](int c) -> auto& { return this->GetChannel(c); });
}

template <typename T>
void zel_RGBMappingModule<T>::WriteLevelsToConfig(wxFileConfig& config) {
    GoThroughLevels<T>(
        ConfigWriter(config), [this](int c) -> const auto& { return this->GetChannel(c); });
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template void zel_RGBMappingModule<T>::ReadFromConfig(wxFileConfig&);                                              \
    template void zel_RGBMappingModule<T>::WriteToConfig(wxFileConfig&);                                               \
    template void zel_RGBMappingModule<T>::ReadLevelsFromConfig(wxFileConfig&);                                        \
    template void zel_RGBMappingModule<T>::WriteLevelsToConfig(wxFileConfig&);
ZEL_INSTANTIATE(unsigned char)
ZEL_INSTANTIATE(unsigned short)
#undef ZEL_INSTANTIATE

} // namespace zel
