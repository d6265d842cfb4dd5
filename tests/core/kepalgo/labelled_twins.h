#pragma once

#include "core/kepalgo/kep_labeledimage3d.h"

#include <cstddef>
#include <random>
#include <vector>

/// Components by a plain flood fill: seeds in index order, a list of voxels to visit, every voxel taken by itself.
template <typename V>
kep::LabeledImage3d<unsigned short, V> FloodFillSlowly(const kep::Image3d<V>& image) {
    using Component = kep::ComponentInfo<unsigned short, V>;
    using Box = kep::VOI<kep::T_pair<std::size_t, std::size_t>>;
    kep::LabeledImage3d<unsigned short, V> labels;
    labels.MakeRoom(image.size.x, image.size.y, image.size.z);
    unsigned short last = 0;
    for (std::size_t seed = 0; seed < image.GetNumVoxels(); ++seed) {
        if (image.GetVoxel(seed) == V{} || labels.GetVoxel(seed) != 0)
            continue;
        const unsigned short label = ++last;
        Component& component = labels.components[label];
        component.voxel_value = image.GetVoxel(seed);
        component.voi = Box(image.GetPos(seed), {1, 1, 1});
        std::vector<std::size_t> toVisit{seed};
        labels.SetVoxel(seed, label);
        while (!toVisit.empty()) {
            const std::size_t i = toVisit.back();
            toVisit.pop_back();
            const auto p = image.GetPos(i);
            ++component.volume;
            component.border = component.border || image.OnBorder(i);
            component.voi += Box(p, {1, 1, 1});
            const auto visit = [&](std::size_t x, std::size_t y, std::size_t z) {
                // A coordinate below 0 has wrapped round and is large.
                if (x >= image.size.x || y >= image.size.y || z >= image.size.z)
                    return;
                const std::size_t next = image.GetIndex(x, y, z);
                if (image.GetVoxel(next) == V{} || labels.GetVoxel(next) != 0)
                    return;
                labels.SetVoxel(next, label);
                toVisit.push_back(next);
            };
            visit(p.x - 1, p.y, p.z);
            visit(p.x + 1, p.y, p.z);
            visit(p.x, p.y - 1, p.z);
            visit(p.x, p.y + 1, p.z);
            visit(p.x, p.y, p.z - 1);
            visit(p.x, p.y, p.z + 1);
        }
    }
    return labels;
}

/// The table of labels as they stand, voxel by voxel.
template <typename V>
kep::LabeledImage3d<unsigned short, V> TakeLabelsSlowly(const kep::Image3d<V>& image) {
    using Component = kep::ComponentInfo<unsigned short, V>;
    kep::LabeledImage3d<unsigned short, V> labels;
    labels.MakeRoom(image.size.x, image.size.y, image.size.z);
    for (std::size_t i = 0; i < image.GetNumVoxels(); ++i) {
        const auto label = static_cast<unsigned short>(image.GetVoxel(i));
        labels.SetVoxel(i, label);
        if (label == 0)
            continue;
        const kep::VOI<kep::T_pair<std::size_t, std::size_t>> box(image.GetPos(i), {1, 1, 1});
        Component& component = labels.components[label];
        if (component.volume == 0) {
            component = Component(box, 1, image.GetVoxel(i), image.OnBorder(i));
        } else {
            ++component.volume;
            component.border = component.border || image.OnBorder(i);
            component.voi += box;
        }
    }
    return labels;
}

/// @param density   share of voxels that are not 0, in percent
/// @param values    different values from 1 on
template <typename V>
kep::Image3d<V> MakeRandomImage(const kep::Vector3d<std::size_t>& size, unsigned density, unsigned values,
                                std::mt19937& random) {
    kep::Image3d<V> image;
    image.MakeRoom(size.x, size.y, size.z);
    for (V& voxel : image)
        voxel = random() % 100 < density ? static_cast<V>(1 + random() % values) : V{};
    return image;
}
