#pragma once

// Private: the keys under which a colour module's channels stand in a configuration.

#include <wx/fileconf.h>

#include <concepts>
#include <cstddef>
#include <limits>

namespace zel {

namespace detail {

inline constexpr const char* colourNames[] = {"RED", "GREEN", "BLUE"};
inline constexpr const char* colourLetters[] = {"R", "G", "B"};

inline wxString KeyOf(const char* name, const char* suffix) {
    return wxString("RGBMAP_") + name + suffix;
}

} // namespace detail

/// Reads the fields of a module. Numbers that a field can't hold are truncated to its width.
class ConfigReader {
public:
    explicit ConfigReader(const wxFileConfig& config) : m_config(config) {}

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
class ConfigWriter {
public:
    explicit ConfigWriter(wxFileConfig& config) : m_config(config) {}

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
    using namespace detail;
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
    using namespace detail;
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

} // namespace zel
