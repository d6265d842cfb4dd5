#pragma once

#include "core/kepcore/kep_rgb.h"
#include "model/zel_buffer2d.h"
#include "model/zel_export.h"

namespace zel {

/// A picture of screen colours.
using ColourBuffer = Buffer2d<kep::RGB_generic<unsigned char>>;

/// Turns voxels into colours; a host can derive its own. Exists for the types of KEP_DISPLAY_TYPES.
template <typename T>
class ZEL_EXPORT zel_Mapper {
public:
    zel_Mapper() = default;
    zel_Mapper(const zel_Mapper&) = default; ///< for derived classes
    virtual ~zel_Mapper() = default;

    /// Writes the colours of buffer.width * buffer.height voxels, which lie contiguously at `data` row after row, to
    /// the same places of the buffer. For the colour of one voxel pass a buffer of 1 by 1.
    virtual void Map(const T* data, Buffer2d<kep::RGB_generic<unsigned char>>& buffer) const = 0;
};

} // namespace zel
