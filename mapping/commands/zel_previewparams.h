#pragma once

// Private: what a preview event asks for, in the type of the voxels.

#include "dialogs/zel_previewevents.h"
#include "image/kep.h"
#include "model/zel_saturate.h"
#include "model/zel_stretch.h"

namespace zel::detail {

template <typename T>
GrayLevels<T> LevelsOf(const zel_LevelsEvent& event) {
    const auto value = [](float number) { return SaturateTo<T>(static_cast<double>(number)); };
    const auto level = [](float number) { return SaturateTo<unsigned char>(static_cast<double>(number)); };
    return {value(event.GetInMin()), value(event.GetInMax()), event.GetGamma(), level(event.GetOutMin()),
            level(event.GetOutMax())};
}

template <typename T>
ThresParams<T> ThresholdsOf(const zel_ThresholdingEvent& event) {
    return {SaturateTo<T>(static_cast<double>(event.GetLower())), SaturateTo<T>(static_cast<double>(event.GetUpper()))};
}

/// Fills tables for something that is being tried out. Where no curve has such a gamma, tables and picture stay as they
/// are, and nobody is told: the next preview comes soon.
/// @return whether they were filled
template <typename Fill>
bool TryToFill(const Fill& fill) {
    try {
        fill();
        return true;
    } catch (const kep::LibException&) {
        return false;
    }
}

} // namespace zel::detail
