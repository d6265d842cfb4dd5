#pragma once

// Sequences put together frame by frame, from files that hold several; and how hosts watch files being read.

#include "core/kepcore/kep_colourreader.h"
#include "core/kepcore/kep_readingwatch.h"
#include "image/zel_image4d.h"
#include "model/zel_export.h"

#include <wx/string.h>

#include <cstddef>
#include <memory>

namespace mor {

/// Appends a frame to a sequence. The first one gives the sequence its size, offset and resolution; all others must
/// have the same. Exists for the types of KEP_CONTAINER_TYPES.
/// @throws kep::InternalException before anything changed, as Image4d::InsertFrame
template <typename T>
void AppendFrame(Image4d<T>& sequence, std::unique_ptr<kep::Image3d<T>> frame, const wxString& name);

/// Reads one frame of a file with several, as Image4d::ReadSequence reads a file with one: two-valued voxels become 255
/// and 0, and invalid floats 0, of which the user is told. Exists for the types of KEP_CONTAINER_TYPES.
/// @param reader         of the file
/// @param channel, time  counted from 0
/// @param binary         the file holds two-valued images
/// @throws kep::IOException; kep::ReadingStopped
template <typename T>
std::unique_ptr<kep::Image3d<T>> ReadFrame(kep::FrameReader& reader, std::size_t channel, std::size_t time,
                                           bool binary);

#define ZEL_DECLARE(T)                                                                                                 \
    extern template ZEL_EXPORT void AppendFrame<T>(Image4d<T>&, std::unique_ptr<kep::Image3d<T>>, const wxString&);    \
    extern template ZEL_EXPORT std::unique_ptr<kep::Image3d<T>> ReadFrame<T>(kep::FrameReader&, std::size_t,           \
                                                                             std::size_t, bool);
KEP_CONTAINER_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace mor
