#pragma once

#include "tests/support/scratch_folder.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

/// What a mesh file holds, read by its header alone.
struct PlyMesh {
    std::vector<std::array<double, 3>> vertices, normals;
    std::vector<std::array<std::uint32_t, 3>> triangles;

    /// The volume inside, if it is closed and its triangles are counterclockwise as seen from outside.
    double GetVolume() const {
        double sum = 0;
        for (const auto& [i, j, k] : triangles) {
            const auto &a = vertices.at(i), &b = vertices.at(j), &c = vertices.at(k);
            for (std::size_t x = 0; x < 3; ++x) {
                const std::size_t y = (x + 1) % 3, z = (x + 2) % 3;
                sum += a[x] * (b[y] * c[z] - b[z] * c[y]);
            }
        }
        return sum / 6;
    }
};

/// Reads a little-endian mesh of triangles, and fails the test if the file is anything else.
inline PlyMesh ReadPly(const std::string& fileName) {
    const std::string bytes = ReadBytes(fileName);
    const std::string end = "end_header\n";
    std::size_t at = bytes.find(end);
    PlyMesh mesh;
    if (at == std::string::npos) {
        ADD_FAILURE() << fileName << " has no header";
        return mesh;
    }
    std::istringstream header(bytes.substr(0, at));
    at += end.size();
    std::size_t vertexCount = 0, triangleCount = 0;
    std::vector<std::size_t> sizes; // of a vertex's properties, in order
    std::string word;
    while (header >> word) {
        std::string first, second;
        if (word == "format") {
            header >> first;
            EXPECT_EQ(first, "binary_little_endian");
        } else if (word == "element") {
            header >> first;
            header >> (first == "vertex" ? vertexCount : triangleCount);
        } else if (word == "property") {
            header >> first;
            if (first == "list") {
                std::getline(header, second);
                EXPECT_EQ(second, " uchar uint vertex_indices");
            } else {
                header >> second;
                sizes.push_back(first == "double" ? sizeof(double) : sizeof(float));
            }
        } else if (word == "comment") {
            std::getline(header, first);
        }
    }
    EXPECT_EQ(sizes.size(), 6U);
    const auto take = [&](auto value) {
        EXPECT_LE(at + sizeof value, bytes.size());
        if (at + sizeof value <= bytes.size())
            std::memcpy(&value, bytes.data() + at, sizeof value);
        at += sizeof value;
        return value;
    };
    for (std::size_t v = 0; v < vertexCount; ++v) {
        std::array<std::array<double, 3>, 2> values{};
        for (std::size_t i = 0; i < sizes.size(); ++i)
            values[i / 3][i % 3] = sizes[i] == sizeof(double) ? take(double()) : static_cast<double>(take(float()));
        mesh.vertices.push_back(values[0]);
        mesh.normals.push_back(values[1]);
    }
    for (std::size_t t = 0; t < triangleCount; ++t) {
        EXPECT_EQ(take(std::uint8_t()), 3);
        auto& triangle = mesh.triangles.emplace_back();
        for (std::uint32_t& corner : triangle)
            corner = take(std::uint32_t());
    }
    EXPECT_EQ(at, bytes.size());
    return mesh;
}
