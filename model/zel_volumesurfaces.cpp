#include "model/zel_volumesurfaces.h"

#include "core/kepcore/kep_exceptions.h"

#include <algorithm>

namespace zel {

namespace {

/// The smallest power of two that isn't below the voxels of a side with a border of one voxel. 16 bits hold it for
/// every side within the limit.
float PaddedSide(std::size_t side) {
    std::uint16_t power = 1;
    while (power < side + 2)
        power = static_cast<std::uint16_t>(2 * power);
    return power;
}

} // namespace

// The sides that a volume with sides of powers of two would have cancel out, but for rounding. They stay, as the
// formulae of the volume's scale and of the cells are each other's counterpart.
kep::Vector3d<float> ComputeIsosurfaceCells(const kep::Vector3d<std::size_t>& size, const kep::Resolution& resolution) {
    if (!FitsIsosurface(size))
        throw kep::InternalException("The image is too big for surfaces.");
    const kep::Vector3d<float> r = resolution.GetUsable().GetRes();
    const auto width = static_cast<float>(size.x), height = static_cast<float>(size.y),
               depth = static_cast<float>(size.z);
    const float px = PaddedSide(size.x), py = PaddedSide(size.y), pz = PaddedSide(size.z);
    const float sy = px * r.y / py;
    const float sz = px * r.z / pz;
    const float longest = std::max({width / px / r.x, height / py / sy, depth / pz / sz});
    return {2.0F / (px * longest * r.x), 2.0F / (py * longest * sy), 2.0F / (pz * longest * sz)};
}

kep::Vector3d<float> ComputeIsosurfaceTranslation(const kep::Vector3d<std::size_t>& size,
                                                  const kep::Vector3d<float>& cell) {
    const auto half = [](std::size_t voxels, float length) { return -static_cast<float>(voxels) * length / 2.0F; };
    return {half(size.x, cell.x), half(size.y, cell.y), half(size.z, cell.z)};
}

SurfaceColour SurfaceColourOf(std::uint64_t label, const std::vector<kep::RGB_generic<unsigned char>>& colours,
                              const SurfaceColour& before) {
    if (colours.empty())
        return before;
    const kep::RGB_generic<unsigned char>& colour = colours[label % colours.size()];
    const auto share = [](unsigned char byte) { return static_cast<float>(byte) / 255.0F; };
    return {share(colour.red), share(colour.green), share(colour.blue), 1.0F};
}

} // namespace zel
