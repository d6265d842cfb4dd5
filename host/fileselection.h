#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zelviewer {

// Which files are meant by the names that the user gives. All names are in the file system's encoding.

/// Whether a file's name has one of the endings of images: .tif, .tiff, .ics, in small letters or capitals. Hidden
/// files are no images; other systems keep notes in them under the names of the images.
bool IsImageName(const std::string& name);

/// The images in a folder, with it, in numerical order. Those in folders below it don't count.
/// @throws Failure it can't be read, or holds no images
std::vector<std::string> ImagesIn(const std::string& folder);

/// A list of names with each folder replaced by its images; the order stays. Names that don't exist stay too: whoever
/// reads them will say what is wrong.
/// @throws Failure as ImagesIn
std::vector<std::string> ExpandFolders(const std::vector<std::string>& names);

/// The files in the folder of a file whose names differ from its own by one number only, with the folder and in the
/// order of the number (zel::FindSequence). Only the file itself if there are no others, or if the folder can't be
/// read.
std::vector<std::string> SequenceOf(const std::string& file);

/// The files that the command line means: folders become their images, and with `sequence` a file that is named alone
/// becomes its sequence. The order given stays.
/// @throws Failure as ImagesIn
std::vector<std::string> FilesMeant(const std::vector<std::string>& names, bool sequence);

/// The sequence that the user is asked about who has named files in a window: that of a single file. Empty if there is
/// nothing to ask.
std::vector<std::string> SequenceToOffer(const std::vector<std::string>& names);

/// The question whether the sequence of a file is wanted, which has `count` files.
std::string SequenceQuestion(std::size_t count);

} // namespace zelviewer
