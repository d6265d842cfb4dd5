#include "host/displaytype.h"

#include <algorithm>

namespace zelviewer {

const std::vector<std::pair<std::string, DisplayType>>& DisplayTypeNames() {
    static const std::vector<std::pair<std::string, DisplayType>> names = {
        {"gray8", DisplayType::Gray8},    {"gray16", DisplayType::Gray16}, {"int", DisplayType::Int},
        {"float", DisplayType::Float},    {"rgb", DisplayType::RGB8},      {"rgb16", DisplayType::RGB16},
        {"complex", DisplayType::Complex}};
    return names;
}

const std::string& NameOf(DisplayType type) {
    const auto& names = DisplayTypeNames();
    return std::find_if(names.begin(), names.end(), [type](const auto& entry) { return entry.second == type; })->first;
}

bool IsGray(DisplayType type) {
    return type <= DisplayType::Float;
}

bool IsColour(DisplayType type) {
    return type == DisplayType::RGB8 || type == DisplayType::RGB16;
}

DisplayType DisplayTypeFor(kep::VoxelType type) {
    switch (type) {
    case kep::VoxelType::Binary:
    case kep::VoxelType::Gray8:
        return DisplayType::Gray8;
    case kep::VoxelType::Gray16:
        return DisplayType::Gray16;
    case kep::VoxelType::Int:
    case kep::VoxelType::UInt64:
    case kep::VoxelType::Other:
        return DisplayType::Int;
    case kep::VoxelType::Float:
    case kep::VoxelType::Double:
        return DisplayType::Float;
    case kep::VoxelType::RGB8:
        return DisplayType::RGB8;
    case kep::VoxelType::RGB16:
        return DisplayType::RGB16;
    case kep::VoxelType::Complex:
    case kep::VoxelType::DoubleComplex:
        break;
    }
    return DisplayType::Complex;
}

DisplayType WiderType(DisplayType a, DisplayType b) {
    // Gray and complex types stand in the order in which each holds those before it; the colours stand beside them.
    if (IsColour(a) == IsColour(b))
        return std::max(a, b);
    const DisplayType colour = IsColour(a) ? a : b;
    const DisplayType other = IsColour(a) ? b : a;
    return other == DisplayType::Gray8 ? colour : DisplayType::RGB16;
}

} // namespace zelviewer
