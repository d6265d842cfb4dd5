#pragma once

#include "model/zel_extremes.h"
#include "model/zel_mapper.h"

#include <cmath>
#include <complex>
#include <cstddef>

namespace zelviewer {

/// Gray level of a value between two ends: 0 at the lower, 255 at the upper and beyond. Where the ends are one, that
/// value is shown as middle gray.
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

/// What stands between a voxel and its colour, for colours and complex voxels: an object called with a voxel.
template <typename T>
class LinearColour;

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

/// Shows a colour image as it is, and a complex one from its smallest to its largest amplitude.
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
