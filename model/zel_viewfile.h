#pragma once

// View files (.zelview), which keep the pose of the volume view: the eye distance, the object's matrix, the plane's
// offset, the plane's matrix, each matrix column by column. They are 34 numbers with eleven decimals on one line
// without an end, a blank behind each.
//
// Numbers are written and read as the C library's current locale has them, so a file may not be understood in another
// locale.

#include "model/zel_export.h"
#include "model/zel_volumeview.h"

#include <string>
#include <string_view>

namespace zel {

/// The 34 numbers of a pose as a file has them.
ZEL_EXPORT std::string WritePose(const VolumePose& pose);

/// Reads one number after the other, as fscanf does. A number that is missing, or where something else stands, stays as
/// it is in the pose, and so do those that come after it. What follows the last number doesn't matter.
/// @throws std::bad_alloc
ZEL_EXPORT void ReadPose(std::string_view text, VolumePose& pose);

/// Saves a pose as a file, which appears under its name only when it is whole.
/// @param fileName  in the file system's encoding
/// @param pose      to be saved
/// @throws kep::IOException; std::bad_alloc. What stood under the name stays then.
ZEL_EXPORT void SavePose(const std::string& fileName, const VolumePose& pose);

/// Reads a file as ReadPose does; a megabyte of it at most.
/// @param fileName  in the file system's encoding
/// @param pose      gets the numbers that the file has
/// @return false if it cannot be opened or read, or is no plain file. The pose is as it was then
ZEL_EXPORT bool LoadPose(const std::string& fileName, VolumePose& pose);

} // namespace zel
