#pragma once

// Private to the library: the words that a written TIFF file carries.

#include "core/kepcore/file/kep_file.h"

#include <map>
#include <string>

namespace kep::detail {

/// The texts of the first page.
struct TiffTexts {
    std::string description;                   ///< of the page, which ImageJ and others read too
    std::map<std::string, std::string> tagged; ///< what goes into the tags of tiffTextTags, by the description's keys
    std::string notice;                        ///< a sentence for the user on what is missing; mostly empty
};

/// Makes the texts of a frame, cut where the reader would cut them.
TiffTexts MakeTiffTexts(const FrameHeader& header);

} // namespace kep::detail
