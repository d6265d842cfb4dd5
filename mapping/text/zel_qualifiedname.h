#pragma once

#include "image/kep.h"

#include <complex>
#include <string>

namespace zel {

/// A voxel type as messages spell it.
template <typename T>
inline constexpr const char* voxelTypeName = nullptr;
template <>
inline constexpr const char* voxelTypeName<unsigned char> = "unsigned char";
template <>
inline constexpr const char* voxelTypeName<unsigned short> = "unsigned short";
template <>
inline constexpr const char* voxelTypeName<int> = "int";
template <>
inline constexpr const char* voxelTypeName<float> = "float";
template <>
inline constexpr const char* voxelTypeName<kep::RGB_generic<unsigned char>> = "kep::RGB_generic<unsigned char>";
template <>
inline constexpr const char* voxelTypeName<kep::RGB_generic<unsigned short>> = "kep::RGB_generic<unsigned short>";
template <>
inline constexpr const char* voxelTypeName<std::complex<float>> = "std::complex<float>";

/// Name of a member function of a class template, such as "zel::zel_GrayMappingModule<int>::SetRange".
template <typename T>
std::string QualifiedName(const char* classTemplate, const char* function) {
    return std::string("zel::") + classTemplate + "<" + voxelTypeName<T> + ">::" + function;
}

} // namespace zel
