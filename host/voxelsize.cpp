#include "host/voxelsize.h"

#include <cmath>

namespace zelviewer {

kep::Resolution CompleteResolution(const kep::Resolution& stored, const std::optional<kep::Vector3d<float>>& given) {
    if (!given || stored.IsDefined())
        return stored;
    const auto complete = [](float has, float gets) { return std::isfinite(has) && has > 0.0F ? has : gets; };
    const kep::Vector3d<float> res = stored.GetRes();
    return {complete(res.x, given->x), complete(res.y, given->y), complete(res.z, given->z)};
}

} // namespace zelviewer
