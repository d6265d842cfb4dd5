// What the colour module keeps in a host's configuration.

#include "mapping/zel_rgbmapping.h"

#include <wx/fileconf.h>

#include <concepts>
#include <limits>

namespace zel {

namespace {

const char* const colourNames[] = {"RED", "GREEN", "BLUE"};
const char* const colourLetters[] = {"R", "G", "B"};

wxString KeyOf(const char* name, const char* suffix) {
    return wxString("RGBMAP_") + name + suffix;
}

/// Reads the fields of a module. Numbers that a field can't hold are truncated to its width.
class Reader {
public:
    explicit Reader(const wxFileConfig& config) : m_config(config) {}

    template <std::integral I>
    void operator()(const wxString& key, I& field, I missing) const {
        long value = 0; // the toolkit's own reading of an int asserts on large numbers
        m_config.Read(key, &value, long{missing});
        field = static_cast<I>(value);
    }
    template <typename V>
    void operator()(const wxString& key, V& field, V missing) const {
        m_config.Read(key, &field, missing);
    }
    void operator()(const wxString& key, bool& field, bool missing) const { m_config.Read(key, &field, missing); }

private:
    const wxFileConfig& m_config;
};

/// Writes them, as decimal numbers.
class Writer {
public:
    explicit Writer(wxFileConfig& config) : m_config(config) {}

    template <std::integral I>
    void operator()(const wxString& key, const I& field, I) const {
        m_config.Write(key, long{field});
    }
    template <typename V>
    void operator()(const wxString& key, const V& field, V) const {
        m_config.Write(key, field);
    }
    void operator()(const wxString& key, const bool& field, bool) const { m_config.Write(key, field); }

private:
    wxFileConfig& m_config;
};

/// What both ways go through: `keep(key, field, value of a missing key)`, in the order of the keys.
template <typename T, typename Keep, typename Channels, typename Shown>
void GoThroughChannels(const Keep& keep, Channels&& channel, Shown& isShown) {
    constexpr T max = std::numeric_limits<T>::max();
    for (int c = 0; c < 3; ++c)
        keep(KeyOf("MIN_", colourNames[c]), channel(c).rangeMin, T{0});
    for (int c = 0; c < 3; ++c)
        keep(KeyOf("MAX_", colourNames[c]), channel(c).rangeMax, max);
    for (std::size_t c = 0; c < 3; ++c)
        keep(KeyOf("SHOW_", colourNames[c]), isShown[c], true);
    for (int c = 0; c < 3; ++c)
        keep(KeyOf("THRES_", colourLetters[c]) + "MIN", channel(c).thresholds.lower, T{0});
    for (int c = 0; c < 3; ++c)
        keep(KeyOf("THRES_", colourLetters[c]) + "MAX", channel(c).thresholds.upper, max);
}

template <typename T, typename Keep, typename Channels>
void GoThroughLevels(const Keep& keep, Channels&& channel) {
    using Level = unsigned char;
    for (int c = 0; c < 3; ++c) {
        auto& levels = channel(c).levels;
        keep(KeyOf("LEVELS_IMIN_", colourNames[c]), levels.inMin, T{0});
        keep(KeyOf("LEVELS_IMAX_", colourNames[c]), levels.inMax, std::numeric_limits<T>::max());
        keep(KeyOf("LEVELS_IGAMMA_", colourNames[c]), levels.gamma, 1.0);
        keep(KeyOf("LEVELS_OMIN_", colourNames[c]), levels.outMin, Level{0});
        keep(KeyOf("LEVELS_OMAX_", colourNames[c]), levels.outMax, Level{255});
    }
}

} // namespace

template <typename T>
void zel_RGBMappingModule<T>::ReadFromConfig(wxFileConfig& config) {
    const Reader read(config);
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
    const Writer write(config);
    write("RGBMAP_STRETCH_MODE", this->GetStretchEntry(), int{zel_ME_NO_STRETCH});
    write("RGBMAP_PERCENTIL_VALUE", this->GetPercentilValue(), 0.001);
    GoThroughChannels<T>(
        write, [this](int c) -> const auto& { return this->GetChannel(c); }, m_isShown);
    WriteLevelsToConfig(config);
}

template <typename T>
void zel_RGBMappingModule<T>::ReadLevelsFromConfig(wxFileConfig& config) {
    GoThroughLevels<T>(
        Reader(config), [this](int c) -> auto& { return this->GetChannel(c); });
}

template <typename T>
void zel_RGBMappingModule<T>::WriteLevelsToConfig(wxFileConfig& config) {
    GoThroughLevels<T>(
        Writer(config), [this](int c) -> const auto& { return this->GetChannel(c); });
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
