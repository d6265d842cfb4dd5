#pragma once

#include "image/zel_labeledimage4d.h"

#include <cstddef>
#include <memory>

namespace zel::test {

template <typename V>
using LabelImage = mor::LabeledImage4d<unsigned short, V>;

template <typename V, typename MakeLabel>
void FillLabels(LabelImage<V>& labels, std::size_t t, const MakeLabel& makeLabel) {
    std::size_t i = 0;
    for (unsigned short& voxel : *labels.GetImage(t)) {
        const kep::Vector3d<std::size_t> at = labels.GetFramePos(i++);
        voxel = static_cast<unsigned short>(makeLabel(at.x, at.y, at.z, t));
    }
}

/// Labels of one micron a voxel, made by their place.
template <typename V, typename MakeLabel>
std::unique_ptr<LabelImage<V>> MakeLabels(kep::Vector3d<std::size_t> size, std::size_t frames,
                                          const MakeLabel& makeLabel) {
    const kep::Resolution resolution(1, 1, 1);
    auto labels = std::make_unique<LabelImage<V>>(false, nullptr, &resolution);
    labels->MakeRoom(size, frames);
    for (std::size_t t = 0; t < frames; ++t)
        FillLabels(*labels, t, makeLabel);
    return labels;
}

} // namespace zel::test
