#pragma once

#include "host/cellcolony.h"
#include "image/kep.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zelviewer {

/// What kind of time-lapse is made when no file is given.
struct SyntheticSettings {
    kep::Vector3d<std::size_t> size{320, 280, 32};    ///< voxels
    kep::Vector3d<float> voxelSize{0.2F, 0.2F, 0.6F}; ///< microns
    int frames = 10;
    int cells = 12; ///< in the first frame; half of them divide later
    std::uint64_t seed = 23;
};

/// One frame of it.
struct SyntheticFrame {
    std::unique_ptr<kep::Image3d<unsigned short>> intensity; ///< what a camera with 12 bits would have seen
    std::unique_ptr<kep::Image3d<unsigned short>> labels;    ///< the number of the cell that a voxel is in, 0 outside
};

/// A fluorescence time-lapse of wandering, dividing cells. The same settings give the same voxels everywhere.
class SyntheticFilm {
public:
    explicit SyntheticFilm(const SyntheticSettings& settings = {});

    const SyntheticSettings& GetSettings() const { return m_settings; }
    /// Paints a frame. Takes about 25 ns a voxel. May be called on any thread, and on several at once.
    /// @param t        0 <= t < frames of the settings
    /// @param threads  that share the slices, at least 1
    SyntheticFrame Paint(std::size_t t, std::size_t threads = 1) const;

private:
    SyntheticSettings m_settings;
    std::vector<std::vector<Cell>> m_moments; ///< the cells of each frame
};

/// All frames of it, made on all threads.
std::vector<SyntheticFrame> MakeSyntheticCells(const SyntheticSettings& settings = {});

} // namespace zelviewer
