#pragma once

// Private to the library: what the words of a TIFF file say of its voxels' size and place and of the order of its
// pages. Functions of texts and numbers, without a file.

#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_vector.h"

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kep::detail {

/// How a description is written.
enum class DescriptionStyle { Free, ImageJ, Ome };

/// Where a slice lies, by numbers of the whole series from 0.
struct TiffPlane {
    std::size_t slice = 0;
    std::size_t channel = 0;
    std::size_t time = 0;
    std::size_t directory = 0; ///< by its number among all of the file
};

/// What a description says of the file's pages and voxels. Numbers of pages concern this file alone, also where the
/// description covers a series of files.
struct TiffDescription {
    DescriptionStyle style = DescriptionStyle::Free;
    std::size_t images = 1;   ///< pictures of their own size and type; above 1 in OME-XML only
    std::size_t slices = 0;   ///< 0: not said
    std::size_t channels = 1; ///< colour components that lie together in a pixel count as one
    std::size_t times = 1;
    bool channelsTogether = true;     ///< the channels of a slice follow each other; else the slices of a channel do
    std::string order = "CZT";        ///< in which pages run along the axes, the fastest first
    std::vector<TiffPlane> planes;    ///< of this file; empty: as `order` has them
    bool planesElsewhere = false;     ///< all are said to lie in other files
    std::optional<AxisCounts> series; ///< of all files together, where this one holds only some of the planes
    std::vector<ChannelInfo> channelInfos; ///< of this file's channels, as far as they are told
    std::optional<double> frameInterval;   ///< seconds

    std::optional<std::string> unit;             ///< of resolution and spacing, as written
    std::optional<double> spacing;               ///< of slices, in that unit
    std::array<std::optional<double>, 3> origin; ///< of x, y, z in pixels: where the position 0 lies

    std::array<std::optional<double>, 3> pixelSize; ///< microns, from OME-XML

    std::optional<Vector3d<float>> ownResolution; ///< this library's exact copies of resolution and offset
    std::optional<Vector3d<float>> ownOffset;
    std::map<std::string, std::string> entries; ///< for the frame's description
};

/// @param text      of the tag, up to its first NUL
/// @param fileName  without folders: OME-XML of a series tells by it, failing better, which pages are this file's
TiffDescription ParseTiffDescription(const std::string& text, const std::string& fileName);

/// The tags that bear on size and place; nothing where a tag is missing.
struct TiffScaleTags {
    std::optional<double> xResolution; ///< pixels per unit
    std::optional<double> yResolution;
    std::optional<double> xPosition; ///< units
    std::optional<double> yPosition;
    int unit = 0; ///< 0: no tag, 1: none, 2: inch, 3: cm
};

struct TiffPlace {
    Resolution resolution; ///< 0 on an axis where it is not known: z in a stack whose spacing is missing, for one
    /// Microns; 0 without any resolution, as positions have no unit then. Frames that this library has saved keep
    /// theirs.
    Vector3d<float> offset;
};

/// OME-XML goes before an ImageJ-style unit, that before the tag of the unit. A whole number of pixels per inch is a
/// setting for printers unless the description is of either kind. The exact copies are taken where they agree with
/// what the standard fields say, so that an edit by another program wins.
TiffPlace FindTiffPlace(const TiffScaleTags& tags, const TiffDescription& description, std::size_t slices);

/// Microns of a unit of length, e.g. "nm", "Micron", "\u00B5m" as ImageJ writes it; nothing for "pixel" and all
/// else that is no length.
std::optional<double> GetMicronsOfUnit(std::string_view unit);

} // namespace kep::detail
