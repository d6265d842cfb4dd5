#pragma once

#include "model/zel_composition.h"

#include <wx/anidecod.h>

#include <string>

namespace zelviewer {

/// Collects pictures and saves them as an animated GIF, which runs round and round. Up to 256 colours of a picture are
/// kept as they are, of more the nearest of 256 that suit it. Needs the toolkit, but no display.
class Film {
public:
    /// All pictures must have the size of the first.
    /// @throws Failure for a side above 65535, the most that the format has; std::bad_alloc
    void Add(const zel::Sheet& picture);

    /// @param name             in the file system's encoding
    /// @param picturesASecond  above 0; the format counts in hundredths of a second
    /// @throws kep::IOException; what stood under the name stays then
    void Save(const std::string& name, int picturesASecond) const;

private:
    wxImageArray m_pictures;
};

} // namespace zelviewer
