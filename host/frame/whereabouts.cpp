#include "host/frame/whereabouts.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zelviewer {

namespace {

std::string Microns(std::size_t voxel, float offset, float resolution) {
    const double place =
        static_cast<double>(offset) + (static_cast<double>(voxel) + 0.5) / static_cast<double>(resolution);
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), " (%.2f um)", place);
    return text.data();
}

} // namespace

std::string DescribeWhereabouts(const Whereabouts& place, const kep::Vector3d<float>& offset,
                                const kep::Resolution& resolution, Detail detail) {
    const kep::Vector3d<float> res = resolution.GetUsable().GetRes();
    const bool hasMicrons = detail == Detail::VoxelsAndMicrons && resolution.IsDefined();
    const auto along = [&](const char* axis, std::size_t voxel, float from, float scale) {
        return axis + std::to_string(voxel + 1) + (hasMicrons ? Microns(voxel, from, scale) : "");
    };
    std::string text = along("x ", place.voxel.x, offset.x, res.x) + along("  y ", place.voxel.y, offset.y, res.y) +
                       along("  z ", place.voxel.z, offset.z, res.z);
    if (place.frames > 1)
        text += "  t " + std::to_string(place.frame + 1) + " of " + std::to_string(place.frames);
    if (!place.value.empty())
        text += "  value " + place.value;
    if (place.label)
        text += *place.label == 0 ? std::string("  no label") : "  label " + std::to_string(*place.label);
    return text;
}

int WidthOfMessages(int bar, bool hasMessage) {
    constexpr int wide = 180, grip = 16; // the corner by which the window is resized stays free
    return hasMessage ? std::clamp(bar / 2, grip, wide) : grip;
}

} // namespace zelviewer
