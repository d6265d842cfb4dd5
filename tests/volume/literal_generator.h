#pragma once

#include "model/surface/zel_marchingcubes.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <set>
#include <vector>

/// The slow, obvious twin of the generator: cell by cell, corner by corner, with an ordered map from edges to vertices.
class LiteralGenerator {
public:
    struct Surface {
        std::uint64_t label = 0;
        std::vector<float> vertices, normals;
        std::vector<std::uint64_t> indices;
    };

    static std::vector<Surface> Generate(const unsigned short* labels,
                                         const std::map<unsigned short, std::size_t>& labelToSurface, std::size_t sizeX,
                                         std::size_t sizeY, std::size_t sizeZ, float cellX, float cellY, float cellZ) {
        LiteralGenerator generator(labelToSurface, {sizeX, sizeY, sizeZ}, {cellX, cellY, cellZ});
        for (std::size_t k = 0; k + 1 < sizeZ; ++k)
            for (std::size_t j = 0; j + 1 < sizeY; ++j)
                for (std::size_t i = 0; i + 1 < sizeX; ++i)
                    generator.AddCell(labels, {i, j, k});
        std::vector<Surface> surfaces;
        for (Work& work : generator.works)
            surfaces.push_back(Finish(work));
        return surfaces;
    }

private:
    using Place = std::array<std::size_t, 3>;
    struct Vertex {
        std::uint64_t newIndex;
        std::array<float, 3> at;
    };
    struct Work {
        std::uint64_t label = 0;
        unsigned cubeIndex = 255;
        std::map<std::uint64_t, Vertex> vertices;
        std::vector<std::array<std::uint64_t, 3>> triangles;
    };

    LiteralGenerator(const std::map<unsigned short, std::size_t>& toSurface, const Place& volumeSize,
                     const std::array<float, 3>& cellSize)
        : labelToSurface(toSurface), size(volumeSize), cell(cellSize), works(toSurface.size()) {
        for (const auto& [label, surface] : toSurface)
            works[surface].label = label;
    }

    /// Cell coordinates of the corners.
    static constexpr std::array<std::array<std::size_t, 3>, 8> steps{
        {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 1}, {1, 1, 1}, {1, 0, 1}}};

    std::uint64_t EdgeId(std::int8_t edge, std::uint64_t p) const {
        const std::uint64_t w = size[0], s = size[0] * size[1];
        switch (edge) {
        case 0:
            return 3 * p + 1;
        case 1:
            return 3 * (p - w);
        case 2:
            return 3 * (p + 1) + 1;
        case 3:
            return 3 * p;
        case 4:
            return 3 * (p + s) + 1;
        case 5:
            return 3 * (p + s - w);
        case 6:
            return 3 * (p + s + 1) + 1;
        case 7:
            return 3 * (p + s);
        case 8:
            return 3 * p + 2;
        case 9:
            return 3 * (p - w) + 2;
        case 10:
            return 3 * (p - w + 1) + 2;
        case 11:
            return 3 * (p + 1) + 2;
        default:
            return ~std::uint64_t{0};
        }
    }

    std::uint64_t Reference(const Place& at) const {
        return at[2] * size[0] * size[1] + (size[1] - 1 - at[1]) * size[0] + at[0];
    }

    void AddCell(const unsigned short* labels, const Place& at) {
        const std::uint64_t w = size[0], s = size[0] * size[1];
        const std::uint64_t p = Reference(at);
        const std::array<std::uint64_t, 8> corners{p,     p - w,     p - w + 1,     p + 1,
                                                   p + s, p + s - w, p + s - w + 1, p + s + 1};
        for (unsigned corner = 0; corner < 8; ++corner) {
            const unsigned short label = labels[corners[corner]];
            if (label == 0)
                continue;
            const auto found = labelToSurface.find(label);
            if (found == labelToSurface.end())
                continue;
            works[found->second].cubeIndex ^= 1U << corner;
            cellSet.insert(found->second);
        }
        for (const std::size_t surface : cellSet) {
            Work& work = works[surface];
            if (zel::marchingcubes::edgeTable[work.cubeIndex] != 0) {
                InsertVertices(work, at, p);
                const auto& row = zel::marchingcubes::triangleTable[work.cubeIndex];
                for (std::size_t t = 0; row[t] != -1; t += 3)
                    work.triangles.push_back({EdgeId(row[t], p), EdgeId(row[t + 1], p), EdgeId(row[t + 2], p)});
            }
            work.cubeIndex = 255;
        }
        cellSet.clear();
    }

    void InsertVertices(Work& work, const Place& at, std::uint64_t p) const {
        const bool lastColumn = at[0] + 2 == size[0];
        const bool lastRow = at[1] + 2 == size[1];
        const bool lastSlice = at[2] + 2 == size[2];
        const auto insert = [&](std::initializer_list<std::int8_t> owned) {
            for (const std::int8_t edge : owned)
                if ((zel::marchingcubes::edgeTable[work.cubeIndex] >> edge & 1) != 0)
                    work.vertices.insert({EdgeId(edge, p), {0, MiddleOf(edge, at)}});
        };
        insert({3, 0, 8});
        if (lastColumn)
            insert({2, 11});
        if (lastRow)
            insert({1, 9});
        if (lastSlice)
            insert({4, 7});
        if (lastColumn && lastRow)
            insert({10});
        if (lastColumn && lastSlice)
            insert({6});
        if (lastRow && lastSlice)
            insert({5});
    }

    std::array<float, 3> MiddleOf(std::int8_t edge, const Place& at) const {
        const auto& [a, b] = zel::marchingcubes::edgeCorners[static_cast<std::size_t>(edge)];
        std::array<float, 3> middle{};
        for (std::size_t axis = 0; axis < 3; ++axis)
            middle[axis] = (static_cast<float>(at[axis] + steps[a][axis]) * cell[axis] +
                            static_cast<float>(at[axis] + steps[b][axis]) * cell[axis]) /
                           2;
        return middle;
    }

    static Surface Finish(Work& work) {
        Surface surface;
        surface.label = work.label;
        for (auto& [id, vertex] : work.vertices) {
            vertex.newIndex = surface.vertices.size() / 3;
            surface.vertices.insert(surface.vertices.end(), vertex.at.begin(), vertex.at.end());
        }
        for (const auto& triangle : work.triangles)
            for (const std::uint64_t id : triangle)
                surface.indices.push_back(work.vertices.at(id).newIndex);
        work.vertices.clear();
        work.triangles.clear();
        AddNormals(surface);
        return surface;
    }

    static void AddNormals(Surface& surface) {
        surface.normals.assign(surface.vertices.size(), 0.0F);
        for (std::size_t t = 0; t < surface.indices.size(); t += 3) {
            std::array<float, 3> a{}, b{};
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const float from = surface.vertices[3 * surface.indices[t] + axis];
                a[axis] = surface.vertices[3 * surface.indices[t + 1] + axis] - from;
                b[axis] = surface.vertices[3 * surface.indices[t + 2] + axis] - from;
            }
            for (std::size_t corner = 0; corner < 3; ++corner)
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    const std::size_t next = (axis + 1) % 3, last = (axis + 2) % 3;
                    surface.normals[3 * surface.indices[t + corner] + axis] += b[next] * a[last] - b[last] * a[next];
                }
        }
        for (std::size_t v = 0; v < surface.normals.size(); v += 3) {
            float* const n = surface.normals.data() + v;
            const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
            for (std::size_t axis = 0; axis < 3; ++axis)
                n[axis] /= length;
        }
    }

    const std::map<unsigned short, std::size_t>& labelToSurface;
    const Place size;
    const std::array<float, 3> cell;
    std::vector<Work> works;
    std::set<std::size_t> cellSet;
};
