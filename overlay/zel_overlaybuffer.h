#pragma once

#include "image/kep.h"
#include "model/zel_export.h"

#include <array>
#include <cstddef>

namespace zel {

/// What an overlay buffer holds. The numbers count: they select the axes of the picture.
enum zel_OverlayWindowType : int {
    zel_OverlayWindowWhole = 0, ///< a whole frame, in two layers
    zel_OverlayWindowCutXY = 1, ///< a cut has one layer
    zel_OverlayWindowCutXZ = 2,
    zel_OverlayWindowCutYZ = 3,
    zel_OverlayWindowAutofocusXY = 4, ///< a projection has two: labels and outlines
    zel_OverlayWindowAutofocusXZ = 5,
    zel_OverlayWindowAutofocusYZ = 6
};

/// The labels under one drawing window's pixels, as up to two flat frames of one voxel a pixel: XY (w, h, 1),
/// XZ (w, 1, h), YZ (1, h, w). Of cuts, and in what Buffer_GetValue tells, the highest bit of L marks a boundary voxel,
/// so labels have 15 bits here. Exists for unsigned short.
template <typename L>
class ZEL_EXPORT zel_OverlayBuffer {
public:
    explicit zel_OverlayBuffer(zel_OverlayWindowType windowType); ///< without layers in use

    /// Columns of the picture as it lies in memory: size y of the layers for YZ, else x. 0 without room.
    std::size_t GetWidth() const;
    /// Rows of the picture: size z of the layers for XZ and YZ, else y.
    std::size_t GetHeight() const;

    /// @param index  0 or 1; not checked
    kep::Image3d<L>& GetLayer(std::size_t index) { return m_layers[index]; }
    const kep::Image3d<L>& GetLayer(std::size_t index) const { return m_layers[index]; } ///< to read

    /// How many layers are in use: 0 before the first rendering.
    std::size_t GetLayersCount() const { return m_layersCount; }
    void SetLayersCount(std::size_t count) { m_layersCount = count; } ///< 0 to 2; makes no room

    zel_OverlayWindowType GetWindowType() const { return m_windowType; } ///< what the buffer was made for

private:
    std::array<kep::Image3d<L>, 2> m_layers;
    std::size_t m_layersCount = 0;
    zel_OverlayWindowType m_windowType;
};

extern template class zel_OverlayBuffer<unsigned short>;

} // namespace zel
