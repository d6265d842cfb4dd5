#include "host/proportions.h"

#include <algorithm>
#include <cmath>

namespace zelviewer {

kep::Resolution CompleteResolution(const kep::Resolution& stored, const std::optional<kep::Vector3d<float>>& given) {
    if (!given || stored.IsDefined())
        return stored;
    const auto complete = [](float has, float gets) { return std::isfinite(has) && has > 0.0F ? has : gets; };
    const kep::Vector3d<float> res = stored.GetRes();
    return {complete(res.x, given->x), complete(res.y, given->y), complete(res.z, given->z)};
}

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

} // namespace zelviewer
