#pragma once

#include "image/zel_extremes.h"
#include "viewer/zel_mapper.h"

#include <cmath>
#include <complex>
#include <limits>
#include <vector>

namespace zelviewer {

/// Gray level of a value between two ends: 0 at the lower, 255 at the upper and beyond. Where the ends are one, as in
/// a constant image, that value is shown as middle gray.
class LinearLevel {
public:
    LinearLevel(double low, double high) : m_low(low), m_range(high > low ? high - low : 0.0) {}

    unsigned char operator()(double value) const {
        if (m_range == 0.0)
            return value > m_low ? 255 : value < m_low ? 0 : 128;
        const double level = (value - m_low) * 255.0 / m_range + 0.5;
        return level >= 255.0 ? 255 : level > 0.0 ? static_cast<unsigned char>(level) : 0; // not a number is black
    }

private:
    double m_low;
    double m_range; // 0 for a constant image
};

/// What stands between a voxel and its colour, one for each kind of voxels: an object called with a voxel.
template <typename T>
class LinearColour;

/// 8 and 16 bits: the levels of all values stand in a table.
template <typename T>
class TabledColour {
public:
    explicit TabledColour(const mor::ExtremaValues<T>& extremes)
        : m_levels(std::size_t{std::numeric_limits<T>::max()} + 1) {
        const LinearLevel level(extremes.min, extremes.max);
        for (std::size_t value = 0; value < m_levels.size(); ++value)
            m_levels[value] = level(static_cast<double>(value));
    }
    kep::RGB_generic<unsigned char> operator()(T voxel) const {
        const unsigned char level = m_levels[voxel];
        return {level, level, level};
    }

private:
    std::vector<unsigned char> m_levels;
};

template <>
class LinearColour<unsigned char> : public TabledColour<unsigned char> {
    using TabledColour::TabledColour;
};

template <>
class LinearColour<unsigned short> : public TabledColour<unsigned short> {
    using TabledColour::TabledColour;
};

/// Numbers of 32 bits.
template <typename T>
class ComputedColour {
public:
    explicit ComputedColour(const mor::ExtremaValues<T>& extremes)
        : m_level(static_cast<double>(extremes.min), static_cast<double>(extremes.max)) {}
    kep::RGB_generic<unsigned char> operator()(T voxel) const {
        const unsigned char level = m_level(static_cast<double>(voxel));
        return {level, level, level};
    }

private:
    LinearLevel m_level;
};

template <>
class LinearColour<int> : public ComputedColour<int> {
    using ComputedColour::ComputedColour;
};

template <>
class LinearColour<float> : public ComputedColour<float> {
    using ComputedColour::ComputedColour;
};

/// Colours are shown as they are, of 16 bits the high byte.
template <typename C>
class LinearColour<kep::RGB_generic<C>> {
public:
    explicit LinearColour(const mor::ExtremaValues<kep::RGB_generic<C>>&) {}
    kep::RGB_generic<unsigned char> operator()(const kep::RGB_generic<C>& voxel) const {
        return {HighByte(voxel.red), HighByte(voxel.green), HighByte(voxel.blue)};
    }

private:
    static unsigned char HighByte(C component) {
        return static_cast<unsigned char>(component >> (8 * (sizeof(C) - 1)));
    }
};

/// Complex voxels show their amplitude.
template <>
class LinearColour<std::complex<float>> {
public:
    explicit LinearColour(const mor::ExtremaValues<std::complex<float>>& extremes)
        : m_level(static_cast<double>(extremes.amplitudeMin), static_cast<double>(extremes.amplitudeMax)) {}
    kep::RGB_generic<unsigned char> operator()(const std::complex<float>& voxel) const {
        const auto re = static_cast<double>(voxel.real());
        const auto im = static_cast<double>(voxel.imag());
        const unsigned char level = m_level(std::sqrt(re * re + im * im));
        return {level, level, level};
    }

private:
    LinearLevel m_level;
};

/// Shows an image from its smallest to its largest value.
template <typename T>
class LinearMapper : public zel::zel_Mapper<T> {
public:
    explicit LinearMapper(const mor::ExtremaValues<T>& extremes) : m_colour(extremes) {}

    void Map(const T* data, zel::ColourBuffer& buffer) const override {
        const std::size_t count = static_cast<std::size_t>(buffer.width) * static_cast<std::size_t>(buffer.height);
        for (std::size_t i = 0; i < count; ++i)
            buffer.data[i] = m_colour(data[i]);
    }

private:
    LinearColour<T> m_colour;
};

} // namespace zelviewer
