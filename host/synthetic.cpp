#include "host/synthetic.h"

#include "host/randomnumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

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

/// Random values of 0 to 1 on a grid of unit spacing, smooth between: what makes cells look grainy. Keeps the corners
/// of the last place, as the next one mostly lies between the same.
class Grain {
public:
    explicit Grain(std::uint64_t seed) : m_seed(seed) {}

    float At(const Position& p) {
        const float fx = std::floor(p.x), fy = std::floor(p.y), fz = std::floor(p.z);
        const Corner corner{static_cast<int>(fx), static_cast<int>(fy), static_cast<int>(fz)};
        if (corner != m_corner)
            MoveTo(corner);
        const float tx = p.x - fx, ty = p.y - fy, tz = p.z - fz;
        const auto along = [this, tx](std::size_t i) { return Between(m_values[i], m_values[i + 1], tx); };
        return Between(Between(along(0), along(2), ty), Between(along(4), along(6), ty), tz);
    }

private:
    struct Corner {
        int x, y, z;
        bool operator==(const Corner&) const = default;
    };

    static float Between(float a, float b, float t) { return a + (b - a) * t; }

    void MoveTo(const Corner& to) {
        m_corner = to;
        for (int i = 0; i < 8; ++i)
            m_values[static_cast<std::size_t>(i)] = ValueAt(to.x + (i & 1), to.y + (i >> 1 & 1), to.z + (i >> 2));
    }
    float ValueAt(int x, int y, int z) const {
        const std::uint64_t key = static_cast<std::uint32_t>(x) * 0x9E3779B97F4A7C15U ^
                                  static_cast<std::uint32_t>(y) * 0xC2B2AE3D27D4EB4FU ^
                                  static_cast<std::uint32_t>(z) * 0x165667B19E3779F9U;
        return static_cast<float>(RandomNumbers::Mix(m_seed ^ key) >> 40U) * 0x1p-24F;
    }

    std::uint64_t m_seed;
    Corner m_corner{std::numeric_limits<int>::min(), 0, 0}; // nowhere
    std::array<float, 8> m_values{};                        // x fastest, then y
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
    Grain coarse;
    Grain fine;

    explicit GlowingCell(const Cell& cell)
        : label(static_cast<unsigned short>(cell.label)),
          brightness(static_cast<float>(cell.brightness)),
          coarse(static_cast<std::uint64_t>(cell.label)),
          fine(static_cast<std::uint64_t>(cell.label)) {
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
    float Light(const Position& p, float inside) {
        const Position local{p.x - body.centre.x, p.y - body.centre.y, p.z - body.centre.z};
        const float clouds = coarse.At({local.x * 0.6F, local.y * 0.6F, local.z * 0.6F});
        const float cytoplasm = brightness * cytoplasmLight * inside * (0.65F + 0.7F * clouds);
        float nucleus = 0.0F;
        for (int i = 0; i < nucleusCount; ++i)
            nucleus = std::max(nucleus, nuclei[i].At(p).inside);
        if (nucleus == 0.0F)
            return cytoplasm;
        const float grains = fine.At({local.x * 1.1F + 50.0F, local.y * 1.1F, local.z * 0.8F});
        return cytoplasm * (1.0F - nucleus) + nucleusBrightness * nucleusLight * nucleus * (0.6F + 0.8F * grains);
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

/// Paints slices of one frame, one after the other, as the light of one slice stays in the processor's cache.
class Painter {
public:
    Painter(const kep::Vector3d<std::size_t>& size, const Position& voxelSize, std::vector<GlowingCell> glowing)
        : m_size(size),
          m_voxelSize(voxelSize),
          m_cells(std::move(glowing)),
          m_background(size.x * size.y),
          m_light(size.x * size.y),
          m_nearest(size.x * size.y) {
        FillBackground();
    }

    /// @param seed  of the frame
    void Paint(std::size_t first, std::size_t end, std::uint64_t seed, Frame& intensity, Frame& labels) {
        RandomNumbers random(seed); // each voxel of the frame has a number of its own
        random.Skip(first * GetSliceVoxels());
        for (std::size_t z = first; z < end; ++z) {
            m_light = m_background;
            std::fill(m_nearest.begin(), m_nearest.end(), 1.0F);
            for (GlowingCell& cell : m_cells)
                PaintCell(cell, z, labels);
            Expose(random, intensity.begin() + z * GetSliceVoxels());
        }
    }

private:
    std::size_t GetSliceVoxels() const { return m_size.x * m_size.y; }

    /// The same in all slices. The lamp stands a little beside the middle.
    void FillBackground() {
        const auto height = static_cast<float>(m_size.y);
        const auto width = static_cast<float>(m_size.x);
        for (std::size_t i = 0; i < GetSliceVoxels(); ++i) {
            const float dx = static_cast<float>(i % m_size.x) / width - 0.45F;
            const float dy = static_cast<float>(i / m_size.x) / height - 0.55F;
            m_background[i] = backgroundLight * (1.0F - 0.8F * (dx * dx + dy * dy));
        }
    }

    void PaintCell(GlowingCell& cell, std::size_t z, Frame& labels) {
        const float reach = 1.25F * cell.body.halfLength + 0.9F;
        const Position& c = cell.body.centre;
        const Span zs(c.z - reach, c.z + reach, m_voxelSize.z, m_size.z);
        if (z < zs.first || z >= zs.end)
            return;
        const Span xs(c.x - reach, c.x + reach, m_voxelSize.x, m_size.x);
        const Span ys(c.y - reach, c.y + reach, m_voxelSize.y, m_size.y);
        const float beyond = cell.body.GetReachSquared(); // most of the box is outside
        for (std::size_t y = ys.first; y < ys.end; ++y)
            for (std::size_t x = xs.first; x < xs.end; ++x) {
                const Position p{Middle(x, m_voxelSize.x), Middle(y, m_voxelSize.y), Middle(z, m_voxelSize.z)};
                if (DistanceSquared(p, c) > beyond)
                    continue;
                const SoftBall::Place place = cell.body.At(p);
                if (place.inside == 0.0F)
                    continue;
                const std::size_t i = y * m_size.x + x;
                m_light[i] += cell.Light(p, place.inside);
                if (place.distance < m_nearest[i]) { // where cells touch, the voxel is of the one it is deeper in
                    m_nearest[i] = place.distance;
                    labels.SetVoxel(x, y, z, cell.label);
                }
            }
    }

    /// What the camera makes of the light.
    void Expose(RandomNumbers& random, unsigned short* to) const {
        for (const float light : m_light) {
            // Photons come by chance: their variance is their mean.
            const float deviation = std::sqrt(gain * gain * light + readNoise * readNoise);
            const float counts = bias + gain * light + deviation * random.Normal();
            *to++ = static_cast<unsigned short>(std::clamp(counts + 0.5F, 0.0F, 4095.0F));
        }
    }

    static float DistanceSquared(const Position& a, const Position& b) {
        const Position d{a.x - b.x, a.y - b.y, a.z - b.z};
        return d.x * d.x + d.y * d.y + d.z * d.z;
    }

    static float Middle(std::size_t i, float voxelSize) { return (static_cast<float>(i) + 0.5F) * voxelSize; }

    kep::Vector3d<std::size_t> m_size;
    Position m_voxelSize;
    std::vector<GlowingCell> m_cells;
    std::vector<float> m_background; // photons
    std::vector<float> m_light;      // the same, of the present slice
    std::vector<float> m_nearest;    // distance from the centre of the cell that the label names
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
    const std::vector<GlowingCell> cells(m_moments[t].begin(), m_moments[t].end());
    const std::size_t slices = m_settings.size.z;
    kep::ForEachPart(threads, [&](std::size_t part) {
        Painter painter(m_settings.size, m_settings.voxelSize, cells);
        painter.Paint(slices * part / threads, slices * (part + 1) / threads, m_settings.seed + (t + 1) * frameSeedStep,
                      *frame.intensity, *frame.labels);
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
