#pragma once

#include "core/kepcore/kep_image3d.h"
#include "model/zel_export.h"
#include "model/zel_isosurfacegenerator.h"

#include <string>

namespace zel {

/// Writes a mesh as a binary PLY file (little endian), in microns where the voxel size is known and in pixels where it
/// is not, which a comment tells: for each vertex x, y, z and the unit normal, for each triangle three 32-bit unsigned
/// indices. The file appears under its name only when it is whole.
///
/// The file's axes are those of the frame: x along rows, y from the first row to the last, z from slice to slice, and a
/// place is in the voxel in which kep::MicronsToVoxel finds it, so a voxel's center lies half a voxel behind its
/// offset. The surfaces that a generator makes have y the other way round. Turning it mirrors the mesh, and with that
/// the triangles, clockwise as seen from outside in the generator's axes, come out counterclockwise, which is what
/// programs for meshes take for the outer side; normals point out of the label.
///
/// Positions are floats, and doubles if floats are too coarse so far from the origin.
/// @param fileName  in the file system's encoding
/// @param surface   made with the voxel size of the frame in microns as lengths of a cell
/// @param frame     the labels that the surface was made of; only its geometry counts
/// @throws kep::IOException, also for more vertices than 32 bits can number; std::bad_alloc. What stood under the name
///         stays then.
ZEL_EXPORT void SaveMesh(const std::string& fileName, const LabelSurface& surface,
                         const kep::Image3d<unsigned short>& frame);

} // namespace zel
