#pragma once

#include "image/kep.h"

#include <complex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace zelviewer {

/// The voxel types that a window exists for.
enum class DisplayType { Gray8, Gray16, Int, Float, RGB8, RGB16, Complex };

/// Their names on the command line.
const std::vector<std::pair<std::string, DisplayType>>& DisplayTypeNames();
const std::string& NameOf(DisplayType type);

/// Whether a voxel is one number, integer or real.
bool IsGray(DisplayType type);
/// Whether a voxel is red, green and blue.
bool IsColour(DisplayType type);

/// Whether a voxel type has red, green and blue.
template <typename T>
inline constexpr bool IsColourVoxel = false;
template <typename C>
inline constexpr bool IsColourVoxel<kep::RGB_generic<C>> = true;

/// The type in which a file is shown: its own, or the nearest one that a window exists for. Reading tests the values,
/// so a file that does not fit is refused and not changed.
DisplayType DisplayTypeFor(kep::VoxelType type);

/// A type that can represent the voxels of both, for a sequence whose files differ. Colour together with anything that
/// RGB cannot represent gives a type that refuses one of them.
DisplayType WiderType(DisplayType a, DisplayType b);

/// Calls f with std::type_identity of the C++ type.
template <typename F>
decltype(auto) WithVoxelType(DisplayType type, F&& f) {
    switch (type) {
    case DisplayType::Gray8:
        return f(std::type_identity<unsigned char>());
    case DisplayType::Gray16:
        return f(std::type_identity<unsigned short>());
    case DisplayType::Int:
        return f(std::type_identity<int>());
    case DisplayType::Float:
        return f(std::type_identity<float>());
    case DisplayType::RGB8:
        return f(std::type_identity<kep::RGB_generic<unsigned char>>());
    case DisplayType::RGB16:
        return f(std::type_identity<kep::RGB_generic<unsigned short>>());
    case DisplayType::Complex:
        break;
    }
    return f(std::type_identity<std::complex<float>>());
}

} // namespace zelviewer
