#pragma once

#include "core/kepcore/kep_imageinfo.h"
#include "core/kepcore/kep_rgb.h"

#include <complex>

/// Calls visit.operator()<T>() with the voxel type that a file's information names; `bool` where no type holds them
/// all.
template <typename Visit>
auto VisitVoxelType(kep::VoxelType type, const Visit& visit) {
    switch (type) {
    case kep::VoxelType::Binary:
        return visit.template operator()<bool>();
    case kep::VoxelType::Gray8:
        return visit.template operator()<unsigned char>();
    case kep::VoxelType::Gray16:
        return visit.template operator()<unsigned short>();
    case kep::VoxelType::Int:
        return visit.template operator()<int>();
    case kep::VoxelType::UInt64:
        return visit.template operator()<unsigned long long>();
    case kep::VoxelType::Float:
        return visit.template operator()<float>();
    case kep::VoxelType::Double:
        return visit.template operator()<double>();
    case kep::VoxelType::RGB8:
        return visit.template operator()<kep::RGB_generic<unsigned char>>();
    case kep::VoxelType::RGB16:
        return visit.template operator()<kep::RGB_generic<unsigned short>>();
    case kep::VoxelType::Complex:
        return visit.template operator()<std::complex<float>>();
    case kep::VoxelType::DoubleComplex:
        return visit.template operator()<std::complex<double>>();
    case kep::VoxelType::Other:
        break;
    }
    return visit.template operator()<bool>();
}
