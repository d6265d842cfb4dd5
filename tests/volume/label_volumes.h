#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <vector>

/// A small volume of labels, x fastest.
struct Volume {
    std::size_t width, height, depth;
    std::vector<unsigned short> labels = std::vector<unsigned short>(width * height * depth);

    unsigned short& At(std::size_t x, std::size_t y, std::size_t z) { return labels[(z * height + y) * width + x]; }

    /// Gives the labels that occur their surfaces, in ascending order.
    std::map<unsigned short, std::size_t> MapLabels() const {
        std::map<unsigned short, std::size_t> toSurface;
        for (const unsigned short label : std::set<unsigned short>(labels.begin(), labels.end()))
            if (label != 0)
                toSurface.emplace(label, toSurface.size());
        return toSurface;
    }
};

/// The shape of a mesh as its arrays tell it.
struct MeshShape {
    bool closed = true; ///< every edge of a triangle is met by one of the opposite direction, and by no other
    std::size_t edges = 0;
};

template <typename Index>
MeshShape GetShape(const Index* indices, std::size_t triangleCount) {
    std::map<std::pair<Index, Index>, int> uses;
    for (std::size_t t = 0; t < 3 * triangleCount; t += 3)
        for (std::size_t i = 0; i < 3; ++i)
            ++uses[{indices[t + i], indices[t + (i + 1) % 3]}];
    MeshShape shape;
    for (const auto& [edge, count] : uses) {
        const auto opposite = uses.find({edge.second, edge.first});
        if (count != 1 || opposite == uses.end() || opposite->second != 1)
            shape.closed = false;
        if (opposite == uses.end() || edge.first < edge.second)
            ++shape.edges;
    }
    return shape;
}
