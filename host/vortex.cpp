#include "host/vortex.h"

#include <cmath>
#include <numbers>

namespace zelviewer {

namespace {

using Complex = std::complex<float>;

/// The wave across the beam, by the distance from its axis in widths of the beam. The vortices lie one width to the
/// left and to the right.
Complex WaveAcross(float x, float y) {
    return Complex(x - 1.0F, y) * Complex(x + 1.0F, -y) * std::exp(-0.5F * (x * x + y * y));
}

} // namespace

std::vector<std::unique_ptr<kep::Image3d<Complex>>> MakeVortex(const VortexSettings& settings) {
    constexpr float twoPi = 2.0F * std::numbers::pi_v<float>;
    constexpr float widthsAcross = 6.0F;
    constexpr float wavesAlong = 2.0F;
    const auto& size = settings.size;
    const kep::Vector3d<float> offset;
    const kep::Resolution resolution(1 / settings.voxelSize.x, 1 / settings.voxelSize.y, 1 / settings.voxelSize.z);
    const auto place = [](std::size_t i, std::size_t count) {
        return ((static_cast<float>(i) + 0.5F) / static_cast<float>(count) - 0.5F) * widthsAcross;
    };
    std::vector<std::unique_ptr<kep::Image3d<Complex>>> frames;
    for (int t = 0; t < settings.frames; ++t) {
        auto frame = std::make_unique<kep::Image3d<Complex>>(&offset, &resolution);
        frame->MakeRoom(size.x, size.y, size.z);
        for (std::size_t z = 0; z < size.z; ++z) {
            const float waves = wavesAlong * static_cast<float>(z) / static_cast<float>(size.z) -
                                static_cast<float>(t) / static_cast<float>(settings.frames);
            const Complex turn = std::polar(1.0F, twoPi * waves);
            for (std::size_t y = 0; y < size.y; ++y)
                for (std::size_t x = 0; x < size.x; ++x)
                    frame->SetVoxel(x, y, z, WaveAcross(place(x, size.x), place(y, size.y)) * turn);
        }
        frames.push_back(std::move(frame));
    }
    return frames;
}

} // namespace zelviewer
