#include "host/synthetic.h"

#include "host/randomnumbers.h"

#include <algorithm>
#include <cmath>

namespace zelviewer {

namespace {

using Frame = kep::Image3d<unsigned short>;
using Position = kep::Vector3d<float>;

// The camera: counts = bias + gain * photons, with the noise of the photons and of the reading.
constexpr float bias = 100.0F;
constexpr float gain = 3.0F;
constexpr float readNoise = 4.0F;
// Photons at the brightest.
constexpr float backgroundLight = 9.0F;
constexpr float cytoplasmLight = 115.0F;
constexpr float nucleusLight = 300.0F;

constexpr std::uint64_t frameSeedStep = 0x2545F4914F6CDD1DU;

/// 0 below -1, 1 above 1, without a corner between.
float SmoothStep(float x) {
    const float t = std::clamp(0.5F * x + 0.5F, 0.0F, 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

/// Random values of 0 to 1 on a grid of unit spacing, smooth between: what makes cells look grainy.
class Grain {
public:
    explicit Grain(std::uint64_t seed) : m_seed(seed) {}

    float At(const Position& p) const {
        const float fx = std::floor(p.x), fy = std::floor(p.y), fz = std::floor(p.z);
        const int x = static_cast<int>(fx), y = static_cast<int>(fy), z = static_cast<int>(fz);
        const float tx = p.x - fx, ty = p.y - fy, tz = p.z - fz;
        const auto along = [&](int dy, int dz) {
            return Between(Corner(x, y + dy, z + dz), Corner(x + 1, y + dy, z + dz), tx);
        };
        return Between(Between(along(0, 0), along(1, 0), ty), Between(along(0, 1), along(1, 1), ty), tz);
    }

private:
    static float Between(float a, float b, float t) { return a + (b - a) * t; }
    float Corner(int x, int y, int z) const {
        const std::uint64_t key = static_cast<std::uint32_t>(x) * 0x9E3779B97F4A7C15U ^
                                  static_cast<std::uint32_t>(y) * 0xC2B2AE3D27D4EB4FU ^
                                  static_cast<std::uint32_t>(z) * 0x165667B19E3779F9U;
        return static_cast<float>(RandomNumbers::Mix(m_seed ^ key) >> 40U) * 0x1p-24F;
    }

    std::uint64_t m_seed;
};

/// A ball, pulled or pressed along an axis, with an edge as soft as the microscope sees it.
struct SoftBall {
    Position centre;
    Position axis; // of unit length
    float halfLength;
    float halfWidth;

    /// Distance from the centre, 1 at the surface; and the softened inside, 0 to 1.
    struct Place {
        float distance;
        float inside;
    };
    Place At(const Position& p) const {
        const Position d{p.x - centre.x, p.y - centre.y, p.z - centre.z};
        const float length2 = d.x * d.x + d.y * d.y + d.z * d.z;
        const float along = d.x * axis.x + d.y * axis.y + d.z * axis.z;
        const float across2 = std::max(0.0F, length2 - along * along);
        const float distance = std::sqrt(along * along / (halfLength * halfLength) + across2 / (halfWidth * halfWidth));
        // Light is blurred more along Z. Microns, turned into the measure of the distance.
        const float steepness = std::fabs(d.z) / std::max(std::sqrt(length2), 1e-3F);
        const float softness = (0.3F + 0.6F * steepness) / std::min(halfLength, halfWidth);
        return {distance, SmoothStep((1.0F - distance) / softness)};
    }

    /// Beyond it nothing is inside: there the distance is above 1 plus the greatest softness. Square microns.
    float GetReachSquared() const {
        const float reach = std::max(halfLength, halfWidth) * (1.0F + 0.9F / std::min(halfLength, halfWidth));
        return reach * reach * 1.001F; // for the roundings
    }
};

Position ToPosition(const Vec& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// What glows of one cell.
struct GlowingCell {
    unsigned short label;
    float brightness;
    float nucleusBrightness;
    SoftBall body;
    SoftBall nuclei[2]; // one, or at the end of mitosis two
    int nucleusCount;
    Grain grain;

    explicit GlowingCell(const Cell& cell)
        : label(static_cast<unsigned short>(cell.label)),
          brightness(static_cast<float>(cell.brightness)),
          grain(static_cast<std::uint64_t>(cell.label)) {
        const auto mitosis = static_cast<float>(cell.mitosis);
        const auto halfLength = static_cast<float>(cell.HalfLength());
        const auto radius = static_cast<float>(cell.radius);
        body = {ToPosition(cell.centre), ToPosition(cell.axis), halfLength, static_cast<float>(cell.HalfWidth())};
        // The chromosomes gather in a plate across the axis, which then parts in two.
        nucleusBrightness = brightness * (1.0F + 0.3F * mitosis);
        const float parting = std::max(0.0F, mitosis - 0.6F) * 2.5F;
        nucleusCount = parting > 0.0F ? 2 : 1;
        const float offset = parting * 0.5F * halfLength;
        for (int i = 0; i < nucleusCount; ++i) {
            const float shift = i == 0 ? offset : -offset;
            const Position& axis = body.axis;
            nuclei[i] = {
                {body.centre.x + axis.x * shift, body.centre.y + axis.y * shift, body.centre.z + axis.z * shift},
                axis,
                radius * (0.56F - 0.36F * mitosis),
                radius * (0.52F - 0.08F * mitosis)};
        }
    }

    /// Photons from a place, of whose body part `inside` is known.
    float Light(const Position& p, float inside) const {
        const Position local{p.x - body.centre.x, p.y - body.centre.y, p.z - body.centre.z};
        const float coarse = grain.At({local.x * 0.6F, local.y * 0.6F, local.z * 0.6F});
        const float cytoplasm = brightness * cytoplasmLight * inside * (0.65F + 0.7F * coarse);
        float nucleus = 0.0F;
        for (int i = 0; i < nucleusCount; ++i)
            nucleus = std::max(nucleus, nuclei[i].At(p).inside);
        if (nucleus == 0.0F)
            return cytoplasm;
        const float fine = grain.At({local.x * 1.1F + 50.0F, local.y * 1.1F, local.z * 0.8F});
        return cytoplasm * (1.0F - nucleus) + nucleusBrightness * nucleusLight * nucleus * (0.6F + 0.8F * fine);
    }
};

/// The voxels from `low` to `high` microns, held to 0 .. size.
struct Span {
    std::size_t first, end;
    Span(float low, float high, float voxelSize, std::size_t size)
        : first(Held(std::floor(low / voxelSize), size)), end(Held(std::ceil(high / voxelSize), size)) {}

private:
    static std::size_t Held(float index, std::size_t size) {
        return index <= 0.0F ? 0 : std::min(size, static_cast<std::size_t>(index));
    }
};

/// Some slices of a frame.
struct Slices {
    std::size_t first, end;
};

/// Light and labels of one frame while its cells are painted. Different slices may be painted on several threads.
class Painter {
public:
    Painter(const kep::Vector3d<std::size_t>& size, const Position& voxelSize)
        : m_size(size),
          m_voxelSize(voxelSize),
          m_light(size.x * size.y * size.z),
          m_nearest(size.x * size.y * size.z, 1.0F) {}

    /// The same in all slices. The lamp stands a little beside the middle.
    void PaintBackground(const Slices& slices) {
        const auto height = static_cast<float>(m_size.y);
        const auto width = static_cast<float>(m_size.x);
        for (std::size_t z = slices.first; z < slices.end; ++z) {
            float* to = m_light.data() + z * GetSliceVoxels();
            if (z > slices.first) {
                std::copy_n(to - GetSliceVoxels(), GetSliceVoxels(), to);
                continue;
            }
            for (std::size_t i = 0; i < GetSliceVoxels(); ++i) {
                const float dx = static_cast<float>(i % m_size.x) / width - 0.45F;
                const float dy = static_cast<float>(i / m_size.x) / height - 0.55F;
                *to++ = backgroundLight * (1.0F - 0.8F * (dx * dx + dy * dy));
            }
        }
    }

    void PaintCell(const GlowingCell& cell, const Slices& slices, Frame& labels) {
        const float reach = 1.25F * cell.body.halfLength + 0.9F;
        const Position& c = cell.body.centre;
        const Span xs(c.x - reach, c.x + reach, m_voxelSize.x, m_size.x);
        const Span ys(c.y - reach, c.y + reach, m_voxelSize.y, m_size.y);
        const Span zs(c.z - reach, c.z + reach, m_voxelSize.z, m_size.z);
        const float beyond = cell.body.GetReachSquared(); // most of the box is outside
        for (std::size_t z = std::max(zs.first, slices.first); z < std::min(zs.end, slices.end); ++z)
            for (std::size_t y = ys.first; y < ys.end; ++y)
                for (std::size_t x = xs.first; x < xs.end; ++x) {
                    const Position p{Middle(x, m_voxelSize.x), Middle(y, m_voxelSize.y), Middle(z, m_voxelSize.z)};
                    if (DistanceSquared(p, c) > beyond)
                        continue;
                    const SoftBall::Place place = cell.body.At(p);
                    if (place.inside == 0.0F)
                        continue;
                    const std::size_t i = labels.GetIndex(x, y, z);
                    m_light[i] += cell.Light(p, place.inside);
                    if (place.distance < m_nearest[i]) { // where cells touch, the voxel is of the one it is deeper in
                        m_nearest[i] = place.distance;
                        labels.SetVoxel(i, cell.label);
                    }
                }
    }

    /// What the camera makes of the light. Each voxel has a random number of its own.
    void Expose(std::uint64_t seed, const Slices& slices, Frame& intensity) const {
        RandomNumbers random(seed);
        random.Skip(slices.first * GetSliceVoxels());
        for (std::size_t i = slices.first * GetSliceVoxels(); i < slices.end * GetSliceVoxels(); ++i) {
            // Photons come by chance: their variance is their mean.
            const float light = m_light[i];
            const float deviation = std::sqrt(gain * gain * light + readNoise * readNoise);
            const float counts = bias + gain * light + deviation * random.Normal();
            intensity.SetVoxel(i, static_cast<unsigned short>(std::clamp(counts + 0.5F, 0.0F, 4095.0F)));
        }
    }

private:
    std::size_t GetSliceVoxels() const { return m_size.x * m_size.y; }

    static float DistanceSquared(const Position& a, const Position& b) {
        const Position d{a.x - b.x, a.y - b.y, a.z - b.z};
        return d.x * d.x + d.y * d.y + d.z * d.z;
    }

    static float Middle(std::size_t i, float voxelSize) { return (static_cast<float>(i) + 0.5F) * voxelSize; }

    kep::Vector3d<std::size_t> m_size;
    Position m_voxelSize;
    std::vector<float> m_light;   // photons
    std::vector<float> m_nearest; // distance from the centre of the cell that the label names
};

std::unique_ptr<Frame> MakeFrame(const SyntheticSettings& settings) {
    const Position& voxel = settings.voxelSize;
    const kep::Resolution resolution(1.0F / voxel.x, 1.0F / voxel.y, 1.0F / voxel.z);
    auto frame = std::make_unique<Frame>(nullptr, &resolution);
    frame->MakeRoom(settings.size.x, settings.size.y, settings.size.z);
    return frame;
}

} // namespace

SyntheticFilm::SyntheticFilm(const SyntheticSettings& settings) : m_settings(settings) {
    const auto extent = [](std::size_t voxels, float voxelSize) {
        return static_cast<double>(voxels) * static_cast<double>(voxelSize);
    };
    CellColony colony({extent(settings.size.x, settings.voxelSize.x), extent(settings.size.y, settings.voxelSize.y),
                       extent(settings.size.z, settings.voxelSize.z)},
                      settings.cells, settings.frames, settings.seed);
    for (int t = 0; t < settings.frames; ++t) {
        if (t > 0)
            colony.Advance();
        m_moments.push_back(colony.GetCells());
    }
}

SyntheticFrame SyntheticFilm::Paint(std::size_t t, std::size_t threads) const {
    SyntheticFrame frame{MakeFrame(m_settings), MakeFrame(m_settings)};
    Painter painter(m_settings.size, m_settings.voxelSize);
    const std::vector<GlowingCell> cells(m_moments[t].begin(), m_moments[t].end());
    kep::ForEachPart(threads, [&](std::size_t part) {
        const Slices slices{m_settings.size.z * part / threads, m_settings.size.z * (part + 1) / threads};
        painter.PaintBackground(slices);
        for (const GlowingCell& cell : cells)
            painter.PaintCell(cell, slices, *frame.labels);
        painter.Expose(m_settings.seed + (t + 1) * frameSeedStep, slices, *frame.intensity);
    });
    return frame;
}

std::vector<SyntheticFrame> MakeSyntheticCells(const SyntheticSettings& settings) {
    const SyntheticFilm film(settings);
    std::vector<SyntheticFrame> frames(static_cast<std::size_t>(settings.frames));
    kep::ForEachPart(frames.size(), [&](std::size_t t) { frames[t] = film.Paint(t); });
    return frames;
}

} // namespace zelviewer
