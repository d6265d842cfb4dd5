#include "model/zel_proportions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zel {

OpeningScale ChooseScale(const kep::Resolution& resolution) {
    constexpr float mostStretch = 100.0F;
    const kep::Vector3d<float> res = resolution.GetUsable().GetRes();
    const float finest = std::max({res.x, res.y, res.z});
    const float coarsest = std::min({res.x, res.y, res.z});
    if (finest / mostStretch > coarsest)
        return {res, false};
    return {{finest, finest, finest}, true};
}

float FactorToFill(const kep::Vector3d<float>& pixels, int width, int height) {
    constexpr int surroundings = 8; // borders of the windows and lines between them, which don't grow
    const float across = static_cast<float>(std::max(width - surroundings, 1)) / (pixels.x + pixels.z);
    const float down = static_cast<float>(std::max(height - surroundings, 1)) / (pixels.y + pixels.z);
    const float factor = std::min(across, down);
    return factor < 1.0F ? factor : std::floor(2.0F * factor) / 2.0F;
}

std::string DescribeTitle(const std::string& name, const kep::Vector3d<std::size_t>& voxels, float pixels) {
    const double percent = 100.0 * static_cast<double>(pixels);
    std::array<char, 64> zoom;
    std::snprintf(zoom.data(), zoom.size(), percent < 10.0 ? "%.1f%%" : "%.0f%%", percent);
    return name + " - " + std::to_string(voxels.x) + " x " + std::to_string(voxels.y) + " x " +
           std::to_string(voxels.z) + " - " + zoom.data();
}

} // namespace zel
