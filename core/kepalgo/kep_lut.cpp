#include "core/kepalgo/kep_lut.h"

#include "core/kepcore/kep_exceptions.h"

#include <cmath>
#include <new>
#include <stdexcept>
#include <utility>

namespace kep {

namespace {

/// Rounds to the nearest output that lies between two; NaN gives the smaller of them.
template <typename U>
U RoundBetween(double value, U a, U b) {
    const double low = std::min(a, b);
    const double high = std::max(a, b);
    return static_cast<U>(value > low ? std::min(std::round(value), high) : low);
}

/// Fills the entries between two whose outputs are known. The curve never turns, so that between equal outputs all
/// are equal: a few evaluations for each output make a table of any size.
template <typename U, typename Curve>
void FillBetween(std::vector<U>& entries, std::size_t low, std::size_t high, const Curve& curve) {
    if (high - low < 2)
        return;
    if (entries[low] == entries[high]) {
        std::fill(entries.begin() + static_cast<std::ptrdiff_t>(low) + 1,
                  entries.begin() + static_cast<std::ptrdiff_t>(high), entries[low]);
        return;
    }
    const std::size_t middle = low + (high - low) / 2;
    entries[middle] = curve(middle);
    FillBetween(entries, low, middle, curve);
    FillBetween(entries, middle, high, curve);
}

} // namespace

template <typename T, typename U>
LUT<T, U>::LUT(LUT&& src) noexcept
    : m_entries(std::move(src.m_entries)),
      m_first(std::exchange(src.m_first, T{})),
      m_last(std::exchange(src.m_last, T{})),
      m_oneEach(std::exchange(src.m_oneEach, false)),
      m_coversType(std::exchange(src.m_coversType, false)),
      m_ramp(std::exchange(src.m_ramp, std::nullopt)) {}

template <typename T, typename U>
LUT<T, U>& LUT<T, U>::operator=(LUT&& src) noexcept {
    LUT taken(std::move(src)); // by way of a third, so that moving to itself is safe
    m_entries.swap(taken.m_entries);
    m_first = taken.m_first;
    m_last = taken.m_last;
    m_oneEach = taken.m_oneEach;
    m_coversType = taken.m_coversType;
    m_ramp = taken.m_ramp;
    return *this;
}

template <typename T, typename U>
void LUT<T, U>::Init(long size, T first, T last) {
    m_entries = std::vector<U>();
    m_first = first;
    m_last = last;
    m_oneEach = false;
    m_coversType = false;
    m_ramp.reset();
    const auto count = static_cast<std::size_t>(std::max(size, 0L));
    try {
        m_entries.resize(count);
    } catch (const std::bad_alloc&) {
        throw LibException("LUT::Init(): Not enough memory for the table.");
    } catch (const std::length_error&) {
        throw LibException("LUT::Init(): Not enough memory for the table.");
    }
    if constexpr (std::integral<T>) {
        m_oneEach = std::int64_t{last} - std::int64_t{first} + 1 == std::int64_t{size};
        m_coversType = hasTypeSize<T> && m_oneEach && first == 0 && last == std::numeric_limits<T>::max();
    }
}

template <typename T, typename U>
void LUT<T, U>::Set(T key, const U& value) {
    if (m_entries.empty())
        return;
    if (!(key >= m_first && key <= m_last))
        throw LibException("LUT::Set(): The key lies outside the table.");
    m_entries[GetIndex(key)] = value;
}

/// The key that an entry stands for. As a float, if keys are floats: the bounds of a curve are, and a bound that is an
/// entry's key must not count as below it by the digits that a float lacks.
template <typename T, typename U>
double LUT<T, U>::GetPlace(std::size_t index) const {
    const auto first = static_cast<double>(m_first);
    if (m_entries.size() < 2)
        return first;
    const double range = static_cast<double>(m_last) - first;
    const double key = first + static_cast<double>(index) * range / static_cast<double>(m_entries.size() - 1);
    return std::floating_point<T> ? static_cast<double>(static_cast<T>(key)) : key;
}

/// Fills the table with the outputs of a curve that rises or falls but never turns.
template <typename T, typename U>
template <typename Curve>
void LUT<T, U>::FillByCurve(const Curve& curve) {
    if (m_entries.empty())
        return;
    const auto output = [&](std::size_t index) { return curve(GetPlace(index)); };
    const std::size_t top = m_entries.size() - 1;
    m_entries[0] = output(0);
    m_entries[top] = output(top);
    FillBetween(m_entries, 0, top, output);
}

template <typename T, typename U>
void LUT<T, U>::CreateAffine(float a, float b, U low, U high) requires std::integral<U> {
    if constexpr (std::integral<U>) { // clang 14 instantiates members whose requirement does not hold
        const double factor = a;
        const double shift = b;
        m_ramp.reset();
        FillByCurve([=](double key) { return RoundBetween(factor * key + shift, low, high); });
    }
}

template <typename T, typename U>
void LUT<T, U>::CreateGamma(T from, T to, float gamma, U low, U high) requires std::integral<U> {
    if (!std::isfinite(gamma) || gamma <= 0.0F)
        throw LibException("LUT::CreateGamma(): The gamma must be a positive number.");
    const auto start = static_cast<double>(std::min(from, to));
    const auto end = static_cast<double>(std::max(from, to));
    const double exponent = 1.0 / static_cast<double>(gamma);
    if constexpr (std::integral<U>) { // as in CreateAffine
        const double base = static_cast<double>(low);
        const double rise = static_cast<double>(high) - base;
        m_ramp.reset();
        if (exponent == 1.0)
            m_ramp = Ramp{std::min(from, to), std::max(from, to), low, high};
        FillByCurve([=](double key) {
            // In this order: with start and end the same, keys up to it are low, so that a background of zeros is
            // black.
            if (key <= start)
                return low;
            if (key >= end)
                return high;
            const double t = (key - start) / (end - start);
            return RoundBetween(base + rise * (exponent == 1.0 ? t : std::pow(t, exponent)), low, high);
        });
    }
}

template <typename T, typename U>
void LUT<T, U>::CreateThresholding(T from, T to, U low, U high) requires std::integral<U> {
    m_ramp.reset();
    std::fill(m_entries.begin(), m_entries.end(), low);
    if (m_entries.empty() || !(from <= to) || !(to >= m_first) || !(from <= m_last))
        return;
    std::fill(m_entries.begin() + static_cast<std::ptrdiff_t>(GetIndex(from)),
              m_entries.begin() + static_cast<std::ptrdiff_t>(GetIndex(to)) + 1, high);
}

#define KEP_INSTANTIATE(T, U) template class LUT<T, U>;
KEP_TABLE_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
